// A WAVE file of any bytes, through the decoder and, where that takes it, through the encoder and back.
//
// The files are in memory: the platform's operations are ours here. What is opened ends, with no more audio
// than there are bytes, and what the encoder makes of it is the same audio in the same format.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

#include "memory_file.h"
#include "modules/wave/wave_decoder.h"
#include "modules/wave/wave_encoder.h"

namespace {

struct Decoded {
    bool opened = false;
    clAudioInformation information;
    std::string audio;
};

std::string RestOf(clModuleDecoder& decoder) {
    std::string audio;
    for (std::size_t blocks = 0;; ++blocks) {
        const clDecodedBlock block = decoder.DecodeBlock();
        if (block.bytes > 0) audio.append(reinterpret_cast<const char*>(block.data), block.bytes);
        Require(audio.size() <= gFile.size() && blocks <= gFile.size());
        if (block.finished) return audio;
        Require(block.bytes > 0);
    }
}

Decoded Decode(std::int64_t seek) {
    clWaveDecoder decoder{clModuleLog(nullptr)};
    Decoded decoded;
    decoded.opened = decoder.OpenForDecoding(u"in", decoded.information);
    if (!decoded.opened) return decoded;
    decoded.audio = RestOf(decoder);
    decoder.SetPosition(seek);
    const std::string tail = RestOf(decoder);
    Require(decoded.audio.ends_with(tail));
    return decoded;
}

void ReadTheRest() {
    clWaveDecoder decoder{clModuleLog(nullptr)};
    clIDTagList tags, rows;
    clByteStore flat;
    decoder.ReadTags(u"in", tags);
    Require(tags.Serialise(flat) && flat.Size() < 1000000);
    decoder.ReadPropertyRows(u"in", rows);
}

void EncodeAndCompare(const Decoded& decoded) {
    const QvFormatExtensible& format = decoded.information.format;
    clWaveEncoder encoder{clModuleLog(nullptr)};
    if (!encoder.Begin(u"out", u"", format)) {
        Require(format.Format.wFormatTag == QV_FORMAT_ADPCM);  // whose coefficients may be cut off
        return;
    }
    Require(encoder.Encode(reinterpret_cast<const std::uint8_t*>(decoded.audio.data()),
                           static_cast<std::uint32_t>(decoded.audio.size())));
    Require(encoder.End());
    const Decoded again = Decode(0);
    Require(again.opened && again.audio == decoded.audio);
    Require(std::memcmp(&again.information.format, &format, sizeof format) == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    TakeOverFiles();
    gFile.assign(reinterpret_cast<const char*>(data), size);
    ReadTheRest();
    std::int64_t seek = 0;
    std::memcpy(&seek, data + size - std::min(size, sizeof seek), std::min(size, sizeof seek));
    const Decoded decoded = Decode(seek);
    if (decoded.opened) EncodeAndCompare(decoded);
    return 0;
}
