// clStreamDecoder: the decoder of a module that stands on a codec library.
//
// A module names its file types, how it makes a stream, and in which container its tags stand; everything else
// is the same for all of them:
//
// - A block is what the stream gives in one read. The last block is always an empty one with `finished`.
// - A block's timecode is the number of its first frame.
// - A file that ends before the length it claims is an error in words, and so is damage; the stream then still
//   ends in the ordinary way.
// - With nothing open, a block is the last one, and an error says why.
#pragma once

#include <memory>
#include <span>

#include "modules/support/audio_stream.h"
#include "modules/support/module_decoder.h"
#include "modules/tags/tag_file.h"

struct clStreamCodec {
    std::span<const clFileType> fileTypes;
    std::unique_ptr<clAudioStream> (*makeStream)(const clModuleLog& log);
    TagContainer tags;
};

// For clStreamCodec::makeStream.
template <class Stream>
std::unique_ptr<clAudioStream> MakeStream(const clModuleLog& log) {
    return std::make_unique<Stream>(log);
}

class clStreamDecoder : public clModuleDecoder {
  public:
    // `codec` outlives the decoder: it is a constant of the module.
    clStreamDecoder(const clModuleLog& log, const clStreamCodec& codec)
        : clModuleDecoder(log), mCodec(codec) {}

    std::span<const clFileType> FileTypes() const override { return mCodec.fileTypes; }
    bool ReadInformation(const char16_t* file, clAudioInformation& information) override;
    bool ReadTags(const char16_t* file, clIDTagList& tags) override;
    bool ReadPropertyRows(const char16_t* file, clIDTagList& rows) override;
    bool WriteTags(const char16_t* file, const clIDTagList& tags) override;
    bool DeleteTags(const char16_t* file, const char16_t* name) override;
    bool OpenForDecoding(const char16_t* file, clAudioInformation& information) override;
    void Close() override;
    clDecodedBlock DecodeBlock() override;
    void SetPosition(std::int64_t frame) override;

  protected:
    // For a module whose files differ in where their tags stand.
    virtual TagContainer ContainerOf(const char16_t*) const { return mCodec.tags; }

  private:
    std::unique_ptr<clAudioStream> OpenStream(const char16_t* file) const;
    void ReportEnd();

    const clStreamCodec& mCodec;
    std::unique_ptr<clAudioStream> mStream;
    std::uint64_t mPosition = 0;  // in frames
    bool mEnded = false;
};
