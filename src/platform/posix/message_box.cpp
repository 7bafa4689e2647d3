// There is no window layer here, so nobody can be asked.
#include "platform/message_box.h"

namespace platform {

namespace {
std::int32_t Unanswered(const char16_t*, const char16_t*, std::uint32_t) {
    return 0;
}
}  // namespace

constinit Operation<std::int32_t(const char16_t*, const char16_t*, std::uint32_t)> MessageBoxW{&Unanswered};

}  // namespace platform
