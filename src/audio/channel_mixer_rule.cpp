// Where speakers stand, and how loud each is heard in another. The rule keeps what a layout has in common with
// another, gives a speaker that is missing there to its neighbours, and takes the ones behind and beside the
// listener with their phase turned where many meet; the pass after it evens the sums out.
#include <algorithm>

#include "audio/channel_mixer.h"

const char clChannelMixer::kSpeakerNames[kSpeakers][30] = {
    "Left", "Right", "Center", "Sub-woofer", "Back Left", "Back Right", "Side Left", "Side Right"};

const char clChannelMixer::kLayoutNames[kSpeakers][30] = {
    "Mono", "Stereo", "2.1", "Quadraphonic", "Surround", "5.1 Surround", "7 Channel", "7.1 Theater"};

namespace {

constexpr double kHalfPower = 0.7071067811865476;  // the square root of a half
constexpr double kRestOfIt = 0.2928932188134524;   // what that leaves of 1
constexpr double kRootOfTwo = 1.4142135623730951;
constexpr double kLeast = 0.44;

enum Speaker : std::uint32_t {
    kLeft = 1,
    kRight,
    kCenter,
    kSubWoofer,
    kBackLeft,
    kBackRight,
    kSideLeft,
    kSideRight
};

// By channels less one and speaker less one.
constexpr std::uint8_t kPositions[kSpeakers][kSpeakers] = {
    {0, 0, 1, 0, 0, 0, 0, 0}, {1, 2, 0, 0, 0, 0, 0, 0}, {1, 2, 0, 3, 0, 0, 0, 0}, {1, 2, 0, 0, 3, 4, 0, 0},
    {1, 2, 3, 0, 4, 5, 0, 0}, {1, 2, 3, 4, 5, 6, 0, 0}, {1, 2, 3, 4, 5, 6, 7, 0}, {1, 2, 3, 4, 5, 6, 7, 8},
};

bool Has(std::uint32_t channels, std::uint32_t speaker) {
    return clChannelMixer::PositionOf(speaker, channels) != 0;
}

double Even(std::uint32_t channels) {
    return std::max(1.0 / channels, kLeast);
}

// To more channels.
double UpwardCoefficient(std::uint32_t from, std::uint32_t to, std::uint32_t source, std::uint32_t target) {
    if (target == source) return 1.0;
    if (Has(from, target) && Has(to, source)) return 0.0;
    if (target == kBackLeft || target == kSideLeft) return source == kLeft ? kHalfPower : 0.0;
    if (target == kBackRight || target == kSideRight) return source == kRight ? kHalfPower : 0.0;
    return Even(from);
}

// Whether a speaker that has no place of its own may be heard from another: the ones behind and beside only on their side.
bool MayReach(std::uint32_t source, std::uint32_t target) {
    switch (source) {
        case kSideLeft:
            return target == kLeft || target == kBackLeft;
        case kSideRight:
            return target == kRight || target == kBackRight;
        case kBackLeft:
            return target == kLeft;
        case kBackRight:
            return target == kRight;
        default:
            return true;
    }
}

// What a speaker gives to another on the way to fewer channels; to a single one everything goes.
double Share(std::uint32_t from, std::uint32_t to, std::uint32_t source, std::uint32_t target) {
    if (Has(to, source) || (to != 1 && !MayReach(source, target))) return 0.0;
    const double share = std::max(kRestOfIt / (from - to), kLeast);
    return source >= kBackLeft ? -share : share;
}

// To fewer.
double DownwardCoefficient(std::uint32_t from, std::uint32_t to, std::uint32_t source, std::uint32_t target) {
    const double alone = to == 1 ? Even(from) : kHalfPower;
    const double coefficient = target == source ? alone : Share(from, to, source, target);
    if (target == kCenter && to != 1) {
        if (source == kCenter) return 1.0;
        if (Has(to, kCenter)) return 0.0;
    }
    return to == 1 && source <= kRight ? coefficient * kRootOfTwo : coefficient;
}

void ApplyRule(clMixEntry& entry) {
    for (std::uint32_t source = 1; source <= kSpeakers; ++source) {
        clMixRow& row = entry.rows[source - 1];
        row.position = clChannelMixer::PositionOf(source, entry.from);
        for (std::uint32_t target = 1; row.position != 0 && target <= kSpeakers; ++target) {
            const std::uint32_t position = clChannelMixer::PositionOf(target, entry.to);
            if (position == 0) continue;
            row.columns[target - 1] = {clChannelMixer::PairCoefficient(entry.from, entry.to, source, target),
                                       position};
        }
    }
}

// A turned phase stays only where four meet, a full coefficient only where it is alone, and a speaker that
// nobody reached is fed by all.
double Normalised(double coefficient, std::ptrdiff_t sources, std::uint32_t from) {
    if (sources == 0) return Even(from);
    const double turned = sources < 4 && coefficient < 0 ? -coefficient : coefficient;
    return sources >= 2 && turned == 1.0 ? turned * kHalfPower : turned;
}

void Normalise(clMixEntry& entry) {
    for (std::uint32_t target = 0; target < kSpeakers; ++target) {
        if (clChannelMixer::PositionOf(target + 1, entry.to) == 0) continue;
        const std::ptrdiff_t sources = std::ranges::count_if(
            entry.rows, [=](const clMixRow& row) { return row.columns[target].coefficient != 0; });
        for (clMixRow& row : entry.rows) {
            double& coefficient = row.columns[target].coefficient;
            if (row.position != 0) coefficient = Normalised(coefficient, sources, entry.from);
        }
    }
}

}  // namespace

std::uint32_t clChannelMixer::PositionOf(std::uint32_t speaker, std::uint32_t channels) {
    return kPositions[channels - 1][speaker - 1];
}

double clChannelMixer::PairCoefficient(std::uint32_t from, std::uint32_t to, std::uint32_t source,
                                       std::uint32_t target) {
    if (from == 1) return 1.0;
    if (target == kSubWoofer && source == kSubWoofer) return 1.0;
    if (target == kSubWoofer && Has(from, kSubWoofer)) return 0.0;
    return from < to ? UpwardCoefficient(from, to, source, target)
                     : DownwardCoefficient(from, to, source, target);
}

void clChannelMixer::BuildTables() {
    for (std::uint32_t i = 0; i < kSpeakers * kSpeakers; ++i) {
        clMixEntry& entry = entries[i];
        entry = clMixEntry{i / kSpeakers + 1, i % kSpeakers + 1, {}};
        if (entry.from == entry.to) continue;
        ApplyRule(entry);
        Normalise(entry);
    }
}
