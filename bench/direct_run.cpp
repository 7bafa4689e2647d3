#include "direct_run.h"

#include "foundation/file.h"
#include "foundation/pipe.h"
#include "foundation/temp_file.h"
#include "platform/file.h"
#include "platform/process.h"
#include "platform/synchronisation.h"

namespace {

const std::u16string kCancel = u"qv-bench-cancel";
const std::u16string kWatch = u"qv-bench-watch";

std::u16string CommandText(const std::u16string& source, const std::u16string& destination) {
    return u" -infile=\"" + source + u"\" -outfile=\"" + destination +
           u"\" -convert_to=\"Wave\" -evtquit=\"" + kCancel + u"\" -evtwatchdog=\"" + kWatch +
           u"\" -noidtag ";
}

// The host's reading: whatever comes, until the child has closed its end.
void ReadToTheEnd(const XPipe& pipe) {
    char buffer[4096];
    std::uint32_t read = 0;
    while (platform::ReadFile(pipe.ReadHandle(), buffer, sizeof(buffer), &read) && read > 0) {
    }
}

}  // namespace

int RunDirectly(const std::u16string& converter, const std::u16string& source,
                const std::u16string& destination) {
    const platform::Handle cancel = platform::CreateEventW(kCancel.c_str());
    const platform::Handle watch = platform::CreateEventW(kWatch.c_str());
    XTempFile command;
    command.Generate();
    {
        const std::u16string text = CommandText(source, destination);
        XFile file(command);
        file.Create();
        file.Write(text.data(), static_cast<std::uint32_t>(2 * text.size()));
    }
    XPipe output, error;
    output.Create();
    error.Create();
    const platform::ChildStreams streams{output.DetachWriteEnd(), error.DetachWriteEnd()};
    std::u16string line = u"\"" + converter + u"\" -qvcmd=\"" + command.Text() + u"\"";
    platform::ChildHandles child;
    const bool started = platform::CreateProcessW(
        line.data(), platform::kCreateNoWindow | platform::kNormalPriorityClass, streams, &child);
    platform::CloseHandle(streams.output);
    platform::CloseHandle(streams.error);
    std::uint32_t exitCode = 0xFFFFFFFF;
    if (started) {
        ReadToTheEnd(output);
        ReadToTheEnd(error);
        platform::WaitForSingleObject(child.process, platform::kInfinite);
        platform::GetExitCodeProcess(child.process, &exitCode);
        platform::CloseHandle(child.process);
        platform::CloseHandle(child.thread);
    }
    platform::CloseHandle(cancel);
    platform::CloseHandle(watch);
    return static_cast<int>(exitCode);
}
