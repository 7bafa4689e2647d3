// clFormatEffect: an effect that brings audio into another format by one of the library's own stages.
//
// An effect of this kind says what it wants and lends its stage; everything about records and blocks is done
// here. Nothing is copied but by the stage itself: a block goes in as it came and out as the stage left it.
// A format that is to stay passes bit for bit, its record too.
#pragma once

#include "audio/audio_block.h"
#include "modules/support/module_effect.h"

class clFormatEffect : public clModuleEffect {
  protected:
    using clModuleEffect::clModuleEffect;

    // Makes the stage ready for blocks like `source`, which is empty, and changes `target`, which comes as the
    // record of these, into that of what will come out. Empty, or why the settings can't be served.
    virtual XString Aim(clSettings& settings, const clAudioBlock& source, clFormatHolder& target) = 0;
    // What the stage makes of a block, standing until its next call; null when it can't. `final` with the last.
    virtual const clAudioBlock* Convert(const clAudioBlock& in, bool final) = 0;

  private:
    XString Plan(clSettings& settings, clEffectAudio& audio) final;
    bool Change(const clEffectBlock& in, clEffectBlock* out) final;

    clFormatHolder mSource;
};
