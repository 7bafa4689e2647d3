// Where the end is, nobody knows before it has come. So as many frames are held back as the fade-out has, and
// each is changed only when it leaves: by then its distance from the beginning is known, and that from the end
// is either known too or longer than the fade. One multiplication with both factors rounds once.
//
// This costs the memory of the fade-out's length, and no second look at the audio.
#include "modules/fade/fade.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "foundation/joined.h"
#include "modules/support/property_text.h"

namespace {

constexpr std::uint64_t kMostHeldBytes = std::uint64_t{1} << 30;
constexpr std::size_t kPieceBytes = std::size_t{1} << 20;  // of what is left at the end; no frame is longer

}  // namespace

XString clFade::Plan(clSettings& settings, clEffectAudio&) {
    const double in = settings.Decimal(kFadeIn), out = settings.Decimal(kFadeOut);
    mShape = settings.Choice(kFadeShape);
    mInFrames = static_cast<std::uint64_t>(std::round(in * mFormat.rate));
    mOutFrames = static_cast<std::uint64_t>(std::round(out * mFormat.rate));
    mPosition = 0;
    if (mOutFrames <= kMostHeldBytes / mFormat.FrameBytes()) return XString();
    const std::uint64_t most = kMostHeldBytes / mFormat.FrameBytes() / mFormat.rate;
    return Joined({u"a fade-out of this audio can be at most ", NumberText(most).Text(), u" seconds long"});
}

bool clFade::Change(const clEffectBlock& in, clEffectBlock* out) {
    mHeld.insert(mHeld.end(), in.audio.begin(), in.audio.end());
    const std::size_t frameBytes = mFormat.FrameBytes();
    const std::size_t held = mHeld.size() / frameBytes;
    TakeHeld(in.finished ? std::min(held, kPieceBytes / frameBytes)
                         : held - static_cast<std::size_t>(std::min<std::uint64_t>(held, mOutFrames)));
    *out = {mPiece, in.finished && mHeld.empty()};
    return true;
}

// Moves the oldest frames to mPiece, each with its factor.
void clFade::TakeHeld(std::size_t frames) {
    const std::size_t frameBytes = mFormat.FrameBytes();
    const std::size_t held = mHeld.size() / frameBytes;
    const auto end = mHeld.begin() + static_cast<std::ptrdiff_t>(frames * frameBytes);
    mPiece.assign(mHeld.begin(), end);
    mHeld.erase(mHeld.begin(), end);
    for (std::size_t i = 0; i < frames; ++i) {
        mFormat.Multiply(std::span(mPiece).subspan(i * frameBytes, frameBytes),
                         FactorAt(mPosition + i, held - 1 - i));
    }
    mPosition += frames;
}

double clFade::FactorAt(std::uint64_t frame, std::uint64_t framesBehind) const {
    return Height(frame, mInFrames) * Height(framesBehind, mOutFrames);
}

// How far a fade of so many frames has come: from 0 at its first to 1 behind its last.
double clFade::Height(std::uint64_t frame, std::uint64_t frames) const {
    if (frame >= frames) return 1;
    const double linear = static_cast<double>(frame) / static_cast<double>(frames);
    return mShape == kCosine ? (1 - std::cos(std::numbers::pi * linear)) / 2 : linear;
}

void clFade::Release() {
    mHeld = {};
    mPiece = {};
}
