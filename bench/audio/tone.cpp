#include "bench/audio/tone.h"

#include <cmath>
#include <numbers>

namespace {

constexpr double kLevel = 0.5;

double StepOf(unsigned rate, unsigned channel) {
    return 2 * std::numbers::pi * 997.0 * (channel + 1) / rate;
}

// The sine and cosine parts of a channel between two frames, by least squares, and what they leave over.
struct Fit {
    double level = 0;
    double rest = 0;  // the root of its mean square
};

Fit FitTone(const std::vector<double>& samples, unsigned channels, unsigned channel, double step,
            std::size_t begin, std::size_t end) {
    double cc = 0, cs = 0, ss = 0, yc = 0, ys = 0;
    for (std::size_t i = begin; i < end; ++i) {
        const double angle = step * static_cast<double>(i);
        const double c = std::cos(angle), s = std::sin(angle), y = samples[i * channels + channel];
        cc += c * c, cs += c * s, ss += s * s, yc += y * c, ys += y * s;
    }
    const double determinant = cc * ss - cs * cs;
    const double a = (yc * ss - ys * cs) / determinant, b = (ys * cc - yc * cs) / determinant;
    double squares = 0;
    for (std::size_t i = begin; i < end; ++i) {
        const double angle = step * static_cast<double>(i);
        const double left = samples[i * channels + channel] - a * std::cos(angle) - b * std::sin(angle);
        squares += left * left;
    }
    return {std::hypot(a, b), std::sqrt(squares / static_cast<double>(end - begin))};
}

}  // namespace

std::vector<double> Tone(unsigned rate, unsigned channels, std::size_t frames) {
    std::vector<double> samples(frames * channels);
    for (unsigned channel = 0; channel < channels; ++channel) {
        const double step = StepOf(rate, channel);
        for (std::size_t i = 0; i < frames; ++i)
            samples[i * channels + channel] = kLevel * std::sin(step * static_cast<double>(i));
    }
    return samples;
}

std::string ToneFault(const std::vector<double>& samples, unsigned rate, unsigned channels,
                      std::size_t frames, std::size_t slack, double tolerance) {
    const std::size_t got = samples.size() / channels;
    if (got + slack < frames || got > frames + slack)
        return std::to_string(got) + " frames instead of " + std::to_string(frames);
    for (unsigned channel = 0; channel < channels; ++channel) {
        const Fit fit = FitTone(samples, channels, channel, StepOf(rate, channel), got / 4, got - got / 4);
        if (!(std::abs(fit.level / kLevel - 1) <= tolerance && fit.rest / kLevel <= tolerance))
            return "channel " + std::to_string(channel) + " is not the tone: level " +
                   std::to_string(fit.level) + ", rest " + std::to_string(fit.rest);
    }
    return "";
}
