#include "interruption.h"

#include <atomic>

#include "exit_codes.h"
#include "platform/program.h"

namespace interruption {

namespace {

std::atomic<bool> gRaised = false;

void OnInterruption(std::uint32_t count) {
    gRaised = true;
    if (count > 1) platform::ExitProcess(static_cast<std::uint32_t>(ExitCode::kCancelled));
}

}  // namespace

void Watch() {
    platform::SetConsoleCtrlHandler(&OnInterruption);
}
bool Raised() {
    return gRaised;
}

}  // namespace interruption
