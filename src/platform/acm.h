// The system's audio compression manager: streams that convert between sample types which only an installed
// codec knows.
//
// Windows has one. POSIX has none: there every open is refused, and with no stream to name so is the rest.
//
// All of them return 0 on success and an error number otherwise; the last error is not touched. A stream is
// used by one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/operation.h"
#include "quavermill/types.h"

namespace platform {

using AcmStream = void*;

inline constexpr std::uint32_t kAcmErrorInvalidHandle = 5;
inline constexpr std::uint32_t kAcmErrorNoDriver = 6;
inline constexpr std::uint32_t kAcmErrorInvalidParameter = 11;
inline constexpr std::uint32_t kAcmErrorNotPossible = 512;

// A conversion's two buffers, and how much of each was used. Zeroed before its first use, but for the sizes
// and the buffers; between prepare and unprepare it stands where it is. The reserved words are the manager's.
#pragma pack(push, 4)
struct AcmStreamHeader {
    std::uint32_t cbStruct;  // of this record
    std::uint32_t fdwStatus;
    std::uint64_t dwUser;
    const std::uint8_t* pbSrc;
    std::uint32_t cbSrcLength;
    std::uint32_t cbSrcLengthUsed;
    std::uint64_t dwSrcUser;
    std::uint8_t* pbDst;
    std::uint32_t cbDstLength;
    std::uint32_t cbDstLengthUsed;
    std::uint64_t dwDstUser;
    std::uint32_t dwReservedDriver[15];
};
#pragma pack(pop)
static_assert(sizeof(AcmStreamHeader) == 124 && offsetof(AcmStreamHeader, dwReservedDriver) == 64);

inline constexpr std::uint32_t kAcmOpenNonRealTime = 4;      // the conversion may take its time
inline constexpr std::uint32_t kAcmSizeSource = 0;           // the size is that of the source
inline constexpr std::uint32_t kAcmConvertBlockAlign = 0x4;  // whole blocks of the source only
inline constexpr std::uint32_t kAcmConvertStart = 0x10;      // the first of a stream
inline constexpr std::uint32_t kAcmConvertEnd = 0x20;        // the last one

// Looks for a codec that converts one format to the other. *stream is to be read after a success only.
extern Operation<std::uint32_t(AcmStream* stream, const QvFormat* source, const QvFormat* target,
                               std::uint32_t flags)>
    acmStreamOpen;
extern Operation<std::uint32_t(AcmStream stream)> acmStreamClose;

// How many bytes the conversion of `bytes` makes at most, as the codec suggests.
extern Operation<std::uint32_t(AcmStream stream, std::uint32_t bytes, std::uint32_t* suggested,
                               std::uint32_t flags)>
    acmStreamSize;

// A header whose destination has no room is refused.
extern Operation<std::uint32_t(AcmStream stream, AcmStreamHeader* header)> acmStreamPrepareHeader;
extern Operation<std::uint32_t(AcmStream stream, AcmStreamHeader* header)> acmStreamUnprepareHeader;

// Converts, and stores in the prepared header how much was read and written. A codec may leave the end of the
// source unread.
extern Operation<std::uint32_t(AcmStream stream, AcmStreamHeader* header, std::uint32_t flags)>
    acmStreamConvert;

}  // namespace platform
