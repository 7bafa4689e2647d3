#include "modules/support/sample_input.h"

#include <algorithm>
#include <cmath>

#include "foundation/joined.h"
#include "modules/support/property_text.h"

XString clSampleInput::Take(const QvFormatExtensible& format, std::uint32_t mostChannels) {
    constexpr const char16_t* kDone = u"encoded";
    mRest.clear();
    if (format.Format.nChannels > mostChannels)
        return Joined({NumberText(format.Format.nChannels).Text(), u" channels can't be ", kDone});
    return TakeSampleFormat(format, kDone, &mFormat);
}

// `piece` gets whole frames, at most kPieceFrames of them.
template <class Piece>
bool clSampleInput::EachPiece(const std::uint8_t* data, std::uint32_t bytes, Piece piece) {
    const std::uint32_t frameBytes = mFormat.FrameBytes();
    std::span<const std::uint8_t> rest(data, bytes);
    if (!mRest.empty()) {
        const std::size_t lacking = std::min<std::size_t>(frameBytes - mRest.size(), rest.size());
        mRest.insert(mRest.end(), rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(lacking));
        rest = rest.subspan(lacking);
        if (mRest.size() < frameBytes) return true;
        if (!piece(std::span<const std::uint8_t>(mRest))) return false;
        mRest.clear();
    }
    while (rest.size() >= frameBytes) {
        const std::size_t frames = std::min<std::size_t>(rest.size() / frameBytes, kPieceFrames);
        if (!piece(rest.first(frames * frameBytes))) return false;
        rest = rest.subspan(frames * frameBytes);
    }
    mRest.assign(rest.begin(), rest.end());
    return true;
}

// The samples at the top of 32 bits.
void clSampleInput::TakeIntegers(std::span<const std::uint8_t> piece) {
    mIntegers.resize(piece.size() / mFormat.SampleBytes());
    mFormat.TakeIntegers(piece, mIntegers.data());
}

std::int32_t clSampleInput::Rounded(double sample, std::uint32_t bits) {
    const double limit = static_cast<double>(std::int64_t{1} << (bits - 1));
    const double value = std::round(sample * limit);
    return std::isnan(value) ? 0 : static_cast<std::int32_t>(std::clamp(value, -limit, limit - 1));
}

// Shifting right keeps the highest bits of what stands at the top.
bool clSampleInput::Integers(const std::uint8_t* data, std::uint32_t bytes, std::uint32_t bits,
                             const std::function<bool(std::span<const std::int32_t>)>& take) {
    const std::size_t step = mFormat.SampleBytes();
    return EachPiece(data, bytes, [&](std::span<const std::uint8_t> piece) {
        if (mFormat.isFloat) {
            mIntegers.resize(piece.size() / step);
            for (std::size_t i = 0; i < mIntegers.size(); ++i)
                mIntegers[i] = Rounded(mFormat.FloatAt(&piece[i * step]), bits);
        } else {
            TakeIntegers(piece);
            for (std::int32_t& integer : mIntegers) integer >>= 32 - bits;
        }
        return take(mIntegers);
    });
}

bool clSampleInput::Floats(const std::uint8_t* data, std::uint32_t bytes,
                           const std::function<bool(std::span<const float>)>& take) {
    const std::size_t step = mFormat.SampleBytes();
    return EachPiece(data, bytes, [&](std::span<const std::uint8_t> piece) {
        mFloats.resize(piece.size() / step);
        if (mFormat.isFloat) {
            for (std::size_t i = 0; i < mFloats.size(); ++i)
                mFloats[i] = static_cast<float>(mFormat.FloatAt(&piece[i * step]));
        } else {
            TakeIntegers(piece);
            std::ranges::transform(mIntegers, mFloats.begin(), [](std::int32_t integer) {
                return static_cast<float>(integer) * 0x1p-31f;
            });
        }
        return take(mFloats);
    });
}
