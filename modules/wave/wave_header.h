// clWaveHeader: everything that stands before the audio in a WAVE file.
//
// Its length doesn't depend on the audio's: room for the 64-bit sizes is kept from the start in a JUNK chunk,
// so a file that outgrows 32 bits becomes RF64 by writing the same bytes anew, and no audio moves.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "modules/wave/wave_format.h"
#include "modules/wave/wave_settings.h"

class clWaveHeader {
  public:
    // The largest whole that a plain RIFF file can claim; one more is the sign for "elsewhere".
    static constexpr std::uint64_t kRiffLimit = 0xFFFFFFFE;

    explicit clWaveHeader(std::uint64_t riffLimit = kRiffLimit) : mRiffLimit(riffLimit) {}

    // Decides what is written for `format`. Empty when that is possible; otherwise why not.
    XString Plan(const clWaveFormat& format, WaveHeader header);

    const clWaveFormat& Format() const { return mFormat; }

    // The header of a file with so many bytes of audio. Stands until the next call.
    std::span<const std::uint8_t> Make(std::uint64_t audioBytes);
    // The header while the length is open: readers take all that follows as audio.
    std::span<const std::uint8_t> MakeOpen();

  private:
    XString Relabel(WaveHeader header);
    XString PlanFormatChunk();
    XString CompleteAdpcm();
    void Compose(std::uint64_t audioBytes, std::uint64_t wholeBytes);
    std::uint32_t AudioPosition() const;
    bool HasFact() const;

    const std::uint64_t mRiffLimit;
    bool mAlways64 = false;
    clWaveFormat mFormat;
    std::array<std::uint8_t, 50> mFormatChunk{};
    std::uint32_t mFormatBytes = 0;
    std::array<std::uint8_t, 144> mBytes{};
};
