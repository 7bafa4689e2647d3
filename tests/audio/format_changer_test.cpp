// The order of the stages and what they are asked; what a stage does to samples is tested with the stage.
#include "audio/format_changer.h"

#include <gtest/gtest.h>

#include <numeric>
#include <optional>
#include <vector>

#include "audio/depth.h"
#include "audio/format_records.h"
#include "support/allocation_faults.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

const QvFormat kStereo16 = Plain(1, 2, 44100, 16);

const QvFormat* Record(const QvFormatExtensible& format) {
    return &format.Format;
}

Bytes Samples(std::size_t count) {
    Bytes bytes(count);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{1});
    return bytes;
}

// What the changer makes of the bytes; nothing where it refuses.
std::optional<Bytes> Change(clFormatChanger& changer, const QvFormat* from, const QvFormat* to,
                            const Bytes& bytes, bool final = false) {
    clAudioBlock in;
    in.setData(bytes.data(), static_cast<std::uint32_t>(bytes.size()), from, true);
    if (!changer.ChangeFormat(in, clFormatHolder(to), final)) return std::nullopt;
    EXPECT_EQ(changer.result.adopted, 0);
    EXPECT_NE(changer.result.data, in.data);
    return Bytes(changer.result.data, changer.result.data + changer.result.bytes);
}

bool IsUntouched(const clFormatChanger& changer) {
    return !changer.depthBlock.data && !changer.mixer.output.data && !changer.resampler.output.data &&
           !changer.firstAcm.output.data && !changer.secondAcm.output.data && changer.mixPending == 1 &&
           changer.resamplePending == 1;
}

TEST(FormatChanger, Equal_formats_are_one_copy_and_touch_no_stage) {
    const Bytes samples = Samples(24);
    const QvFormatExtensible extensible = Extensible(1, 2, 44100, 16);
    const QvFormatExtensible floats = Extensible(3, 2, 44100, 32);
    const QvFormat plainFloats = Plain(3, 2, 44100, 32), law = Plain(6, 1, 8000, 8),
                   coded = Plain(80, 2, 44100, 0);
    const std::pair<const QvFormat*, const QvFormat*> pairs[] = {
        {&kStereo16, &kStereo16},
        {Record(extensible), Record(extensible)},
        {Record(extensible), &kStereo16},  // the same samples, told in two ways
        {&plainFloats, Record(floats)},
        {&law, &law},
        {&coded, &coded},
    };
    for (const auto& [from, to] : pairs) {
        clFormatChanger changer;
        EXPECT_EQ(Change(changer, from, to, samples), samples);
        EXPECT_EQ(changer.result.format->wFormatTag, from->wFormatTag) << "the format is the block's own";
        EXPECT_EQ(changer.result.format->cbSize, from->cbSize);
        EXPECT_TRUE(IsUntouched(changer));
    }
}

TEST(FormatChanger, An_empty_block_is_an_empty_result) {
    clFormatChanger changer;
    EXPECT_TRUE(changer.ChangeFormat(clAudioBlock(), clFormatHolder(), true));
    EXPECT_EQ(changer.result.bytes, 0u);
    EXPECT_EQ(Change(changer, &kStereo16, &kStereo16, {}, true), Bytes());
}

TEST(FormatChanger, A_target_without_a_depth_takes_that_of_the_block_through_all_stages) {
    const Bytes samples = Samples(24);
    for (const QvFormat& from : {kStereo16, Plain(1, 2, 44100, 24), Plain(3, 2, 44100, 64)}) {
        for (const std::uint16_t bits : {std::uint16_t{0}, std::uint16_t{7}}) {
            QvFormat to = from;
            to.wBitsPerSample = bits;
            clFormatChanger changer;
            EXPECT_EQ(Change(changer, &from, &to, samples), samples) << from.wBitsPerSample;
            for (const clAudioBlock* stage : {&changer.depthBlock, &changer.mixer.output,
                                              &changer.firstAcm.output, &changer.secondAcm.output}) {
                EXPECT_EQ(stage->format->wBitsPerSample, from.wBitsPerSample);
                EXPECT_EQ(stage->bytes, samples.size());
            }
            EXPECT_FALSE(changer.resampler.output.data);
            EXPECT_EQ(changer.mixPending + changer.resamplePending, 2);
        }
    }
}

