#include "panels/panel_table.h"

#include <algorithm>

#include "modules/channels/channels.h"
#include "modules/depth/depth.h"
#include "modules/fade/fade.h"
#include "modules/resample/resample.h"
#include "modules/volume/volume.h"
#include "modules/wave/wave_encoder.h"
#include "support/temp_folder.h"
#ifdef QV_HAS_FLAC
#include "modules/flac/flac_encoder.h"
#endif
#ifdef QV_HAS_VORBIS
#include "modules/vorbis/vorbis_encoder.h"
#endif
#ifdef QV_HAS_OPUS
#include "modules/opus/opus_encoder.h"
#endif
#ifdef QV_HAS_MP3
#include "modules/mp3/mp3_encoder.h"
#endif
#ifdef QV_HAS_SNDFILE
#include "modules/sndfile/aiff_encoder.h"
#endif

namespace {

const clModuleLog kNoLog(nullptr);

QvFormatExtensible Audio(std::uint32_t rate, std::uint16_t bits, std::uint16_t tag) {
    QvFormatExtensible format{};
    format.Format.wFormatTag = tag;
    format.Format.nChannels = 2;
    format.Format.nSamplesPerSec = rate;
    format.Format.wBitsPerSample = bits;
    format.Format.nBlockAlign = static_cast<std::uint16_t>(2 * bits / 8);
    format.Format.nAvgBytesPerSec = rate * format.Format.nBlockAlign;
    return format;
}

const std::vector<QvFormatExtensible>& KindsOfAudio() {
    static const std::vector<QvFormatExtensible> kinds = {
        Audio(44100, 16, QV_FORMAT_PCM), Audio(44100, 32, QV_FORMAT_FLOAT), Audio(44100, 64, QV_FORMAT_FLOAT),
        Audio(48000, 24, QV_FORMAT_PCM), Audio(22050, 16, QV_FORMAT_PCM),   Audio(8000, 16, QV_FORMAT_PCM),
    };
    return kinds;
}

template <class Encoder>
ModuleWithPanel EncoderNamed(const char* name) {
    const auto takes = [](const char16_t* settings) {
        static const TempFolder folder;
        return std::ranges::any_of(KindsOfAudio(), [&](const QvFormatExtensible& format) {
            Encoder encoder(kNoLog);
            const std::u16string file = folder / u"a";
            if (!encoder.Begin(file.c_str(), settings, format)) return false;
            encoder.End();
            return true;
        });
    };
    return {name, [] { return std::make_unique<Encoder>(kNoLog); }, takes};
}

template <class Effect>
ModuleWithPanel EffectNamed(const char* name) {
    const auto takes = [](const char16_t* settings) {
        return std::ranges::any_of(KindsOfAudio(), [&](const QvFormatExtensible& format) {
            Effect effect(kNoLog);
            clEffectAudio audio{.format = format};
            return effect.Begin(settings, audio);
        });
    };
    return {name, [] { return std::make_unique<Effect>(kNoLog); }, takes};
}

}  // namespace

const std::vector<ModuleWithPanel>& AllPanels() {
    static const std::vector<ModuleWithPanel> panels = {
        EncoderNamed<clWaveEncoder>("Wave"),
#ifdef QV_HAS_FLAC
        EncoderNamed<clFlacEncoder>("FLAC"),
#endif
#ifdef QV_HAS_VORBIS
        EncoderNamed<clVorbisEncoder>("OggVorbis"),
#endif
#ifdef QV_HAS_OPUS
        EncoderNamed<clOpusEncoder>("Opus"),
#endif
#ifdef QV_HAS_MP3
        EncoderNamed<clMp3Encoder>("MP3"),
#endif
#ifdef QV_HAS_SNDFILE
        EncoderNamed<clAiffEncoder>("AIFF"),
#endif
        EffectNamed<clVolume>("Volume"),
        EffectNamed<clFade>("Fade"),
        EffectNamed<clResample>("Resample"),
        EffectNamed<clChannels>("Channels"),
        EffectNamed<clDepth>("Depth"),
    };
    return panels;
}
