// What the stages keep from block to block: streams that are cut, ended, refused in the middle and followed by
// others, and memory that runs out on the way.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <numbers>
#include <optional>
#include <random>
#include <vector>

#include "audio/depth.h"
#include "audio/format_changer.h"
#include "audio/format_records.h"
#include "audio/sample_twins.h"
#include "audio/scripted_manager.h"
#include "support/allocation_faults.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

const QvFormat kStereo16 = Plain(1, 2, 44100, 16);

Bytes Noise(std::size_t count, unsigned seed = 1) {
    std::mt19937 generator(seed);
    Bytes bytes(count);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(generator());
    return bytes;
}

Bytes Part(const Bytes& bytes, std::size_t first, std::size_t count) {
    const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(first);
    return Bytes(begin, begin + static_cast<std::ptrdiff_t>(count));
}

std::optional<Bytes> Change(clFormatChanger& changer, const QvFormat& from, const QvFormat& to, Bytes bytes,
                            bool final = false) {
    clAudioBlock in;
    in.setData(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &from, true);
    if (!changer.ChangeFormat(in, clFormatHolder(&to), final)) return std::nullopt;
    std::fill(bytes.begin(), bytes.end(), std::uint8_t{0xEE});  // the block goes with the call
    return Bytes(changer.result.data, changer.result.data + changer.result.bytes);
}

// A whole stream in blocks of up to so many bytes, empty ones too.
Bytes ChangeAll(clFormatChanger& changer, const QvFormat& from, const QvFormat& to, const Bytes& stream,
                std::uint32_t largest, unsigned seed = 2) {
    const std::size_t frameBytes = from.nChannels * from.wBitsPerSample / 8u;
    std::mt19937 generator(seed);
    Bytes all;
    for (std::size_t done = 0; done < stream.size();) {
        const std::size_t block = generator() % (largest / frameBytes + 1) * frameBytes;
        const std::size_t count = std::min(block, stream.size() - done);
        done += count;
        const std::optional<Bytes> out =
            Change(changer, from, to, Part(stream, done - count, count), done == stream.size());
        EXPECT_TRUE(out);
        if (out) all.insert(all.end(), out->begin(), out->end());
    }
    return all;
}

std::size_t FramesAt(std::size_t frames, const QvFormat& from, const QvFormat& to) {
    return frames * to.nSamplesPerSec / from.nSamplesPerSec;
}

const struct Pair {
    QvFormat from, to;
} kPairs[] = {
    {kStereo16, Plain(3, 1, 48000, 32)},
    {kStereo16, Plain(1, 6, 22050, 24)},
    {Plain(3, 6, 48000, 64), Plain(1, 2, 44100, 16)},
    {Plain(1, 1, 8000, 8), Plain(1, 2, 44100, 32)},
};

}  // namespace

// The stages as they stand, one behind the other, for the whole stream at once.
TEST(FormatChangerStreams, All_stages_do_what_each_does_alone) {
    for (const Pair& pair : kPairs) {
        SCOPED_TRACE(pair.to.wBitsPerSample);
        Bytes samples = Noise(20000 * 48);
        if (pair.from.wFormatTag == 3) std::fill(samples.begin(), samples.end(), std::uint8_t{0x3F});
        clFormatChanger changer;
        const std::optional<Bytes> changed = Change(changer, pair.from, pair.to, samples, true);
        ASSERT_TRUE(changed);
        clAudioBlock in, deep;
        in.setData(samples.data(), static_cast<std::uint32_t>(samples.size()), &pair.from, true);
        ASSERT_TRUE(ConvertDepth(deep, in, pair.to.wBitsPerSample, pair.to.wFormatTag == 3));
        clChannelMixer mixer;
        mixer.BuildTables();
        ASSERT_TRUE(mixer.Mix(deep, pair.to.nChannels));
        clResampler resampler;
        ASSERT_TRUE(resampler.Design(mixer.output, pair.to.nSamplesPerSec));
        ASSERT_TRUE(resampler.Process(mixer.output, true));
        EXPECT_EQ(*changed, Bytes(resampler.output.data, resampler.output.data + resampler.output.bytes));
        EXPECT_EQ(changer.result.frames(), FramesAt(in.frames(), pair.from, pair.to));
        EXPECT_EQ(changer.result.format->nChannels, pair.to.nChannels);
        EXPECT_EQ(changer.result.format->wBitsPerSample, pair.to.wBitsPerSample);
        EXPECT_TRUE(changer.result.format->nSamplesPerSec == pair.to.nSamplesPerSec);
        EXPECT_EQ(changer.result.sampleType(), pair.to.wFormatTag);
        EXPECT_EQ(changer.mixPending + changer.resamplePending, 0);
    }
}

