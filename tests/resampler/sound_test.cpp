// What is heard: how much of what should go is left, how evenly the rest passes, and when it comes.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>

#include "resampler/resampled.h"
#include "support/effort.h"

namespace {

const RatePair kPairs[] = {{44100, 48000}, {48000, 44100}, {44100, 22050},
                           {22050, 44100}, {96000, 44100}, {44100, 96000}};

std::vector<double> Tone(double hertz, std::uint32_t rate, std::size_t frames) {
    std::vector<double> samples(frames);
    for (std::size_t i = 0; i < frames; ++i)
        samples[i] = std::sin(2 * std::numbers::pi * std::fmod(hertz / rate * static_cast<double>(i), 1.0));
    return samples;
}

// The amplitude and phase of a tone in the middle of some samples, and the amplitude of what remains without it.
// Fitted by least squares, as no window is so even that it would show a millionth of a decibel.
struct Fit {
    Fit(const std::vector<double>& samples, double hertz, std::uint32_t rate) {
        const std::size_t first = samples.size() / 4, last = samples.size() * 3 / 4;
        const auto angle = [&](std::size_t i) {
            return 2 * std::numbers::pi * std::fmod(hertz / rate * static_cast<double>(i), 1.0);
        };
        long double ss = 0, cc = 0, sc = 0, xs = 0, xc = 0;
        for (std::size_t i = first; i < last; ++i) {
            const double s = std::sin(angle(i)), c = std::cos(angle(i));
            ss += s * s, cc += c * c, sc += s * c, xs += samples[i] * s, xc += samples[i] * c;
        }
        const long double divisor = ss * cc - sc * sc;
        const auto inPhase = static_cast<double>((xs * cc - xc * sc) / divisor);
        const auto quadrature = static_cast<double>((xc * ss - xs * sc) / divisor);
        amplitude = std::hypot(inPhase, quadrature);
        phase = std::atan2(quadrature, inPhase);
        for (std::size_t i = first; i < last; ++i) {
            const double without =
                samples[i] - inPhase * std::sin(angle(i)) - quadrature * std::cos(angle(i));
            rest += without * without;
        }
        rest = std::sqrt(2 * rest / static_cast<double>(last - first));
    }

    double amplitude = 0, phase = 0, rest = 0;
};

double Decibels(double ratio) {
    return 20 * std::log10(ratio);
}

std::string Name(RatePair pair) {
    return std::to_string(pair.source) + " to " + std::to_string(pair.target);
}

}  // namespace

// The filters' window is a Bessel function cut off after sixteen terms: so near the edge of the band the ripple
// grows from some 1e-8 to 5e-6 decibels. What remains beside the tone, images and rounding, is below the stop band.
TEST(ResamplerSound, passes_tones_evenly_up_to_100_hertz_from_the_edge_and_adds_nothing) {
    constexpr double kEvenPart = 0.7;
    for (const RatePair pair : kPairs) {
        SCOPED_TRACE(Name(pair));
        const double edge = std::min(pair.source, pair.target) / 2.0, highest = edge - 100;
        const int tones = Times(20, 4, 10);
        for (int i = 0; i <= tones; ++i) {
            const double hertz = 20 + (highest - 20) * i / tones;
            const Fit fit(Resampled(Tone(hertz, pair.source, pair.source), 1, pair), hertz, pair.target);
            EXPECT_LE(std::fabs(Decibels(fit.amplitude)), hertz < kEvenPart * edge ? 1e-6 : 6e-6) << hertz;
            EXPECT_LE(Decibels(fit.rest), -168) << hertz;
        }
    }
}

// Downward, tones from the half of the target rate on would come back as others. The same window leaves 124
// decibels exactly there, and the whole 168 from 40 hertz on.
TEST(ResamplerSound, stops_what_the_target_rate_can_not_hold_by_168_decibels) {
    for (const RatePair pair : kPairs) {
        if (pair.source < pair.target) continue;
        SCOPED_TRACE(Name(pair));
        const double low = pair.target / 2.0 + 40, high = pair.source / 2.0 - 10;
        const int tones = Times(20, 4, 10);
        for (int i = -1; i <= tones; ++i) {
            const double hertz = i < 0 ? pair.target / 2.0 : low + (high - low) * i * i / (tones * tones);
            const std::vector<double> output = Resampled(Tone(hertz, pair.source, pair.source), 1, pair);
            double most = 0;
            for (std::size_t k = output.size() / 4; k < output.size() * 3 / 4; ++k)
                most = std::max(most, std::fabs(output[k]));
            EXPECT_LE(Decibels(most), i < 0 ? -124 : -168) << hertz;
        }
    }
}

// The delay that is thrown away is a whole number of frames: what is left of it shows here.
TEST(ResamplerSound, comes_within_about_a_frame) {
    struct Row {
        RatePair pair;
        double late;  // output frames
    };
    for (const Row& row : {Row{{44100, 22050}, 0.5}, Row{{48000, 44100}, 1.03}, Row{{44100, 48000}, 0.36}}) {
        const double hertz = 100;
        const Fit fit(Resampled(Tone(hertz, row.pair.source, row.pair.source), 1, row.pair), hertz,
                      row.pair.target);
        const double late = -fit.phase / (2 * std::numbers::pi * hertz) * row.pair.target;
        EXPECT_NEAR(late, row.late, 0.01) << Name(row.pair);
    }
}
