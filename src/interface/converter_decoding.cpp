// Direct decoding: a module's blocks in, the host's blocks out.
//
// Modules give blocks of their own size in the file's format; the host asks for any number of bytes in the
// format it chose. Each block goes through formatChanger at once, and decodedCarry keeps what the host has
// not asked for yet. So what waits there is always in the host's format, and a request runs as many module
// blocks as it takes, or none.
//
// A module's block is lent: its bytes stand until the module is called again. By then they have passed the changer, or,
// where the format stays, are with the host or in decodedCarry.
#include <algorithm>
#include <limits>
#include <new>

#include "audio/format_record.h"
#include "foundation/joined.h"
#include "foundation/paths.h"
#include "foundation/qv_text.h"
#include "interface/converter.h"
#include "interface/trace_line.h"
#include "plugins/codec_handler.h"

namespace {

constexpr std::int64_t kMsPerSecond = 1000;

// value * factor / divisor, truncated toward zero. A result that 64 bits can't hold ends at the nearest they
// can.
std::int64_t Scaled(std::int64_t value, std::int64_t factor, std::int64_t divisor) {
    __extension__ using Wide = __int128;
    using Limits = std::numeric_limits<std::int64_t>;
    const Wide scaled = Wide{value} * factor / divisor;
    return static_cast<std::int64_t>(std::clamp<Wide>(scaled, Limits::min(), Limits::max()));
}

bool IsIntegerOnly(std::uint16_t bits) {
    return bits == 8 || bits == 16 || bits == 24;
}

}  // namespace

std::int32_t clConverter::DecoderOpenFile(const char16_t* file, QvFormatExtensible* format,
                                          std::uint64_t* lengthMs) {
    XTraceScope trace(log, "clConverter::DecoderOpenFile");
    clQvDecoder found;
    if (!FindDecoder(file, found)) {
        trace.SkipLeaveMark();
        return -1;
    }
    decodedCarry.Clear();
    moduleTimecode = deliveredBytes = 0;
    decoderFinished = 0;
    const std::int32_t result = OpenDecoder(found, file, format, lengthMs);
    // Said of a file that could not be opened, too: the attempt is finished.
    if (result != 0) XLog::Information(Joined({u"Finished opening file '", file, u"'"}).Text(), log);
    return result;
}

bool clConverter::FindDecoder(const char16_t* file, clQvDecoder& found) {
    const char16_t* failure = nullptr;
    if (!paths::Exists(file)) {
        failure = u"Error opening file (does not exist) '";
    } else if (!clQvCodecHandler::LoadDecoderForFile(file, found, log, moduleHandle)) {
        failure = u"Failed to find decoder to read ID tag in file '";  // as reading tags says it
    }
    if (failure) XLog::Error(Joined({failure, file, u"'"}).Text(), log, nullptr);
    return !failure;
}

// `found` only tells which module it is; the file is opened by an instance of its own.
std::int32_t clConverter::OpenDecoder(clQvDecoder& found, const char16_t* file, QvFormatExtensible* format,
                                      std::uint64_t* lengthMs) {
    const XString path = found.RememberedPath(), extension = found.RememberedExtension();
    TraceLine(log, {path.Text()});
    TraceLine(log, {extension.Text()});
    if (path.IsEmpty()) return 0;
    CloseDecoder();
    if (!clQvCodecHandler::OpenDecoderFile(decoder, path, extension)) return 0;
    if (!clQvCodecHandler::CreateInstance(decoder, log)) return 0;
    clOpenFileRec record = {};
    record.file = ToQvText(file);
    record.request = QV_OPEN_DECODING;
    if (!decoder.Open(&record)) {
        XLog::Error(Joined({u"Failed to open file '", file, u"'"}).Text(), log, nullptr);
        return -1;
    }
    DeriveFormats(record, format);
    TraceLine(log, {outputFormat.formatDump().Text()});
    TraceLine(log, {u"FileLength in mS: ", XString::FromUInt64(record.lengthMs).Text()});
    TraceLine(log, {u"FileSize: ", XString::FromUInt64(record.fileSize).Text()});
    if (lengthMs) *lengthMs = record.lengthMs;
    return 1;
}

// What the request leaves at zero is the file's. A rate that is negative as a signed number is none. There is
// no float of 8, 16 and 24 bits: whoever asks a file of floats for these gets integers.
void clConverter::DeriveFormats(const clOpenFileRec& record, QvFormatExtensible* format) {
    const QvFormat request = format ? format->Format : QvFormat{};
    TakeFormat(sourceFormat, record.format);
    TakeFormat(outputFormat, sourceFormat.format);
    if (request.nChannels != 0) outputFormat.SetChannels(request.nChannels);
    if (request.wBitsPerSample != 0) {
        outputFormat.SetBits(request.wBitsPerSample);
        if (outputFormat.sampleType() == QV_FORMAT_FLOAT && IsIntegerOnly(request.wBitsPerSample))
            outputFormat.SetType(false);
    }
    if (static_cast<std::int32_t>(request.nSamplesPerSec) > 0) outputFormat.SetRate(request.nSamplesPerSec);
    // Coded data name no depth, and must not be counted by that of an earlier file.
    decodedCarry.setFormat(outputFormat.format);
    if (format) GiveFormat(outputFormat, format);
}