TEST(FormatChangerStreams, The_same_audio_comes_out_however_it_is_cut) {
    for (const Pair& pair : kPairs) {
        SCOPED_TRACE(pair.to.wBitsPerSample);
        const std::size_t frameBytes = pair.from.nChannels * pair.from.wBitsPerSample / 8u;
        Bytes samples = Noise(30011 * frameBytes);
        if (pair.from.wFormatTag == 3) std::fill(samples.begin(), samples.end(), std::uint8_t{0x3F});
        clFormatChanger whole;
        const Bytes expected = ChangeAll(whole, pair.from, pair.to, samples, 1u << 30, 9);
        EXPECT_EQ(expected.size() / pair.to.nChannels / (pair.to.wBitsPerSample / 8u),
                  FramesAt(30011, pair.from, pair.to));
        for (const std::uint32_t largest : {5000u, 200000u}) {
            clFormatChanger cut;
            EXPECT_EQ(ChangeAll(cut, pair.from, pair.to, samples, largest), expected) << largest;
        }
    }
}

TEST(FormatChangerStreams, Shortest_streams_have_their_exact_length) {
    const struct {
        std::uint32_t from, to;
        std::size_t frames, due;
    } rows[] = {{44100, 22050, 1, 0}, {44100, 22050, 2, 1},  {44100, 22050, 3, 1},  {44100, 22050, 0, 0},
                {44100, 48000, 1, 1}, {48000, 44100, 2, 1},  {8000, 48000, 1, 6},   {48000, 8000, 5, 0},
                {96000, 44100, 0, 0}, {384000, 44100, 1, 0}, {44100, 192000, 3, 13}};
    for (const auto& row : rows) {
        clFormatChanger changer;
        const std::optional<Bytes> out =
            Change(changer, Plain(1, 2, row.from, 16), Plain(1, 2, row.to, 16), Noise(row.frames * 4), true);
        ASSERT_TRUE(out);
        EXPECT_EQ(out->size(), row.due * 4) << row.from << " " << row.to << " " << row.frames;
    }
}

TEST(FormatChangerStreams, The_resampler_is_designed_once_and_only_where_the_rate_differs) {
    const QvFormat to = Plain(1, 2, 48000, 16);
    clFormatChanger changer;
    EXPECT_EQ(Change(changer, to, to, Noise(400)), Noise(400));
    EXPECT_EQ(Change(changer, Plain(1, 1, 48000, 16), to, Noise(2))->size(), 4u);
    EXPECT_EQ(changer.resamplePending, 1);
    EXPECT_EQ(Change(changer, kStereo16, to, Noise(400)), Bytes()) << "it waits for a step";
    EXPECT_EQ(changer.resamplePending, 0);
    EXPECT_EQ(changer.resampler.carry.held(), 400u);
    EXPECT_EQ(changer.resampler.sourceRateAsked, 44100u);
    EXPECT_EQ(Change(changer, Plain(1, 2, 32000, 16), to, Noise(400)), Bytes());
    EXPECT_EQ(changer.resampler.sourceRateAsked, 44100u) << "the rates are not compared again";
    EXPECT_EQ(changer.resampler.carry.held(), 800u);
    EXPECT_EQ(Change(changer, to, to, Noise(400)), Noise(400)) << "but for what has its rate already";
}

