// The resampler beside its slow twin.
#include <gtest/gtest.h>

#include <cmath>

#include "resampler/resampled.h"
#include "resampler/resampler_twin.h"
#include "support/effort.h"

namespace {

struct Row {
    RatePair rates;
    RatePair worked;  // the rates that are worked with
};

const Row kRows[] = {{{44100, 48000}, {44100, 48000}},   {{48000, 44100}, {48000, 44100}},
                     {{44100, 22050}, {44100, 22050}},   {{22050, 44100}, {22050, 44100}},
                     {{96000, 44100}, {96000, 44100}},   {{44100, 96000}, {44100, 96000}},
                     {{192000, 44100}, {96000, 22050}},  {{44100, 192000}, {22050, 96000}},
                     {{22050, 192000}, {11025, 96000}},  {{352800, 44100}, {88200, 11025}},
                     {{176400, 48000}, {44100, 12000}},  {{48000, 88100}, {24000, 44050}},
                     {{48000, 88200}, {48000, 88200}},   {{44100, 88200}, {44100, 88200}},
                     {{88200, 48000}, {88200, 48000}},   {{8000, 48000}, {8000, 48000}},
                     {{8000, 11025}, {8000, 11025}},     {{48000, 8000}, {48000, 8000}},
                     {{32000, 44100}, {32000, 44100}},   {{44100, 32000}, {44100, 32000}},
                     {{11025, 16000}, {11025, 16000}},   {{48000, 32000}, {48000, 32000}},
                     {{192000, 48000}, {192000, 48000}}, {{44100, 176400}, {44100, 176400}}};

}  // namespace

// Frames near the start, where the filters fill, in the middle and at the very end.
TEST(Resampler, gives_what_convolution_gives_within_1e_11) {
    for (const Row& row : kRows) {
        SCOPED_TRACE(std::to_string(row.rates.source) + " to " + std::to_string(row.rates.target));
        const std::vector<double> input = Noise(row.rates.source / 2 + 7, row.rates.target);
        const std::vector<double> output = Resampled(input, 1, row.rates, {1000, 4097, 3});
        ASSERT_EQ(output.size(), input.size() * row.rates.target / row.rates.source);
        const ResamplerTwin twin(row.worked.source, row.worked.target);
        const auto last = static_cast<std::int64_t>(output.size()) - 1;
        long double worst = 0;
        const int frames = Times(12, 3, 6);
        for (int i = 0; i <= frames; ++i) {
            const std::int64_t frame = last * i / frames;
            worst = std::max(worst,
                             std::fabs(twin.Frame(input, frame) - output[static_cast<std::size_t>(frame)]));
        }
        EXPECT_LT(worst, 1e-11L);
    }
}
