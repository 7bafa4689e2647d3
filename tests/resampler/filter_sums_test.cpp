// The inner loops in every form beside the plain one.
#include "audio/filter_sums.h"

#include <gtest/gtest.h>

#include <cmath>

#include "resampler/resampled.h"
#include "support/instruction_sets.h"

namespace {

struct Rows {
    Rows(std::size_t phases, std::size_t width)
        : stride((width + 7) / 8 * 8), taps(phases * stride), advance(phases) {
        const std::vector<double> random = Noise(phases * width, 5);
        for (std::size_t i = 0; i < phases; ++i) {
            for (std::size_t j = 0; j < width; ++j) taps[i * stride + j] = random[i * width + j];
            advance[i] = static_cast<std::int32_t>(i % 3);
        }
        rows = {taps.data(), advance.data(), phases, width, stride};
    }

    std::size_t stride;
    std::vector<double> taps;
    std::vector<std::int32_t> advance;
    PolyphaseRows rows;
};

std::vector<double> Summed(const Rows& rows, const std::vector<double>& input, std::size_t count,
                           std::size_t phase) {
    std::vector<double> output(count + 1, 99.0);
    FilterSumsInUse().polyphase(rows.rows, output.data(), input.data(), count, phase);
    return output;
}

}  // namespace

// The sums' order differs from form to form: each addition may differ by the last digit of the sum.
TEST(FilterSums, sum_rows_of_every_width_alike_in_every_form) {
    for (std::size_t width = 1; width <= 40; ++width) {
        const Rows rows(7, width);
        for (const std::size_t count : {0u, 1u, 3u, 4u, 5u, 50u}) {
            const std::vector<double> input = Noise(2 * count + rows.stride + 2, 9);
            const std::size_t phase = count % 7;
            std::vector<double> plain;
            for (const InstructionSet set : OfferedSets()) {
                const ForcedSet forced(set);
                const std::vector<double> output = Summed(rows, input, count, phase);
                if (set == InstructionSet::Plain) plain = output;
                for (std::size_t i = 0; i < count; ++i)
                    ASSERT_NEAR(output[i], plain[i], 0x1p-52 * static_cast<double>(width))
                        << NameOf(set) << " " << width;
                EXPECT_EQ(output[count], 99.0) << NameOf(set);
            }
        }
    }
}