TEST(FormatChangerStreams, A_block_that_the_last_stage_refuses_has_gone_through_those_before_it) {
    const QvFormat from = Plain(1, 1, 44100, 8), to = Plain(6, 1, 48000, 8);
    const Bytes samples = Noise(100000);
    Bytes expected, seen;
    for (const bool failing : {false, true}) {
        ScriptedManager manager;
        clFormatChanger changer;
        Bytes& all = failing ? seen : expected;
        for (std::size_t block = 0; block < 4; ++block) {
            if (failing && block == 2) manager.conversions.FailCall(1, 1u);
            const std::optional<Bytes> out =
                Change(changer, from, to, Part(samples, block * 25000, 25000), block == 3);
            EXPECT_EQ(out.has_value(), !failing || block != 2);
            if (block == 3 && out) all = *out;
        }
    }
    EXPECT_FALSE(expected.empty());
    EXPECT_EQ(seen, expected) << "as if the block had passed";
}

// A tone of 1000 Hz at half of full scale in every channel.
std::vector<double> Tone(const QvFormat& format, std::size_t frames) {
    std::vector<double> values(frames * format.nChannels);
    for (std::size_t i = 0; i < values.size(); ++i) {
        const auto frame = static_cast<double>(i / format.nChannels);
        values[i] = 0.5 * std::sin(2 * std::numbers::pi * 1000 * frame / format.nSamplesPerSec);
    }
    return values;
}

SampleKind KindOf(const QvFormat& format) {
    clAudioBlock block;
    block.setFormat(&format);
    return clSampleView(block).sampleKind;
}

// One second, of which the middle half is looked at in each channel: the tone's amplitude, and the largest of what is
// left without it.
TEST(FormatChangerStreams, A_tone_comes_out_as_that_tone) {
    const struct {
        Pair pair;
        std::vector<double> gains;  // by channel
        double off;                 // a step or two of the coarser depth, with what mixing makes of it
    } rows[] = {
        {kPairs[0], {0.88 * std::sqrt(2)}, 1e-4},
        {kPairs[1], {1, 1, 1, 1, std::sqrt(0.5), std::sqrt(0.5)}, 1e-4},
        {kPairs[2], {std::sqrt(0.5) + 0.44, std::sqrt(0.5) + 0.44}, 1e-4},
        {kPairs[3], {1, 1}, 0.01},
        {{Plain(3, 2, 96000, 64), Plain(3, 2, 44100, 64)}, {1, 1}, 1e-7},
    };
    for (const auto& row : rows) {
        const auto& [from, to] = row.pair;
        SCOPED_TRACE(testing::Message() << +from.nSamplesPerSec << " to " << +to.nSamplesPerSec);
        const SampleKind read = KindOf(from), written = KindOf(to);
        Bytes samples(from.nSamplesPerSec * from.nChannels * BytesOf(read));
        std::uint8_t* at = samples.data();
        for (const double value : Tone(from, from.nSamplesPerSec)) {
            twin::WriteOne(at, value, read);
            at += BytesOf(read);
        }
        clFormatChanger changer;
        const Bytes out = ChangeAll(changer, from, to, samples, 30000);
        ASSERT_EQ(out.size(), to.nSamplesPerSec * to.nChannels * BytesOf(written));
        const std::size_t frames = to.nSamplesPerSec;
        for (std::size_t channel = 0; channel < to.nChannels; ++channel) {
            const auto value = [&](std::size_t frame) {
                return twin::ReadOne(&out[(frame * to.nChannels + channel) * BytesOf(written)], written);
            };
            const auto turns = [&](std::size_t frame) {
                return 2 * std::numbers::pi * 1000 * static_cast<double>(frame) / to.nSamplesPerSec;
            };
            // A quarter of a second to three of them: whole turns at both ends.
            double sine = 0, cosine = 0, rest = 0;
            const std::size_t first = frames / 4, last = frames / 4 + frames / 2;
            for (std::size_t i = first; i < last; ++i) {
                sine += value(i) * std::sin(turns(i)) * 2 / static_cast<double>(last - first);
                cosine += value(i) * std::cos(turns(i)) * 2 / static_cast<double>(last - first);
            }
            for (std::size_t i = first; i < last; ++i)
                rest = std::max(rest,
                                std::abs(value(i) - sine * std::sin(turns(i)) - cosine * std::cos(turns(i))));
            EXPECT_NEAR(std::hypot(sine, cosine), 0.5 * row.gains[channel], row.off) << "channel " << channel;
            EXPECT_LT(rest, row.off) << "channel " << channel;
        }
    }
}

