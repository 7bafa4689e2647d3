// How the cost of a stream grows: with its channels, with its length, and that its memory doesn't.
//
// The peak of the process's memory is what the system counts; it can be set back to what is in use.
#include <fstream>

#include "bench/audio/groups.h"
#include "bench/audio/rate_converters.h"
#include "bench/audio/tone.h"

namespace {

constexpr std::size_t kBlockFrames = 4096;
constexpr unsigned kFrom = 44100, kTo = 48000;

double PeakMebibytes() {
    std::ifstream status("/proc/self/status");
    std::string word;
    double kibibytes = 0;
    while (status >> word && word != "VmHWM:") {
    }
    status >> kibibytes;
    return kibibytes / 1024;
}

void ForgetPeak() {
    std::ofstream("/proc/self/clear_refs") << 5;
}

// A whole stream, its end included; the second of sound that it is made of comes again and again.
void Convert(unsigned channels, unsigned seconds, const std::vector<double>& second) {
    const auto converter = RateConverters().front().make({kFrom, kTo, channels});
    std::size_t left = std::size_t{seconds} * kFrom, given = 0;
    while (left > 0) {
        const std::size_t count = std::min({kBlockFrames, left});
        left -= count;
        given += converter->Process(second.data(), count, left == 0).frames;
    }
    if (given != std::size_t{seconds} * kTo) Fail("growth: the stream has another length");
}

void GrowWithChannels(Racecourse& course, unsigned seconds) {
    Race race;
    race.work = std::to_string(seconds) + " s by channels, beside 1 channel";
    for (const unsigned channels : {1u, 2u, 4u, 8u})
        race.contestants.push_back(
            {std::to_string(channels) + (channels == 1 ? " channel" : " channels"),
             [=, block = Tone(kFrom, channels, kBlockFrames)] { Convert(channels, seconds, block); }});
    const Times times = course.Run(race);
    for (std::size_t i = 0; i < times.size(); ++i)
        std::printf("    a channel of %d: %.3f ms\n", 1 << i, times[i] * 1e3 / (1 << i));
}

struct Cost {
    double secondsOfProcessor = 0;
    double peakMebibytes = 0;
};

Cost CostOf(unsigned seconds, const std::vector<double>& block) {
    ForgetPeak();
    const double begun = SecondsOfProcessor();
    Convert(2, seconds, block);
    return {SecondsOfProcessor() - begun, PeakMebibytes()};
}

void GrowWithLength(Racecourse& course) {
    const std::vector<unsigned> lengths =
        course.IsShort() ? std::vector<unsigned>{1, 10, 60} : std::vector<unsigned>{10, 60, 600, 3600};
    const std::vector<double> block = Tone(kFrom, 2, kBlockFrames);
    Convert(2, 1, block);
    std::printf("  stereo by length\n");
    double first = 0;
    for (const unsigned seconds : lengths) {
        const Cost cost = CostOf(seconds, block);
        const double perSecond = cost.secondsOfProcessor / seconds;
        if (first == 0) first = perSecond;
        std::printf("    %4u s                       %9.3f ms   %7.4f ms a second   peak %.1f MiB\n", seconds,
                    cost.secondsOfProcessor * 1e3, perSecond * 1e3, cost.peakMebibytes);
        const std::string work = std::to_string(seconds) + " s of stereo";
        course.Record(work, "a second of it", perSecond, perSecond / first);
        course.Record(work, "peak of memory, MiB", cost.peakMebibytes, 0);
    }
}

}  // namespace

void MeasureGrowth(Racecourse& course) {
    course.Announce("Growth", {"44100 to 48000, float64, the design included"});
    GrowWithChannels(course, course.IsShort() ? 2 : 10);
    GrowWithLength(course);
}
