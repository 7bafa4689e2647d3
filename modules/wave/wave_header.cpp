// Order of chunks: RIFF or RF64, JUNK or ds64, fmt, fact (all but integer samples, where the frames can be
// counted), data. JUNK has the 28 bytes of a ds64 chunk without a table.
#include "modules/wave/wave_header.h"

#include <algorithm>
#include <cstring>

#include "audio/format.h"
#include "foundation/joined.h"
#include "modules/support/chunk_walk.h"
#include "modules/support/little_endian.h"

namespace {

constexpr std::uint32_t kSizeElsewhere = 0xFFFFFFFF;
constexpr std::uint32_t kSizes64Bytes = 28;
constexpr std::uint32_t kExtensionBytes = sizeof(QvFormatExtensible) - sizeof(QvFormat);

// The seven pairs that every MS ADPCM file carries. A record in the module contract has room for four and a
// half.
constexpr std::int16_t kAdpcmPairs[14] = {256, 0, 512, -256, 0, 0, 192, 64, 240, 0, 460, -208, 392, -232};
constexpr std::uint16_t kAdpcmPairCount = 7;
constexpr std::uint16_t kAdpcmExtension = 4 + sizeof kAdpcmPairs;

std::uint8_t* PutChunk(std::uint8_t* at, std::uint32_t id, std::uint32_t size) {
    return Put32(Put32(at, id), size);
}

std::uint32_t Clip32(std::uint64_t number) {
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(number, kSizeElsewhere));
}

}  // namespace

XString clWaveHeader::Plan(const clWaveFormat& format, WaveHeader header) {
    mFormat = format;
    mAlways64 = header == WaveHeader::rf64;
    const XString trouble = Relabel(header);
    return trouble.IsEmpty() ? PlanFormatChunk() : trouble;
}

XString clWaveHeader::Relabel(WaveHeader header) {
    QvFormatExtensible record = mFormat.Record();
    if (header == WaveHeader::plain && mFormat.IsExtensible()) {
        clFormatHolder holder;
        holder.setFormat(&record, sizeof record);
        if (!holder.StripExtensible()) return u"this format has no plain header";
        record = {};
        std::memcpy(&record, holder.format, sizeof(QvFormat));
        return mFormat.TakeRecord(record);
    }
    if (header == WaveHeader::extensible && !mFormat.IsExtensible()) {
        if (!mFormat.IsPlain()) return u"this format has no extensible header";
        static constexpr std::uint8_t kTail[] = {0, 0, 0x10, 0, 0x80, 0, 0, 0xAA, 0, 0x38, 0x9B, 0x71};
        Put32(record.SubFormat, record.Format.wFormatTag);
        std::memcpy(record.SubFormat + 4, kTail, sizeof kTail);
        record.Format.wFormatTag = QV_FORMAT_EXTENSIBLE;
        record.Format.cbSize = kExtensionBytes;
        record.wValidBitsPerSample = record.Format.wBitsPerSample;
        return mFormat.TakeRecord(record);
    }
    return XString();
}

XString clWaveHeader::PlanFormatChunk() {
    std::memcpy(mFormatChunk.data(), &mFormat.Record(), sizeof(QvFormatExtensible));
    mFormatBytes = mFormat.Head().wFormatTag == QV_FORMAT_PCM ? 16 : mFormat.RecordBytes();
    return mFormat.Head().wFormatTag == QV_FORMAT_ADPCM ? CompleteAdpcm() : XString();
}

XString clWaveHeader::CompleteAdpcm() {
    const std::uint32_t there = mFormat.Head().cbSize;
    std::uint8_t* extension = mFormatChunk.data() + sizeof(QvFormat);
    const std::uint32_t pairs = Get16(extension + 2);
    if (there < 4 || 4 + pairs * 4 <= there) return XString();
    std::uint8_t known[sizeof kAdpcmPairs];
    std::uint8_t* at = known;
    for (const std::int16_t value : kAdpcmPairs) at = Put16(at, static_cast<std::uint16_t>(value));
    const bool wasCut = there == kExtensionBytes && pairs == kAdpcmPairCount;
    if (!wasCut || std::memcmp(extension + 4, known, there - 4) != 0)
        return u"its ADPCM coefficients are incomplete";
    std::memcpy(extension + 4, known, sizeof known);
    Put16(mFormatChunk.data() + 16, kAdpcmExtension);
    mFormatBytes = sizeof(QvFormat) + kAdpcmExtension;
    return XString();
}

bool clWaveHeader::HasFact() const {
    return mFormat.SampleType() != QV_FORMAT_PCM && mFormat.FramesPerBlock() > 0;
}

std::uint32_t clWaveHeader::AudioPosition() const {
    return 12 + 8 + kSizes64Bytes + 8 + mFormatBytes + (mFormatBytes & 1) + (HasFact() ? 12u : 0u) + 8;
}

std::span<const std::uint8_t> clWaveHeader::Make(std::uint64_t audioBytes) {
    Compose(audioBytes, AudioPosition() - 8 + audioBytes + (audioBytes & 1));
    return {mBytes.data(), AudioPosition()};
}

std::span<const std::uint8_t> clWaveHeader::MakeOpen() {
    Compose(0, 0);
    return {mBytes.data(), AudioPosition()};
}

void clWaveHeader::Compose(std::uint64_t audioBytes, std::uint64_t wholeBytes) {
    const bool is64 = mAlways64 || wholeBytes > mRiffLimit;
    const std::uint64_t frames = mFormat.FramesIn(audioBytes);
    mBytes.fill(0);
    std::uint8_t* at = mBytes.data();
    at = PutChunk(at, is64 ? ChunkId("RF64") : ChunkId("RIFF"), is64 ? kSizeElsewhere : Clip32(wholeBytes));
    at = Put32(at, ChunkId("WAVE"));
    at = PutChunk(at, is64 ? ChunkId("ds64") : ChunkId("JUNK"), kSizes64Bytes);
    if (is64) Put64(Put64(Put64(at, wholeBytes), audioBytes), frames);
    at = PutChunk(at + kSizes64Bytes, ChunkId("fmt "), mFormatBytes);
    std::memcpy(at, mFormatChunk.data(), mFormatBytes);
    at += mFormatBytes + (mFormatBytes & 1);
    if (HasFact()) at = Put32(PutChunk(at, ChunkId("fact"), 4), Clip32(frames));
    PutChunk(at, ChunkId("data"), is64 ? kSizeElsewhere : Clip32(audioBytes));
}
