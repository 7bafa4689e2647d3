// Effect: one effect module at work.
//
// What each call means to the module stands in quavermill/module.h. A false result ends the conversion: the module has
// given its reasons to the host.
#pragma once

#include <string>

#include "converter/audio_form.h"
#include "converter/command.h"
#include "foundation/log.h"
#include "plugins/dsp_module.h"
#include "quavermill/module.h"

class Effect {
  public:
    explicit Effect(const Command::Pair& ordered) : mName(ordered.name), mSettings(ordered.value) {}
    Effect(const Effect&) = delete;
    Effect& operator=(const Effect&) = delete;
    ~Effect() { End(); }

    const std::u16string& Name() const { return mName; }

    // False when there is no effect module of this name.
    bool Find(const XLog& log);
    // Tells it what comes in and makes `form` what goes out.
    bool Begin(AudioForm& form);
    // Ends the run and begins a new one with the same audio, which it must answer as it did before.
    bool BeginAgain();
    bool WantsAllFirst() const { return mWantsAllFirst; }
    bool LookAt(const clBlockRec& block) const;
    bool Pass(const clBlockRec& block, clBlockRec& out) const;
    bool End();  // true, too, when there is no run to end
    bool AfterConversion(const std::u16string& file) const;

  private:
    bool BeginWith(std::uint32_t wants);
    clBlockRec Labelled(const clBlockRec& block) const;

    const std::u16string mName;
    const std::u16string mSettings;
    AudioForm mIn;
    clEffectSessionRec mSession = {};
    clQvDSP mModule;
    bool mWantsAllFirst = false;
    bool mRuns = false;
};
