// The library reports in words, not in codes: what went wrong is in the error text, and 100 percent only says
// that the run has ended. A conversion has succeeded when no error came and the converter's own closing words
// did.
#include "convert.h"

#include <algorithm>

#include "destination.h"
#include "encoder_choice.h"
#include "host.h"
#include "interruption.h"
#include "platform/clock.h"
#include "platform/file.h"
#include "platform/process.h"
#include "platform/program.h"
#include "progress.h"
#include "terminal.h"

namespace {

constexpr std::uint32_t kPollMs = 5;
constexpr std::u16string_view kClosingWords = u"Conversion complete";

std::uint64_t FileSize(const std::u16string& path) {
    platform::FindData data;
    const platform::Handle search = platform::FindFirstFileW(path.c_str(), &data);
    if (search == platform::kInvalidHandle) return 0;
    platform::FindClose(search);
    return data.size;
}

// Why this conversion is not begun; empty when it may be.
std::u16string Objection(const ConvertOptions& options, const std::u16string& encoder) {
    // A quote ends a value of the converter's command; a carriage return could end a line of what is said.
    const auto ends = [](const std::u16string& text) { return text.find_first_of(u"\"\r") != text.npos; };
    if (ends(options.source) || ends(options.destination)) {
        return u"A file name with a double quote or a carriage return can't be passed on to the converter.";
    }
    if (!Exists(options.source)) return u"There is no file '" + options.source + u"'.";
    if (encoder.empty()) {
        return u"No encoder is known for '" + options.destination + u"'; name one with --encoder.";
    }
    return ObjectionTo(options.source, options.destination, options.overwrite);
}

// The order asks for what the source has; one that can't be read is told of by its conversion.
EffectList EffectsOf(Host& host, const ConvertOptions& options) {
    AudioNumbers source;
    if (options.wanted.channels != 0 || options.wanted.bits != 0) host.ReadNumbers(options.source, source);
    return EffectsTo(options.wanted, source.format, options.effects);
}

void Prepare(const Host& host, const ConvertOptions& options, const EffectList& effects) {
    for (const auto& [name, settings] : effects) {
        QACAddDSPToList(host.Handle(), AsQvChar(name), AsQvChar(settings));
    }
    for (const auto& [name, value] : options.tags)
        QACAddIDTagToList(host.Handle(), AsQvChar(name), AsQvChar(value));
    QACSetTagWriteThrough(host.Handle(), options.carryTags ? 1 : 0);
}

// Both texts of a run, gathered over its polls. The activity line comes again with every poll; only what is
// neither that nor the library's own is worth a line here.
class Transcript {
  public:
    void Gather(Host& host) {
        mErrors += host.TakeErrors();
        const std::u16string text = host.TakeInformation();
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t end = std::min(text.find(u"\r\n", at), text.size());
            Note(text.substr(at, end - at));
            at = end + 2;
        }
    }

    // With what is still on its way.
    void GatherAll(Host& host) { mErrors += host.TakeAllErrors(); }

    const std::u16string& Errors() const { return mErrors; }
    const std::vector<std::u16string>& Notes() const { return mNotes; }
    bool Complete() const { return mComplete; }

  private:
    void Note(const std::u16string& line) {
        if (line == kClosingWords) mComplete = true;
        const bool remark = line.starts_with(u"No tags were written") || line.starts_with(u"Processor ");
        if (remark && std::find(mNotes.begin(), mNotes.end(), line) == mNotes.end()) mNotes.push_back(line);
    }

    std::u16string mErrors;
    std::vector<std::u16string> mNotes;
    bool mComplete = false;
};

// Polls until the run has ended. True when the user has cancelled it.
bool Watch(Host& host, Progress& progress, Transcript& transcript, bool quiet) {
    bool cancelled = false;
    for (std::uint32_t percent = 0; percent < 100; platform::Sleep(kPollMs)) {
        if (!cancelled && interruption::Raised()) {
            cancelled = true;
            QACSetCancelled(host.Handle());
        }
        QACGetProgress(host.Handle(), &percent);
        transcript.Gather(host);
        // A run that failed has come to its end at 100 too.
        const bool worthShowing = percent < 100 || transcript.Complete();
        if (!quiet && !cancelled && worthShowing) progress.Show(percent);
    }
    transcript.Gather(host);
    progress.Clear();
    return cancelled;
}

ExitCode Conclude(const ConvertOptions& options, const Transcript& transcript, bool cancelled) {
    if (!options.quiet) {
        for (const std::u16string& note : transcript.Notes()) Tell(note);
    }
    TellErrors(transcript.Errors());
    if (transcript.Complete() && transcript.Errors().empty()) {
        if (!options.quiet) Tell(u"Converted '" + options.source + u"' to '" + options.destination + u"'");
        return ExitCode::kDone;
    }
    if (cancelled) {
        Tell(u"Cancelled; nothing was written.");
        return ExitCode::kCancelled;
    }
    Tell(u"The conversion failed; nothing was written.");
    return ExitCode::kFailed;
}

}  // namespace

ExitCode RunConvert(const ConvertOptions& options) {
    Host host;
    const std::u16string encoder =
        options.encoder.empty() ? EncoderFor(host, options.destination) : options.encoder;
    if (const std::u16string objection = Objection(options, encoder); !objection.empty()) {
        Tell(objection);
        return ExitCode::kRefused;
    }
    platform::EndChildrenWithMe();
    interruption::Watch();
    const EffectList effects = EffectsOf(host, options);
    host.TakeAllErrors();  // of modules that were only looked at, and of a file that will be read again
    Transcript transcript;
    Prepare(host, options, effects);
    Progress progress(platform::GetStdHandle(platform::kStdError), FileSize(options.source));
    const bool started =
        QACConvertAudio(host.Handle(), AsQvChar(options.source), AsQvChar(options.destination),
                        AsQvChar(encoder), AsQvChar(options.settings)) == 1;
    const bool cancelled = started && Watch(host, progress, transcript, options.quiet);
    if (!started) transcript.GatherAll(host);
    return Conclude(options, transcript, cancelled);
}
