// The order of the stages and what they are asked; what a stage does to samples is tested with the stage.
#include "audio/format_changer.h"

#include <gtest/gtest.h>

#include <numeric>
#include <optional>
#include <vector>

#include "audio/format_records.h"
#include "audio/scripted_manager.h"

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

Bytes Floats(const std::vector<float>& values) {
    Bytes bytes(values.size() * sizeof(float));
    std::memcpy(bytes.data(), values.data(), bytes.size());
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

TEST(FormatChanger, Only_another_depth_runs_the_depth_stage_and_the_others_copy) {
    const struct {
        QvFormat from, to;
        Bytes in, out;
    } rows[] = {
        {kStereo16, Plain(1, 2, 44100, 24), {0x34, 0x12, 0, 0x80}, {0, 0x34, 0x12, 0, 0, 0x80}},
        {kStereo16, Plain(1, 2, 44100, 8), {0x34, 0x12, 0, 0x80}, {0x92, 0x00}},
        {Plain(1, 2, 44100, 8), kStereo16, {0x92, 0x00}, {0, 0x12, 0, 0x80}},
        {Plain(1, 2, 44100, 32), kStereo16, {1, 2, 3, 4, 5, 6, 7, 0x80}, {3, 4, 7, 0x80}},
    };
    for (const auto& row : rows) {
        clFormatChanger changer;
        EXPECT_EQ(Change(changer, &row.from, &row.to, row.in), row.out);
        for (const clAudioBlock* stage : {&changer.depthBlock, &changer.mixer.output,
                                          &changer.firstAcm.output, &changer.secondAcm.output})
            EXPECT_EQ(Bytes(stage->data, stage->data + stage->bytes), row.out);
        EXPECT_EQ(changer.mixPending + changer.resamplePending, 2);
        EXPECT_FALSE(changer.resampler.output.data);
        EXPECT_EQ(changer.secondAcm.stream, nullptr);
    }
}

TEST(FormatChanger, Floats_become_integers_before_they_are_mixed) {
    const QvFormatExtensible from = Extensible(3, 2, 44100, 32);
    const QvFormat to = Plain(1, 1, 44100, 16);
    clFormatChanger changer;
    EXPECT_EQ(Change(changer, Record(from), &to, Floats({0, 0, -1, -1})), Bytes({0, 0, 0, 0x80}));
    EXPECT_EQ(changer.depthBlock.sampleType(), 1u);
    EXPECT_EQ(changer.depthBlock.format->wBitsPerSample, 16);
    EXPECT_EQ(changer.depthBlock.format->nChannels, 2);
    EXPECT_EQ(changer.mixer.output.format->nChannels, 1);
    EXPECT_EQ(changer.result.sampleType(), 1u);
    EXPECT_TRUE(changer.result.IsExtensible()) << "told as the module tells it";
}

TEST(FormatChanger, Integers_become_floats_in_the_depth_stage_and_pass_the_last_one) {
    const QvFormat to = Plain(3, 2, 44100, 32);
    clFormatChanger changer;
    EXPECT_EQ(Change(changer, &kStereo16, &to, {0, 0x40, 0, 0x80}), Floats({0.5f, -1}));
    EXPECT_EQ(changer.depthBlock.sampleType(), 3u);
    EXPECT_EQ(changer.secondAcm.ownFloat, 0);
    EXPECT_EQ(changer.secondAcm.stream, nullptr);
}

TEST(FormatChanger, Floats_without_a_depth_are_made_of_integers_by_the_last_stage) {
    const QvFormat to = Plain(3, 1, 44100, 0);
    clFormatChanger changer;
    EXPECT_EQ(Change(changer, &kStereo16, &to, {0, 0, 0, 0, 0, 0x80, 0, 0x80}), Floats({0, -1}));
    EXPECT_EQ(changer.firstAcm.output.sampleType(), 1u);
    EXPECT_EQ(changer.firstAcm.output.format->wBitsPerSample, 16);
    EXPECT_EQ(changer.secondAcm.ownFloat, 1);
}

TEST(FormatChanger, Floats_for_integers_without_a_depth_are_integers_of_their_own) {
    const QvFormat from = Plain(3, 1, 44100, 32), to = Plain(1, 1, 44100, 0);
    clFormatChanger changer;
    EXPECT_EQ(Change(changer, &from, &to, Floats({0.5f})), Bytes({0, 0, 0, 0x40}));
    EXPECT_EQ(changer.result.format->wFormatTag, 1);
    EXPECT_EQ(changer.result.format->wBitsPerSample, 32);
}

// The bytes are relabelled, as there is no other way from a law to a depth.
TEST(FormatChanger, A_law_asked_for_as_integers_of_its_own_depth_keeps_its_bytes) {
    const QvFormat from = Plain(6, 1, 8000, 8), to = Plain(1, 1, 8000, 8);
    clFormatChanger changer;
    EXPECT_EQ(Change(changer, &from, &to, Samples(20)), Samples(20));
    EXPECT_EQ(changer.result.format->wFormatTag, 1);
}

TEST(FormatChanger, Integers_of_64_bits_are_silence_of_their_size) {
    const QvFormat from = Plain(3, 1, 8000, 32), to = Plain(1, 1, 8000, 64);
    clFormatChanger changer;
    EXPECT_EQ(Change(changer, &from, &to, Floats({0.5f, -1, 1})), Bytes(24));
}

enum class Stage { Depth, Channels, Rate, Last };

// Where it ends shows in how far the stages have come.
Stage RefusedBy(const clFormatChanger& changer) {
    if (!changer.depthBlock.data) return Stage::Depth;
    if (!changer.mixer.output.data) return Stage::Channels;
    return changer.firstAcm.output.data || changer.resampler.output.data ? Stage::Last : Stage::Rate;
}

TEST(FormatChanger, What_no_stage_reaches_is_refused_by_the_stage_it_is_for_and_the_next_block_passes) {
    ScriptedManager manager;
    manager.opening.FailAlways(platform::kAcmErrorNotPossible);
    const struct {
        QvFormat from, to;
        Stage stage;
    } rows[] = {
        {Plain(6, 2, 8000, 8), Plain(1, 2, 8000, 16), Stage::Depth},        // a law to another depth
        {Plain(80, 2, 44100, 0), Plain(1, 2, 44100, 16), Stage::Depth},     // coded data
        {Plain(65534, 2, 44100, 8), Plain(1, 2, 44100, 16), Stage::Depth},  // of nobody knows what
        {kStereo16, Plain(1, 2, 44100, 12), Stage::Depth},                  // depths that there aren't
        {kStereo16, Plain(1, 2, 44100, 20), Stage::Depth},
        {kStereo16, Plain(1, 2, 44100, 9), Stage::Depth},
        {kStereo16, Plain(1, 2, 44100, 40), Stage::Depth},
        {kStereo16, Plain(1, 2, 44100, 64), Stage::Depth},  // integers of 64 bits
        {kStereo16, Plain(3, 2, 44100, 64), Stage::Depth},  // integers to floats of 64 bits
        {kStereo16, Plain(3, 2, 44100, 16), Stage::Depth},  // floats that there aren't
        {Plain(3, 2, 44100, 32), Plain(3, 2, 44100, 24), Stage::Depth},
        {Plain(1, 9, 44100, 16), Plain(1, 8, 44100, 16), Stage::Channels},
        {Plain(1, 8, 44100, 16), Plain(1, 9, 44100, 16), Stage::Channels},
        {Plain(1, 0, 44100, 16), Plain(1, 2, 44100, 16), Stage::Channels},
        {Plain(1, 2, 44100, 16), Plain(1, 0, 44100, 16), Stage::Channels},
        {Plain(1, 2, 25000, 16), Plain(1, 2, 30000, 16), Stage::Rate},  // 5 is no multiple of 2 or 3
        {Plain(1, 2, 35000, 16), Plain(1, 2, 25000, 16), Stage::Rate},
        {Plain(1, 2, 44100, 16), Plain(1, 2, 0, 16), Stage::Rate},
        {Plain(1, 2, 0, 16), Plain(1, 2, 44100, 16), Stage::Rate},
        {Plain(1, 0, 44100, 16), Plain(1, 0, 48000, 16), Stage::Rate},       // no channels
        {Plain(1, 2, 44100, 4), Plain(1, 2, 48000, 4), Stage::Rate},         // no whole bytes
        {Plain(1, 2, 44100, 16), Plain(1, 2, 0x7FFFFFFE, 16), Stage::Rate},  // filters beyond all memory
        {kStereo16, Plain(6, 2, 44100, 8), Stage::Last},                     // no codec
        {Plain(80, 2, 44100, 16), Plain(85, 2, 44100, 16), Stage::Last},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << &row - rows);
        clFormatChanger changer;
        EXPECT_EQ(Change(changer, &row.from, &row.to, Samples(72)), std::nullopt);
        EXPECT_EQ(RefusedBy(changer), row.stage);
        EXPECT_EQ(Change(changer, &row.from, &row.to, Samples(72), true), std::nullopt);
        EXPECT_EQ(changer.resamplePending, 1);
        EXPECT_FALSE(changer.result.data);
        EXPECT_EQ(Change(changer, &row.from, &row.from, Samples(72)), Samples(72));
    }
}

TEST(FormatChanger, Any_failure_of_the_codec_refuses_the_block) {
    const QvFormat from = Plain(1, 1, 8000, 24), to = Plain(6, 1, 8000, 8);
    const std::function<void(ScriptedManager&)> failures[] = {
        [](ScriptedManager& manager) { manager.opening.FailAlways(1u); },
        [](ScriptedManager& manager) { manager.sizes.FailCall(1, 1u); },
        [](ScriptedManager& manager) { manager.preparations.FailCall(1, 1u); },
        [](ScriptedManager& manager) { manager.conversions.FailCall(1, 1u); },
    };
    for (const auto& fail : failures) {
        ScriptedManager manager;
        clFormatChanger changer;
        fail(manager);
        EXPECT_EQ(Change(changer, &from, &to, Samples(12)), std::nullopt);
        EXPECT_EQ(RefusedBy(changer), Stage::Last);
    }
    ScriptedManager manager;
    clFormatChanger changer;
    EXPECT_EQ(Change(changer, &from, &to, {9, 1, 2, 9, 3, 4}), Bytes({131, 133}));
    EXPECT_EQ(manager.TakeJournal().substr(0, 13), "open 1/8 6/8\n") << "in the target's depth already";
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

}  // namespace
