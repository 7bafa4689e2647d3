// The orders are those of the Vorbis I description, section 4.3.9, which Opus takes over (RFC 7845, 5.1.1.2),
// and the masks those of FLAC's channel assignments.
#include "modules/support/channel_order.h"

#include <bit>

namespace {

constexpr std::uint32_t kMasks[] = {
    0,
    kFrontCentre,
    kFrontLeft | kFrontRight,
    kFrontLeft | kFrontRight | kFrontCentre,
    kFrontLeft | kFrontRight | kBackLeft | kBackRight,
    kFrontLeft | kFrontRight | kFrontCentre | kBackLeft | kBackRight,
    kFrontLeft | kFrontRight | kFrontCentre | kLowFrequency | kBackLeft | kBackRight,
    kFrontLeft | kFrontRight | kFrontCentre | kLowFrequency | kBackCentre | kSideLeft | kSideRight,
    kFrontLeft | kFrontRight | kFrontCentre | kLowFrequency | kBackLeft | kBackRight | kSideLeft | kSideRight,
};

// 6.1: L C R SL SR BC LFE. 7.1: L C R SL SR BL BR LFE.
constexpr std::uint8_t kPlaces[9][8] = {
    {},
    {0},
    {0, 1},
    {0, 2, 1},
    {0, 1, 2, 3},
    {0, 2, 1, 3, 4},
    {0, 2, 1, 4, 5, 3},
    {0, 2, 1, 5, 6, 4, 3},
    {0, 2, 1, 6, 7, 4, 5, 3},
};

constexpr const char16_t* kNames[] = {u"FL", u"FR", u"FC", u"LFE", u"BL",  u"BR",  u"FLC", u"FRC", u"BC",
                                      u"SL", u"SR", u"TC", u"TFL", u"TFC", u"TFR", u"TBL", u"TBC", u"TBR"};

}  // namespace

std::uint32_t UsualMask(std::uint32_t channels) {
    return channels < std::size(kMasks) ? kMasks[channels] : 0;
}

std::span<const std::uint8_t> VorbisOrder(std::uint32_t channels) {
    if (channels >= std::size(kPlaces)) return {};
    return std::span(kPlaces[channels]).first(channels);
}

XString LayoutText(std::uint32_t mask) {
    XString text;
    for (std::size_t bit = 0; bit < 32; ++bit) {
        if ((mask >> bit & 1) == 0) continue;
        if (!text.IsEmpty()) text += u" ";
        text += bit < std::size(kNames) ? kNames[bit] : u"?";
    }
    return text;
}
