#include "modules/flac/flac_encoder.h"

#include <algorithm>

#include "foundation/joined.h"
#include "modules/flac/flac_settings.h"
#include "modules/flac/mask_comment.h"
#include "modules/support/channel_order.h"
#include "modules/support/property_text.h"

// What libFLAC asks of a file: it writes again only what it has written.
struct FlacEncoderCallbacks {
    static clFlacEncoder& Of(void* user) { return *static_cast<clFlacEncoder*>(user); }

    static FLAC__StreamEncoderWriteStatus Write(const FLAC__StreamEncoder*, const FLAC__byte data[],
                                                std::size_t count, std::uint32_t, std::uint32_t, void* user) {
        const bool good = Of(user).Write(data, static_cast<std::uint32_t>(count));
        return good ? FLAC__STREAM_ENCODER_WRITE_STATUS_OK : FLAC__STREAM_ENCODER_WRITE_STATUS_FATAL_ERROR;
    }

    static FLAC__StreamEncoderSeekStatus Seek(const FLAC__StreamEncoder*, FLAC__uint64 position, void* user) {
        clFlacEncoder& self = Of(user);
        if (position > self.mWriter.Size()) return FLAC__STREAM_ENCODER_SEEK_STATUS_ERROR;
        self.mPosition = position;
        return FLAC__STREAM_ENCODER_SEEK_STATUS_OK;
    }

    static FLAC__StreamEncoderTellStatus Tell(const FLAC__StreamEncoder*, FLAC__uint64* position,
                                              void* user) {
        *position = Of(user).mPosition;
        return FLAC__STREAM_ENCODER_TELL_STATUS_OK;
    }
};

namespace {

constexpr std::uint32_t kPaddingBytes = 8192;  // for tags that come or grow later
constexpr std::uint32_t kLeastBits = FLAC__MIN_BITS_PER_SAMPLE;

}  // namespace

XString clFlacEncoder::Plan(const char16_t* settings, const QvFormatExtensible& format) {
    mPosition = 0;
    const XString refusal = mInput.Take(format, FLAC__MAX_CHANNELS);
    if (!refusal.IsEmpty()) return refusal;
    if (!FLAC__format_sample_rate_is_valid(mInput.Rate()))
        return Joined({u"FLAC has no sample rate of ", UnitText(mInput.Rate(), u"Hz").Text()});
    return ReadSettings(settings);
}

XString clFlacEncoder::ReadSettings(const char16_t* text) {
    constexpr std::uint32_t kBits[] = {24, 16};
    clSettings settings(text);
    const std::int64_t level = settings.Integer(kFlacLevel);
    const std::size_t bits = settings.Choice(kFlacBits), verify = settings.Choice(kFlacVerify);
    const XString trouble = settings.Trouble();
    if (!trouble.IsEmpty()) return trouble;
    mLevel = static_cast<std::uint32_t>(level);
    mVerifies = verify != 0;
    mBits = mInput.IsFloat() ? kBits[bits] : std::max(mInput.ValidBits(), kLeastBits);
    if (!settings.IsGiven(kFlacBits.name) || mBits == kBits[bits]) return XString();
    return Joined({u"the setting -bits is for float samples, and these are integers of ",
                   UnitText(mBits, u"bits").Text()});
}

bool clFlacEncoder::Start() {
    mEncoder.reset(FLAC__stream_encoder_new());
    FLAC__StreamEncoder* encoder = mEncoder.get();
    using C = FlacEncoderCallbacks;
    // The streamable subset binds players of streams without a beginning. What lies outside of it, such as
    // samples of 32 bits, is for files.
    const bool started =
        encoder && MakeMetadata() && FLAC__stream_encoder_set_streamable_subset(encoder, false) &&
        FLAC__stream_encoder_set_compression_level(encoder, mLevel) &&
        FLAC__stream_encoder_set_channels(encoder, mInput.Channels()) &&
        FLAC__stream_encoder_set_bits_per_sample(encoder, mBits) &&
        FLAC__stream_encoder_set_sample_rate(encoder, mInput.Rate()) &&
        FLAC__stream_encoder_set_verify(encoder, mVerifies) &&
        FLAC__stream_encoder_init_stream(encoder, C::Write, C::Seek, C::Tell, nullptr, this) ==
            FLAC__STREAM_ENCODER_INIT_STATUS_OK;
    return started || FailEncoding();
}

// The library adds its name to the comments, and its own header in front.
bool clFlacEncoder::MakeMetadata() {
    mComments.reset(FLAC__metadata_object_new(FLAC__METADATA_TYPE_VORBIS_COMMENT));
    mPadding.reset(FLAC__metadata_object_new(FLAC__METADATA_TYPE_PADDING));
    if (!mComments || !mPadding) return false;
    mPadding->length = kPaddingBytes;
    const std::uint32_t mask = mInput.ChannelMask();
    if (mask != 0 && mask != UsualMask(mInput.Channels())) {
        std::string text = MaskComment(mask);
        const FLAC__StreamMetadata_VorbisComment_Entry entry = {static_cast<FLAC__uint32>(text.size()),
                                                                reinterpret_cast<FLAC__byte*>(text.data())};
        if (!FLAC__metadata_object_vorbiscomment_append_comment(mComments.get(), entry, true)) return false;
    }
    FLAC__StreamMetadata* blocks[] = {mComments.get(), mPadding.get()};
    return FLAC__stream_encoder_set_metadata(mEncoder.get(), blocks, 2);
}

// The first write of a place appends, every later one replaces.
bool clFlacEncoder::Write(const void* data, std::uint32_t count) {
    const bool good =
        mPosition < mWriter.Size() ? mWriter.Rewrite(mPosition, data, count) : mWriter.Append(data, count);
    mPosition += count;
    return good;
}

bool clFlacEncoder::FailEncoding() {
    if (mWriter.Error() != 0) return FailWriting();
    const auto state = mEncoder ? FLAC__stream_encoder_get_state(mEncoder.get())
                                : FLAC__STREAM_ENCODER_MEMORY_ALLOCATION_ERROR;
    if (state == FLAC__STREAM_ENCODER_VERIFY_MISMATCH_IN_AUDIO_DATA)
        return Fail(u"what was encoded does not decode to the same audio");
    return Fail(
        Joined({u"can't be encoded (", XString(FLAC__StreamEncoderStateString[state]).Text(), u")"}).Text());
}

bool clFlacEncoder::Consume(const std::uint8_t* data, std::uint32_t bytes) {
    const bool good = mInput.Integers(data, bytes, mBits, [this](std::span<const std::int32_t> piece) {
        return FLAC__stream_encoder_process_interleaved(
            mEncoder.get(), piece.data(), static_cast<std::uint32_t>(piece.size() / mInput.Channels()));
    });
    return good || FailEncoding();
}

bool clFlacEncoder::Complete() {
    if (!FLAC__stream_encoder_finish(mEncoder.get())) return FailEncoding();
    return mInput.EndsWhole() || Fail(u"its audio ends within a frame");
}

void clFlacEncoder::Release() {
    mEncoder.reset();
    mComments.reset();
    mPadding.reset();
}