// Nothing rewinds: what a converter opens next goes through the filters behind the stream before.
TEST(FormatChangerStreams, A_second_stream_meets_the_first_ones_design_and_never_grows_without_end) {
    const QvFormat to = Plain(1, 2, 48000, 16);
    clFormatChanger changer;
    const std::size_t first = ChangeAll(changer, kStereo16, to, Noise(400000), 40000).size();
    EXPECT_EQ(first, FramesAt(100000, kStereo16, to) * 4);
    for (int stream = 0; stream < 3; ++stream) {
        const std::size_t bytes = ChangeAll(changer, Plain(1, 2, 22050, 16), to, Noise(400000), 40000).size();
        EXPECT_LE(bytes, first + 4 * 40000u);
        EXPECT_EQ(changer.resampler.sourceRateAsked, 44100u);
        EXPECT_LE(changer.resampler.carry.held(), 400000u);
    }
}

TEST(FormatChangerStreams, Another_depth_or_number_of_channels_on_the_way_makes_another_design) {
    clFormatChanger changer;
    const QvFormat requests[] = {Plain(1, 2, 48000, 16), Plain(1, 1, 48000, 16), Plain(1, 1, 48000, 24),
                                 Plain(3, 1, 48000, 32), Plain(1, 6, 48000, 32)};
    for (const QvFormat& to : requests) {
        const std::optional<Bytes> out = Change(changer, kStereo16, to, Noise(400000), true);
        ASSERT_TRUE(out);
        EXPECT_EQ(changer.result.frames(), FramesAt(100000, kStereo16, to));
        EXPECT_EQ(changer.result.format->nChannels, to.nChannels);
    }
}

TEST(FormatChangerStreams, Reset_forgets_every_stage_and_closes_both_streams) {
    ScriptedManager manager;
    clFormatChanger changer;
    const QvFormat from = Plain(1, 2, 44100, 8), to = Plain(6, 1, 48000, 8);
    const Bytes samples = Noise(100000);
    const Bytes expected = ChangeAll(changer, from, to, samples, 30000);
    EXPECT_EQ(manager.streams, 1);
    ASSERT_TRUE(changer.firstAcm.Open(clAudioBlock(), clFormatHolder(&to)));
    changer.Reset();
    EXPECT_EQ(manager.streams, 0);
    EXPECT_EQ(changer.firstAcm.stream, nullptr);
    EXPECT_EQ(changer.secondAcm.stream, nullptr);
    EXPECT_EQ(changer.firstAcm.ownFloat + changer.firstAcm.sixteenFirst + changer.secondAcm.ownFloat +
                  changer.secondAcm.sixteenFirst,
              0);
    EXPECT_EQ(changer.firstAcm.carry.held() + changer.secondAcm.carry.held(), 0u);
    EXPECT_EQ(changer.mixPending + changer.resamplePending, 2);
    EXPECT_EQ(changer.mixer.fromChannels + changer.mixer.toChannels, 0u);
    EXPECT_EQ(changer.resampler.targetRateAsked, 0u);
    EXPECT_EQ(ChangeAll(changer, from, to, samples, 30000), expected) << "as a new one does";
}

TEST(FormatChangerStreams, A_changer_that_dies_closes_its_streams) {
    ScriptedManager manager;
    {
        clFormatChanger changer;
        EXPECT_TRUE(Change(changer, Plain(1, 1, 8000, 8), Plain(6, 1, 8000, 8), Noise(20)));
        EXPECT_EQ(manager.streams, 1);
    }
    EXPECT_EQ(manager.streams, 0);
}

