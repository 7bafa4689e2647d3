#include "modules/support/stream_decoder.h"

#include <algorithm>
#include <limits>

#include "foundation/joined.h"
#include "modules/support/channel_order.h"
#include "modules/support/format_record.h"
#include "modules/support/property_text.h"
#include "modules/support/scale.h"

namespace {

std::uint64_t LengthMs(const clStreamFacts& facts) {
    return Scale(facts.frames.value_or(0), 1000, facts.rate);
}

std::uint64_t BitRate(const clAudioStream& stream) {
    const clStreamFacts& facts = stream.Facts();
    if (facts.bitRate != 0) return facts.bitRate;
    const std::uint64_t lengthMs = LengthMs(facts);
    constexpr std::uint64_t kMostMs = std::numeric_limits<std::uint32_t>::max();
    return lengthMs == 0 || lengthMs > kMostMs
               ? 0
               : Scale(stream.FileSize(), 8000, static_cast<std::uint32_t>(lengthMs));
}

clAudioInformation Describe(const clAudioStream& stream) {
    constexpr std::uint64_t kLargest = std::numeric_limits<std::int32_t>::max();
    clAudioInformation information;
    information.format = MakeFormatRecord(stream.Facts());
    information.property = static_cast<std::int32_t>(std::min(BitRate(stream), kLargest));
    information.lengthMs = LengthMs(stream.Facts());
    information.fileSize = stream.FileSize();
    return information;
}

void AddRows(const clAudioStream& stream, clIDTagList& rows) {
    const clStreamFacts& facts = stream.Facts();
    const std::uint16_t validBits = facts.validBits != 0 ? facts.validBits : facts.bits;
    rows.Add(u"Container", facts.container);
    rows.Add(u"Codec", facts.codec);
    rows.Add(u"Channels", NumberText(facts.channels).Text());
    if (facts.channelMask != 0) rows.Add(u"Channel layout", LayoutText(facts.channelMask).Text());
    rows.Add(u"Sample rate", UnitText(facts.rate, u"Hz").Text());
    rows.Add(u"Bits per sample", NumberText(validBits).Text());
    if (facts.isFloat) rows.Add(u"Sample type", u"float");
    if (BitRate(stream) != 0) rows.Add(u"Bit rate", UnitText(BitRate(stream) / 1000, u"kbit/s").Text());
    if (facts.frames) {
        rows.Add(u"Length", DurationText(LengthMs(facts)).Text());
        rows.Add(u"Frames", NumberText(*facts.frames).Text());
    }
    rows.Add(u"File size", UnitText(stream.FileSize(), u"bytes").Text());
    if (!facts.encoder.IsEmpty()) rows.Add(u"Encoder", facts.encoder.Text());
    stream.AddPropertyRows(rows);
}

}  // namespace

std::unique_ptr<clAudioStream> clStreamDecoder::OpenStream(const char16_t* file) const {
    std::unique_ptr<clAudioStream> stream = mCodec.makeStream(mLog);
    if (!stream->Open(file)) stream.reset();
    return stream;
}

bool clStreamDecoder::ReadInformation(const char16_t* file, clAudioInformation& information) {
    const std::unique_ptr<clAudioStream> stream = OpenStream(file);
    if (stream) information = Describe(*stream);
    return stream != nullptr;
}

bool clStreamDecoder::ReadTags(const char16_t* file, clIDTagList& tags) {
    return ReadFileTags(ContainerOf(file), file, tags, mLog);
}

bool clStreamDecoder::ReadPropertyRows(const char16_t* file, clIDTagList& rows) {
    const std::unique_ptr<clAudioStream> stream = OpenStream(file);
    if (stream) AddRows(*stream, rows);
    return stream != nullptr;
}

bool clStreamDecoder::WriteTags(const char16_t* file, const clIDTagList& tags) {
    return WriteFileTags(ContainerOf(file), file, tags, mLog);
}

bool clStreamDecoder::DeleteTags(const char16_t* file, const char16_t* name) {
    return DeleteFileTags(ContainerOf(file), file, name, mLog);
}

bool clStreamDecoder::OpenForDecoding(const char16_t* file, clAudioInformation& information) {
    Close();
    mStream = OpenStream(file);
    if (mStream) information = Describe(*mStream);
    return mStream != nullptr;
}

void clStreamDecoder::Close() {
    mStream.reset();
    mPosition = 0;
    mEnded = false;
}

clDecodedBlock clStreamDecoder::DecodeBlock() {
    clDecodedBlock block;
    block.timecode = mPosition;
    if (!mStream) mLog.Error(nullptr, u"no file is open for decoding");
    if (mStream && !mEnded) {
        const std::span<const std::uint8_t> audio = mStream->Read();
        block.data = audio.data();
        block.bytes = static_cast<std::uint32_t>(audio.size());
        mPosition += audio.size() / FrameBytes(mStream->Facts());
    }
    block.finished = block.bytes == 0;
    if (block.finished && mStream) ReportEnd();
    return block;
}

// Once: a host may ask again behind the end.
void clStreamDecoder::ReportEnd() {
    const std::uint64_t frames = mStream->Facts().frames.value_or(0);
    if (!mEnded && mPosition < frames) {
        mLog.Error(mStream->Path().Text(), Joined({NumberText(frames - mPosition).Text(), u" of ",
                                                   NumberText(frames).Text(), u" frames are missing"})
                                               .Text());
    }
    mEnded = true;
}

void clStreamDecoder::SetPosition(std::int64_t frame) {
    if (!mStream) return;
    const std::uint64_t end = mStream->Facts().frames.value_or(std::numeric_limits<std::uint64_t>::max());
    mPosition = std::min(frame > 0 ? static_cast<std::uint64_t>(frame) : 0, end);
    mEnded = !mStream->Seek(mPosition);
}
