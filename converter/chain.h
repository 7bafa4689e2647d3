// Chain: the effects of a conversion, each at work on what the one before gives.
//
// Errors that an effect reports count like a decoder's: with any, the conversion is no success. A call that fails has
// told the host so, by the effect's name.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "converter/audio_form.h"
#include "converter/command.h"
#include "converter/effect.h"
#include "converter/error_tap.h"
#include "converter/exit_codes.h"
#include "converter/lifeline.h"
#include "converter/reporter.h"

class Chain {
  public:
    // Gets a block that comes out of the chain; anything but kDone ends the passing on.
    using Take = std::function<ExitCode(const clBlockRec&)>;

    Chain(Lifeline& lifeline, Reporter& reporter) : mLifeline(lifeline), mReporter(reporter) {}

    // Loads the modules, in the order in which they will work.
    bool Find(const std::vector<Command::Pair>& ordered);
    // Begins all runs and makes `form` what comes out at the end.
    bool Begin(AudioForm& form);

    // The index of the first effect from `index` on that wants all of the audio before it begins; Size() for none.
    std::size_t NextThatLooksFirst(std::size_t index) const;
    std::size_t Size() const { return mEffects.size(); }
    ExitCode LookAt(std::size_t index, const clBlockRec& block);
    // New runs for the first `count` effects, which have worked for one that looks first.
    bool BeginAgain(std::size_t count);

    // Sends a block through the first `count` effects, and what comes out, if anything does, to `take`. With the last
    // block comes all that they have held back.
    ExitCode Pass(const clBlockRec& block, std::size_t count, const Take& take) {
        return PassFrom(0, count, block, take);
    }

    bool End();
    bool AfterConversion(const std::u16string& file);
    // Lets go of the modules, and says whether none of them has reported an error.
    bool Close();

  private:
    ExitCode PassFrom(std::size_t index, std::size_t count, const clBlockRec& block, const Take& take);
    bool Fail(const char16_t* what, const Effect& effect) const;  // always false
    bool HasFailed() const { return mErrors && mErrors->Lines() > 0; }

    Lifeline& mLifeline;
    Reporter& mReporter;
    std::optional<ErrorTap> mErrors;  // outlives the modules
    XLog mLog;                        // likewise: they may keep its address
    std::vector<std::unique_ptr<Effect>> mEffects;
};
