// Samples in another depth or type: blocks as a decoder gives them, which stay in the cache, and runs that are far larger
// than it. Beside one another are equal bytes: memcpy moves as many as the conversion reads and writes together.
//
// 16 bits become doubles on the way into mixing and resampling only, by ReadSamples; everything else is ConvertDepth.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>

#include "audio/depth.h"
#include "audio/sample_values.h"
#include "bench/audio/blocks.h"
#include "bench/audio/groups.h"
#include "bench/audio/plain_loops.h"
#include "bench/audio/swresample_peer.h"

namespace {

struct Pair {
    SampleType from;
    SampleType to;
};

constexpr Pair kPairs[] = {
    {kInt16, kFloat32}, {kFloat32, kInt16}, {kInt32, kFloat32}, {kFloat32, kInt32},
    {kInt16, kFloat64}, {kFloat64, kInt16}, {kInt24, kInt16},   {kInt24, kInt32},
    {kInt24, kFloat32}, {kInt16, kInt24},   {kInt32, kInt24},   {kFloat32, kInt24},
};

constexpr std::uint16_t kChannels = 2;

std::string Text(const Pair& pair) {
    return std::string(pair.from.name) + " to " + pair.to.name;
}

bool SwrKnows(const SampleType& type) {
    return type.kind != SampleKind::Int24;
}

SwrSide SideOf(const SampleType& type) {
    const SwrSamples samples = type.kind == SampleKind::Int16     ? SwrSamples::Int16
                               : type.kind == SampleKind::Int32   ? SwrSamples::Int32
                               : type.kind == SampleKind::Float32 ? SwrSamples::Float32
                                                                  : SwrSamples::Float64;
    return {samples, kChannels, false};
}

// One pair at one length: the source, and a place for everybody's result.
class DepthRace {
  public:
    DepthRace(const Pair& pair, std::uint32_t frames)
        : pair_(pair),
          samples_(std::size_t{frames} * kChannels),
          plain_(FindPlainLoop(pair.from.kind, pair.to.kind)) {
        FillWithNoise(source_, pair.from, kChannels, frames);
        const std::size_t bytesOut = samples_ * pair.to.bits / 8;
        byPlain_.resize(bytesOut);
        if (IsRead()) byRead_.resize(samples_);
        copy_.resize((source_.bytes + bytesOut) / 2);
        copied_.resize(copy_.size());
        if (SwrKnows(pair.from) && SwrKnows(pair.to)) {
            swr_ = std::make_unique<Swresample>(SideOf(pair.from), SideOf(pair.to), std::vector<double>{});
            swr_->SetFrames(frames);
            std::memcpy(swr_->in.data(), source_.data, source_.bytes);
        }
    }

    Race Describe(bool isInCache) {
        Race race;
        race.work = Text(pair_) + (isInCache ? ", a block" : ", out of cache");
        race.contestants = {{"ours", [this] { RunOurs(); }},
                            {"plain loop", [this] { plain_(byPlain_.data(), source_.data, samples_); }},
                            {"memcpy", [this] { std::memcpy(copied_.data(), copy_.data(), copy_.size()); }}};
        race.demands = {{"plain loop", 1.0, 0}};
        if (!isInCache) race.demands.push_back({"memcpy", 0, 0.5});
        if (swr_) {
            race.contestants.push_back({"libswresample", [this] { swr_->Run(); }});
            race.demands.push_back({"libswresample", 1.0, 0});
        }
        race.check = [this] { return Check(); };
        return race;
    }

  private:
    // Integers don't become 64-bit floats as a block.
    bool IsRead() const { return !pair_.from.isFloat && pair_.to.kind == SampleKind::Float64; }

    void RunOurs() {
        if (IsRead()) {
            ReadSamples(byRead_.data(), source_.data, samples_, pair_.from.kind);
        } else if (!ConvertDepth(result_, source_, pair_.to.bits, pair_.to.isFloat)) {
            Fail("ConvertDepth refuses " + Text(pair_));
        }
    }

    std::string Check() {
        const void* const ours = IsRead() ? static_cast<const void*>(byRead_.data()) : result_.data;
        const double step = pair_.to.isFloat ? 1e-7 : std::ldexp(1.0, 1 - pair_.to.bits);
        const std::vector<double> values = Values(ours, samples_, pair_.to.kind);
        std::string wrong = Difference(values, Values(byPlain_.data(), samples_, pair_.to.kind), step / 16);
        if (wrong.empty() && swr_)
            wrong =
                Difference(values, Values(swr_->out.data(), samples_, pair_.to.kind), std::max(step, 1e-7));
        if (wrong.empty())
            wrong = Difference(values, Values(source_.data, samples_, pair_.from.kind), std::max(step, 1e-7));
        return wrong;
    }

    const Pair pair_;
    const std::size_t samples_;
    PlainLoop* const plain_;
    clAudioBlock source_;
    clAudioBlock result_;
    std::vector<double> byRead_;
    std::vector<std::uint8_t> byPlain_, copy_, copied_;
    std::unique_ptr<Swresample> swr_;
};

}  // namespace

void RaceDepths(Racecourse& course) {
    constexpr std::uint32_t kBlockFrames = 4096;
    const std::uint32_t kManyFrames = course.IsShort() ? 1u << 20 : 1u << 24;
    course.Announce("Depth",
                    {"stereo, blocks of 4096 frames, and " + std::to_string(kManyFrames) + " frames at once",
                     "plain loop: g++ -O3 for any x86-64 processor",
                     "libswresample: packed on both sides; it knows no samples of three bytes",
                     "memcpy: half of what the conversion reads and writes together"});
    for (const Pair& pair : kPairs) {
        course.Run(DepthRace(pair, kBlockFrames).Describe(true));
        course.Run(DepthRace(pair, kManyFrames).Describe(false));
    }
}
