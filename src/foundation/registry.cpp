// Every operation opens its key, which also creates it, and closes it again. Values are text; they come from
// outside and may be of any size and without a NUL.
#include "foundation/registry.h"

#include <algorithm>
#include <vector>

#include "platform/error.h"
#include "platform/registry.h"

namespace {

// No text of ours is anywhere near this size: a value that claims more is none of ours.
constexpr std::uint32_t kLargestText = 0x10000000;

class Key {
  public:
    Key(std::uint32_t access, const char16_t* subKey) : mHandle(XRegistry::OpenKey(access, subKey)) {}
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    ~Key() {
        if (*this) platform::RegCloseKey(mHandle);
    }

    explicit operator bool() const { return mHandle != platform::kNullHandle; }
    platform::Handle Handle() const { return mHandle; }

  private:
    platform::Handle mHandle;
};

bool ReadText(void* buffer, std::uint32_t size, const char16_t* name, const char16_t* subKey) {
    const Key key(platform::kKeyQueryValue, subKey);
    std::uint32_t type = 0;
    return key &&
           platform::RegQueryValueExW(key.Handle(), name, &type, buffer, &size) == platform::kErrorSuccess &&
           (type == platform::kRegString || type == platform::kRegExpandString);
}

// The bytes of a value, 0 when it can't be had.
std::uint32_t ValueSize(const char16_t* name, const char16_t* subKey) {
    const Key key(platform::kKeyQueryValue, subKey);
    std::uint32_t size = 0;
    const bool known = key && platform::RegQueryValueExW(key.Handle(), name, nullptr, nullptr, &size) ==
                                  platform::kErrorSuccess;
    return known && size <= kLargestText ? size : 0;
}

}  // namespace

platform::Handle XRegistry::OpenKey(std::uint32_t access, const char16_t* subKey) {
    platform::Handle key = platform::kNullHandle;
    if (subKey && *subKey != 0) platform::RegCreateKeyExW(subKey, access, &key);
    return key;
}

void XRegistry::ReadValue(void* buffer, std::uint32_t size, const char16_t* name, const char16_t* subKey,
                          bool* failed) {
    const bool done = ReadText(buffer, size, name, subKey);
    if (!done) std::fill_n(static_cast<std::uint8_t*>(buffer), size, std::uint8_t{0});
    if (failed) *failed = !done;
}

bool XRegistry::WriteValue(const void* data, std::uint32_t size, std::uint32_t type, const char16_t* name,
                           const char16_t* subKey) {
    const Key key(platform::kKeyWrite, subKey);
    return key && platform::RegSetValueExW(key.Handle(), name, type, data, size) == platform::kErrorSuccess;
}

XString XRegistry::ReadString(const char16_t* name, const char16_t* subKey) {
    const std::uint32_t size = ValueSize(name, subKey);
    if (size == 0) return XString();
    // Half a unit counts as one, and a unit behind the value is never read into: the text ends in any case.
    std::vector<char16_t> text((size + 1) / 2 + 1);
    ReadValue(text.data(), size, name, subKey, nullptr);
    return XString(text.data());
}

bool XRegistry::WriteString(const XString& text, const char16_t* name, const char16_t* subKey) {
    return WriteValue(text.Text(), static_cast<std::uint32_t>(text.Count()) * 2, platform::kRegString, name,
                      subKey);
}
