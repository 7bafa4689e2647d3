// A format that is to stay is noticed before any stage is asked: then a block costs one copy. Otherwise every
// stage hands its own copy on, also one with nothing to do, so that each always reads the block before it.
//
// A refusal ends the call where it happens. No other format is taken instead, and no stage is left out to
// save the block.
#include "audio/format_changer.h"

#include "audio/depth.h"

bool clFormatChanger::Stays(const clFormatHolder& in, const clFormatHolder& out) {
    return in.sampleType() == out.sampleType() && in.format->wBitsPerSample == out.format->wBitsPerSample &&
           in.format->nSamplesPerSec == out.format->nSamplesPerSec &&
           in.format->nChannels == out.format->nChannels;
}

bool clFormatChanger::ChangeFormat(const clAudioBlock& in, const clFormatHolder& out, bool final) {
    if (Stays(in, out)) return result.CopyFrom(in);
    if (!ChangeDepth(in, out) || !ChangeChannels(in, out)) return false;
    const clAudioBlock* const atRate = ChangeRate(in, out, final);
    return atRate && secondAcm.Convert(*atRate, out, final) && result.CopyFrom(secondAcm.output);
}

// A target of a type that is neither integer nor float is reached by the last stage, which starts from
// integers; so it is one for a target that names no depth, unless the samples are float already.
bool clFormatChanger::ChangeDepth(const clAudioBlock& in, const clFormatHolder& out) {
    constexpr std::uint16_t kLeastDepth = 8;
    const bool namesDepth = out.format->wBitsPerSample >= kLeastDepth;
    const std::uint16_t bits = namesDepth ? out.format->wBitsPerSample : in.format->wBitsPerSample;
    const bool toFloat =
        out.sampleType() == QV_FORMAT_FLOAT && (namesDepth || in.sampleType() == QV_FORMAT_FLOAT);
    return ConvertDepth(depthBlock, in, bits, toFloat);
}

// A stream whose channels stay never pays for the tables.
bool clFormatChanger::ChangeChannels(const clAudioBlock& in, const clFormatHolder& out) {
    if (mixPending && in.format->nChannels != out.format->nChannels) {
        mixer.BuildTables();
        mixPending = 0;
    }
    return mixer.Mix(depthBlock, out.format->nChannels);
}

// At a rate that stays the block is handed on in its own format. Designed is once: a later block of another
// rate meets the design that stands.
const clAudioBlock* clFormatChanger::ChangeRate(const clAudioBlock& in, const clFormatHolder& out,
                                                bool final) {
    const std::uint32_t rate = out.format->nSamplesPerSec;
    if (in.format->nSamplesPerSec == rate)
        return firstAcm.Convert(mixer.output, mixer.output, final) ? &firstAcm.output : nullptr;
    if (resamplePending) {
        if (!resampler.Design(mixer.output, rate)) return nullptr;
        resamplePending = 0;
    }
    return resampler.Process(mixer.output, final) ? &resampler.output : nullptr;
}

void clFormatChanger::Reset() {
    mixer.ForgetPair();
    resampler.Release();
    firstAcm.Close();
    secondAcm.Close();
    mixPending = resamplePending = 1;
}
