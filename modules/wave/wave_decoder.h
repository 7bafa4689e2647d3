// clWaveDecoder: WAVE files block by block.
//
// The bytes of the file are the blocks: nothing is done to a sample on the way, so a block costs one read
// into a buffer that the caller sees directly. Memory is one block, whatever the file.
#pragma once

#include <memory>

#include "modules/support/module_decoder.h"
#include "modules/wave/wave_file.h"

class clWaveDecoder : public clModuleDecoder {
  public:
    // Before it is rounded down to whole frames. Stays in a core's own cache between a read and the next
    // write.
    static constexpr std::uint32_t kBlockBytes = 65536;

    using clModuleDecoder::clModuleDecoder;

    std::span<const clFileType> FileTypes() const override;
    bool ReadInformation(const char16_t* file, clAudioInformation& information) override;
    bool ReadTags(const char16_t* file, clIDTagList& tags) override;
    bool ReadPropertyRows(const char16_t* file, clIDTagList& rows) override;
    bool WriteTags(const char16_t* file, const clIDTagList& tags) override;
    bool DeleteTags(const char16_t* file, const char16_t* name) override;
    bool OpenForDecoding(const char16_t* file, clAudioInformation& information) override;
    void Close() override;
    clDecodedBlock DecodeBlock() override;
    void SetPosition(std::int64_t frame) override;

  private:
    void ReadNext(clDecodedBlock& block);
    void Cut(const char16_t* trouble);
    void Finish();
    void ReportMissing(std::uint64_t missing);

    clWaveFile mFile;
    std::unique_ptr<std::uint8_t[]> mBuffer;
    std::uint32_t mBlockBytes = 0;
    std::uint64_t mPosition = 0;  // bytes into the audio
    std::uint64_t mEnd = 0;
    bool mEndReported = false;
};
