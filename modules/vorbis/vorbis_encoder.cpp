#include "modules/vorbis/vorbis_encoder.h"

#include <vorbis/vorbisenc.h>

#include "foundation/joined.h"
#include "modules/support/property_text.h"
#include "modules/vorbis/vorbis_settings.h"

namespace {

constexpr std::uint32_t kMostRate = 200000;  // hertz

struct Choice {
    double quality;
    std::int64_t bitrate;  // kbit/s on average; 0 for by quality
};

XString Choose(const char16_t* text, Choice* choice) {
    clSettings settings(text);
    *choice = {settings.Decimal(kVorbisQuality), settings.Integer(kVorbisBitrate)};
    const XString trouble = settings.Trouble();
    if (!trouble.IsEmpty()) return trouble;
    if (settings.IsGiven(kVorbisQuality.name) && settings.IsGiven(kVorbisBitrate.name))
        return XString(u"the settings -quality and -bitrate exclude each other");
    return XString();
}

XString NoMode(const clSampleInput& input, const Choice& choice) {
    const auto bitrate = static_cast<std::uint64_t>(choice.bitrate);
    const XString at = Joined({u" for ", NumberText(input.Channels()).Text(), u" channels at ",
                               UnitText(input.Rate(), u"Hz").Text()});
    if (bitrate == 0) return Joined({u"Vorbis has no mode", at.Text()});
    return Joined({u"Vorbis has no bit rate of ", UnitText(bitrate, u"kbit/s").Text(), at.Text()});
}

}  // namespace

// Cleared in the order in which libvorbis builds one upon the other.
struct clVorbisEncoder::Library {
    Library() { vorbis_info_init(&info); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library() {
        if (hasStream) ogg_stream_clear(&stream);
        if (hasState) vorbis_block_clear(&block);
        if (hasState) vorbis_dsp_clear(&state);
        vorbis_info_clear(&info);
    }

    int Configure(const clSampleInput& input, const Choice& choice) {
        const auto channels = static_cast<long>(input.Channels());
        const auto rate = static_cast<long>(input.Rate());
        const int trouble =
            choice.bitrate != 0
                ? vorbis_encode_setup_managed(&info, channels, rate, -1,
                                              static_cast<long>(choice.bitrate) * 1000, -1)
                : vorbis_encode_setup_vbr(&info, channels, rate, static_cast<float>(choice.quality / 10));
        return trouble != 0 ? trouble : vorbis_encode_setup_init(&info);
    }

    vorbis_info info;
    vorbis_dsp_state state;
    vorbis_block block;
    ogg_stream_state stream;
    bool hasState = false;
    bool hasStream = false;
};

clVorbisEncoder::clVorbisEncoder(const clModuleLog& log) : clOggEncoder(log) {}

clVorbisEncoder::~clVorbisEncoder() = default;

void clVorbisEncoder::Release() {
    mLibrary.reset();
}

XString clVorbisEncoder::Prepare(const char16_t* settings) {
    Choice choice{};
    const XString trouble = Choose(settings, &choice);
    if (!trouble.IsEmpty()) return trouble;
    mLibrary = std::make_unique<Library>();
    if (mInput.Rate() > kMostRate || mLibrary->Configure(mInput, choice) != 0) return NoMode(mInput, choice);
    mLibrary->hasState = vorbis_analysis_init(&mLibrary->state, &mLibrary->info) == 0 &&
                         vorbis_block_init(&mLibrary->state, &mLibrary->block) == 0;
    return mLibrary->hasState ? XString() : XString(u"the Vorbis encoder can't be started");
}

// The three headers end a page, so that the audio begins with one of its own.
bool clVorbisEncoder::StartStream(std::uint32_t serial) {
    mLibrary->hasStream = ogg_stream_init(&mLibrary->stream, static_cast<int>(serial)) == 0;
    vorbis_comment comment;
    vorbis_comment_init(&comment);
    ogg_packet headers[3] = {};
    const bool good =
        mLibrary->hasStream &&
        vorbis_analysis_headerout(&mLibrary->state, &comment, &headers[0], &headers[1], &headers[2]) == 0;
    vorbis_comment_clear(&comment);
    if (!good) return Fail(u"its Vorbis headers can't be made");
    for (ogg_packet& header : headers) ogg_stream_packetin(&mLibrary->stream, &header);
    return WritePages(true);
}

bool clVorbisEncoder::EncodePiece(std::span<const float> samples) {
    const std::size_t channels = mInput.Channels();
    const auto frames = static_cast<int>(samples.size() / channels);
    float** planes = vorbis_analysis_buffer(&mLibrary->state, frames);
    for (std::size_t i = 0; i < samples.size(); ++i) planes[i % channels][i / channels] = samples[i];
    vorbis_analysis_wrote(&mLibrary->state, frames);
    return Drain();
}

bool clVorbisEncoder::FinishStream() {
    vorbis_analysis_wrote(&mLibrary->state, 0);
    return Drain() && WritePages(true);
}

bool clVorbisEncoder::Drain() {
    ogg_packet packet;
    while (vorbis_analysis_blockout(&mLibrary->state, &mLibrary->block) == 1) {
        if (vorbis_analysis(&mLibrary->block, nullptr) != 0 || vorbis_bitrate_addblock(&mLibrary->block) != 0)
            return Fail(u"can't be encoded");
        while (vorbis_bitrate_flushpacket(&mLibrary->state, &packet) != 0) {
            if (ogg_stream_packetin(&mLibrary->stream, &packet) != 0) return Fail(u"can't be encoded");
            if (!WritePages(false)) return false;
        }
    }
    return true;
}

// Those that are full, or all that there is.
bool clVorbisEncoder::WritePages(bool all) {
    ogg_page page;
    while ((all ? ogg_stream_flush(&mLibrary->stream, &page)
                : ogg_stream_pageout(&mLibrary->stream, &page)) != 0) {
        if (!mWriter.Append(page.header, static_cast<std::uint32_t>(page.header_len)) ||
            !mWriter.Append(page.body, static_cast<std::uint32_t>(page.body_len)))
            return FailWriting();
    }
    return true;
}
