// Indices as pixels: every length, every table, and nothing written beyond.
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "core/image/IndexExpansion.h"
#include "support/lists.h"

namespace varnoth::test {
namespace {

std::array<RGBQUAD, 256> random_colours(std::mt19937& random) {
    const auto any = [&] { return static_cast<std::uint8_t>(random()); };
    std::array<RGBQUAD, 256> colours{};
    for (RGBQUAD& colour : colours) {
        colour = {any(), any(), any(), any()};
    }
    return colours;
}

TEST(IndexExpansion, EachIndexGivesTheFourBytesOfItsColour) {
    std::mt19937 random(1);
    for (std::size_t count = 0; count <= 200; ++count) {
        const auto colours = random_colours(random);
        Bytes indices(count);
        Bytes expected;
        for (std::uint8_t& index : indices) {
            index = static_cast<std::uint8_t>(random());
            const RGBQUAD& colour = colours[index];
            expected.insert(expected.end(),
                            {colour.rgbBlue, colour.rgbGreen, colour.rgbRed, colour.rgbReserved});
        }
        expected.insert(expected.end(), 16, 0xEE);
        Bytes pixels(expected.size(), 0xEE);
        IndexExpansion(colours).expand(indices, pixels.data());
        ASSERT_EQ(pixels, expected) << count;
    }
}

} // namespace
} // namespace varnoth::test
