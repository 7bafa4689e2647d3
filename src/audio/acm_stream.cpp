#include "audio/acm_stream.h"

bool clAcmStream::Convert(const clAudioBlock& in, const clFormatHolder& target, bool) {
    const bool agree =
        in.sampleType() == target.sampleType() && in.format->nSamplesPerSec == target.format->nSamplesPerSec;
    return agree && output.CopyFrom(in);
}
