// One form gives the same bits on every system: with the same instruction set forced, Linux and Windows hand out the
// same bytes. The digests change with the arithmetic; what counts is that both targets find the same here.
#include <gtest/gtest.h>

#include "audio/format_records.h"
#include "audio/sample_twins.h"
#include "resampler/resampled.h"
#include "support/instruction_sets.h"

namespace {

struct Stream {
    SampleKind kind;
    std::uint16_t channels;
    std::vector<RatePair> pairs;
};
const Stream kStreams[] = {
    {SampleKind::Float64,
     2,
     {{44100, 48000}, {48000, 44100}, {22050, 44100}, {44100, 22050}, {32000, 44100}}},
    {SampleKind::Int16, 1, {{44100, 48000}, {96000, 44100}}},
    {SampleKind::Float32, 6, {{32000, 48000}, {48000, 44100}}},
};

twin::Bytes NoiseOf(SampleKind kind, std::size_t count) {
    twin::Bytes samples(count * BytesOf(kind));
    std::uint8_t* at = samples.data();
    for (const double value : Noise(count, 11)) {
        twin::WriteOne(at, value, kind);
        at += BytesOf(kind);
    }
    return samples;
}

// Over the bytes of all streams.
std::uint64_t Digest() {
    std::uint64_t digest = twin::Digest({});
    for (const Stream& stream : kStreams)
        for (const RatePair rates : stream.pairs) {
            const QvFormat format = Plain(twin::IsFloat(stream.kind) ? QV_FORMAT_FLOAT : QV_FORMAT_PCM,
                                          stream.channels, rates.source, twin::BitsOf(stream.kind));
            const std::size_t frameBytes = stream.channels * BytesOf(stream.kind);
            const twin::Bytes output =
                Resampled(NoiseOf(stream.kind, stream.channels * 20000u), format, rates.target, {4096});
            EXPECT_EQ(output.size(), 20000ull * rates.target / rates.source * frameBytes);
            digest = twin::Digest(output, digest);
        }
    return digest;
}

}  // namespace

TEST(ResamplerBits, are_the_same_on_every_system) {
    const std::uint64_t digests[] = {5316608274845216723u, 7846858361307971217u, 6880454702593719429u,
                                     15856665235534917331u};
    for (const InstructionSet set : OfferedSets()) {
        const ForcedSet forced(set);
        EXPECT_EQ(Digest(), digests[static_cast<std::size_t>(set)]) << NameOf(set);
    }
}