// Written without trace marks, since hosts call it for every block.
//
// The end shows as a request that could not be filled. A request that the stream's tail fills exactly is
// filled like any other, and behind it nothing waits any more: such a stream ends without `finished`, in a
// call that leaves `bytes` as it stands.
std::int32_t clConverter::DecoderDecodeBlock(std::uint8_t* buffer, std::uint32_t* bytes,
                                             std::uint32_t* finished, std::uint64_t* positionMs) {
    if (finished) *finished = 0;
    if (positionMs) *positionMs = 0;
    const std::uint32_t wanted = bytes ? *bytes : 0;
    while (decoder.Instance() != 0 && decodedCarry.held() < wanted && decoderFinished == 0)
        DecodeModuleBlock(wanted);
    if (decodedCarry.held() == 0) return 1;
    const std::uint32_t whole = wanted - wanted % OutputBlockAlign();
    const std::uint32_t grant = std::min(whole, decodedCarry.held());
    if (grant < whole && finished) *finished = decoderFinished;
    HandOut(grant, buffer);
    deliveredBytes += grant;
    const std::uint64_t reached = DeliveredMs();
    if (bytes) *bytes = grant;
    if (positionMs) *positionMs = reached;
    return 1;
}

// One block of the module. It adds nothing when the module has none just now, which is asked again at once,
// or when its format can't be reached. A block that stays as it is and goes to the host whole is not copied before.
void clConverter::DecodeModuleBlock(std::uint32_t wanted) {
    // What waits may stand in the module's last block or in the last result, which are about to change.
    if (!decodedCarry.Own(0)) throw std::bad_alloc();
    clBlockRec record = {};
    if (!decoder.DecodeBlock(&record)) return;
    moduleTimecode = record.timecode;
    decoderFinished = record.finished;
    clAudioBlock block;
    block.Borrow(record.data, record.bytes, sourceFormat.format);
    const bool stays = clFormatChanger::Stays(block, outputFormat);
    if (!stays && !formatChanger.ChangeFormat(block, outputFormat, decoderFinished > 0)) return;
    const std::uint32_t frameBytes = std::max<std::uint32_t>(outputFormat.format->nBlockAlign, 1);
    const bool goesWhole = std::uint64_t{decodedCarry.held()} + block.bytes <= wanted - wanted % frameBytes;
    if (!decodedCarry.Append(stays ? block : formatChanger.result, !stays || goesWhole))
        throw std::bad_alloc();
}

// Only whole samples of all channels are copied. In a format whose blocks are not made of those, fewer bytes
// than granted reach the buffer.
void clConverter::HandOut(std::uint32_t grant, std::uint8_t* buffer) {
    const clAudioBlock& taken = decodedCarry.Take(grant);
    if (!buffer) return;
    const std::uint32_t bytesPerSample = std::max(outputFormat.format->wBitsPerSample / 8u, 1u);
    const std::uint32_t channels = std::max<std::uint32_t>(outputFormat.format->nChannels, 1);
    const std::uint32_t frames = grant / bytesPerSample / channels;
    if (frames <= taken.frames()) std::copy_n(taken.data, frames * bytesPerSample * channels, buffer);
}

std::uint64_t clConverter::DeliveredMs() {
    if (outputFormat.format->nAvgBytesPerSec == 0) outputFormat.format->nAvgBytesPerSec = 1;
    return static_cast<std::uint64_t>(Scaled(static_cast<std::int64_t>(deliveredBytes), kMsPerSecond,
                                             outputFormat.format->nAvgBytesPerSec));
}

// A request for another depth or number of channels can leave a 0 that nobody may divide by.
std::uint16_t clConverter::OutputBlockAlign() {
    if (outputFormat.format->nBlockAlign == 0) outputFormat.format->nBlockAlign = 1;
    return outputFormat.format->nBlockAlign;
}

// The module is told a frame at the rate of the output, so a changed rate sends it to a place that is off by
// the ratio of the rates. What the stages hold comes out in front of the new place, and a stream that has
// ended stays so.
std::int32_t clConverter::DecoderSetPosition(std::int64_t positionMs) {
    XTraceScope trace(log, "clConverter::DecoderSetPosition");
    TraceLine(log, {u"Setting decoder position: ", XString::FromInt64(positionMs).Text()});
    if (decoder.Instance() == 0) return 0;
    decoder.SetPosition(Scaled(outputFormat.format->nSamplesPerSec, positionMs, kMsPerSecond));
    const std::int64_t place = Scaled(outputFormat.format->nAvgBytesPerSec, positionMs, kMsPerSecond);
    deliveredBytes = static_cast<std::uint64_t>(place - place % OutputBlockAlign());
    decodedCarry.Clear();
    return 1;
}

std::int32_t clConverter::DecoderCloseFile() {
    XTraceScope trace(log, "clConverter::DecoderCloseFile");
    CloseDecoder();
    decodedCarry.Clear();
    return 1;
}

// The module itself stays loaded.
void clConverter::CloseDecoder() {
    if (decoder.Instance() == 0) return;
    decoder.Close(&encoderRecord);
    clQvCodecHandler::DestroyInstance(decoder);
}
