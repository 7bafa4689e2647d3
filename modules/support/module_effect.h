// clModuleEffect: what an effect module of ours fills in. The eleven entries and their records are served for
// all of them by effect_entries.cpp; a module links that and provides MakeEffect.
//
// The road through a run is Plan, then Look for each block if the effect wanted that, Change for each block,
// Complete. Whatever goes wrong is reported once, under the effect's name; nothing more is asked of the run
// then, and its end is not good. An exception is caught at the entry and reported there, with the same outcome.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "modules/support/module_log.h"
#include "modules/support/panel.h"
#include "modules/support/sample_format.h"
#include "modules/support/settings.h"

// What goes into an effect and comes out of it.
struct clEffectAudio {
    QvFormatExtensible format{};
    std::uint64_t lengthMs = 0;  // 0 when not known
    bool hadAllFirst = false;    // an earlier run has looked at all of this audio
    bool wantsAllFirst = false;
};

struct clEffectBlock {
    std::span<const std::uint8_t> audio;  // stands until the next call
    bool finished = false;
};

class clModuleEffect : public clPanelOwner {
  public:
    // `name` is a constant: what the host knows the effect by.
    clModuleEffect(const clModuleLog& log, const char16_t* name) : mLog(log), mName(name) {}
    clModuleEffect(const clModuleEffect&) = delete;
    clModuleEffect& operator=(const clModuleEffect&) = delete;

    // `settings` is never null. `audio` comes as it will go in, and leaves as it will come out.
    bool Begin(const char16_t* settings, clEffectAudio& audio);
    bool LookAt(const clEffectBlock& in);
    // After the last block it may be called again, with an empty one, until *out is finished.
    bool Pass(const clEffectBlock& in, clEffectBlock* out);
    // False for a run that was not good, and when there is none.
    bool End();
    // The run can't succeed any more.
    void Abandon() { mGood = false; }
    // The last chance to change the finished file.
    virtual bool AfterConversion(const char16_t*) { return true; }

    const clModuleLog& Log() const { return mLog; }

  protected:
    // Takes its settings and says what it makes of the audio, whose samples are mFormat. Empty when it can serve
    // both, otherwise why not. Settings that nobody asked for are refused behind this.
    virtual XString Plan(clSettings& settings, clEffectAudio& audio) = 0;
    // The blocks hold whole frames. False after Fail, as with the next two.
    virtual bool Look(const clEffectBlock&) { return true; }
    virtual bool Change(const clEffectBlock& in, clEffectBlock* out) = 0;
    virtual bool Complete() { return true; }
    // Frees what the run held, also after a failure.
    virtual void Release() {}

    bool Fail(const char16_t* trouble);  // always false

    clSampleFormat mFormat;

  private:
    bool HoldsWholeFrames(const clEffectBlock& block);

    const clModuleLog mLog;
    const char16_t* const mName;
    bool mGood = false;
};

// Provided by the module.
std::unique_ptr<clModuleEffect> MakeEffect(const clModuleLog& log);
