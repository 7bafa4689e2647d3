#include "terminal.h"

#include <gtest/gtest.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "endtoend/program.h"

namespace {

std::string Native(const std::u16string& text) {
    return std::filesystem::path(text).string();
}

}  // namespace

QuaverOnTerminal::QuaverOnTerminal(const std::vector<std::u16string>& arguments, unsigned short columns) {
    std::vector<std::string> texts = {Native(Quaver::File())};
    for (const std::u16string& argument : arguments) texts.push_back(Native(argument));
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    const winsize size = {.ws_row = 24, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
    mProcess = forkpty(&mTerminal, nullptr, nullptr, &size);
    if (mProcess == 0) {
        execv(pointers[0], pointers.data());
        _exit(127);
    }
    EXPECT_GT(mProcess, 0);
}

QuaverOnTerminal::~QuaverOnTerminal() {
    if (!HasEnded()) Signal(SIGKILL);
    Finish();
    close(mTerminal);
}

void QuaverOnTerminal::Type(std::string_view keys) {
    EXPECT_EQ(write(mTerminal, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
}

void QuaverOnTerminal::Signal(int number) {
    EXPECT_EQ(kill(mProcess, number), 0);
}

bool QuaverOnTerminal::ReadUntil(std::string_view text) {
    while (mScreen.find(text) == std::string::npos) {
        if (!Read()) return false;
    }
    return true;
}

bool QuaverOnTerminal::HasEnded() {
    if (mProcess > 0 && waitpid(mProcess, &mStatus, WNOHANG) == mProcess) mProcess = -1;
    return mProcess < 0;
}

int QuaverOnTerminal::Finish() {
    while (Read()) {
    }
    if (mProcess > 0) waitpid(mProcess, &mStatus, 0);
    mProcess = -1;
    return WIFEXITED(mStatus) ? WEXITSTATUS(mStatus) : 128 + WTERMSIG(mStatus);
}

// False at the end, when nobody has the terminal any more.
bool QuaverOnTerminal::Read() {
    char bytes[4096];
    const ssize_t count = read(mTerminal, bytes, sizeof bytes);
    if (count > 0) mScreen.append(bytes, static_cast<std::size_t>(count));
    return count > 0;
}
