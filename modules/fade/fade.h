// clFade: audio that comes up at its beginning and goes down at its end.
#pragma once

#include <deque>
#include <vector>

#include "modules/support/module_effect.h"

inline constexpr clSettingRule kFadeIn{.name = u"in", .isWhole = false, .most = 3600};  // seconds
inline constexpr clSettingRule kFadeOut{.name = u"out", .isWhole = false, .most = 3600};
inline constexpr const char16_t* kFadeShapeWords[] = {u"linear", u"cosine"};
inline constexpr clSettingRule kFadeShape{.name = u"shape", .words = kFadeShapeWords};

class clFade : public clModuleEffect {
  public:
    explicit clFade(const clModuleLog& log) : clModuleEffect(log, u"Fade") {}

    std::span<const clPanelRow> PanelRows() const override;

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
