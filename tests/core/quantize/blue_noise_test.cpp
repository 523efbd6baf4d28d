#include "core/quantize/blue_noise.h"

#include <vector>

#include <gtest/gtest.h>

namespace varnoth {
namespace {

TEST(BlueNoise, HoldsEveryNumberOnce) {
    std::vector<int> times(blue_noise_side * blue_noise_side);
    for (const auto& row : blue_noise()) {
        for (const std::uint16_t number : row) {
            ++times.at(number);
        }
    }
    EXPECT_EQ(times, std::vector<int>(times.size(), 1));
}

// The numbers below a limit in a square of 16 by 16; the matrix continues beyond its edges.
int count_below(int limit, std::size_t left, std::size_t top) {
    int count = 0;
    for (std::size_t y = top; y < top + 16; ++y) {
        for (std::size_t x = left; x < left + 16; ++x) {
            count += blue_noise()[y % blue_noise_side][x % blue_noise_side] < limit ? 1 : 0;
        }
    }
    return count;
}

TEST(BlueNoise, EveryLimitIsEvenlyDistributed) {
    for (const int limit : {64, 128, 256, 512, 1024, 2048, 3072, 3584, 3968}) {
        double squares = 0;
        for (std::size_t top = 0; top < blue_noise_side; ++top) {
            for (std::size_t left = 0; left < blue_noise_side; ++left) {
                const int excess = count_below(limit, left, top) - limit / 16;
                squares += excess * excess;
            }
        }
        const double variance = squares / (blue_noise_side * blue_noise_side);
        const double share = limit / 4096.0;
        // A quarter of the variance of independent random numbers.
        EXPECT_LT(variance, 0.25 * 256 * share * (1 - share)) << limit;
    }
}

} // namespace
} // namespace varnoth
