#include "converter/conversion.h"

#include "converter/chain.h"
#include "converter/source.h"
#include "converter/tags.h"
#include "converter/target.h"
#include "foundation/output_file.h"
#include "foundation/paths.h"

namespace {

class Conversion {
  public:
    Conversion(const Command& command, Lifeline& lifeline, Reporter& reporter)
        : mCommand(command),
          mLifeline(lifeline),
          mReporter(reporter),
          mChain(lifeline, reporter),
          mSource(command.source, reporter) {}

    ExitCode Run();

  private:
    void Announce() const;
    ExitCode Produce(const std::u16string& file);
    ExitCode LookAhead();
    ExitCode PassAll(std::size_t effects, const Chain::Take& take);
    ExitCode Write(Target& target, const clBlockRec& block) const;
    ExitCode Finish(XOutputFile& output, const clIDTagList& tags);
    // Tells the host in one line what failed with which file or name, and hands the exit code on.
    ExitCode Refuse(ExitCode code, const char16_t* what, const std::u16string& name) const;

    const Command& mCommand;
    Lifeline& mLifeline;
    Reporter& mReporter;
    Chain mChain;
    Source mSource;
    int mPasses = 1;  // over all of the source
    int mPassesDone = 0;
};

ExitCode Conversion::Refuse(ExitCode code, const char16_t* what, const std::u16string& name) const {
    mReporter.Error(what, name);
    return code;
}

// File names stand between words, so that none can pass for a line of another meaning.
void Conversion::Announce() const {
    const auto named = [](const char16_t* doing, const std::u16string& path) {
        const XString name = paths::GetFileName(XString(path.c_str()));
        return std::u16string(doing) + u" '" + name.Text() + u"'";
    };
    mReporter.Action(u"Converting", named(u"Reading", mCommand.source),
                     named(u"Writing", mCommand.destination));
}

ExitCode Conversion::Write(Target& target, const clBlockRec& block) const {
    target.Write(block);
    if (target.HasFailed()) return Refuse(ExitCode::kOutputFailed, u"Can't write", mCommand.destination);
    return ExitCode::kDone;
}

// The source from its first block to its last, through the first `effects` of the chain.
ExitCode Conversion::PassAll(std::size_t effects, const Chain::Take& take) {
    clBlockRec block = {};
    do {
        mLifeline.Beat();
        if (mLifeline.Cancelled()) return ExitCode::kCancelled;
        if (!mSource.NextBlock(block)) {
            return Refuse(ExitCode::kSourceDamaged, u"The decoder gives no more audio of", mCommand.source);
        }
        if (mSource.IsDamaged()) return ExitCode::kSourceDamaged;
        const ExitCode passed = mChain.Pass(block, effects, take);
        if (passed != ExitCode::kDone) return passed;
        mReporter.Percent((mPassesDone * 100 + mSource.Percent()) / mPasses);
    } while (block.finished == 0);
    ++mPassesDone;
    return ExitCode::kDone;
}

// Shows all of the audio to each effect that wants to see it before it begins.
ExitCode Conversion::LookAhead() {
    const auto next = [this](std::size_t index) { return mChain.NextThatLooksFirst(index); };
    for (std::size_t i = next(0); i < mChain.Size(); i = next(i + 1)) ++mPasses;
    for (std::size_t i = next(0); i < mChain.Size(); i = next(i + 1)) {
        const ExitCode passed = PassAll(i, [&](const clBlockRec& block) { return mChain.LookAt(i, block); });
        if (passed != ExitCode::kDone) return passed;
        if (!mSource.OpenAgain())
            return Refuse(ExitCode::kSourceDamaged, u"Can't open again", mCommand.source);
        if (!mChain.BeginAgain(i)) return ExitCode::kFailed;
    }
    return ExitCode::kDone;
}

// Makes the complete audio under its temporary name.
ExitCode Conversion::Produce(const std::u16string& file) {
    Target target(mReporter);
    if (!target.FindEncoder(mCommand.encoder))
        return Refuse(ExitCode::kEncoderRefused, u"There is no encoder", mCommand.encoder);
    mLifeline.Beat();
    if (!mSource.Open()) return Refuse(ExitCode::kSourceDamaged, u"Can't open", mCommand.source);
    AudioForm form = mSource.Form();
    if (!mChain.Begin(form)) return ExitCode::kFailed;
    if (!target.Begin(file, mCommand.settings, form.format.data()))
        return Refuse(ExitCode::kEncoderRefused, u"The encoder refuses to write", mCommand.destination);
    ExitCode passed = LookAhead();
    if (passed == ExitCode::kDone)
        passed = PassAll(mChain.Size(), [&](const clBlockRec& block) { return Write(target, block); });
    if (passed != ExitCode::kDone) return passed;
    mLifeline.Beat();
    if (!mSource.Close()) return ExitCode::kSourceDamaged;
    if (!mChain.End()) return ExitCode::kFailed;
    if (!target.End()) return Refuse(ExitCode::kOutputFailed, u"Can't write", mCommand.destination);
    return ExitCode::kDone;
}

// From the complete audio to the complete file under its own name.
ExitCode Conversion::Finish(XOutputFile& output, const clIDTagList& tags) {
    mLifeline.Beat();
    WriteTags(mCommand, output.TemporaryName(), tags, mReporter);
    if (!mChain.AfterConversion(output.TemporaryName()) || !mChain.Close()) return ExitCode::kFailed;
    if (mLifeline.Cancelled()) return ExitCode::kCancelled;
    if (!output.Commit()) return Refuse(ExitCode::kOutputFailed, u"Can't replace", mCommand.destination);
    mReporter.Percent(100);
    mReporter.Information(u"Conversion complete");
    return ExitCode::kDone;
}

ExitCode Conversion::Run() {
    if (!mChain.Find(mCommand.effects)) return ExitCode::kFailed;
    Announce();
    if (!mSource.FindDecoder()) return Refuse(ExitCode::kNoDecoder, u"No decoder reads", mCommand.source);
    clIDTagList tags;
    CollectTags(mCommand, mSource, tags);
    XOutputFile output(mCommand.destination);
    if (!output.Create()) return Refuse(ExitCode::kOutputFailed, u"Can't write beside", mCommand.destination);
    const ExitCode produced = Produce(output.TemporaryName());
    return produced == ExitCode::kDone ? Finish(output, tags) : produced;
}

}  // namespace

ExitCode Convert(const Command& command, Lifeline& lifeline, Reporter& reporter) {
    return Conversion(command, lifeline, reporter).Run();
}
