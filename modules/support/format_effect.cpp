// The stages know a format by the whole of its type code, other effects by its first word alone. So the record
// is given its full code before a stage gets to see it.
#include "modules/support/format_effect.h"

#include <limits>

#include "audio/format_record.h"
#include "foundation/joined.h"
#include "modules/support/property_text.h"

namespace {

bool Agree(const QvFormat& one, const clFormatHolder& other, bool isFloat) {
    return one.nSamplesPerSec == other.format->nSamplesPerSec && one.nChannels == other.format->nChannels &&
           one.wBitsPerSample == other.format->wBitsPerSample &&
           isFloat == (other.sampleType() == QV_FORMAT_FLOAT);
}

// A record counts the bytes of a frame in 16 bits and those of a second in 32.
XString WhyTooLarge(const QvFormat& format) {
    const std::uint64_t frame = std::uint64_t{format.nChannels} * format.wBitsPerSample / 8;
    const bool fits = frame <= std::numeric_limits<decltype(format.nBlockAlign)>::max() &&
                      frame * format.nSamplesPerSec <= std::numeric_limits<std::uint32_t>::max();
    if (fits) return XString();
    return Joined({NumberText(format.nChannels).Text(), u" channels of ",
                   NumberText(format.wBitsPerSample).Text(), u" bits at ",
                   UnitText(format.nSamplesPerSec, u"Hz").Text(), u" are more than a format can say"});
}

// Every bit of what a stage writes is used.
void Give(const clFormatHolder& holder, QvFormatExtensible* record) {
    GiveFormat(holder, record);
    if (holder.IsExtensible()) record->wValidBitsPerSample = holder.format->wBitsPerSample;
}

}  // namespace

XString clFormatEffect::Plan(clSettings& settings, clEffectAudio& audio) {
    mSource.setFormat(&audio.format, sizeof audio.format);
    mSource.SetType(mFormat.isFloat);
    clFormatHolder target(mSource.format);
    clAudioBlock nothing;
    nothing.Borrow(nullptr, 0, mSource.format);
    const XString trouble = Aim(settings, nothing, target);
    if (!trouble.IsEmpty() || Agree(audio.format.Format, target, mFormat.isFloat)) return trouble;
    Give(target, &audio.format);
    return WhyTooLarge(*target.format);
}

bool clFormatEffect::Change(const clEffectBlock& in, clEffectBlock* out) {
    clAudioBlock block;
    block.Borrow(in.audio.data(), static_cast<std::uint32_t>(in.audio.size()), mSource.format);
    const clAudioBlock* const changed = Convert(block, in.finished);
    if (!changed) return Fail(u"there is not enough memory to go on");
    *out = {{changed->data, changed->bytes}, in.finished};
    return true;
}
