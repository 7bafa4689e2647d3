#include "modules/support/ogg_encoder.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <string_view>

#include "modules/support/channel_order.h"

namespace {

// FNV-1a, a unit at a time.
constexpr std::uint32_t kHashBegin = 2166136261u;
std::uint32_t Hash(std::uint32_t hash, std::uint32_t unit) {
    return (hash ^ unit) * 16777619u;
}

// What is no number is silence, and infinity merely loud: the libraries are not made for either.
float Sound(float sample) {
    constexpr float kLoud = 65536;
    return std::isnan(sample) ? 0 : std::clamp(sample, -kLoud, kLoud);
}

}  // namespace

XString clOggEncoder::Plan(const char16_t* settings, const QvFormatExtensible& format) {
    const XString refusal = mInput.Take(format, kMostChannels);
    if (!refusal.IsEmpty()) return refusal;
    mPiece.clear();
    mPiece.reserve(std::size_t{kPieceFrames} * mInput.Channels());
    mHasStarted = false;
    mSerial = Hash(Hash(kHashBegin, mInput.Rate()), mInput.Channels());
    for (const char16_t unit : std::u16string_view(settings)) mSerial = Hash(mSerial, unit);
    return Prepare(settings);
}

bool clOggEncoder::Consume(const std::uint8_t* data, std::uint32_t bytes) {
    return mInput.Floats(data, bytes, [this](std::span<const float> samples) { return Collect(samples); });
}

bool clOggEncoder::Collect(std::span<const float> samples) {
    const std::span<const std::uint8_t> places = VorbisOrder(mInput.Channels());
    for (; !samples.empty(); samples = samples.subspan(places.size())) {
        for (const std::uint8_t place : places) mPiece.push_back(Sound(samples[place]));
        if (mPiece.size() == kPieceFrames * places.size() && !HandOn()) return false;
    }
    return true;
}

bool clOggEncoder::HandOn() {
    if (!mHasStarted) {
        for (const float sample : mPiece) mSerial = Hash(mSerial, std::bit_cast<std::uint32_t>(sample));
        mHasStarted = true;
        if (!StartStream(mSerial)) return false;
    }
    const bool encoded = mPiece.empty() || EncodePiece(mPiece);
    mPiece.clear();
    return encoded;
}

bool clOggEncoder::Complete() {
    if (!HandOn() || !FinishStream()) return false;
    return mInput.EndsWhole() || Fail(u"its audio ends within a frame");
}
