// The child's process: no window, no standard input, and each of its output streams on a pipe whose read end
// stays here. The pipes of the last run live until they are replaced, so what a child left in them is not
// lost early.
#include <string>

#include "platform/file.h"
#include "platform/process.h"
#include "supervisor/cpu_encoder.h"

bool CPUEncoder::RunConverter(const XString& commandLine) {
    if (!stdoutPipe.Create()) {
        XLog::Error(u"Error creating StdOut Pipe", log, nullptr);
        return false;
    }
    if (!stderrPipe.Create()) {
        XLog::Error(u"Error creating StdErr Pipe", log, nullptr);
        return false;
    }
    std::u16string writableLine(
        commandLine.Text());  // before the handles: nothing may raise while they are ours
    const platform::ChildStreams streams = {stdoutPipe.DetachWriteEnd(), stderrPipe.DetachWriteEnd()};
    platform::ChildHandles child;
    if (!platform::CreateProcessW(writableLine.data(),
                                  platform::kCreateNoWindow | platform::kNormalPriorityClass, streams,
                                  &child)) {
        // The two write ends stay open for good: a start that failed leaves pipes that never break.
        XLog::Error(u"Error running Quavercore", log, nullptr);
        return false;
    }
    // The child has its own. Without these a pipe breaks when the child ends.
    platform::CloseHandle(streams.output);
    platform::CloseHandle(streams.error);
    processHandle = child.process;
    threadHandle = child.thread;
    return true;
}
