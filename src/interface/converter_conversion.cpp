// A conversion as the host sees it: one call that starts it, and polls that drive it.
//
// The converter program is started and watched by encoderProcess, and only within the host's calls. 100
// promises that the run has ended and that all it said can be taken. The end is noticed in the middle of a
// poll which then still writes the run's last words, so that a tick beside it may catch "Encoding finished"
// without them. The promise is therefore kept by two things together: that text has been delivered, and so
// has everything found by a drain that began behind the poll which noticed the end. It also stands against a
// converter that writes the text itself.
#include <algorithm>

#include "foundation/joined.h"
#include "interface/converter.h"
#include "supervisor/quotes.h"

namespace {
constexpr std::uint32_t kHighestPriority = 3;
constexpr std::int32_t kHighestWhileRunning = 99;
}  // namespace

std::int32_t clConverter::ConvertAudio(const char16_t* sourceFile, const char16_t* destinationFile,
                                       const char16_t* encoderName, const char16_t* settings) {
    XTraceScope trace(log, "clConverter::ConvertAudio");
    XLog::Information(
        Joined({u"Converting '", sourceFile, u"' to '", destinationFile, u"' [", encoderName, u"]"}).Text(),
        log);
    encoderProcess.Create(encoderName, cpu, moduleHandle, log, DSPArguments());
    priority = 0;
    paused = 0;
    cancelled = 0;
    encodingFinished = false;
    drainOfLastWords.reset();
    Service();
    encoderProcess.StartThisEncoder(sourceFile, destinationFile, settings, tagWriteThrough > 0, tagList);
    if (encoderProcess.Running() != 0) return 1;
    XLog::Error(u"Error starting encoder", log, nullptr);
    return 0;
}

// Rows without a name are passed over and take no number. Names stand as they are: only settings may hold
// quotes.
XString clConverter::DSPArguments() {
    XString arguments;
    std::int32_t number = 1;
    for (std::int32_t index = 0; index < dspChain.Count(); ++index) {
        const DSPRow& row = dspChain.At(index);
        if (row.name.IsEmpty()) continue;
        XString settings = row.settings;
        ReplaceQuotes(settings, log, "clConverter::ReplaceQuotes");
        const XString counter(number++);
        arguments.Append(
            Joined({u"-dspeffect", counter.Text(), u"=\"", row.name.Text(), u"=", settings.Text(), u"\" "})
                .Text());
    }
    return arguments;
}

void clConverter::Service() {
    encoderProcess.ServiceCLI(paused != 0, cancelled != 0, priority);
    if (encoderProcess.Finished() && !drainOfLastWords) drainOfLastWords = drainsBegun + 1;
}

std::uint32_t clConverter::Progress() const {
    if (encoderProcess.Running() != 0) {
        return static_cast<std::uint32_t>(std::clamp(encoderProcess.Percent(), 0, kHighestWhileRunning));
    }
    if (!encoderProcess.Finished()) return 0;
    return encodingFinished && drainOfLastWords && drainsDone >= *drainOfLastWords ? 100 : 99;
}

// Written without trace marks, since hosts poll.
std::int32_t clConverter::GetProgress(std::uint32_t* percent) {
    Service();
    DrainWithoutTimer();
    if (percent) *percent = Progress();
    return 1;
}

std::int32_t clConverter::SetCodecPriority(std::uint32_t newPriority) {
    XTraceScope trace(log, "clConverter::SetCodecPriority");
    if (newPriority > kHighestPriority) return 0;
    priority = newPriority;
    Service();
    return 1;
}

// Both marks are leave marks: a pause shows in the trace as a pair of its own kind.
std::int32_t clConverter::SetPause(std::uint8_t newPaused) {
    XLog::Write(XLog::kLeave, log, "clConverter::SetPause", true, nullptr);
    paused = newPaused;
    Service();
    XLog::Write(XLog::kLeave, log, "clConverter::SetPause", true, nullptr);
    return 1;
}

std::int32_t clConverter::SetCancelled() {
    XTraceScope trace(log, "clConverter::SetCancelled");
    cancelled = 1;
    Service();
    return 1;
}
