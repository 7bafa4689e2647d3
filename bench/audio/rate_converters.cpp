#include "bench/audio/rate_converters.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "audio/resampler.h"
#include "bench/audio/rate_peers.h"

namespace {

// What the driver of a decoded stream does: a block that adopts the samples, and the resampler's own output.
class Quavermill : public RateConverter {
  public:
    explicit Quavermill(const Rates& rates) {
        format_.wFormatTag = QV_FORMAT_FLOAT;
        format_.nChannels = static_cast<std::uint16_t>(rates.channels);
        format_.nSamplesPerSec = rates.from;
        format_.wBitsPerSample = 64;
        block_.setFormat(&format_);
        if (!resampler_.Design(block_, rates.to)) RefusedBy("ours");
    }

    Converted Process(const void* samples, std::size_t frames, bool last) override {
        static const double kNothing = 0;
        const std::size_t bytes = frames * format_.nChannels * sizeof(double);
        block_.setData(samples ? samples : &kNothing, static_cast<std::uint32_t>(bytes), &format_, true);
        if (!resampler_.Process(block_, last)) RefusedBy("ours");
        return {resampler_.output.data, resampler_.output.frames()};
    }

  private:
    QvFormat format_{};
    clAudioBlock block_;
    clResampler resampler_;
};

}  // namespace

void RefusedBy(const char* who) {
    std::fprintf(stderr, "%s refuses to bring this sound to this rate\n", who);
    std::exit(1);
}

const std::vector<RateConverterKind>& RateConverters() {
    static const std::vector<RateConverterKind> kinds = {
        {"ours", "clResampler", false,
         [](const Rates& rates) -> std::unique_ptr<RateConverter> {
             return std::make_unique<Quavermill>(rates);
         }},
        {"soxr-steep",
         "libsoxr VHQ (28 bits, linear phase, double precision), passband_end 0.995, stopband_begin 1.0",
         false, MakeSoxrSteep},
        {"soxr", "libsoxr VHQ as it comes (passband_end 0.913, stopband_begin 1.0)", false, MakeSoxr},
        {"samplerate", "libsamplerate SRC_SINC_BEST_QUALITY (floats in and out)", true, MakeSamplerate},
        {"zita", "zita-resampler hlen 96 (float only)", true, MakeZita},
        {"speex", "speexdsp quality 10 (float only)", true, MakeSpeex},
    };
    return kinds;
}

const RateConverterKind* FindRateConverter(const std::string& name) {
    const auto& kinds = RateConverters();
    const auto found = std::find_if(kinds.begin(), kinds.end(),
                                    [&](const RateConverterKind& kind) { return name == kind.name; });
    return found == kinds.end() ? nullptr : &*found;
}

std::vector<double> ConvertWhole(const RateConverterKind& kind, const Rates& rates,
                                 const std::vector<double>& samples, std::size_t blockFrames) {
    const auto converter = kind.make(rates);
    const std::vector<float> narrow(kind.isFloat ? samples.begin() : samples.end(), samples.end());
    const std::size_t frames = samples.size() / rates.channels;
    std::vector<double> result;
    for (std::size_t done = 0; done < frames; done += blockFrames) {
        const std::size_t count = std::min(blockFrames, frames - done);
        const std::size_t at = done * rates.channels;
        const void* const from =
            kind.isFloat ? static_cast<const void*>(narrow.data() + at) : samples.data() + at;
        const Converted got = converter->Process(from, count, done + count == frames);
        const std::size_t values = got.frames * rates.channels;
        if (kind.isFloat) {
            const auto* const floats = static_cast<const float*>(got.samples);
            result.insert(result.end(), floats, floats + values);
        } else {
            const auto* const doubles = static_cast<const double*>(got.samples);
            result.insert(result.end(), doubles, doubles + values);
        }
    }
    return result;
}
