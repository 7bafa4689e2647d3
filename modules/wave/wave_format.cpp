// The record is the part of a WAVE file that others compute with, so nothing leaves here that doesn't agree
// with itself: a header that lies is refused in words instead of being put right by a guess. Only the byte
// rate of plain samples is computed anew, as nothing but that depends on it. Products are formed in 64 bits.
#include "modules/wave/wave_format.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "audio/format.h"
#include "foundation/joined.h"
#include "modules/support/little_endian.h"
#include "modules/support/scale.h"

namespace {

constexpr std::uint32_t kHeadBytes = 16;  // a fmt chunk in its oldest form has no cbSize
constexpr std::uint16_t kExtensionBytes = sizeof(QvFormatExtensible) - sizeof(QvFormat);

enum : std::uint32_t { kImaAdpcm = 0x11, kGsm = 0x31, kMpegLayer3 = 0x55 };

struct Type {
    std::uint32_t tag;
    const char16_t* name;
    std::uint16_t bits[4];     // that plain samples may have
    bool tellsFramesPerBlock;  // in the first word behind cbSize
};

constexpr Type kTypes[] = {
    {QV_FORMAT_PCM, u"PCM", {8, 16, 24, 32}, false},
    {QV_FORMAT_FLOAT, u"IEEE float", {32, 64, 0, 0}, false},
    {QV_FORMAT_ALAW, u"A-law", {8, 0, 0, 0}, false},
    {QV_FORMAT_MULAW, u"mu-law", {8, 0, 0, 0}, false},
    {QV_FORMAT_ADPCM, u"MS ADPCM", {}, true},
    {kImaAdpcm, u"IMA ADPCM", {}, true},
    {kGsm, u"GSM 6.10", {}, true},
    {QV_FORMAT_MPEG, u"MPEG audio", {}, false},
    {kMpegLayer3, u"MPEG layer 3", {}, false},
};

const Type* FindType(std::uint32_t tag) {
    const Type* found = std::ranges::find(kTypes, tag, &Type::tag);
    return found == std::end(kTypes) ? nullptr : found;
}

XString Number(std::uint64_t number) {
    return XString::FromUInt64(number);
}

}  // namespace

XString clWaveFormat::TakeChunk(const std::uint8_t* bytes, std::uint64_t size) {
    if (size < kHeadBytes)
        return Joined({u"its fmt chunk has ", Number(size).Text(), u" bytes instead of at least 16"});
    if (size == kHeadBytes + 1) return u"its fmt chunk of 17 bytes ends within a field";
    QvFormatExtensible record{};
    std::memcpy(&record, bytes, static_cast<std::size_t>(std::min<std::uint64_t>(size, sizeof record)));
    const std::uint64_t extension = size > sizeof(QvFormat) ? size - sizeof(QvFormat) : 0;
    if (record.Format.cbSize > extension) record.Format.cbSize = static_cast<std::uint16_t>(extension);
    return TakeRecord(record);
}

XString clWaveFormat::TakeRecord(const QvFormatExtensible& record) {
    mRecord = record;
    QvFormat& head = mRecord.Format;
    head.cbSize = std::min(head.cbSize, kExtensionBytes);
    if (head.wFormatTag == QV_FORMAT_EXTENSIBLE && head.cbSize < kExtensionBytes)
        return u"its extensible header is cut short";
    return Settle();
}

XString clWaveFormat::Settle() {
    QvFormat& head = mRecord.Format;
    clFormatHolder holder;
    holder.setFormat(&mRecord, sizeof mRecord);
    mType = holder.sampleType();
    if (IsPlain() && !IsExtensible()) head.cbSize = 0;
    std::memset(reinterpret_cast<std::uint8_t*>(&mRecord) + RecordBytes(), 0, sizeof mRecord - RecordBytes());
    if (IsPlain() && IsExtensible() && mRecord.wValidBitsPerSample == 0)
        mRecord.wValidBitsPerSample = head.wBitsPerSample;
    mFramesPerBlock = TellFramesPerBlock();
    const XString refusal = Refusal();
    if (refusal.IsEmpty() && IsPlain()) head.nAvgBytesPerSec = head.nSamplesPerSec * head.nBlockAlign;
    return refusal;
}

std::uint32_t clWaveFormat::TellFramesPerBlock() const {
    const QvFormat& head = Head();
    if (IsPlain()) return 1;
    // A kind of samples that has no tag of ours, in frames of one size all the same.
    if (IsExtensible()) {
        const std::uint32_t frameBits = std::uint32_t{head.nChannels} * head.wBitsPerSample;
        return frameBits > 0 && frameBits == head.nBlockAlign * 8u;
    }
    const Type* type = FindType(mType);
    return type && type->tellsFramesPerBlock && head.cbSize >= 2 ? mRecord.wValidBitsPerSample : 0;
}

bool clWaveFormat::IsPlain() const {
    const Type* type = FindType(mType);
    return type && type->bits[0] != 0;
}

XString clWaveFormat::Refusal() const {
    const QvFormat& head = Head();
    if (head.nChannels == 0 || head.nChannels > kMostChannels)
        return Joined(
            {u"it claims ", Number(head.nChannels).Text(), u" channels, where 1 to 64 are possible"});
    if (head.nSamplesPerSec == 0) return u"it claims a sample rate of 0";
    if (head.nBlockAlign == 0) return u"it claims blocks of 0 bytes";
    return IsPlain() ? PlainRefusal() : XString();
}

XString clWaveFormat::PlainRefusal() const {
    const QvFormat& head = Head();
    const Type& type = *FindType(mType);
    const std::uint16_t bits = head.wBitsPerSample;
    if (bits == 0 || std::ranges::find(type.bits, bits) == std::end(type.bits))
        return Joined({u"it claims ", type.name, u" samples of ", Number(bits).Text(), u" bits"});
    if (IsExtensible() && mRecord.wValidBitsPerSample > bits)
        return Joined({u"it claims ", Number(mRecord.wValidBitsPerSample).Text(),
                       u" valid bits in samples of ", Number(bits).Text()});
    const std::uint64_t frameBytes = std::uint64_t{head.nChannels} * bits / 8;
    if (frameBytes != head.nBlockAlign)
        return Joined({u"it claims frames of ", Number(head.nBlockAlign).Text(),
                       u" bytes, where its channels and bits make ", Number(frameBytes).Text()});
    if (frameBytes * head.nSamplesPerSec > UINT32_MAX)
        return u"it claims more bytes per second than a header can hold";
    return XString();
}

std::uint64_t clWaveFormat::FramesIn(std::uint64_t bytes) const {
    if (mFramesPerBlock == 0) return Scale(bytes, Head().nSamplesPerSec, Head().nAvgBytesPerSec);
    return Scale(bytes / Head().nBlockAlign, mFramesPerBlock, 1);
}

std::uint64_t clWaveFormat::BytePositionOf(std::uint64_t frame) const {
    const std::uint32_t align = Head().nBlockAlign;
    if (mFramesPerBlock == 0)
        return Scale(frame, Head().nAvgBytesPerSec, Head().nSamplesPerSec) / align * align;
    return Scale(frame / mFramesPerBlock, align, 1);
}

XString clWaveFormat::CodecName() const {
    if (const Type* type = FindType(mType)) return type->name;
    return Joined({u"format tag 0x", XString::FromHex(mType).Text()});
}
