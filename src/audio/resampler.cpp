#include "audio/resampler.h"

bool clResampler::Design(const clAudioBlock& source, std::uint32_t targetRate) {
    Release();
    targetRateAsked = targetRate;
    return source.format->nSamplesPerSec == targetRate;
}

bool clResampler::Process(const clAudioBlock& in, bool) {
    return in.format->nSamplesPerSec == targetRateAsked && output.CopyFrom(in);
}
