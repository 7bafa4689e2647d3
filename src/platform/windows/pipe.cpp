// Pipes, forwarded.
#include "platform/pipe.h"

#include "platform/windows/native.h"

namespace platform {

constinit Operation<bool(Handle*, Handle*)> CreatePipe{[](Handle* readEnd, Handle* writeEnd) {
    HANDLE reader, writer;
    if (!::CreatePipe(&reader, &writer, nullptr, 0)) return false;
    *readEnd = FromNative(reader);
    *writeEnd = FromNative(writer);
    return true;
}};

constinit Operation<bool(Handle, std::uint32_t*)> PeekNamedPipe{[](Handle readEnd, std::uint32_t* available) {
    *available = 0;
    return ::PeekNamedPipe(Native(readEnd), nullptr, 0, nullptr, Native(available), nullptr) != 0;
}};

constinit Operation<bool(Handle, Handle*)> DuplicateHandle{[](Handle source, Handle* duplicate) {
    const HANDLE self = ::GetCurrentProcess();
    HANDLE copy;
    if (!::DuplicateHandle(self, Native(source), self, &copy, 0, TRUE,
                           DUPLICATE_SAME_ACCESS | DUPLICATE_CLOSE_SOURCE))
        return false;
    *duplicate = FromNative(copy);
    return true;
}};

}  // namespace platform
