#include "modules/support/sample_input.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "foundation/joined.h"
#include "modules/support/little_endian.h"
#include "modules/support/property_text.h"

namespace {

std::uint32_t TypeOf(const QvFormatExtensible& format) {
    const bool isExtensible = format.Format.wFormatTag == QV_FORMAT_EXTENSIBLE && format.Format.cbSize >= 22;
    return isExtensible ? Get16(format.SubFormat) : format.Format.wFormatTag;
}

bool IsKnown(std::uint32_t type, std::uint32_t bits) {
    if (type == QV_FORMAT_FLOAT) return bits == 32 || bits == 64;
    return type == QV_FORMAT_PCM && (bits == 8 || bits == 16 || bits == 24 || bits == 32);
}

}  // namespace

XString clSampleInput::Take(const QvFormatExtensible& format, std::uint32_t mostChannels) {
    const QvFormat& head = format.Format;
    const bool isExtensible = head.wFormatTag == QV_FORMAT_EXTENSIBLE && head.cbSize >= 22;
    mRest.clear();
    if (!IsKnown(TypeOf(format), head.wBitsPerSample)) {
        return Joined({u"samples of type ", NumberText(TypeOf(format)).Text(), u" with ",
                       NumberText(head.wBitsPerSample).Text(), u" bits can't be encoded"});
    }
    if (head.nSamplesPerSec == 0) return XString(u"a sample rate of 0 can't be encoded");
    if (head.nChannels == 0 || head.nChannels > mostChannels)
        return Joined({NumberText(head.nChannels).Text(), u" channels can't be encoded"});
    mRate = head.nSamplesPerSec;
    mChannels = head.nChannels;
    mBits = head.wBitsPerSample;
    mIsFloat = TypeOf(format) == QV_FORMAT_FLOAT;
    mMask = isExtensible ? format.dwChannelMask : 0;
    const bool hasValidBits =
        isExtensible && format.wValidBitsPerSample > 0 && format.wValidBitsPerSample < mBits;
    mValidBits = hasValidBits ? format.wValidBitsPerSample : mBits;
    return XString();
}

// `piece` gets whole frames, at most kPieceFrames of them.
template <class Piece>
bool clSampleInput::EachPiece(const std::uint8_t* data, std::uint32_t bytes, Piece piece) {
    const std::uint32_t frameBytes = mChannels * mBits / 8;
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

double clSampleInput::FloatAt(const std::uint8_t* sample) const {
    if (mBits == 64) return std::bit_cast<double>(Get64(sample));
    return std::bit_cast<float>(Get32(sample));
}

// The sample at the top of 32 bits first: shifting right then keeps its highest bits.
std::int32_t clSampleInput::IntegerAt(const std::uint8_t* sample, std::uint32_t bits) const {
    const std::uint32_t down = 32 - bits;
    if (mIsFloat) {
        const double limit = static_cast<double>(std::int64_t{1} << (bits - 1));
        const double value = std::round(FloatAt(sample) * limit);
        return std::isnan(value) ? 0 : static_cast<std::int32_t>(std::clamp(value, -limit, limit - 1));
    }
    std::uint32_t top = 0;
    switch (mBits) {
        case 8:
            top = static_cast<std::uint32_t>(sample[0] ^ 0x80) << 24;
            break;
        case 16:
            top = std::uint32_t{Get16(sample)} << 16;
            break;
        case 24:
            top = (std::uint32_t{Get16(sample)} | std::uint32_t{sample[2]} << 16) << 8;
            break;
        default:
            top = Get32(sample);
    }
    return static_cast<std::int32_t>(top) >> down;
}

bool clSampleInput::Integers(const std::uint8_t* data, std::uint32_t bytes, std::uint32_t bits,
                             const std::function<bool(std::span<const std::int32_t>)>& take) {
    const std::size_t step = mBits / 8;
    return EachPiece(data, bytes, [&](std::span<const std::uint8_t> piece) {
        mIntegers.resize(piece.size() / step);
        for (std::size_t i = 0; i < mIntegers.size(); ++i) mIntegers[i] = IntegerAt(&piece[i * step], bits);
        return take(mIntegers);
    });
}

bool clSampleInput::Floats(const std::uint8_t* data, std::uint32_t bytes,
                           const std::function<bool(std::span<const float>)>& take) {
    const std::size_t step = mBits / 8;
    return EachPiece(data, bytes, [&](std::span<const std::uint8_t> piece) {
        mFloats.resize(piece.size() / step);
        for (std::size_t i = 0; i < mFloats.size(); ++i) {
            const std::uint8_t* sample = &piece[i * step];
            mFloats[i] = mIsFloat ? static_cast<float>(FloatAt(sample))
                                  : static_cast<float>(IntegerAt(sample, 32)) * 0x1p-31f;
        }
        return take(mFloats);
    });
}
