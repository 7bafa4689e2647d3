#include "resampler/resampled.h"

#include <algorithm>
#include <random>

#include "audio/format_records.h"

std::vector<std::uint8_t> Resampled(const std::vector<std::uint8_t>& input, const QvFormat& format,
                                    std::uint32_t target, const std::vector<std::size_t>& blocks) {
    const std::size_t frameBytes = format.nChannels * format.wBitsPerSample / 8u;
    clAudioBlock in;
    in.setFormat(&format);
    clResampler resampler;
    std::vector<std::uint8_t> output;
    if (!resampler.Design(in, target)) return output;
    std::size_t done = 0, turn = 0;
    do {
        const std::size_t left = input.size() - done;
        const std::size_t bytes =
            blocks.empty() ? left : std::min(left, blocks[turn++ % blocks.size()] * frameBytes);
        in.setData(input.data() + done, static_cast<std::uint32_t>(bytes), &format, true);
        done += bytes;
        if (!resampler.Process(in, done == input.size())) return {};
        const clAudioBlock& made = resampler.output;
        output.insert(output.end(), made.data, made.data + made.bytes);
    } while (done < input.size());
    return output;
}

std::vector<double> Resampled(const std::vector<double>& input, std::uint16_t channels, RatePair rates,
                              const std::vector<std::size_t>& blocks) {
    const auto* const first = reinterpret_cast<const std::uint8_t*>(input.data());
    const std::vector<std::uint8_t> bytes =
        Resampled({first, first + input.size() * sizeof(double)},
                  Plain(QV_FORMAT_FLOAT, channels, rates.source, 64), rates.target, blocks);
    std::vector<double> output(bytes.size() / sizeof(double));
    std::copy(bytes.begin(), bytes.end(), reinterpret_cast<std::uint8_t*>(output.data()));
    return output;
}

std::vector<double> Noise(std::size_t count, unsigned seed) {
    std::mt19937_64 random(seed);
    std::vector<double> samples(count);
    for (double& sample : samples)
        sample = static_cast<double>(static_cast<std::int64_t>(random() >> 11)) * 0x1p-52 - 1.0;
    return samples;
}
