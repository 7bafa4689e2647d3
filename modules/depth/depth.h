// clDepth: the same audio in samples of another depth, or as float instead of integer.
#pragma once

#include <optional>

#include "modules/support/format_effect.h"

inline constexpr const char16_t* kDepthBitsWords[] = {u"8", u"16", u"24", u"32", u"64"};
inline constexpr clSettingRule kDepthBits{.name = u"bits", .words = kDepthBitsWords};
inline constexpr const char16_t* kDepthTypeWords[] = {u"integer", u"float"};
inline constexpr clSettingRule kDepthType{.name = u"type", .words = kDepthTypeWords};

class clDepth : public clFormatEffect {
  public:
    explicit clDepth(const clModuleLog& log) : clFormatEffect(log, u"Depth") {}

    std::span<const clPanelRow> PanelRows() const override;

  private:
    XString Aim(clSettings& settings, const clAudioBlock& source, clFormatHolder& target) override;
    const clAudioBlock* Convert(const clAudioBlock& in, bool final) override;
    void Release() override { mBlock.reset(); }

    std::optional<clAudioBlock> mBlock;
    std::uint32_t mBits = 0;
    bool mToFloat = false;
};
