// A codec's two modules as a host has them: loaded from the tree, driven through their entries.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "plugins/decoder_module.h"
#include "plugins/encoder_module.h"
#include "support/codec/log_files.h"

// "Wave" in "decoder" or "encoder".
std::u16string TreeModule(std::u16string_view folder, std::u16string_view name);

// A field of a packed record, as expectations take references.
template <class Field>
Field ValueOf(Field field) {
    return field;
}

// What a host gets to see of a file from open to close.
struct Decoding {
    bool opened = false;
    clOpenFileRec record{};
    std::string audio;
    std::vector<std::uint32_t> blocks;  // their lengths in bytes
    bool finished = false;              // false when the module went on and on
    std::u16string errors, information;

    QvFormatExtensible Format() const;
};

class CodecModules {
  public:
    // Expects both to load; an empty name is a side that the codec doesn't have.
    CodecModules(std::u16string_view decoder, std::u16string_view encoder);

    Decoding Decode(const std::u16string& file);
    bool Open(const std::u16string& file, std::uint32_t request, clOpenFileRec& record);  // on a new instance
    // One block of what is open; its bytes are appended.
    bool DecodeBlock(std::string& audio);

    // The result of the end, or false when the beginning was refused. `pieces` are the lengths of the blocks,
    // the last of them repeated to the end.
    bool Encode(const std::u16string& file, const QvFormatExtensible& format, std::string_view audio,
                std::vector<std::uint32_t> pieces = {65536}, const char16_t* settings = u"");

    clQvDecoder& Decoder() { return mDecoder; }
    clQvEncoder& Encoder() { return mEncoder; }
    LogFiles& Log() { return mLog; }

  private:
    LogFiles mLog;
    clQvDecoder mDecoder;
    clQvEncoder mEncoder;
};
