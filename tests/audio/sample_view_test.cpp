#include "audio/sample_view.h"

#include <gtest/gtest.h>

#include "audio/format_records.h"

namespace {

constexpr SampleKind kNone = SampleKind::None;

TEST(SampleView, The_kind_follows_from_float_or_not_and_the_bits) {
    const struct {
        std::uint16_t tag;
        std::uint16_t bits;
        SampleKind kind;
    } rows[] = {
        {1, 8, SampleKind::UInt8},
        {1, 16, SampleKind::Int16},
        {1, 24, SampleKind::Int24},
        {1, 32, SampleKind::Int32},
        {3, 32, SampleKind::Float32},
        {3, 64, SampleKind::Float64},
        {3, 16, SampleKind::Float32},
        {3, 0, SampleKind::Float32},
        {1, 64, kNone},
        {1, 12, kNone},
        {1, 0, kNone},
        {1, 20, kNone},
        {6, 8, SampleKind::UInt8},
        {7, 8, SampleKind::UInt8},
        {2, 4, kNone},
        {0x55, 16, SampleKind::Int16},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << "type " << row.tag << ", " << row.bits << " bits");
        const QvFormat plain = Plain(row.tag, 2, 44100, row.bits);
        const QvFormatExtensible extensible = Extensible(row.tag, 2, 44100, row.bits);
        clAudioBlock block;
        block.setFormat(&plain);
        EXPECT_EQ(clSampleView(block).sampleKind, row.kind);
        block.setFormat(&extensible.Format);
        EXPECT_EQ(clSampleView(block).sampleKind, row.kind);
    }
}

TEST(SampleView, The_numbers_of_the_kinds_stand) {
    const SampleKind kinds[] = {SampleKind::Int16, SampleKind::Int24,   SampleKind::UInt8,
                                SampleKind::Int32, SampleKind::Float32, SampleKind::Float64};
    for (std::uint32_t i = 0; i < 6; ++i) EXPECT_EQ(static_cast<std::uint32_t>(kinds[i]), i);
}

TEST(SampleView, It_names_the_samples_and_the_channels_of_its_block) {
    const std::uint8_t samples[6] = {};
    const QvFormat format = Plain(1, 3, 44100, 16);
    clAudioBlock block;
    block.setData(samples, sizeof samples, &format, true);
    const clSampleView view(block);
    EXPECT_EQ(view.data, samples);
    EXPECT_EQ(view.channels, 3u);
}

TEST(SampleView, Float_fits_only_where_its_bytes_are) {
    const struct {
        std::uint16_t tag, bits;
        bool fits;
    } rows[] = {
        {1, 8, true},  {1, 16, true},  {1, 24, true},  {1, 32, true},  {1, 12, true},   {1, 64, true},
        {6, 8, true},  {3, 32, true},  {3, 64, true},  {3, 16, false}, {3, 24, false},  {3, 0, false},
        {3, 8, false}, {3, 40, false}, {3, 63, false}, {3, 72, false}, {3, 128, false}, {3, 39, true},
    };
    for (const auto& row : rows) {
        const QvFormat format = Plain(row.tag, 2, 44100, row.bits);
        clAudioBlock block;
        block.setFormat(&format);
        EXPECT_EQ(clSampleView(block).Fits(), row.fits) << "type " << row.tag << ", " << row.bits << " bits";
    }
}

TEST(SampleView, Samples_of_no_kind_have_no_width) {
    EXPECT_EQ(BytesOf(SampleKind::Int24), 3u);
    EXPECT_EQ(BytesOf(SampleKind::Float64), 8u);
    EXPECT_EQ(BytesOf(SampleKind::None), 0u);
}

}  // namespace
