// The system's own box.
#include "platform/message_box.h"

#include "platform/windows/native.h"

namespace platform {

static_assert(kBoxRetryCancel == MB_RETRYCANCEL && kBoxIconInformation == MB_ICONINFORMATION &&
              kBoxResultCancel == IDCANCEL && kBoxResultRetry == IDRETRY);

constinit Operation<std::int32_t(const char16_t*, const char16_t*, std::uint32_t)> MessageBoxW{
    [](const char16_t* text, const char16_t* title, std::uint32_t flags) -> std::int32_t {
        return ::MessageBoxW(nullptr, Native(text), Native(title), flags);
    }};

}  // namespace platform
