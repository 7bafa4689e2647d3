// Streams to other rates. What is measured is the steady state: a converter that stands gets more and more of its stream
// in blocks of the size that decoders give. What setting one up costs is measured by itself.
#include <algorithm>
#include <array>

#include "bench/audio/groups.h"
#include "bench/audio/rate_converters.h"
#include "bench/audio/tone.h"

namespace {

constexpr std::size_t kBlockFrames = 4096;

// A stream of a tone that a converter can be fed with for ever.
class Stream {
  public:
    Stream(const RateConverterKind& kind, const Rates& rates, double seconds)
        : kind_(kind),
          channels_(rates.channels),
          converter_(kind.make(rates)),
          frames_(static_cast<std::size_t>(seconds * rates.from) / kBlockFrames * kBlockFrames),
          wide_(Tone(rates.from, rates.channels, frames_)) {
        if (kind.isFloat) narrow_.assign(wide_.begin(), wide_.end());
    }

    void Run() {
        for (std::size_t at = 0; at < frames_; at += kBlockFrames)
            converter_->Process(kind_.isFloat ? static_cast<const void*>(narrow_.data() + at * channels_)
                                              : wide_.data() + at * channels_,
                                kBlockFrames, false);
    }

  private:
    const RateConverterKind& kind_;
    const std::size_t channels_;
    std::unique_ptr<RateConverter> converter_;
    const std::size_t frames_;
    std::vector<double> wide_;
    std::vector<float> narrow_;
};

std::string PairText(const Rates& rates) {
    return std::to_string(rates.from) + " to " + std::to_string(rates.to);
}

// The tone goes through every one of them: same frequency, same level, nothing else, the right length.
std::string Check(const Rates& rates, double seconds) {
    const std::size_t frames = static_cast<std::size_t>(seconds) * rates.from;
    const std::vector<double> tone = Tone(rates.from, rates.channels, frames);
    const std::size_t due = frames * rates.to / rates.from;
    for (const RateConverterKind& kind : RateConverters()) {
        const std::vector<double> result = ConvertWhole(kind, rates, tone, kBlockFrames);
        const std::size_t slack = &kind == &RateConverters().front() ? 0 : 256;
        const std::string fault =
            ToneFault(result, rates.to, rates.channels, due, slack, kind.isFloat ? 1e-4 : 1e-7);
        if (!fault.empty()) return std::string(kind.name) + ": " + fault;
    }
    return "";
}

struct Pair {
    Rates rates;
    double must;  // beside soxr-steep
    double aim;
};

constexpr Pair kPairs[] = {
    {{44100, 48000, 2}, 0.6, 1.0},  {{48000, 44100, 2}, 0.6, 1.0},  {{44100, 22050, 2}, 0.6, 1.0},
    {{96000, 44100, 2}, 0.35, 0.8}, {{44100, 96000, 2}, 0.35, 0.8}, {{192000, 44100, 2}, 0.35, 0.8},
};

double SecondsOf(bool isShort) {
    return isShort ? 0.5 : 5.0;
}

void RacePair(Racecourse& course, const Pair& pair) {
    std::vector<std::unique_ptr<Stream>> streams;
    Race race;
    race.work = PairText(pair.rates);
    for (const RateConverterKind& kind : RateConverters()) {
        streams.push_back(std::make_unique<Stream>(kind, pair.rates, SecondsOf(course.IsShort())));
        race.contestants.push_back({kind.name, [stream = streams.back().get()] { stream->Run(); }});
    }
    race.demands = {{"soxr-steep", pair.must, pair.aim},
                    {"soxr", 0, 0.6},
                    {"samplerate", 5.0, 0},
                    {"zita", 1.0, 0},
                    {"speex", 1.0, 0}};
    race.check = [&] { return Check(pair.rates, 1); };
    course.Run(race);
}

std::vector<std::string> Configurations(bool isShort) {
    std::vector<std::string> lines = {std::string(isShort ? "half a second" : "5 s") +
                                      " of stereo, float64, in blocks of 4096 frames"};
    for (const RateConverterKind& kind : RateConverters())
        lines.push_back(std::string(kind.name) + ": " + kind.configuration);
    return lines;
}

}  // namespace

void RaceResampling(Racecourse& course) {
    course.Announce("Resampling", Configurations(course.IsShort()));
    for (const Pair& pair : kPairs) RacePair(course, pair);
}

// A design stands once for a stream; it is to cost less than a second of the sound it is made for.
void RaceDesigns(Racecourse& course) {
    course.Announce(
        "Designs",
        {"setting up a converter for stereo, float64, and what a second of the stream costs then"});
    for (const Rates rates : {Rates{44100, 48000, 2}, Rates{96000, 44100, 2}}) {
        const RateConverterKind& ours = RateConverters().front();
        const RateConverterKind& soxr = *FindRateConverter("soxr-steep");
        Stream second(ours, rates, 1.0);
        course.Run({PairText(rates),
                    {{"ours, design", [&] { ours.make(rates); }},
                     {"ours, one second", [&] { second.Run(); }},
                     {"soxr-steep, design", [&] { soxr.make(rates); }}},
                    {{"ours, one second", 0, 1.0}}});
    }
}
