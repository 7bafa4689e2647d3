// What programs need: streams, console, interruptions.
#include "platform/program.h"

#include <atomic>

#include "platform/windows/native.h"

namespace platform {

namespace {

static_assert(kStdOutput == STD_OUTPUT_HANDLE && kStdError == STD_ERROR_HANDLE);

bool IsConsole(HANDLE stream) {
    DWORD mode;
    return ::GetConsoleMode(stream, &mode) != 0;
}

std::uint32_t ConsoleWidth(Handle stream) {
    CONSOLE_SCREEN_BUFFER_INFO info;
    if (!::GetConsoleScreenBufferInfo(Native(stream), &info)) return 0;
    return static_cast<std::uint32_t>(info.srWindow.Right - info.srWindow.Left + 1);
}

std::string ToUtf8(const std::u16string& text) {
    const int length = static_cast<int>(text.size());
    const int bytes =
        ::WideCharToMultiByte(CP_UTF8, 0, Native(text.data()), length, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(bytes), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, Native(text.data()), length, utf8.data(), bytes, nullptr, nullptr);
    return utf8;
}

bool WriteText(Handle stream, const char16_t* text) {
    const std::u16string all(text);
    DWORD written = 0;
    if (IsConsole(Native(stream))) {
        const auto units = static_cast<DWORD>(all.size());
        return ::WriteConsoleW(Native(stream), all.data(), units, &written, nullptr) && written == units;
    }
    const std::string utf8 = ToUtf8(all);
    const auto bytes = static_cast<DWORD>(utf8.size());
    return ::WriteFile(Native(stream), utf8.data(), bytes, &written, nullptr) && written == bytes;
}

std::atomic<void (*)(std::uint32_t)> gInterrupted = nullptr;
std::atomic<std::uint32_t> gInterruptions = 0;

BOOL WINAPI OnInterruption(DWORD) {
    gInterrupted.load()(++gInterruptions);
    return TRUE;
}

HANDLE OpenForIdentity(const char16_t* path) {
    return ::CreateFileW(Native(path), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                         OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

// A file's number tells it apart on its volume, but only while the file is open.
bool LeadToOneFile(HANDLE first, HANDLE second) {
    BY_HANDLE_FILE_INFORMATION a, b;
    return ::GetFileInformationByHandle(first, &a) && ::GetFileInformationByHandle(second, &b) &&
           a.dwVolumeSerialNumber == b.dwVolumeSerialNumber && a.nFileIndexHigh == b.nFileIndexHigh &&
           a.nFileIndexLow == b.nFileIndexLow;
}

bool NameOneFile(const char16_t* first, const char16_t* second) {
    const HANDLE a = OpenForIdentity(first), b = OpenForIdentity(second);
    const bool same = LeadToOneFile(a, b);
    ::CloseHandle(a);
    ::CloseHandle(b);
    return same;
}

}  // namespace

constinit Operation<Handle(std::uint32_t)> GetStdHandle{
    [](std::uint32_t which) { return FromNative(::GetStdHandle(which)); }};

constinit Operation<std::uint32_t(Handle)> GetConsoleWidth{&ConsoleWidth};
constinit Operation<bool(Handle, const char16_t*)> WriteConsoleText{&WriteText};

constinit Operation<bool(void (*)(std::uint32_t))> SetConsoleCtrlHandler{[](void (*handler)(std::uint32_t)) {
    const bool first = gInterrupted.exchange(handler) == nullptr;
    return !first || ::SetConsoleCtrlHandler(&OnInterruption, TRUE);
}};

constinit Operation<bool(const char16_t*, const char16_t*)> IsSameFile{&NameOneFile};
constinit Operation<void(std::uint32_t)> ExitProcess{[](std::uint32_t exitCode) { ::ExitProcess(exitCode); }};

}  // namespace platform
