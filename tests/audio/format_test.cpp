#include "audio/format.h"

#include <gtest/gtest.h>

#include <memory>
#include <numeric>

#include "audio/format_records.h"
#include "support/allocation_faults.h"
#include "support/wide_text.h"

namespace {

bool IsInline(const clFormatHolder& holder) {
    return holder.format == &holder.inlineFormat;
}

std::vector<std::uint8_t> TailOf(const clFormatHolder& holder) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(holder.format);
    return {bytes + 18, bytes + 18 + holder.format->cbSize};
}

TEST(Format, A_new_holder_has_a_zeroed_plain_record) {
    const clFormatHolder holder;
    const QvFormat zero = {};
    EXPECT_TRUE(IsInline(holder));
    EXPECT_EQ(std::memcmp(holder.format, &zero, sizeof zero), 0);
}

TEST(Format, setFormat_normalises_what_stages_divide_by) {
    const struct {
        const char* what;
        QvFormat source;
        std::uint16_t givenAlign;
        std::uint32_t givenRate;
        std::uint16_t blockAlign;
        std::uint32_t bytesPerSecond;
    } rows[] = {
        {"float, whatever the source said", Plain(3, 2, 44100, 32), 77, 12345, 8, 352800},
        {"integer PCM", Plain(1, 2, 48000, 16), 0, 0, 4, 192000},
        {"bits that fill no byte are cut", Plain(1, 1, 8000, 12), 0, 0, 1, 8000},
        {"PCM without channels ends in ones", Plain(1, 0, 44100, 16), 9, 9, 1, 1},
        {"PCM below 8 bits", Plain(1, 1, 8000, 4), 0, 0, 1, 1},
        {"another type's zeros become ones and nothing is computed", Plain(2, 2, 44100, 4), 0, 0, 1, 1},
        {"another type keeps what it says", Plain(2, 2, 44100, 4), 2048, 44359, 2048, 44359},
        {"the largest record stays in its fields", Plain(1, 65535, 0xFFFFFFFF, 65535), 0, 0, 0xC000,
         0xFFFF4000},
    };
    for (auto row : rows) {
        SCOPED_TRACE(row.what);
        row.source.nBlockAlign = row.givenAlign;
        row.source.nAvgBytesPerSec = row.givenRate;
        const clFormatHolder holder(&row.source);
        EXPECT_EQ(holder.format->nBlockAlign, row.blockAlign);
        EXPECT_EQ(holder.format->nAvgBytesPerSec, row.bytesPerSecond);
    }
}

TEST(Format, setFormat_of_the_active_record_leaves_it_alone) {
    clFormatHolder holder;
    holder.format->nChannels = 2;
    holder.setFormat(holder.format);
    EXPECT_EQ(holder.format->nBlockAlign, 0);
}

TEST(Format, A_plain_record_lives_inline_and_a_longer_one_in_the_store) {
    const std::vector<std::uint8_t> longRecord =
        WithTail(Plain(0x55, 2, 44100, 0), {1, 0, 2, 0, 0, 0, 3, 4, 5, 6, 7, 8});
    const QvFormat plain = Plain(1, 1, 8000, 8);
    clFormatHolder holder(AsRecord(longRecord));
    EXPECT_EQ(static_cast<void*>(holder.format), holder.formatStore.Data());
    EXPECT_EQ(holder.formatStore.Size(), 30u);
    EXPECT_EQ(TailOf(holder), (std::vector<std::uint8_t>{1, 0, 2, 0, 0, 0, 3, 4, 5, 6, 7, 8}));
    holder.setFormat(&plain);
    EXPECT_TRUE(IsInline(holder));
    EXPECT_EQ(holder.format->nChannels, 1);
}

TEST(Format, setFormat_copies_between_holders) {
    const QvFormatExtensible source = Extensible(1, 2, 96000, 24);
    const clFormatHolder first(&source.Format);
    clFormatHolder second;
    second.setFormat(first.format);
    ASSERT_EQ(second.format->cbSize, 22);
    EXPECT_NE(second.format, first.format);
    EXPECT_EQ(std::memcmp(second.format, first.format, sizeof(QvFormatExtensible)), 0);
}

