#include "interface/decoding.h"

#include <algorithm>
#include <memory>

Decoded DecodingHost::Decode(std::uint32_t wanted) {
    constexpr std::uint8_t kUntouched = 0xFF;  // not in any Counted()
    const std::unique_ptr<std::uint8_t[]> buffer(new std::uint8_t[wanted]);
    std::fill_n(buffer.get(), wanted, kUntouched);
    Decoded decoded{0, wanted, 99, 99, {}};
    decoded.result =
        QADDecodeBlock(host.handle, buffer.get(), &decoded.bytes, &decoded.finished, &decoded.positionMs);
    DecoderDouble::TakeBackLent();
    const std::uint8_t* end = buffer.get() + wanted;
    while (end != buffer.get() && end[-1] == kUntouched) --end;
    decoded.data.assign(static_cast<const std::uint8_t*>(buffer.get()), end);
    return decoded;
}

Bytes DecodingHost::Walk(std::uint32_t wanted) {
    Bytes all, buffer(wanted);
    std::uint32_t bytes = 0, finished = 0;
    std::uint64_t positionMs = 0;
    while (!finished) {
        bytes = wanted;
        QADDecodeBlock(host.handle, buffer.data(), &bytes, &finished, &positionMs);
        if (!finished && positionMs == 0) break;
        all.insert(all.end(), buffer.begin(), buffer.begin() + bytes);
    }
    return all;
}
