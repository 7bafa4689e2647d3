// 8-bit text is the ANSI code page.
#include "platform/text.h"

#include "platform/windows/native.h"

namespace platform {

constinit Operation<std::int32_t(const char*, char16_t*, std::int32_t)> MultiByteToWideChar{
    [](const char* narrow, char16_t* wide, std::int32_t wideCount) -> std::int32_t {
        return ::MultiByteToWideChar(CP_ACP, 0, narrow, -1, Native(wide), wideCount);
    }};

constinit Operation<std::int32_t(const char16_t*, char*, std::int32_t)> WideCharToMultiByte{
    [](const char16_t* wide, char* narrow, std::int32_t narrowCount) -> std::int32_t {
        return ::WideCharToMultiByte(CP_ACP, 0, Native(wide), -1, narrow, narrowCount, nullptr, nullptr);
    }};

}  // namespace platform
