// clFade: audio that comes up at its beginning and goes down at its end.
#pragma once

#include <deque>
#include <vector>

#include "modules/support/module_effect.h"

class clFade : public clModuleEffect {
  public:
    explicit clFade(const clModuleLog& log) : clModuleEffect(log, u"Fade") {}

  private:
    enum Shape : std::size_t { kLinear, kCosine };

    XString Plan(clSettings& settings, clEffectAudio& audio) override;
    bool Change(const clEffectBlock& in, clEffectBlock* out) override;
    void Release() override;

    void TakeHeld(std::size_t frames);
    double FactorAt(std::uint64_t frame, std::uint64_t framesBehind) const;
    double Height(std::uint64_t frame, std::uint64_t frames) const;

    std::uint64_t mInFrames = 0, mOutFrames = 0;
    std::size_t mShape = kLinear;
    std::uint64_t mPosition = 0;       // of the first frame that is held
    std::deque<std::uint8_t> mHeld;    // as it came
    std::vector<std::uint8_t> mPiece;  // what goes out
};
