#include "converter/chain.h"

namespace {

// An effect that holds something back is asked for it again and again; one that gives nothing for ever must not
// hold us.
constexpr int kFruitlessCalls = 1000;

}  // namespace

bool Chain::Fail(const char16_t* what, const Effect& effect) const {
    mReporter.Error(what, effect.Name());
    return false;
}

bool Chain::Find(const std::vector<Command::Pair>& ordered) {
    if (ordered.empty()) return true;
    mLog.mErrorOut = mErrors.emplace(mReporter).Channel();
    mLog.mInfoOut = mReporter.InformationStream();
    for (const Command::Pair& order : ordered) {
        Effect& effect = *mEffects.emplace_back(std::make_unique<Effect>(order));
        mLifeline.Beat();
        if (!effect.Find(mLog)) return Fail(u"There is no effect", effect);
    }
    return true;
}

bool Chain::Begin(AudioForm& form) {
    for (const auto& effect : mEffects) {
        mLifeline.Beat();
        if (!effect->Begin(form)) return Fail(u"Can't begin the effect", *effect);
    }
    return true;
}

std::size_t Chain::NextThatLooksFirst(std::size_t index) const {
    while (index < mEffects.size() && !mEffects[index]->WantsAllFirst()) ++index;
    return index;
}

ExitCode Chain::LookAt(std::size_t index, const clBlockRec& block) {
    const Effect& effect = *mEffects[index];
    mLifeline.Beat();
    const bool good = effect.LookAt(block) || Fail(u"Can't go on with the effect", effect);
    return good && !HasFailed() ? ExitCode::kDone : ExitCode::kFailed;
}

bool Chain::BeginAgain(std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        mLifeline.Beat();
        if (!mEffects[i]->BeginAgain()) return Fail(u"Can't begin again the effect", *mEffects[i]);
    }
    return true;
}

// As deep as the chain is long. Only the last block may have more than one answer.
ExitCode Chain::PassFrom(std::size_t index, std::size_t count, const clBlockRec& block, const Take& take) {
    if (index == count) return take(block);
    const Effect& effect = *mEffects[index];
    const bool isLast = block.finished != 0;
    clBlockRec in = block;
    for (int fruitless = 0; fruitless < kFruitlessCalls; ++fruitless) {
        clBlockRec out = {};
        mLifeline.Beat();
        if (!effect.Pass(in, out)) break;
        if (HasFailed()) return ExitCode::kFailed;
        if (!isLast) out.finished = 0;
        if (out.bytes > 0 || out.finished != 0) {
            const ExitCode passed = PassFrom(index + 1, count, out, take);
            if (passed != ExitCode::kDone) return passed;
            fruitless = 0;
        }
        if (!isLast || out.finished != 0) return ExitCode::kDone;
        if (mLifeline.Cancelled()) return ExitCode::kCancelled;
        in.data = nullptr;
        in.bytes = 0;
    }
    Fail(u"Can't go on with the effect", effect);
    return ExitCode::kFailed;
}

bool Chain::End() {
    for (const auto& effect : mEffects) {
        mLifeline.Beat();
        if (!effect->End()) return Fail(u"Can't complete the audio of the effect", *effect);
    }
    return !HasFailed();
}

bool Chain::AfterConversion(const std::u16string& file) {
    for (const auto& effect : mEffects) {
        mLifeline.Beat();
        if (!effect->AfterConversion(file)) return Fail(u"Can't complete the file of the effect", *effect);
    }
    return true;
}

bool Chain::Close() {
    mEffects.clear();
    return !mErrors || mErrors->Close() == 0;
}
