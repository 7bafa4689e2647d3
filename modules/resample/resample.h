// clResample: the same audio at another rate.
#pragma once

#include <optional>

#include "audio/resampler.h"
#include "modules/support/format_effect.h"

inline constexpr clSettingRule kResampleRate{.name = u"rate", .least = 1, .most = 2147483647};  // hertz

class clResample : public clFormatEffect {
  public:
    explicit clResample(const clModuleLog& log) : clFormatEffect(log, u"Resample") {}

    std::span<const clPanelRow> PanelRows() const override;

  private:
    XString Aim(clSettings& settings, const clAudioBlock& source, clFormatHolder& target) override;
    const clAudioBlock* Convert(const clAudioBlock& in, bool final) override;
    void Release() override { mStage.reset(); }

    std::optional<clResampler> mStage;
};