TEST(Format, Memory_that_fails_for_the_tail_leaves_the_plain_part) {
    const std::vector<std::uint8_t> record =
        WithTail(Plain(0x55, 2, 44100, 0), std::vector<std::uint8_t>(12, 9));
    clFormatHolder holder;
    bool fromRecord = true, fromBytes = true, plain = false;
    {
        AllocationFaults memory;
        memory.FailFrom(1);
        fromRecord = holder.setFormat(AsRecord(record));
        fromBytes = holder.setFormat(record.data(), record.size());
        plain = holder.setFormat(record.data(), sizeof(QvFormat));
    }
    EXPECT_FALSE(fromRecord);
    EXPECT_FALSE(fromBytes);
    EXPECT_TRUE(plain) << "there is no tail to keep";
    EXPECT_TRUE(IsInline(holder));
    EXPECT_EQ(holder.format->wFormatTag, 0x55);
    EXPECT_EQ(holder.format->nSamplesPerSec, 44100u);
    EXPECT_EQ(holder.format->cbSize, 0);
    EXPECT_TRUE(holder.setFormat(AsRecord(record)));
    EXPECT_EQ(holder.format->cbSize, 12);
    EXPECT_TRUE(holder.setFormat(holder.format)) << "its own is kept already";
}

// The bytes stand on the heap exactly as long as they are said to be, so that a sanitizer sees a step beyond.
TEST(Format, A_foreign_record_is_not_read_beyond_what_is_there) {
    const struct {
        const char* what;
        std::uint16_t claimed;
        std::size_t available;
        std::uint16_t cbSize;
        std::uint32_t sampleType;
    } rows[] = {
        {"all of an extensible record", 22, 40, 22, 1},
        {"a claim beyond the field is lowered", 65535, 40, 22, 1},
        {"a record cut below 22 is extensible no longer", 22, 39, 21, 65534},
        {"only the head", 22, 18, 0, 65534},
        {"a claim of less leaves the rest alone", 4, 40, 4, 65534},
        {"none, with bytes behind it", 0, 40, 0, 65534},
        {"half a head: what is missing is 0", 22, 4, 0, 65534},
        {"nothing at all", 22, 0, 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        QvFormatExtensible whole = Extensible(1, 2, 44100, 16);
        whole.Format.cbSize = row.claimed;
        const std::unique_ptr<std::uint8_t[]> source(new std::uint8_t[row.available]);
        std::memcpy(source.get(), &whole, row.available);
        clFormatHolder holder;
        EXPECT_TRUE(holder.setFormat(source.get(), row.available));
        EXPECT_EQ(holder.format->cbSize, row.cbSize);
        EXPECT_EQ(holder.sampleType(), row.sampleType);
        EXPECT_EQ(IsInline(holder), row.cbSize == 0);
        EXPECT_EQ(holder.format->nChannels, row.available >= 4 ? 2 : 0);
        EXPECT_EQ(holder.format->nSamplesPerSec, row.available >= 18 ? 44100u : 0u);
        EXPECT_GT(holder.format->nBlockAlign, 0);
    }
}

TEST(Format, No_record_at_all_is_a_zeroed_one_normalised) {
    clFormatHolder holder;
    holder.setFormat(nullptr, 0);
    EXPECT_TRUE(IsInline(holder));
    EXPECT_EQ(holder.sampleType(), 0u);
    EXPECT_EQ(holder.format->nChannels, 0);
    EXPECT_EQ(holder.format->nBlockAlign, 1);
    EXPECT_EQ(holder.format->nAvgBytesPerSec, 1u);
}

TEST(Format, sampleType_of_a_plain_record_is_its_tag) {
    for (const std::uint16_t tag : std::initializer_list<std::uint16_t>{0, 1, 2, 3, 6, 7, 80, 0x55, 65535}) {
        const QvFormat format = Plain(tag, 2, 44100, 16);
        EXPECT_EQ(clFormatHolder(&format).sampleType(), tag);
    }
}

TEST(Format, sampleType_of_an_extensible_record_is_in_its_SubFormat) {
    for (const std::uint32_t type : {1u, 3u, 6u, 7u, 2u, 80u}) {
        const QvFormatExtensible format = Extensible(type, 2, 44100, 16);
        EXPECT_EQ(clFormatHolder(&format.Format).sampleType(), type);
    }
    for (const std::uint32_t word : {0u, 4u, 0x51u, 0x10001u, 65534u, 0xFFFFFFFFu}) {
        const QvFormatExtensible format = Extensible(word, 2, 44100, 16);
        EXPECT_EQ(clFormatHolder(&format.Format).sampleType(), 65534u) << word;
    }
}

TEST(Format, Every_byte_of_the_SubFormat_counts) {
    for (int byte = 0; byte < 16; ++byte) {
        QvFormatExtensible format = Extensible(1, 2, 44100, 16);
        format.SubFormat[byte] ^= 0x40;
        EXPECT_EQ(clFormatHolder(&format.Format).sampleType(), 65534u) << byte;
    }
}

TEST(Format, A_record_of_cbSize_21_is_not_extensible) {
    QvFormatExtensible format = Extensible(1, 2, 44100, 16);
    format.Format.cbSize = 21;
    clFormatHolder holder(&format.Format);
    EXPECT_FALSE(holder.IsExtensible());
    EXPECT_EQ(holder.sampleType(), 65534u);
    EXPECT_FALSE(holder.StripExtensible());
    EXPECT_EQ(holder.format->cbSize, 21);
}

TEST(Format, An_unknown_SubFormat_keeps_its_rates_and_its_form) {
    QvFormatExtensible format = Extensible(0x1234, 2, 44100, 16);
    format.Format.nBlockAlign = 7;
    format.Format.nAvgBytesPerSec = 11;
    clFormatHolder holder(&format.Format);
    EXPECT_TRUE(holder.IsExtensible());
    EXPECT_EQ(holder.sampleType(), 65534u);
    EXPECT_EQ(holder.format->nBlockAlign, 7);
    EXPECT_EQ(holder.format->nAvgBytesPerSec, 11u);
    EXPECT_FALSE(holder.StripExtensible());
    EXPECT_EQ(holder.format->wFormatTag, 65534);
}

TEST(Format, SetBits_follows_with_rates_and_valid_bits) {
    const struct {
        const char* what;
        QvFormatExtensible source;
        std::uint16_t valid;
        std::uint16_t bits;
        std::uint16_t validAfter;
    } rows[] = {
        {"other bits, integer", Extensible(1, 2, 44100, 24), 20, 16, 16},
        {"other bits, float", Extensible(3, 2, 44100, 32), 32, 64, 64},
        {"the same bits keep the valid ones", Extensible(1, 2, 44100, 24), 20, 24, 20},
        {"another type keeps the valid ones", Extensible(6, 2, 44100, 8), 8, 16, 8},
        {"an unknown type keeps the valid ones", Extensible(99, 2, 44100, 8), 8, 16, 8},
    };
    for (auto row : rows) {
        SCOPED_TRACE(row.what);
        row.source.wValidBitsPerSample = row.valid;
        clFormatHolder holder(&row.source.Format);
        holder.SetBits(row.bits);
        const auto* after = reinterpret_cast<const QvFormatExtensible*>(holder.format);
        EXPECT_EQ(after->wValidBitsPerSample, row.validAfter);
        EXPECT_EQ(after->Format.wBitsPerSample, row.bits);
        EXPECT_EQ(after->Format.nBlockAlign, row.bits / 8 * 2);
        EXPECT_EQ(after->Format.nAvgBytesPerSec, row.bits / 8 * 2 * 44100u);
    }
}

TEST(Format, SetBits_of_a_plain_record_may_leave_zeros) {
    const QvFormat format = Plain(1, 1, 8000, 16);
    clFormatHolder holder(&format);
    holder.SetBits(4);
    EXPECT_EQ(holder.format->wBitsPerSample, 4);
    EXPECT_EQ(holder.format->nBlockAlign, 0);
    EXPECT_EQ(holder.format->nAvgBytesPerSec, 0u);
}

TEST(Format, SetType_relabels_and_changes_nothing_else) {
    const QvFormat plain = Plain(6, 2, 8000, 8);
    const QvFormatExtensible extensible = Extensible(0xABCDEF, 2, 8000, 8);
    for (const bool isFloat : {true, false}) {
        clFormatHolder first(&plain), second(&extensible.Format);
        first.SetType(isFloat);
        second.SetType(isFloat);
        EXPECT_EQ(first.sampleType(), isFloat ? 3u : 1u);
        EXPECT_EQ(second.sampleType(), isFloat ? 3u : 1u);
        EXPECT_EQ(second.format->wFormatTag, 65534);
        EXPECT_EQ(second.format->nBlockAlign, 1);
        const auto* after = reinterpret_cast<const QvFormatExtensible*>(second.format);
        EXPECT_EQ(after->dwChannelMask, 3u);
        const std::uint8_t subFormat[16] = {static_cast<std::uint8_t>(isFloat ? 3 : 1),
                                            0,
                                            0,
                                            0,
                                            0,
                                            0,
                                            0x10,
                                            0,
                                            0x80,
                                            0,
                                            0,
                                            0xAA,
                                            0,
                                            0x38,
                                            0x9B,
                                            0x71};
        EXPECT_EQ(std::memcmp(after->SubFormat, subFormat, 16), 0);
    }
}

TEST(Format, StripExtensible_makes_a_plain_record_of_the_same_type) {
    const QvFormatExtensible source = Extensible(3, 2, 44100, 32);
    clFormatHolder holder(&source.Format);
    ASSERT_TRUE(holder.StripExtensible());
    EXPECT_TRUE(IsInline(holder));
    EXPECT_EQ(holder.format->wFormatTag, 3);
    EXPECT_EQ(holder.format->cbSize, 0);
    EXPECT_EQ(holder.format->nBlockAlign, 8);
    EXPECT_EQ(holder.format->nAvgBytesPerSec, 352800u);
    EXPECT_FALSE(holder.StripExtensible());
}

TEST(Format, StripExtensible_keeps_what_follows_the_SubFormat) {
    const QvFormatExtensible head = Extensible(2, 2, 44100, 4);
    std::vector<std::uint8_t> tail(reinterpret_cast<const std::uint8_t*>(&head) + 18,
                                   reinterpret_cast<const std::uint8_t*>(&head) + 40);
    std::vector<std::uint8_t> extra(70);
    std::iota(extra.begin(), extra.end(), std::uint8_t{1});
    tail.insert(tail.end(), extra.begin(), extra.end());
    const std::vector<std::uint8_t> record = WithTail(head.Format, tail);
    clFormatHolder holder(AsRecord(record));
    ASSERT_TRUE(holder.StripExtensible());
    EXPECT_EQ(holder.format->wFormatTag, 2);
    EXPECT_EQ(holder.format->cbSize, 70);
    EXPECT_EQ(TailOf(holder), extra);
    EXPECT_EQ(holder.format->nBlockAlign, 1);
}

TEST(Format, formatDump_names_every_field_in_one_line) {
    const QvFormat plain = Plain(1, 2, 44100, 16);
    const QvFormatExtensible extensible = Extensible(3, 6, 192000, 32);
    EXPECT_EQ(Units(clFormatHolder(&plain).formatDump()),
              u"Format Tag: 1  Channels: 2  Bits per Sample: 16  Samples Per Second: 44100  Bytes Per "
              u"Second: 176400"
              u"  Block Align: 4  CB Size: 0");
    EXPECT_EQ(Units(clFormatHolder(&extensible.Format).formatDump()),
              u"Format Tag: 65534  Channels: 6  Bits per Sample: 32  Samples Per Second: 192000"
              u"  Bytes Per Second: 4608000  Block Align: 24  CB Size: 22  Extensible Sub-Format: 3");
}

TEST(Format, formatDump_writes_numbers_without_a_sign) {
    QvFormat format = Plain(0x55, 65535, 4294967295u, 0);
    format.nAvgBytesPerSec = 4294967295u;
    format.nBlockAlign = 65535;
    EXPECT_EQ(Units(clFormatHolder(&format).formatDump()),
              u"Format Tag: 85  Channels: 65535  Bits per Sample: 0  Samples Per Second: 4294967295"
              u"  Bytes Per Second: 4294967295  Block Align: 65535  CB Size: 0");
}

TEST(Format, SetChannels_clears_a_mask_that_named_other_channels) {
    const QvFormatExtensible source = Extensible(1, 2, 44100, 16);
    const struct {
        std::uint16_t channels;
        std::uint32_t mask, rate;
        std::uint16_t align;
    } rows[] = {{2, 3, 176400, 4}, {1, 0, 88200, 2}, {6, 0, 529200, 12}, {0, 0, 0, 0}};
    for (const auto& row : rows) {
        clFormatHolder holder(&source.Format);
        holder.SetChannels(row.channels);
        EXPECT_EQ(holder.format->nChannels, row.channels);
        EXPECT_EQ(reinterpret_cast<const QvFormatExtensible*>(holder.format)->dwChannelMask, row.mask);
        EXPECT_EQ(holder.format->nBlockAlign, row.align);
        EXPECT_EQ(holder.format->nAvgBytesPerSec, row.rate);
    }
}

TEST(Format, SetRate_computes_the_byte_rate) {
    const QvFormat source = Plain(1, 2, 44100, 16);
    clFormatHolder holder(&source);
    holder.SetRate(48000);
    EXPECT_EQ(holder.format->nSamplesPerSec, 48000u);
    EXPECT_EQ(holder.format->nAvgBytesPerSec, 192000u);
    EXPECT_EQ(holder.format->nBlockAlign, 4);
}

}  // namespace
