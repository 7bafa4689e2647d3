#include "modules/volume/volume.h"

#include <cmath>

XString clVolume::Plan(clSettings& settings, clEffectAudio&) {
    const double gain = settings.Decimal(kVolumeGain);
    // In more digits than are kept: the same factor wherever this is built.
    mFactor = static_cast<double>(std::pow(10.0L, static_cast<long double>(gain) / 20));
    return XString();
}

bool clVolume::Change(const clEffectBlock& in, clEffectBlock* out) {
    mBlock.assign(in.audio.begin(), in.audio.end());
    mFormat.Multiply(mBlock, mFactor);
    *out = {mBlock, in.finished};
    return true;
}

void clVolume::Release() {
    mBlock = {};
}
