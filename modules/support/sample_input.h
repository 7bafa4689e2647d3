// clSampleInput: the blocks that an encoder is given, as the samples that its library takes.
//
// Blocks may be cut anywhere, within a sample too: what makes no whole frame waits for the next block. Samples
// are handed on in pieces of at most kPieceFrames frames, so that a block of any size costs one buffer.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "modules/support/sample_format.h"

class clSampleInput {
  public:
    static constexpr std::uint32_t kPieceFrames = 4096;

    // Integer samples of 8, 16, 24 and 32 bits and float of 32 and 64, up to `mostChannels`. Empty when the
    // format is one of these, otherwise why not. What waited from another encoding is forgotten.
    XString Take(const QvFormatExtensible& format, std::uint32_t mostChannels);

    std::uint32_t Rate() const { return mFormat.rate; }
    std::uint32_t Channels() const { return mFormat.channels; }
    std::uint32_t ChannelMask() const { return mFormat.mask; }  // 0 for none given
    bool IsFloat() const { return mFormat.isFloat; }
    std::uint32_t Bits() const { return mFormat.bits; }            // of the container
    std::uint32_t ValidBits() const { return mFormat.validBits; }  // of it used, from the top

    // Hands each piece to `take`, channels interleaved, and is false as soon as that is. Integers are signed
    // and have `bits` bits, the highest ones of a longer sample; float samples are rounded to them, halves
    // away from 0, and held within their range, with 0 for what is no number.
    bool Integers(const std::uint8_t* data, std::uint32_t bytes, std::uint32_t bits,
                  const std::function<bool(std::span<const std::int32_t>)>& take);
    // Full scale is 1.0, and nothing is clipped.
    bool Floats(const std::uint8_t* data, std::uint32_t bytes,
                const std::function<bool(std::span<const float>)>& take);

    // False when the blocks so far end within a frame.
    bool EndsWhole() const { return mRest.empty(); }

  private:
    template <class Piece>
    bool EachPiece(const std::uint8_t* data, std::uint32_t bytes, Piece piece);
    void TakeIntegers(std::span<const std::uint8_t> piece);
    static std::int32_t Rounded(double sample, std::uint32_t bits);

    clSampleFormat mFormat;
    std::vector<std::uint8_t> mRest;  // the beginning of a frame
    std::vector<std::int32_t> mIntegers;
    std::vector<float> mFloats;
};
