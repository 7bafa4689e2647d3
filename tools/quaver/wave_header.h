// WaveHeader: everything of a WAVE file that stands before its audio.
//
// It has one length whatever it says, so that it can be written first with its lengths open and again once
// they are known. Sizes beyond 32 bits go into the room that is kept for them, and RIFF becomes RF64.
#pragma once

#include <cstdint>
#include <string>

#include "quavermill/types.h"

class WaveHeader {
  public:
    explicit WaveHeader(const QvFormatExtensible& format);

    // Whether samples of this format can stand in a WAVE file without more than its format record: integer of
    // 8 to 32 bits, float of 32 and 64, A-law and mu-law.
    static bool CanDescribe(const QvFormatExtensible& format);

    // For audio whose length is not known: what programs write into a pipe.
    std::string Open() const;
    // For so many bytes of audio, the padding byte behind an odd number not counted.
    std::string Closed(std::uint64_t audioBytes) const;

  private:
    std::string Assemble(std::string_view id, std::uint32_t riffBytes, const std::string& wideSizes,
                         std::uint32_t frames, std::uint32_t audioBytes) const;

    std::string mFormat;  // the record, as long as it says
    std::uint32_t mFrameBytes;
    bool mCountsFrames;  // anything but integers wants the number of frames told
};

// What the samples are: the tag, or what an extensible record names in its stead; QV_FORMAT_EXTENSIBLE when that
// is of no family we know.
std::uint32_t SampleType(const QvFormatExtensible& format);
