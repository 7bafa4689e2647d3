#include "bench/audio/swresample_peer.h"

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

#include "bench/audio/race.h"

namespace {

constexpr int kRate = 48000;

AVSampleFormat FormatOf(const SwrSide& side) {
    static constexpr AVSampleFormat kFormats[][2] = {{AV_SAMPLE_FMT_S16, AV_SAMPLE_FMT_S16P},
                                                     {AV_SAMPLE_FMT_S32, AV_SAMPLE_FMT_S32P},
                                                     {AV_SAMPLE_FMT_FLT, AV_SAMPLE_FMT_FLTP},
                                                     {AV_SAMPLE_FMT_DBL, AV_SAMPLE_FMT_DBLP}};
    return kFormats[static_cast<std::size_t>(side.samples)][side.isPlanar ? 1 : 0];
}

std::vector<std::uint8_t*> Planes(std::vector<std::uint8_t>& bytes, const SwrSide& side, std::size_t frames) {
    const auto sampleBytes = static_cast<std::size_t>(av_get_bytes_per_sample(FormatOf(side)));
    const auto channels = static_cast<std::size_t>(side.channels);
    bytes.assign(frames * channels * sampleBytes, 0);
    std::vector<std::uint8_t*> planes{bytes.data()};
    if (side.isPlanar)
        for (std::size_t i = 1; i < channels; ++i) planes.push_back(bytes.data() + i * frames * sampleBytes);
    return planes;
}

}  // namespace

Swresample::Swresample(const SwrSide& from, const SwrSide& to, const std::vector<double>& matrix)
    : from_(from), to_(to), context_(nullptr) {
    AVChannelLayout fromLayout, toLayout;
    av_channel_layout_default(&fromLayout, from.channels);
    av_channel_layout_default(&toLayout, to.channels);
    const bool isMade = swr_alloc_set_opts2(&context_, &toLayout, FormatOf(to), kRate, &fromLayout,
                                            FormatOf(from), kRate, 0, nullptr) >= 0;
    const bool hasMatrix =
        matrix.empty() || (isMade && swr_set_matrix(context_, matrix.data(), from.channels) >= 0);
    if (!isMade || !hasMatrix || swr_init(context_) < 0) Fail("libswresample refuses");
}

Swresample::~Swresample() {
    swr_free(&context_);
}

void Swresample::SetFrames(std::size_t frames) {
    frames_ = frames;
    inPlanes_ = Planes(in, from_, frames);
    outPlanes_ = Planes(out, to_, frames);
}

void Swresample::Run() {
    const int count = static_cast<int>(frames_);
    if (swr_convert(context_, outPlanes_.data(), count, const_cast<const std::uint8_t**>(inPlanes_.data()),
                    count) != count)
        Fail("libswresample gives another number of frames");
}
