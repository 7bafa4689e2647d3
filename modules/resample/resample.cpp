#include "modules/resample/resample.h"

#include "foundation/joined.h"
#include "modules/support/property_text.h"

XString clResample::Aim(clSettings& settings, const clAudioBlock& source, clFormatHolder& target) {
    const std::uint32_t given = target.format->nSamplesPerSec;
    target.SetRate(static_cast<std::uint32_t>(settings.Integer(kResampleRate, given)));
    if (mStage.emplace().Design(source, target.format->nSamplesPerSec)) return XString();
    return Joined(
        {UnitText(given, u"Hz").Text(), u" can't be brought to ",
         UnitText(target.format->nSamplesPerSec, u"Hz").Text(),
         u": in lowest terms the lower rate must be 1 or a multiple of 2 or 3, and the filters must "
         u"fit into 512 MiB"});
}

const clAudioBlock* clResample::Convert(const clAudioBlock& in, bool final) {
    return mStage->Process(in, final) ? &mStage->output : nullptr;
}