TEST(FormatChanger, Any_number_of_channels_passes_that_stays_and_no_other_does) {
    const Bytes samples = Samples(36);
    for (const int count : {1, 2, 8, 9, 64}) {
        const auto channels = static_cast<std::uint16_t>(count);
        const QvFormat from = Plain(1, channels, 44100, 16);
        QvFormat to = from;
        clFormatChanger changer;
        EXPECT_EQ(Change(changer, &from, &to, samples), samples);
        to.wBitsPerSample = 0;  // so that the stages run
        EXPECT_EQ(Change(changer, &from, &to, samples), samples);
        EXPECT_EQ(changer.mixPending, 1);
    }
    const QvFormat nine = Plain(1, 9, 44100, 16), eight = Plain(1, 8, 44100, 16);
    clFormatChanger changer;
    EXPECT_EQ(Change(changer, &nine, &eight, samples), std::nullopt);
}

TEST(FormatChanger, Tables_are_built_once_when_channels_differ) {
    const QvFormat mono = Plain(1, 1, 44100, 16);
    clFormatChanger changer;
    Change(changer, &kStereo16, &mono, Samples(8));
    EXPECT_EQ(changer.mixPending, 0);
    EXPECT_EQ(Change(changer, &kStereo16, &kStereo16, Samples(8)), Samples(8));
    EXPECT_EQ(changer.mixPending, 0);
}

TEST(FormatChanger, What_no_stage_reaches_is_refused_and_the_next_block_passes) {
    const struct {
        QvFormat from, to;
    } rows[] = {
        {kStereo16, Plain(1, 2, 44100, 20)},                 // a depth that there isn't
        {kStereo16, Plain(3, 2, 44100, 64)},                 // integer to float of 64 bits
        {Plain(6, 2, 8000, 8), Plain(1, 2, 8000, 16)},       // a law to another depth
        {Plain(1, 9, 44100, 16), Plain(1, 2, 44100, 16)},    // too many channels to mix
        {Plain(1, 2, 25000, 16), Plain(1, 2, 30000, 16)},    // a ratio without 2 and 3
        {Plain(80, 2, 44100, 16), Plain(85, 2, 44100, 16)},  // types that the system has no way between
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.to.wFormatTag * 100 + row.to.wBitsPerSample);
        clFormatChanger changer;
        EXPECT_EQ(Change(changer, &row.from, &row.to, Samples(72)), std::nullopt);
        EXPECT_EQ(Change(changer, &row.from, &row.to, Samples(72), true), std::nullopt);
        EXPECT_EQ(changer.resamplePending, 1);
        EXPECT_EQ(Change(changer, &row.from, &row.from, Samples(72)), Samples(72));
    }
}

TEST(FormatChanger, A_refusal_leaves_the_stages_before_it_with_their_last_blocks) {
    const QvFormat mono = Plain(1, 1, 44100, 16), nine = Plain(1, 9, 44100, 16);
    clFormatChanger changer;
    Change(changer, &nine, &mono, Samples(18));
    EXPECT_EQ(changer.depthBlock.bytes, 18u);
    EXPECT_FALSE(changer.mixer.output.data);
    EXPECT_FALSE(changer.result.data);
}

TEST(FormatChanger, Reset_brings_it_back_to_the_start) {
    const QvFormat mono = Plain(1, 1, 44100, 16);
    clFormatChanger changer;
    Change(changer, &kStereo16, &mono, Samples(8));
    changer.mixer.fromChannels = 2;
    changer.mixer.toChannels = 1;
    changer.Reset();
    EXPECT_EQ(changer.mixPending + changer.resamplePending, 2);
    EXPECT_EQ(changer.mixer.fromChannels + changer.mixer.toChannels, 0u);
    EXPECT_EQ(Change(changer, &kStereo16, &kStereo16, Samples(8)), Samples(8));
}

