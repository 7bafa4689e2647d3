// Behind the side information of an otherwise silent frame stands "Xing" or "Info", flags, then the fields
// that the flags announce: frames, bytes, a seek table of 100 bytes, a quality. LAME and others append their
// name, and delay and padding as two numbers of 12 bits.
#include "modules/mp3/info_frame.h"

#include <cstring>

#include "modules/support/byte_text.h"

namespace {

constexpr std::uint32_t kSearchBytes = 65536;  // junk in front of the first frame

std::uint32_t BigEndian32(const std::uint8_t* bytes) {
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 |
           bytes[3];
}

// Skips ID3v2 tags, of which there may be several.
std::uint64_t BeginOfAudio(clFileReader& file) {
    std::uint64_t at = 0;
    std::uint8_t head[10];
    while (file.Fetch(at, head, sizeof head) && std::memcmp(head, "ID3", 3) == 0) {
        const std::uint32_t size =
            (head[6] & 0x7Fu) << 21 | (head[7] & 0x7Fu) << 14 | (head[8] & 0x7Fu) << 7 | (head[9] & 0x7Fu);
        const bool hasFooter = (head[5] & 0x10) != 0;
        at += sizeof head + std::uint64_t{size} + (hasFooter ? sizeof head : 0);
    }
    return at;
}

bool IsLayer3Header(const std::uint8_t* bytes) {
    const bool isSync = bytes[0] == 0xFF && (bytes[1] & 0xE0) == 0xE0;
    const bool isLayer3 = (bytes[1] & 0x06) == 0x02;
    const bool isReserved =
        (bytes[1] & 0x18) == 0x08 || (bytes[2] & 0xF0) == 0xF0 || (bytes[2] & 0x0C) == 0x0C;
    return isSync && isLayer3 && !isReserved;
}

// How far behind the header the description stands: where the side information ends.
std::uint32_t SideBytes(const std::uint8_t* header) {
    const bool isMpeg1 = (header[1] & 0x18) == 0x18;
    const bool isMono = (header[3] & 0xC0) == 0xC0;
    if (isMpeg1) return isMono ? 17 : 32;
    return isMono ? 9 : 17;
}

void TakeFields(clFileReader& file, std::uint64_t at, clInfoFrame& info) {
    std::uint8_t bytes[4];
    if (!file.Fetch(at, bytes, sizeof bytes)) return;
    const std::uint32_t flags = BigEndian32(bytes);
    at += 4;
    const auto take = [&](std::uint32_t flag, std::uint32_t size, std::uint32_t* value) {
        if ((flags & flag) == 0) return;
        if (value && file.Fetch(at, bytes, sizeof bytes)) *value = BigEndian32(bytes);
        at += size;
    };
    take(1, 4, &info.frames);
    take(2, 4, &info.bytes);
    take(4, 100, nullptr);
    take(8, 4, nullptr);
    std::uint8_t encoder[24];
    if (!file.Fetch(at, encoder, sizeof encoder)) return;
    if (encoder[0] < 'A' || encoder[0] > 'z') return;
    info.encoder = TextFromBytes(encoder, 9);
    info.delay = static_cast<std::uint32_t>(encoder[21] << 4 | encoder[22] >> 4);
    info.padding = static_cast<std::uint32_t>((encoder[22] & 0xF) << 8 | encoder[23]);
}

}  // namespace

std::optional<clInfoFrame> ReadInfoFrame(clFileReader& file) {
    const std::uint64_t begin = BeginOfAudio(file);
    std::uint8_t header[4];
    for (std::uint64_t at = begin; at < begin + kSearchBytes && file.Fetch(at, header, sizeof header); ++at) {
        if (!IsLayer3Header(header)) continue;
        char name[4];
        const std::uint64_t place = at + sizeof header + SideBytes(header);
        if (!file.Fetch(place, name, sizeof name)) return std::nullopt;
        clInfoFrame info;
        info.position = at;
        info.isVariable = std::memcmp(name, "Xing", sizeof name) == 0;
        if (!info.isVariable && std::memcmp(name, "Info", sizeof name) != 0) return std::nullopt;
        TakeFields(file, place + sizeof name, info);
        return info;
    }
    return std::nullopt;
}
