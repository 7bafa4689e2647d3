// A file of any bytes through a codec's decoder: what its own tool would do with it, in every order of calls.
//
// One source for all codecs: a target links the module's own MakeDecoder. Whatever the bytes, each stream ends;
// blocks before the end hold whole frames of the format that was announced; and nobody touches memory that is
// not theirs, the codec library included, which is built with the same checks.
#include <algorithm>
#include <cstdint>
#include <cstring>

#include "memory_file.h"
#include "modules/support/module_decoder.h"

namespace {

// A few bytes can stand for hours of silence: what is decoded of one input is bounded, ends are looked for in
// the short ones.
constexpr std::size_t kMostAudio = 8u << 20;

// False when the stream was left before its end.
bool DecodeOn(clModuleDecoder& decoder, const QvFormat& format) {
    for (std::size_t bytes = 0; bytes < kMostAudio;) {
        const clDecodedBlock block = decoder.DecodeBlock();
        if (block.finished) return true;
        Require(block.bytes > 0 && block.data != nullptr);
        Require(block.bytes % format.nBlockAlign == 0);
        bytes += block.bytes;
        const volatile std::uint8_t first = block.data[0], last = block.data[block.bytes - 1];
        (void)first;
        (void)last;
    }
    return false;
}

void Decode(std::int64_t seek) {
    const auto decoder = MakeDecoder(clModuleLog(nullptr));
    clAudioInformation information;
    if (!decoder->OpenForDecoding(u"in", information)) return;
    const QvFormat& format = information.format.Format;
    Require(format.nChannels > 0 && format.nSamplesPerSec > 0 && format.nBlockAlign > 0);
    const bool ended = DecodeOn(*decoder, format);
    if (ended) Require(decoder->DecodeBlock().finished);
    decoder->SetPosition(seek);
    DecodeOn(*decoder, format);
    decoder->SetPosition(0);
    DecodeOn(*decoder, format);
    decoder->Close();
    Require(decoder->DecodeBlock().finished);
}

void ReadTheRest() {
    const auto decoder = MakeDecoder(clModuleLog(nullptr));
    clAudioInformation information;
    clIDTagList tags, rows;
    decoder->ReadInformation(u"in", information);
    decoder->ReadPropertyRows(u"in", rows);
    decoder->ReadTags(u"in", tags);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    TakeOverFiles();
    gFile.assign(reinterpret_cast<const char*>(data), size);
    ReadTheRest();
    std::int64_t seek = 0;
    std::memcpy(&seek, data + size - std::min<std::size_t>(size, 3), std::min<std::size_t>(size, 3));
    Decode(seek);
    return 0;
}
