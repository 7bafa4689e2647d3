// The system's own manager. Its streams are driven without callbacks: a conversion is done when the call
// returns.
#include "platform/acm.h"

#include "platform/windows/native.h"

#include <mmsystem.h>

#include <mmreg.h>

#include <msacm.h>

namespace platform {

namespace {

static_assert(sizeof(AcmStreamHeader) == sizeof(ACMSTREAMHEADER) &&
              offsetof(AcmStreamHeader, pbSrc) == offsetof(ACMSTREAMHEADER, pbSrc) &&
              offsetof(AcmStreamHeader, cbSrcLengthUsed) == offsetof(ACMSTREAMHEADER, cbSrcLengthUsed) &&
              offsetof(AcmStreamHeader, pbDst) == offsetof(ACMSTREAMHEADER, pbDst) &&
              offsetof(AcmStreamHeader, cbDstLengthUsed) == offsetof(ACMSTREAMHEADER, cbDstLengthUsed) &&
              offsetof(AcmStreamHeader, dwReservedDriver) == offsetof(ACMSTREAMHEADER, dwReservedDriver));
static_assert(sizeof(QvFormat) == sizeof(WAVEFORMATEX));
static_assert(kAcmErrorInvalidHandle == MMSYSERR_INVALHANDLE && kAcmErrorNoDriver == MMSYSERR_NODRIVER &&
              kAcmErrorInvalidParameter == MMSYSERR_INVALPARAM && kAcmErrorNotPossible == ACMERR_NOTPOSSIBLE);
static_assert(kAcmOpenNonRealTime == ACM_STREAMOPENF_NONREALTIME &&
              kAcmSizeSource == ACM_STREAMSIZEF_SOURCE &&
              kAcmConvertBlockAlign == ACM_STREAMCONVERTF_BLOCKALIGN &&
              kAcmConvertStart == ACM_STREAMCONVERTF_START && kAcmConvertEnd == ACM_STREAMCONVERTF_END);

HACMSTREAM NativeStream(AcmStream stream) {
    return static_cast<HACMSTREAM>(stream);
}
ACMSTREAMHEADER* NativeHeader(AcmStreamHeader* header) {
    return reinterpret_cast<ACMSTREAMHEADER*>(header);
}
WAVEFORMATEX* NativeFormat(const QvFormat* format) {
    return reinterpret_cast<WAVEFORMATEX*>(const_cast<QvFormat*>(format));
}

}  // namespace

constinit Operation<std::uint32_t(AcmStream*, const QvFormat*, const QvFormat*, std::uint32_t)> acmStreamOpen{
    [](AcmStream* stream, const QvFormat* source, const QvFormat* target,
       std::uint32_t flags) -> std::uint32_t {
        return ::acmStreamOpen(reinterpret_cast<HACMSTREAM*>(stream), nullptr, NativeFormat(source),
                               NativeFormat(target), nullptr, 0, 0, flags);
    }};

constinit Operation<std::uint32_t(AcmStream)> acmStreamClose{
    [](AcmStream stream) -> std::uint32_t { return ::acmStreamClose(NativeStream(stream), 0); }};

constinit Operation<std::uint32_t(AcmStream, std::uint32_t, std::uint32_t*, std::uint32_t)> acmStreamSize{
    [](AcmStream stream, std::uint32_t bytes, std::uint32_t* suggested,
       std::uint32_t flags) -> std::uint32_t {
        return ::acmStreamSize(NativeStream(stream), bytes, Native(suggested), flags);
    }};

// Not every manager looks at the room, and a codec without any can leave its source unread for ever.
constinit Operation<std::uint32_t(AcmStream, AcmStreamHeader*)> acmStreamPrepareHeader{
    [](AcmStream stream, AcmStreamHeader* header) -> std::uint32_t {
        if (header->cbDstLength == 0) return kAcmErrorInvalidParameter;
        return ::acmStreamPrepareHeader(NativeStream(stream), NativeHeader(header), 0);
    }};

constinit Operation<std::uint32_t(AcmStream, AcmStreamHeader*)> acmStreamUnprepareHeader{
    [](AcmStream stream, AcmStreamHeader* header) -> std::uint32_t {
        return ::acmStreamUnprepareHeader(NativeStream(stream), NativeHeader(header), 0);
    }};

constinit Operation<std::uint32_t(AcmStream, AcmStreamHeader*, std::uint32_t)> acmStreamConvert{
    [](AcmStream stream, AcmStreamHeader* header, std::uint32_t flags) -> std::uint32_t {
        return ::acmStreamConvert(NativeStream(stream), NativeHeader(header), flags);
    }};

}  // namespace platform
