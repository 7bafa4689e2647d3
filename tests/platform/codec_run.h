// One conversion by the system's own codec, from its opening to its closing.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/acm.h"

struct CodecRun {
    bool done = false;
    std::uint32_t taken = 0;         // bytes of the source
    std::vector<std::uint8_t> made;  // empty where nothing was
};

inline CodecRun RunCodec(const QvFormat* from, const QvFormat* to, std::vector<std::uint8_t> source) {
    CodecRun run;
    platform::AcmStream stream = nullptr;
    if (platform::acmStreamOpen(&stream, from, to, platform::kAcmOpenNonRealTime) != 0) return run;
    std::uint32_t room = 0;
    const auto bytes = static_cast<std::uint32_t>(source.size());
    if (platform::acmStreamSize(stream, bytes, &room, platform::kAcmSizeSource) == 0) {
        run.made.resize(room);
        platform::AcmStreamHeader header = {};
        header.cbStruct = sizeof header;
        header.pbSrc = source.data();
        header.cbSrcLength = bytes;
        header.pbDst = run.made.data();
        header.cbDstLength = room;
        run.done = platform::acmStreamPrepareHeader(stream, &header) == 0 &&
                   platform::acmStreamConvert(stream, &header, platform::kAcmConvertStart) == 0 &&
                   platform::acmStreamUnprepareHeader(stream, &header) == 0;
        run.taken = header.cbSrcLengthUsed;
        run.made.resize(run.done ? header.cbDstLengthUsed : 0);
    }
    run.done = platform::acmStreamClose(stream) == 0 && run.done;
    return run;
}