// Each allocation of a call in turn, for an equal format and for one that runs through the stages.
TEST(FormatChanger, Without_memory_the_block_is_refused_and_a_later_one_passes) {
    const QvFormatExtensible extensible = Extensible(1, 2, 44100, 16);
    const QvFormatExtensible noDepth = Extensible(1, 2, 44100, 0);
    const Bytes samples = Samples(64);
    for (const QvFormatExtensible* to : {&extensible, &noDepth}) {
        clAudioBlock in;
        in.setData(samples.data(), 64, Record(extensible), true);
        const clFormatHolder out(Record(*to));
        int failing = 1;
        for (;; ++failing) {
            bool changed = false, raised = false, failed = false;
            int live = 0;
            {
                AllocationFaults memory;
                memory.FailCall(failing);
                {
                    clFormatChanger changer;
                    try {
                        changed = changer.ChangeFormat(in, out, false);
                    } catch (const std::bad_alloc&) {
                        raised = true;
                    }
                    failed = memory.HasFailed();
                    if (failed && !changer.ChangeFormat(in, out, true)) changed = true;
                    if (std::memcmp(changer.result.data, samples.data(), 64) != 0) changed = true;
                }
                live = memory.Live();
            }
            EXPECT_EQ(live, 0);
            if (!failed) break;
            EXPECT_FALSE(changed) << failing;
            EXPECT_FALSE(raised) << failing;
        }
        EXPECT_EQ(failing - 1, to == &extensible ? 2 : 10)
            << "a record's tail and the samples, for each copy";
    }
}

TEST(Stages, Depth_passes_what_has_the_depth_and_type_asked_for) {
    const struct {
        QvFormat format;
        std::uint32_t bits;
        bool toFloat, passes;
    } rows[] = {
        {Plain(1, 2, 44100, 16), 16, false, true},   {Plain(3, 2, 44100, 32), 32, true, true},
        {Plain(3, 2, 44100, 64), 64, true, true},    {Plain(1, 2, 44100, 16), 24, false, false},
        {Plain(1, 2, 44100, 32), 32, true, false},   {Plain(3, 2, 44100, 32), 32, false, false},
        {Plain(3, 2, 44100, 32), 64, true, false},   {Plain(1, 2, 44100, 16), 65552, false, false},
        {Plain(80, 2, 44100, 16), 16, false, false},
    };
    const Bytes samples = Samples(16);
    for (const auto& row : rows) {
        clAudioBlock in, out;
        in.setData(samples.data(), 16, &row.format, true);
        EXPECT_EQ(ConvertDepth(out, in, row.bits, row.toFloat), row.passes);
        EXPECT_EQ(out.bytes, row.passes ? 16u : 0u);
        EXPECT_EQ(out.format->wFormatTag, row.passes ? row.format.wFormatTag : 0) << "else as it was";
    }
}

TEST(Stages, The_rate_stage_passes_what_is_at_its_target_already) {
    const Bytes samples = Samples(16);
    clAudioBlock in;
    in.setData(samples.data(), 16, &kStereo16, true);
    clResampler resampler;
    EXPECT_FALSE(resampler.Process(in, false)) << "designed for nothing";
    EXPECT_FALSE(resampler.Design(in, 48000));
    EXPECT_TRUE(resampler.Design(in, 44100));
    ASSERT_TRUE(resampler.Process(in, true));
    EXPECT_EQ(resampler.output.bytes, 16u);
    resampler.Release();
    EXPECT_FALSE(resampler.Process(in, false));
}

TEST(Stages, The_last_stage_compares_type_and_rate_alone) {
    const Bytes samples = Samples(16);
    clAudioBlock in;
    in.setData(samples.data(), 16, &kStereo16, true);
    clAcmStream stream;
    for (const QvFormat& target : {kStereo16, Plain(1, 6, 44100, 24)}) {
        ASSERT_TRUE(stream.Convert(in, clFormatHolder(&target), false));
        EXPECT_EQ(stream.output.format->nChannels, 2) << "what comes out is what came in";
        EXPECT_EQ(stream.output.bytes, 16u);
    }
    for (const QvFormat& target : {Plain(3, 2, 44100, 16), Plain(1, 2, 48000, 16)})
        EXPECT_FALSE(stream.Convert(in, clFormatHolder(&target), true));
}

}  // namespace
