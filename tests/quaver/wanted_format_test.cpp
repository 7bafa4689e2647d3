#include "wanted_format.h"

#include <gtest/gtest.h>

namespace {

QvFormat Source(std::uint16_t channels, std::uint16_t bits) {
    QvFormat format{};
    format.nChannels = channels;
    format.wBitsPerSample = bits;
    return format;
}

EffectList Effects(const WantedFormat& wanted, const EffectList& own = {}) {
    return EffectsTo(wanted, Source(2, 16), own);
}

const EffectList::value_type kRate{u"Resample", u"-rate=48000"};
const EffectList::value_type kVolume{u"Volume", u"-gain=-3"}, kFade{u"Fade", u""};

TEST(WantedFormat, of_nothing_leaves_the_users_own_effects) {
    EXPECT_EQ(Effects({}), EffectList());
    EXPECT_EQ(Effects({}, {kVolume, kFade}), (EffectList{kVolume, kFade}));
}

TEST(WantedFormat, is_made_by_one_effect_for_each_thing_that_is_wanted) {
    EXPECT_EQ(Effects({48000, 0, 0}), EffectList{kRate});
    EXPECT_EQ(Effects({0, 6, 0}), (EffectList{{u"Channels", u"-channels=6"}}));
    EXPECT_EQ(Effects({0, 0, 24}), (EffectList{{u"Depth", u"-bits=24"}}));
    // Also for what the source has already: the effect knows how to do nothing.
    EXPECT_EQ(Effects({0, 2, 0}), (EffectList{{u"Channels", u"-channels=2"}}));
    EXPECT_EQ(Effects({0, 0, 16}), (EffectList{{u"Depth", u"-bits=16"}}));
}

TEST(WantedFormat, changes_the_rate_of_as_few_channels_as_may_be) {
    EXPECT_EQ(Effects({48000, 1, 0}), (EffectList{{u"Channels", u"-channels=1"}, kRate}));
    EXPECT_EQ(Effects({48000, 6, 0}), (EffectList{kRate, {u"Channels", u"-channels=6"}}));
}

TEST(WantedFormat, computes_in_the_larger_of_both_depths) {
    const EffectList::value_type less{u"Depth", u"-bits=8"}, more{u"Depth", u"-bits=24"};
    const EffectList::value_type mono{u"Channels", u"-channels=1"}, surround{u"Channels", u"-channels=6"};
    EXPECT_EQ(Effects({48000, 1, 8}, {kVolume, kFade}), (EffectList{kVolume, kFade, mono, kRate, less}));
    EXPECT_EQ(Effects({48000, 6, 8}, {kVolume, kFade}), (EffectList{kVolume, kFade, kRate, surround, less}));
    EXPECT_EQ(Effects({48000, 1, 24}, {kVolume, kFade}), (EffectList{more, kVolume, kFade, mono, kRate}));
    EXPECT_EQ(Effects({48000, 6, 24}, {kVolume, kFade}), (EffectList{more, kVolume, kFade, kRate, surround}));
}

}  // namespace
