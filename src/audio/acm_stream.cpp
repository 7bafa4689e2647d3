// A block is lent to the queue, not copied into it: when the stream takes all of it, as it mostly does, the
// manager reads where the stage before has written. Every way out of Convert brings what is left into the
// queue's own store, since the block goes with the call.
//
// The manager is a stranger. It is given plain records where there are such, for many codecs compare tags
// only, and nothing it says of bytes read and written is taken beyond what it was given.
#include "audio/acm_stream.h"

#include <algorithm>

#include "audio/depth.h"

namespace {

constexpr std::uint16_t kCodecBits = 16;  // the depth that codecs know
constexpr std::uint32_t kFloatBits = 32;

bool NeedsConversion(const clFormatHolder& a, const clFormatHolder& b) {
    return a.sampleType() != b.sampleType() || a.format->nSamplesPerSec != b.format->nSamplesPerSec;
}

}  // namespace

bool clAcmStream::Convert(const clAudioBlock& in, const clFormatHolder& target, bool final) {
    if (!NeedsConversion(in, target)) return output.CopyFrom(in);
    if (!stream && !ownFloat && !Open(in, target)) return false;
    if (ownFloat) return ConvertToFloat(in);
    const bool done = stream && Queue(in) && ConvertQueued(final);
    return KeepQueue() && done;
}

bool clAcmStream::Open(const clAudioBlock& in, const clFormatHolder& target) {
    sixteenFirst = 0;
    for (const bool second : {false, true}) {
        startPending = 1;
        if (!sourceFormat.setFormat(in.format) || !targetFormat.setFormat(target.format)) return false;
        if (!NeedsConversion(sourceFormat, targetFormat)) return true;
        if (sourceFormat.sampleType() == QV_FORMAT_PCM && targetFormat.sampleType() == QV_FORMAT_FLOAT &&
            sourceFormat.format->nSamplesPerSec == targetFormat.format->nSamplesPerSec) {
            ownFloat = 1;
            return true;
        }
        targetFormat.StripExtensible();
        sourceFormat.StripExtensible();
        if (second || sourceFormat.format->wBitsPerSample > kCodecBits) {
            sixteenFirst = 1;
            sourceFormat.SetBits(kCodecBits);
        }
        if (OpenStream()) return true;
    }
    return false;
}

void clAcmStream::Close() {
    if (stream) platform::acmStreamClose(stream);
    stream = nullptr;
    ownFloat = sixteenFirst = 0;
    carry.Clear();
}

bool clAcmStream::OpenStream() {
    platform::AcmStream opened = nullptr;
    if (platform::acmStreamOpen(&opened, sourceFormat.format, targetFormat.format,
                                platform::kAcmOpenNonRealTime) != 0)
        return false;
    stream = opened;
    return true;
}

bool clAcmStream::ConvertToFloat(const clAudioBlock& in) {
    // A block of another type, which is refused, is given as the last one was.
    ConvertDepth(narrowed, in, kFloatBits, true);
    return narrowed.data && output.CopyFrom(narrowed);
}

bool clAcmStream::Queue(const clAudioBlock& in) {
    if (sixteenFirst && !ConvertDepth(narrowed, in, kCodecBits, false)) return false;
    const clAudioBlock& source = sixteenFirst ? narrowed : in;
    clAudioBlock whole;
    whole.Borrow(source.data, source.bytes, source.format);
    return carry.Append(whole, true);
}

// What was taken from the queue is gone from it also when the conversion fails, as it could fail for ever.
bool clAcmStream::ConvertQueued(bool final) {
    if (carry.format->nBlockAlign == 0) carry.format->nBlockAlign = 1;
    const clAudioBlock& source = carry.Take(carry.held() - carry.held() % carry.format->nBlockAlign);
    if (source.bytes == 0) {
        output.bytes = 0;
        return output.setFormat(targetFormat.format);
    }
    std::uint32_t suggested = 0;
    if (platform::acmStreamSize(stream, source.bytes, &suggested, platform::kAcmSizeSource) != 0)
        return false;
    return MakeRoom(suggested) && RunStream(source, final);
}

// As much for every channel as is suggested for all of them: a codec that writes a little more finds room.
bool clAcmStream::MakeRoom(std::uint32_t suggested) {
    if (!output.setFormat(targetFormat.format)) return false;
    const std::uint64_t sampleBytes = output.BytesPerSample();
    return output.reserveBytes(output.format->nChannels * sampleBytes * (suggested / sampleBytes));
}

bool clAcmStream::RunStream(const clAudioBlock& source, bool final) {
    platform::AcmStreamHeader header = {};
    header.cbStruct = sizeof header;
    header.pbSrc = source.data;
    header.cbSrcLength = source.bytes;
    header.pbDst = output.data;
    // Samples of less than a byte have no room here, and are refused for that.
    header.cbDstLength = output.capacityFrames() * (output.format->wBitsPerSample / 8u);
    if (platform::acmStreamPrepareHeader(stream, &header) != 0) return false;
    const std::uint32_t flags = (final ? platform::kAcmConvertEnd : platform::kAcmConvertBlockAlign) |
                                (startPending ? platform::kAcmConvertStart : 0);
    startPending = 0;
    // A header that failed stays prepared: nobody knows whether its codec is done with it.
    if (platform::acmStreamConvert(stream, &header, flags) != 0) return false;
    platform::acmStreamUnprepareHeader(stream, &header);
    carry.GiveBack(source.bytes - std::min(header.cbSrcLengthUsed, source.bytes));
    output.bytes = std::min(header.cbDstLengthUsed, output.capacity);
    return true;
}

// False when there is no memory for what waits; it is lost then.
bool clAcmStream::KeepQueue() {
    const std::uint32_t waiting = carry.held();
    if (waiting == 0) carry.Clear();
    carry.Compact(0);
    return carry.held() == waiting;
}
