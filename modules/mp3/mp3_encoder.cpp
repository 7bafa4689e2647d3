#include "modules/mp3/mp3_encoder.h"

#include <lame/lame.h>

#include <algorithm>

#include "foundation/joined.h"
#include "modules/mp3/mp3_settings.h"
#include "modules/support/property_text.h"

namespace {

// By the library's own rule of thumb: a quarter more than samples, and what it may hold back.
constexpr std::size_t kOutBytes = clSampleInput::kPieceFrames * 5 / 4 + 7200;

// What each generation of MPEG has, lowest rate first.
struct Generation {
    std::uint32_t rates[3];
    std::uint32_t bitrates[14];
};

constexpr Generation kGenerations[] = {
    {{8000, 11025, 12000}, {8, 16, 24, 32, 40, 48, 56, 64}},
    {{16000, 22050, 24000}, {8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160}},
    {{32000, 44100, 48000}, {32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320}},
};

const Generation* GenerationOf(std::uint32_t rate) {
    for (const Generation& generation : kGenerations)
        if (std::ranges::find(generation.rates, rate) != std::end(generation.rates)) return &generation;
    return nullptr;
}

void KeepQuiet(const char*, va_list) {}

}  // namespace

XString clMp3Encoder::Plan(const char16_t* settings, const QvFormatExtensible& format) {
    const XString refusal = mInput.Take(format, 2);
    if (!refusal.IsEmpty()) return refusal;
    if (!GenerationOf(mInput.Rate()))
        return Joined({u"MP3 has no sample rate of ", UnitText(mInput.Rate(), u"Hz").Text()});
    mLame = lame_init();
    if (!mLame) return XString(u"the MP3 encoder can't be started");
    const XString trouble = Configure(settings);
    if (!trouble.IsEmpty()) return trouble;
    mOut.resize(kOutBytes);
    return lame_init_params(mLame) >= 0 ? XString() : XString(u"the MP3 encoder refuses these settings");
}

XString clMp3Encoder::Configure(const char16_t* text) {
    clSettings settings(text);
    const std::int64_t bitrate = settings.Integer(kMp3Bitrate);
    const double quality = settings.Decimal(kMp3Quality);
    const std::int64_t algorithm = settings.Integer(kMp3Algorithm);
    const std::size_t mode = settings.Choice(kMp3Mode);
    const XString trouble = settings.Trouble();
    if (!trouble.IsEmpty()) return trouble;
    if (settings.IsGiven(kMp3Bitrate.name) && settings.IsGiven(kMp3Quality.name))
        return XString(u"the settings -bitrate and -quality exclude each other");
    const auto& bitrates = GenerationOf(mInput.Rate())->bitrates;
    if (bitrate != 0 &&
        std::ranges::find(bitrates, static_cast<std::uint32_t>(bitrate)) == std::end(bitrates)) {
        return Joined({u"MP3 has no bit rate of ", NumberText(static_cast<std::uint64_t>(bitrate)).Text(),
                       u" kbit/s at ", UnitText(mInput.Rate(), u"Hz").Text()});
    }
    lame_set_errorf(mLame, KeepQuiet);
    lame_set_debugf(mLame, KeepQuiet);
    lame_set_msgf(mLame, KeepQuiet);
    lame_set_in_samplerate(mLame, static_cast<int>(mInput.Rate()));
    lame_set_out_samplerate(mLame, static_cast<int>(mInput.Rate()));
    lame_set_num_channels(mLame, static_cast<int>(mInput.Channels()));
    lame_set_mode(mLame, mInput.Channels() == 1 ? MONO : mode == 0 ? JOINT_STEREO : STEREO);
    lame_set_quality(mLame, static_cast<int>(algorithm));
    lame_set_write_id3tag_automatic(mLame, 0);
    lame_set_bWriteVbrTag(mLame, 1);
    if (bitrate != 0) {
        lame_set_brate(mLame, static_cast<int>(bitrate));
    } else {
        lame_set_VBR(mLame, vbr_mtrh);
        lame_set_VBR_quality(mLame, static_cast<float>(quality));
    }
    return XString();
}

// What the library has put into mOut, or its number for what went wrong.
bool clMp3Encoder::Append(int bytes) {
    if (bytes < 0) return Fail(Joined({u"can't be encoded (error ", XString(bytes).Text(), u")"}).Text());
    return bytes == 0 || mWriter.Append(mOut.data(), static_cast<std::uint32_t>(bytes)) || FailWriting();
}

bool clMp3Encoder::EncodePiece(std::span<const float> samples) {
    const auto frames = static_cast<int>(samples.size() / mInput.Channels());
    const auto room = static_cast<int>(mOut.size());
    if (mInput.Channels() == 1)
        return Append(
            lame_encode_buffer_ieee_float(mLame, samples.data(), samples.data(), frames, mOut.data(), room));
    return Append(
        lame_encode_buffer_interleaved_ieee_float(mLame, samples.data(), frames, mOut.data(), room));
}

bool clMp3Encoder::Consume(const std::uint8_t* data, std::uint32_t bytes) {
    return mInput.Floats(data, bytes, [this](std::span<const float> piece) { return EncodePiece(piece); });
}

bool clMp3Encoder::Complete() {
    if (!Append(lame_encode_flush(mLame, mOut.data(), static_cast<int>(mOut.size())))) return false;
    const std::size_t size = lame_get_lametag_frame(mLame, mOut.data(), mOut.size());
    if (size == 0 || size > mOut.size()) return Fail(u"its description can't be written");
    if (!mWriter.Rewrite(0, mOut.data(), static_cast<std::uint32_t>(size))) return FailWriting();
    return mInput.EndsWhole() || Fail(u"its audio ends within a frame");
}

void clMp3Encoder::Release() {
    if (mLame) lame_close(mLame);
    mLame = nullptr;
}
