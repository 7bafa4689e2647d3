// What a program of ours needs of the system: its arguments, its terminal, its interruptions. The library
// itself uses nothing of this.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/operation.h"
#include "platform/types.h"

namespace platform {

// Provided by the program that links qv_program_main: its arguments without the program's own name, in 16-bit
// text. The result is the exit code.
int ProgramMain(const std::vector<std::u16string>& arguments);

inline constexpr std::uint32_t kStdOutput = 0xFFFFFFF5;
inline constexpr std::uint32_t kStdError = 0xFFFFFFF4;

// The program's own stream; kNullHandle or kInvalidHandle when it has none. Not to be closed.
extern Operation<Handle(std::uint32_t which)> GetStdHandle;

// The width in columns of the terminal behind `stream`, or 0 when it is no terminal.
extern Operation<std::uint32_t(Handle stream)> GetConsoleWidth;

// Writes text for a person: UTF-16 to a Windows console, UTF-8 elsewhere. False when not all of it got through.
extern Operation<bool(Handle stream, const char16_t* text)> WriteConsoleText;

// Calls `handler` with 1 for the first interruption (Ctrl-C, a request to end), 2 for the second and so on,
// on a thread of its own or in a signal handler: it may only touch atomics. The default action does not
// follow.
extern Operation<bool(void (*handler)(std::uint32_t count))> SetConsoleCtrlHandler;

// True when the two paths name one existing file, by whatever link or case.
extern Operation<bool(const char16_t* first, const char16_t* second)> IsSameFile;

// Ends the program at once.
extern Operation<void(std::uint32_t exitCode)> ExitProcess;

}  // namespace platform
