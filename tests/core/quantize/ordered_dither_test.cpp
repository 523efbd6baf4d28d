#include "core/quantize/ordered_dither.h"

#include <gtest/gtest.h>

namespace varnoth {
namespace {

struct Row {
    MatrixRow added{};
    std::array<std::uint8_t, 4 * dither_block_size> pixels{};
    DitheredIndices places{};
};

// A matrix row with a different number for each of the four pixels, up to `most`.
Row row_with(unsigned first, unsigned most) {
    Row row;
    for (std::size_t i = 0; i < row.added.size(); ++i) {
        row.added[i] = static_cast<std::uint8_t>((first + i / 4) % (most + 1));
    }
    return row;
}

// The three channels and the fourth byte have different values, so that none can be mistaken for another.
void fill(Row& row, unsigned value) {
    for (std::size_t i = 0; i < row.pixels.size(); ++i) {
        row.pixels[i] = static_cast<std::uint8_t>(value + i / 4 * 7 + i % 4 * 61);
    }
}

std::uint32_t place(const Row& row, std::size_t x, unsigned step, unsigned levels) {
    const auto level = [&](std::size_t channel) {
        return (unsigned{row.pixels[4 * x + channel]} + row.added[x % 4 * 4]) / step;
    };
    return (level(0) * levels + level(1)) * levels + level(2);
}

TEST(OrderedDither, LevelsEqualADivisionForEveryValue) {
    for (unsigned added = 0; added <= 50; ++added) {
        Row of_16 = row_with(added, 16);
        Row of_6 = row_with(added, 50);
        for (unsigned value = 0; value < 256; ++value) {
            fill(of_16, value);
            fill(of_6, value);
            dither_to_16_levels(of_16.pixels, of_16.added, of_16.places);
            dither_to_6_levels(of_6.pixels, of_6.added, of_6.places);
            for (std::size_t x = 0; x < dither_block_size; ++x) {
                ASSERT_EQ(of_16.places[x], place(of_16, x, 17, 16)) << value << " + " << added << ", " << x;
                ASSERT_EQ(of_6.places[x], place(of_6, x, 51, 6)) << value << " + " << added << ", " << x;
            }
        }
    }
}

} // namespace
} // namespace varnoth
