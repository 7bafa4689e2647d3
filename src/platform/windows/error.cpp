// The last error is the system's own.
#include "platform/error.h"

#include "platform/windows/native.h"

namespace platform {

constinit Operation<std::uint32_t()> GetLastError{[]() -> std::uint32_t { return ::GetLastError(); }};
constinit Operation<void(std::uint32_t)> SetLastError{[](std::uint32_t error) { ::SetLastError(error); }};

}  // namespace platform
