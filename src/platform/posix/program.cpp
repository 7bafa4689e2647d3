// What a program of ours needs of the system.
#include "platform/program.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>

#include "platform/error.h"
#include "platform/posix/handle.h"
#include "platform/posix/native_error.h"
#include "platform/posix/native_file.h"
#include "platform/posix/native_text.h"

namespace platform {

using namespace posix;

namespace {

Handle StandardStream(std::uint32_t which) {
    const int descriptor = which == kStdOutput ? 1 : which == kStdError ? 2 : -1;
    return fcntl(descriptor, F_GETFD) >= 0 ? descriptor : FailedHandle(kInvalidHandle);
}

// A terminal that was never told its size has the usual one.
std::uint32_t TerminalWidth(Handle stream) {
    constexpr std::uint32_t kUsualWidth = 80;
    winsize size{};
    if (ioctl(DescriptorOf(stream), TIOCGWINSZ, &size) != 0) return 0;
    return size.ws_col > 0 ? size.ws_col : kUsualWidth;
}

bool WriteText(Handle stream, const char16_t* text) {
    const std::string narrow = Narrow(text);
    return WriteAll(DescriptorOf(stream), narrow.data(), narrow.size());
}

using InterruptHandler = void (*)(std::uint32_t count);
constinit std::atomic<InterruptHandler> gHandler = nullptr;
constinit std::atomic<std::uint32_t> gInterruptions = 0;

void Interrupt(int) {
    const int error = errno;
    if (const InterruptHandler handler = gHandler) handler(++gInterruptions);
    errno = error;
}

bool HandleInterruptions(InterruptHandler handler) {
    gInterruptions = 0;
    gHandler = handler;
    struct sigaction action {};
    action.sa_handler = &Interrupt;
    action.sa_flags = SA_RESTART;
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        if (sigaction(number, &action, nullptr) != 0) return FailWithErrno();
    }
    return true;
}

bool AreSame(const char16_t* first, const char16_t* second) {
    struct stat one, other;
    if (stat(Narrow(first).c_str(), &one) != 0 || stat(Narrow(second).c_str(), &other) != 0) return false;
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

void Exit(std::uint32_t exitCode) {
    _exit(static_cast<int>(exitCode));
}

}  // namespace

constinit Operation<Handle(std::uint32_t)> GetStdHandle{&StandardStream};
constinit Operation<std::uint32_t(Handle)> GetConsoleWidth{&TerminalWidth};
constinit Operation<bool(Handle, const char16_t*)> WriteConsoleText{&WriteText};
constinit Operation<bool(void (*)(std::uint32_t))> SetConsoleCtrlHandler{&HandleInterruptions};
constinit Operation<bool(const char16_t*, const char16_t*)> IsSameFile{&AreSame};
constinit Operation<void(std::uint32_t)> ExitProcess{&Exit};

}  // namespace platform
