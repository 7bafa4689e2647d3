#include "resampler/resampled.h"

#include <algorithm>
#include <cstring>
#include <random>

#include "audio/format_records.h"

std::vector<double> Resampled(const std::vector<double>& input, std::uint16_t channels, RatePair rates,
                              const std::vector<std::size_t>& blocks) {
    const QvFormat format = Plain(QV_FORMAT_FLOAT, channels, rates.source, 64);
    clAudioBlock in;
    in.setFormat(&format);
    clResampler resampler;
    std::vector<double> output;
    if (!resampler.Design(in, rates.target)) return output;
    std::size_t done = 0, turn = 0;
    do {
        const std::size_t left = input.size() - done;
        const std::size_t samples =
            blocks.empty() ? left : std::min(left, blocks[turn++ % blocks.size()] * channels);
        in.setData(input.data() + done, static_cast<std::uint32_t>(samples * sizeof(double)), &format, true);
        done += samples;
        if (!resampler.Process(in, done == input.size())) return {};
        const std::size_t before = output.size();
        output.resize(before + resampler.output.bytes / sizeof(double));
        if (output.size() > before)
            std::memcpy(output.data() + before, resampler.output.data, resampler.output.bytes);
    } while (done < input.size());
    return output;
}

std::vector<double> Noise(std::size_t count, unsigned seed) {
    std::mt19937_64 random(seed);
    std::vector<double> samples(count);
    for (double& sample : samples)
        sample = static_cast<double>(static_cast<std::int64_t>(random() >> 11)) * 0x1p-52 - 1.0;
    return samples;
}
