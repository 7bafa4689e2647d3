// clVolume: every sample times the same factor.
#pragma once

#include <vector>

#include "modules/support/module_effect.h"

class clVolume : public clModuleEffect {
  public:
    explicit clVolume(const clModuleLog& log) : clModuleEffect(log, u"Volume") {}

  private:
    XString Plan(clSettings& settings, clEffectAudio& audio) override;
    bool Change(const clEffectBlock& in, clEffectBlock* out) override;
    void Release() override;

    double mFactor = 1;
    std::vector<std::uint8_t> mBlock;
};
