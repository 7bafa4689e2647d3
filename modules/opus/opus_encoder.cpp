#include "modules/opus/opus_encoder.h"

#include <opus/opusenc.h>

#include <algorithm>

#include "foundation/joined.h"
#include "modules/opus/opus_settings.h"
#include "modules/support/property_text.h"

namespace {

// Below, the library's converter looks further ahead than the library has room for; above, its filters
// outgrow all use.
constexpr std::uint32_t kLeastRate = 100, kMostRate = 768000;

enum Mode : std::size_t { kVariable, kConstrained, kConstant };

struct Choice {
    std::int64_t bitrate = 0;  // kbit/s; 0 leaves it to the library
    std::int64_t complexity = 0;
    std::size_t mode = kVariable;
    std::size_t signal = 0;
};

XString Choose(const char16_t* text, std::uint32_t channels, Choice* choice) {
    clSettings settings(text);
    clSettingRule bitrate = kOpusBitrate;
    bitrate.most = std::min(bitrate.most, static_cast<double>(kOpusMostBitrateOfAChannel * channels));
    choice->bitrate = settings.Integer(bitrate);
    choice->mode = settings.Choice(kOpusMode);
    choice->complexity = settings.Integer(kOpusComplexity);
    choice->signal = settings.Choice(kOpusSignal);
    return settings.Trouble();
}

const char16_t* Explanation(int number) {
    switch (number) {
        case OPE_BAD_ARG:
            return u"the Opus encoder does not take this format or these settings";
        case OPE_INTERNAL_ERROR:
            return u"the Opus encoder has failed within";
        case OPE_UNIMPLEMENTED:
            return u"the Opus encoder does not have what is asked for";
        case OPE_ALLOC_FAIL:
            return u"the Opus encoder has not enough memory";
        case OPE_CANNOT_OPEN:
            return u"the Opus encoder can't open its file";
        case OPE_TOO_LATE:
            return u"the Opus encoder is past the point where this could be done";
        case OPE_WRITE_FAIL:
            return u"the Opus encoder can't write";
        case OPE_CLOSE_FAIL:
            return u"the Opus encoder can't close its file";
        default:
            return nullptr;
    }
}

XString Words(int number) {
    const char16_t* words = Explanation(number);
    return words ? XString(words)
                 : Joined({u"the Opus encoder has failed (error ", XString(number).Text(), u")"});
}

int WriteBytes(void* user, const unsigned char* data, opus_int32 count) {
    return static_cast<clFileWriter*>(user)->Append(data, static_cast<std::uint32_t>(count)) ? 0 : 1;
}

// The file is closed by its owner.
int CloseNothing(void*) {
    return 0;
}

OggOpusEnc* Create(const clSampleInput& input, clFileWriter& writer, int* trouble) {
    constexpr OpusEncCallbacks kCallbacks = {WriteBytes, CloseNothing};
    OggOpusComments* comments = ope_comments_create();
    *trouble = OPE_ALLOC_FAIL;
    if (!comments) return nullptr;
    const int channels = static_cast<int>(input.Channels());
    const int family = channels > 2 ? 1 : 0;
    OggOpusEnc* encoder = ope_encoder_create_callbacks(
        &kCallbacks, &writer, comments, static_cast<opus_int32>(input.Rate()), channels, family, trouble);
    ope_comments_destroy(comments);
    return encoder;
}

int Configure(OggOpusEnc* encoder, const Choice& choice, std::uint32_t validBits) {
    constexpr opus_int32 kSignals[] = {OPUS_AUTO, OPUS_SIGNAL_MUSIC, OPUS_SIGNAL_VOICE};
    const opus_int32 bitrate =
        choice.bitrate == 0 ? OPUS_AUTO : static_cast<opus_int32>(choice.bitrate * 1000);
    const opus_int32 complexity = static_cast<opus_int32>(choice.complexity);
    const opus_int32 depth = static_cast<opus_int32>(std::clamp(validBits, 8u, 24u));
    const int results[] = {
        ope_encoder_ctl(encoder, OPUS_SET_BITRATE(bitrate)),
        ope_encoder_ctl(encoder, OPUS_SET_VBR(choice.mode != kConstant)),
        ope_encoder_ctl(encoder, OPUS_SET_VBR_CONSTRAINT(choice.mode == kConstrained)),
        ope_encoder_ctl(encoder, OPUS_SET_COMPLEXITY(complexity)),
        ope_encoder_ctl(encoder, OPUS_SET_SIGNAL(kSignals[choice.signal])),
        ope_encoder_ctl(encoder, OPUS_SET_LSB_DEPTH(depth)),
    };
    const auto bad = std::ranges::find_if(results, [](int result) { return result != OPE_OK; });
    return bad == std::end(results) ? OPE_OK : *bad;
}

}  // namespace

XString clOpusEncoder::Prepare(const char16_t* settings) {
    Choice choice;
    const XString refusal = Choose(settings, mInput.Channels(), &choice);
    if (!refusal.IsEmpty()) return refusal;
    if (mInput.Rate() < kLeastRate || mInput.Rate() > kMostRate)
        return Joined(
            {u"a sample rate of ", UnitText(mInput.Rate(), u"Hz").Text(), u" can't be converted for Opus"});
    int trouble = OPE_OK;
    mEncoder = Create(mInput, mWriter, &trouble);
    if (mEncoder) trouble = Configure(mEncoder, choice, mInput.ValidBits());
    return trouble == OPE_OK ? XString() : Words(trouble);
}

// Writing nothing makes the headers, and tells the library of a stream that stays empty that it is.
bool clOpusEncoder::StartStream(std::uint32_t serial) {
    const float nothing = 0;
    return Check(ope_encoder_ctl(mEncoder, OPE_SET_SERIALNO(static_cast<opus_int32>(serial)))) &&
           Check(ope_encoder_write_float(mEncoder, &nothing, 0));
}

bool clOpusEncoder::EncodePiece(std::span<const float> samples) {
    const std::size_t frames = samples.size() / mInput.Channels();
    return Check(ope_encoder_write_float(mEncoder, samples.data(), static_cast<int>(frames)));
}

bool clOpusEncoder::FinishStream() {
    return Check(ope_encoder_drain(mEncoder));
}

// What is wrong with the file comes first: for the library that is one of its own numbers.
bool clOpusEncoder::Check(int result) {
    if (mWriter.Error() != 0) return FailWriting();
    return result == OPE_OK || Fail(Words(result).Text());
}

void clOpusEncoder::Release() {
    if (mEncoder) ope_encoder_destroy(mEncoder);
    mEncoder = nullptr;
}
