// A child program of this test program, run to its end.
#pragma once

#include <cstdint>
#include <string>

#include "platform/file.h"
#include "platform/process.h"
#include "platform/synchronisation.h"
#include "support/child.h"

// The exit code; -1 when it could not be started.
inline std::int64_t RunOwnChild(const char* name, const std::u16string& arguments = u"") {
    std::u16string line = child::CommandLine(name, arguments);
    platform::ChildHandles started;
    if (!platform::CreateProcessW(line.data(), 0, {}, &started)) return -1;
    platform::WaitForSingleObject(started.process, platform::kInfinite);
    std::uint32_t code = 0xFFFFFFFF;
    platform::GetExitCodeProcess(started.process, &code);
    platform::CloseHandle(started.thread);
    platform::CloseHandle(started.process);
    return code;
}
