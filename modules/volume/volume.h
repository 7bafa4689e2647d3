// clVolume: every sample times the same factor.
#pragma once

#include <vector>

#include "modules/support/module_effect.h"

inline constexpr clSettingRule kVolumeGain{
    .name = u"gain", .isWhole = false, .least = -100, .most = 100};  // decibels

class clVolume : public clModuleEffect {
  public:
    explicit clVolume(const clModuleLog& log) : clModuleEffect(log, u"Volume") {}

    std::span<const clPanelRow> PanelRows() const override;

  private:
    XString Plan(clSettings& settings, clEffectAudio& audio) override;
    bool Change(const clEffectBlock& in, clEffectBlock* out) override;
    void Release() override;

    double mFactor = 1;
    std::vector<std::uint8_t> mBlock;
};
