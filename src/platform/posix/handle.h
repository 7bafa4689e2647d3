// What a Handle holds here.
//
// A file or pipe end is its descriptor number, so a module or a child can be given it as it is.
// Everything else is an object on the heap whose address, with a bit set that no address and no
// descriptor has, is the handle.
#pragma once

#include <unistd.h>

#include <utility>

#include "platform/types.h"

namespace platform::posix {

inline constexpr Handle kObjectBit = Handle{1} << 62;
inline constexpr int kFirstDescriptor = 3;

class HandleObject {
  public:
    HandleObject() = default;
    HandleObject(const HandleObject&) = delete;
    HandleObject& operator=(const HandleObject&) = delete;
    virtual ~HandleObject() = default;
};

inline Handle HandleOf(HandleObject* object) {
    return reinterpret_cast<Handle>(object) | kObjectBit;
}

inline HandleObject* ObjectOf(Handle handle) {
    if (handle < 0 || !(handle & kObjectBit)) return nullptr;
    return reinterpret_cast<HandleObject*>(handle & ~kObjectBit);
}

// Stores kErrorInvalidHandle; false.
bool FailWrongKind();

// The object of this type behind the handle; null, with kErrorInvalidHandle stored,
// when it is something else.
template <class Type>
Type* ObjectAs(Handle handle) {
    Type* const object = dynamic_cast<Type*>(ObjectOf(handle));
    if (!object) FailWrongKind();
    return object;
}

// The descriptor that the handle is, or -1, on which every system call fails as on a bad handle.
inline int DescriptorOf(Handle handle) {
    return handle > 0 && handle <= 0x7FFFFFFF ? static_cast<int>(handle) : -1;
}

// A descriptor out of the three that have a meaning to every program: the same one, or a copy further up.
int RaiseDescriptor(int descriptor);

// Owns a descriptor; -1 is none.
class Descriptor {
  public:
    Descriptor() = default;
    explicit Descriptor(int number) : mNumber(number) {}
    Descriptor(Descriptor&& other) noexcept : mNumber(other.Release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(mNumber, other.mNumber);
        return *this;
    }
    ~Descriptor() {
        if (mNumber >= 0) close(mNumber);
    }

    explicit operator bool() const { return mNumber >= 0; }
    int Get() const { return mNumber; }
    int Release() { return std::exchange(mNumber, -1); }

  private:
    int mNumber = -1;
};

}  // namespace platform::posix
