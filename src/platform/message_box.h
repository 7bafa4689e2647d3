// A question to the user.
#pragma once

#include <cstdint>

#include "platform/operation.h"

namespace platform {

inline constexpr std::uint32_t kBoxRetryCancel = 5;
inline constexpr std::uint32_t kBoxIconInformation = 64;
inline constexpr std::int32_t kBoxResultCancel = 2;
inline constexpr std::int32_t kBoxResultRetry = 4;

// Shows the box and returns the button pressed. POSIX has no window layer: nothing is shown and the result is
// 0.
extern Operation<std::int32_t(const char16_t* text, const char16_t* title, std::uint32_t flags)> MessageBoxW;

}  // namespace platform