// Records that contradict themselves, and blocks that end within a frame: answered in whatever way, but with
// nothing read or written outside.
TEST(FormatChangerStreams, Records_that_can_not_be_stay_within_their_bytes) {
    std::mt19937 generator(11);
    const std::uint16_t tags[] = {1, 3, 6, 17, 80, 65534},
                        depths[] = {0, 1, 4, 7, 8, 12, 16, 24, 32, 33, 64, 65535},
                        channels[] = {0, 1, 2, 3, 8, 9, 65535};
    const std::uint32_t rates[] = {0, 8000, 16000, 0xFFFFFFFF};
    const auto any = [&](const auto& choices) { return choices[generator() % std::size(choices)]; };
    int passed = 0;
    for (int round = 0; round < 1000; ++round) {
        const QvFormat from = Plain(any(tags), any(channels), any(rates), any(depths)),
                       to = Plain(any(tags), any(channels), any(rates), any(depths));
        clFormatChanger changer;
        for (int block = 0; block < 3; ++block)
            passed += Change(changer, from, to, Noise(generator() % 300), block == 2).has_value();
    }
    EXPECT_GT(passed, 40);
}

// Each allocation of a call in turn, on every way through the stages.
TEST(FormatChangerStreams, Without_memory_the_block_is_refused_or_it_raises_and_a_later_one_passes) {
    const QvFormatExtensible from = Extensible(1, 2, 44100, 16);
    const struct {
        QvFormatExtensible to;
        std::size_t bytes;
        int least;   // allocations of one call
        bool keeps;  // audio from block to block
    } rows[] = {
        {Extensible(1, 2, 44100, 16), 64, 2, false},    // the same
        {Extensible(1, 2, 44100, 0), 64, 10, false},    // a record's tail and the samples, for each copy
        {Extensible(3, 6, 44100, 32), 64, 10, false},   // other depth and channels
        {Extensible(3, 2, 44100, 0), 64, 10, false},    // floats of the last stage
        {Extensible(6, 1, 44100, 8), 64, 10, false},    // a codec
        {Extensible(3, 1, 48000, 32), 4000, 20, true},  // all stages
        {Extensible(1, 1, 22050, 24), 4000, 20, true},
    };
    ScriptedManager manager;
    manager.keepsJournal = false;
    const Bytes samples = Noise(4000);
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        const clFormatHolder out(&row.to.Format);
        clAudioBlock in;
        in.setData(samples.data(), static_cast<std::uint32_t>(row.bytes), &from.Format, true);
        clFormatChanger unharmed;
        ASSERT_TRUE(unharmed.ChangeFormat(in, out, true));
        const Bytes due(unharmed.result.data, unharmed.result.data + unharmed.result.bytes);
        const auto isDue = [&](const clAudioBlock& result) {
            return result.bytes == due.size() && std::memcmp(result.data, due.data(), due.size()) == 0;
        };
        int failing = 1;
        for (;; ++failing) {
            bool wrong = false, failed = false, later = false;
            int live = 0;
            {
                AllocationFaults memory;
                {
                    clFormatChanger changer;
                    memory.FailCall(failing);
                    try {
                        wrong = changer.ChangeFormat(in, out, true) && !isDue(changer.result);
                    } catch (const std::bad_alloc&) {
                    }
                    failed = memory.HasFailed();
                    memory.FailCall(0);  // none from here on
                    // What the failed call had taken in stands in front, until the changer begins anew.
                    later = changer.ChangeFormat(in, out, true) && (row.keeps || isDue(changer.result));
                    changer.Reset();
                    later = later && changer.ChangeFormat(in, out, true) && isDue(changer.result);
                }
                live = memory.Live();
            }
            EXPECT_EQ(live, 0) << failing;
            EXPECT_TRUE(later) << failing;
            EXPECT_FALSE(wrong) << failing << ": a block is whole or refused";
            if (!failed) break;
        }
        EXPECT_GE(failing - 1, row.least);
    }
}
