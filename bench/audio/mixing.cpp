// Channels mixed to more and to fewer, the samples staying what they are. libswresample gets the very coefficients that
// our mixer has, which a block of one impulse for each channel shows.
#include <algorithm>
#include <cstring>
#include <memory>

#include "audio/channel_mixer.h"
#include "audio/sample_values.h"
#include "bench/audio/blocks.h"
#include "bench/audio/groups.h"
#include "bench/audio/swresample_peer.h"

namespace {

constexpr std::uint32_t kFrames = 4096;

// Column by column: what one full-scale sample of a channel gives.
std::vector<double> MatrixOf(std::uint16_t from, std::uint16_t to) {
    clAudioBlock impulses;
    const QvFormat format = FormatOf(kFloat64, from);
    std::vector<double> identity(std::size_t{from} * from);
    for (std::size_t i = 0; i < from; ++i) identity[i * from + i] = 1;
    impulses.setData(identity.data(), static_cast<std::uint32_t>(identity.size() * sizeof(double)), &format,
                     true);
    clChannelMixer mixer;
    mixer.BuildTables();
    if (!mixer.Mix(impulses, to)) Fail("the mixer refuses");
    const std::vector<double> columns =
        Values(mixer.output.data, std::size_t{from} * to, SampleKind::Float64);
    std::vector<double> matrix(columns.size());
    for (std::size_t i = 0; i < from; ++i)
        for (std::size_t o = 0; o < to; ++o) matrix[o * from + i] = columns[i * to + o];
    return matrix;
}

// Between interleaved samples and one channel behind the other.
std::vector<double> Transposed(const std::vector<double>& values, std::size_t rows, std::size_t columns) {
    std::vector<double> result(values.size());
    for (std::size_t r = 0; r < rows; ++r)
        for (std::size_t c = 0; c < columns; ++c) result[c * rows + r] = values[r * columns + c];
    return result;
}

class MixRace {
  public:
    MixRace(std::uint16_t from, std::uint16_t to, const SampleType& type)
        : from_(from),
          to_(to),
          type_(type),
          packed_(Side(from, false), Side(to, false), MatrixOf(from, to)),
          planar_(Side(from, true), Side(to, true), MatrixOf(from, to)) {
        FillWithNoise(source_, type, from, kFrames);
        packed_.SetFrames(kFrames);
        planar_.SetFrames(kFrames);
        std::memcpy(packed_.in.data(), source_.data, source_.bytes);
        const std::vector<double> planes =
            Transposed(Values(source_.data, Count(from), type.kind), kFrames, from);
        WriteSamples(planar_.in.data(), planes.data(), planes.size(), type.kind);
        mixer_.BuildTables();
    }

    Race Describe() {
        Race race;
        race.work = std::to_string(from_) + " to " + std::to_string(to_) + ", " + type_.name;
        race.contestants = {{"ours",
                             [this] {
                                 if (!mixer_.Mix(source_, to_)) Fail("the mixer refuses");
                             }},
                            {"libswresample packed", [this] { packed_.Run(); }},
                            {"libswresample planar", [this] { planar_.Run(); }}};
        race.demands = {{"libswresample packed", 1.0, 0}, {"libswresample planar", 0, 1.0}};
        race.check = [this] { return Check(); };
        return race;
    }

  private:
    SwrSide Side(std::uint16_t channels, bool isPlanar) const {
        return {type_.isFloat ? SwrSamples::Float64 : SwrSamples::Int16, channels, isPlanar};
    }
    static std::size_t Count(std::size_t channels) { return kFrames * channels; }

    // Its integer coefficients have 15 bits.
    std::string Check() {
        const double tolerance = type_.isFloat ? 1e-12 : 4.0 / 32768;
        const std::vector<double> ours = Values(mixer_.output.data, Count(to_), type_.kind);
        const std::string wrong =
            Difference(ours, Values(packed_.out.data(), Count(to_), type_.kind), tolerance);
        if (!wrong.empty()) return "packed: " + wrong;
        const std::vector<double> planes = Values(planar_.out.data(), Count(to_), type_.kind);
        return Difference(ours, Transposed(planes, to_, kFrames), tolerance);
    }

    const std::uint16_t from_, to_;
    const SampleType type_;
    clAudioBlock source_;
    clChannelMixer mixer_;
    Swresample packed_, planar_;
};

}  // namespace

void RaceMixing(Racecourse& course) {
    course.Announce(
        "Mixing",
        {"blocks of 4096 frames",
         "libswresample: our coefficients by swr_set_matrix; packed is interleaved like ours, planar has "
         "each channel by itself on both sides"});
    for (const SampleType& type : {kInt16, kFloat64}) {
        course.Run(MixRace(6, 2, type).Describe());
        course.Run(MixRace(2, 6, type).Describe());
        course.Run(MixRace(8, 2, type).Describe());
    }
}
