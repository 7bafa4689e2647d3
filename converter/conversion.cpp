#include "converter/conversion.h"

#include <cstring>

#include "converter/module_search.h"
#include "converter/source.h"
#include "converter/target.h"
#include "foundation/id_tag_list.h"
#include "foundation/output_file.h"
#include "foundation/paths.h"
#include "foundation/qv_text.h"

namespace {

// Tells the host in one line what failed with which file or name, and hands the exit code on.
ExitCode Refuse(Reporter& reporter, ExitCode code, const char16_t* what, const std::u16string& name) {
    reporter.Error(std::u16string(what) + u" '" + name + u"'");
    return code;
}

void CollectTags(const Command& command, Source& source, clIDTagList& tags) {
    if (command.carryTags) source.ReadTags(tags);
    for (const Command::Pair& tag : command.tags) tags.Add(tag.name.c_str(), tag.value.c_str());
}

// File names stand between words, so that none can pass for a line of another meaning.
void Announce(const Command& command, Reporter& reporter) {
    const auto named = [](const char16_t* doing, const std::u16string& path) {
        const XString name = paths::GetFileName(XString(path.c_str()));
        return std::u16string(doing) + u" '" + name.Text() + u"'";
    };
    reporter.Action(u"Converting", named(u"Reading", command.source), named(u"Writing", command.destination));
}

// Has the decoder module for the destination's type write the tags into the finished temporary. A type whose
// module does not write tags makes no conversion fail: the host is told, not alarmed.
void WriteTags(const Command& command, const std::u16string& file, const clIDTagList& tags,
               Reporter& reporter) {
    if (tags.Count() == 0) return;
    XLog log;
    log.mInfoOut = reporter.InformationStream();
    log.mErrorOut = reporter.InformationStream();
    clByteStore flat;
    clQvDecoder module;
    clCodecQueryRec query = {};
    bool written = false;
    if (tags.Serialise(flat) && LoadDecoderFor(XString(command.destination.c_str()), module, log)) {
        query.text = ToQvText(file.c_str());
        query.data = flat.Data();
        query.dataSize = flat.Size();
        written = module.Set(u"IDTags", &query);
    }
    if (!written) reporter.Information(u"No tags were written to '" + command.destination + u"'");
}

// From the first block to the last.
ExitCode PassBlocks(const Command& command, Source& source, Target& target, Lifeline& lifeline,
                    Reporter& reporter) {
    clBlockRec block = {};
    do {
        lifeline.Beat();
        if (lifeline.Cancelled()) return ExitCode::kCancelled;
        if (!source.NextBlock(block)) {
            return Refuse(reporter, ExitCode::kSourceDamaged, u"The decoder gives no more audio of",
                          command.source);
        }
        if (source.IsDamaged()) return ExitCode::kSourceDamaged;
        target.Write(block);
        if (target.HasFailed())
            return Refuse(reporter, ExitCode::kOutputFailed, u"Can't write", command.destination);
        reporter.Percent(source.Percent());
    } while (block.finished == 0);
    return ExitCode::kDone;
}

// Makes the complete output under its temporary name.
ExitCode Produce(const Command& command, const XOutputFile& output, Source& source, Lifeline& lifeline,
                 Reporter& reporter) {
    Target target(reporter);
    if (!target.FindEncoder(command.encoder)) {
        return Refuse(reporter, ExitCode::kEncoderRefused, u"There is no encoder", command.encoder);
    }
    lifeline.Beat();
    if (!source.Open()) return Refuse(reporter, ExitCode::kSourceDamaged, u"Can't open", command.source);
    if (!target.Begin(output.TemporaryName(), command.settings, source.Format())) {
        return Refuse(reporter, ExitCode::kEncoderRefused, u"The encoder refuses to write",
                      command.destination);
    }
    const ExitCode passed = PassBlocks(command, source, target, lifeline, reporter);
    if (passed != ExitCode::kDone) return passed;
    lifeline.Beat();
    if (!source.Close()) return ExitCode::kSourceDamaged;
    if (!target.End()) return Refuse(reporter, ExitCode::kOutputFailed, u"Can't write", command.destination);
    return ExitCode::kDone;
}

}  // namespace

ExitCode Convert(const Command& command, Lifeline& lifeline, Reporter& reporter) {
    if (!command.effects.empty()) {
        return Refuse(reporter, ExitCode::kFailed, u"There is no effect", command.effects.front().name);
    }
    Announce(command, reporter);
    Source source(command.source, reporter);
    if (!source.FindDecoder())
        return Refuse(reporter, ExitCode::kNoDecoder, u"No decoder reads", command.source);
    clIDTagList tags;
    CollectTags(command, source, tags);

    XOutputFile output(command.destination);
    if (!output.Create())
        return Refuse(reporter, ExitCode::kOutputFailed, u"Can't write beside", command.destination);
    const ExitCode produced = Produce(command, output, source, lifeline, reporter);
    if (produced != ExitCode::kDone) return produced;

    lifeline.Beat();
    WriteTags(command, output.TemporaryName(), tags, reporter);
    if (lifeline.Cancelled()) return ExitCode::kCancelled;
    if (!output.Commit())
        return Refuse(reporter, ExitCode::kOutputFailed, u"Can't replace", command.destination);
    reporter.Percent(100);
    reporter.Information(u"Conversion complete");
    return ExitCode::kDone;
}
