#include "converter/error_tap.h"

#include <array>
#include <string>

#include "platform/file.h"

// The write end stays as it was made: no program that a module may start can inherit it and so keep the
// channel open behind our back.
ErrorTap::ErrorTap(Reporter& reporter) : mReporter(reporter), mWriteEnd(platform::kInvalidHandle) {
    if (!mPipe.Create()) return;
    mWriteEnd = mPipe.WriteHandle();
    mThread = std::thread([this] { Run(); });
}

int ErrorTap::Close() {
    if (mThread.joinable()) {
        platform::CloseHandle(mPipe.DetachWriteEnd());
        mWriteEnd = platform::kInvalidHandle;
        mThread.join();
    }
    return mLines;
}

// Reads until the last write end is closed. A unit cut by a read waits for its other half.
void ErrorTap::Run() {
    std::array<char16_t, 2048> buffer;
    std::u16string text;
    std::uint32_t carried = 0;
    std::uint32_t read = 0;
    char* const bytes = reinterpret_cast<char*>(buffer.data());
    while (platform::ReadFile(mPipe.ReadHandle(), bytes + carried, sizeof(buffer) - carried, &read) &&
           read > 0) {
        const std::uint32_t held = carried + read;
        text.append(buffer.data(), held / sizeof(char16_t));
        carried = held % sizeof(char16_t);
        if (carried) bytes[0] = bytes[held - 1];
        PassOn(text);
    }
    if (!text.empty()) {
        text += u"\r\n";
        PassOn(text);
    }
}

// Sends the complete lines and keeps the rest; one that never ends is cut, so that the memory stays bounded.
void ErrorTap::PassOn(std::u16string& text) {
    constexpr std::size_t kLongest = 65536;
    std::size_t end = 0;
    while ((end = text.find(u"\r\n")) != std::u16string::npos || text.size() > kLongest) {
        const bool complete = end != std::u16string::npos;
        const std::u16string line = text.substr(0, complete ? end : kLongest);
        text.erase(0, complete ? end + 2 : kLongest);
        if (line.empty()) continue;
        ++mLines;
        mReporter.Error(line);
    }
}
