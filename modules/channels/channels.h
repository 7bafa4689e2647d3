// clChannels: the same audio in another number of channels.
#pragma once

#include <optional>

#include "audio/channel_mixer.h"
#include "modules/support/format_effect.h"

inline constexpr clSettingRule kChannelCount{.name = u"channels", .least = 1, .most = 65535};

class clChannels : public clFormatEffect {
  public:
    explicit clChannels(const clModuleLog& log) : clFormatEffect(log, u"Channels") {}

    std::span<const clPanelRow> PanelRows() const override;

  private:
    XString Aim(clSettings& settings, const clAudioBlock& source, clFormatHolder& target) override;
    const clAudioBlock* Convert(const clAudioBlock& in, bool final) override;
    void Release() override { mStage.reset(); }

    std::optional<clChannelMixer> mStage;
    std::uint32_t mChannels = 0;
};
