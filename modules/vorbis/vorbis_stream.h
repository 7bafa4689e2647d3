// clVorbisStream: Ogg Vorbis, decoded by libvorbisfile to 32-bit float.
//
// A block is one packet of the file: up to 4096 frames. Decoding from any frame gives what decoding from the
// beginning gives there, to the bit.
#pragma once

#include <memory>

#include "modules/support/ogg_stream.h"

struct OggVorbis_File;  // libvorbisfile's own name for a decoder

class clVorbisStream : public clOggStream {
  public:
    explicit clVorbisStream(const clModuleLog& log);
    ~clVorbisStream() override;

    void AddPropertyRows(clIDTagList& rows) const override;

  private:
    const char16_t* CodecName() const override { return u"Vorbis"; }
    int OpenLibrary() override;
    Sound OpenSound() const override;
    void Describe() override;
    int Decode() override;
    int SeekLibrary(std::uint64_t frame) override;
    std::uint64_t BytesTaken() const override;

    const std::unique_ptr<OggVorbis_File> mDecoder;
};
