#include "modules/depth/depth.h"

#include <algorithm>
#include <iterator>

#include "audio/depth.h"

namespace {

constexpr std::uint32_t kLeastFloatBits = 32, kMostIntegerBits = 32;
enum Type : std::size_t { kInteger, kFloat };

}  // namespace

// Float that is asked for a depth which float doesn't have becomes integer.
XString clDepth::Aim(clSettings& settings, const clAudioBlock& source, clFormatHolder& target) {
    constexpr std::uint16_t kDepths[] = {8, 16, 24, 32, 64};
    const std::size_t depth = settings.Choice(
        kDepthBits, static_cast<std::size_t>(std::ranges::find(kDepths, mFormat.bits) - kDepths));
    mBits = kDepths[depth];
    const bool staysFloat = mFormat.isFloat && mBits >= kLeastFloatBits;
    mToFloat = settings.Choice(kDepthType, staysFloat ? kFloat : kInteger) == kFloat;
    target.SetBits(kDepths[depth]);
    target.SetType(mToFloat);
    if (mToFloat && mBits < kLeastFloatBits) return XString(u"float has 32 or 64 bits");
    if (!mToFloat && mBits > kMostIntegerBits) return XString(u"integers have 8, 16, 24 or 32 bits");
    if (ConvertDepth(mBlock.emplace(), source, mBits, mToFloat)) return XString();
    return XString(u"integers can't become float of 64 bits, only of 32");
}

const clAudioBlock* clDepth::Convert(const clAudioBlock& in, bool) {
    return ConvertDepth(*mBlock, in, mBits, mToFloat) ? &*mBlock : nullptr;
}
