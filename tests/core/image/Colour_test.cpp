#include "core/image/Colour.h"

#include <limits>

#include <gtest/gtest.h>

namespace varnoth {
namespace {

constexpr Colour system_colour(std::int32_t number) {
    return std::numeric_limits<std::int32_t>::min() + number;
}

TEST(Colours, HaveRedInTheLowByte) {
    EXPECT_EQ(make_colour(1, 2, 3), 0x030201);
    EXPECT_EQ(make_colour(255, 255, 255), 0xFFFFFF);
    EXPECT_EQ(red_of(0x030201), 1);
    EXPECT_EQ(green_of(0x030201), 2);
    EXPECT_EQ(blue_of(0x030201), 3);
}

TEST(Colours, PaletteEntriesAreBlueFirstAndCompareAll4Bytes) {
    EXPECT_EQ(quad_of(0x030201), (RGBQUAD{3, 2, 1, 0}));
    EXPECT_EQ(colour_of(RGBQUAD{3, 2, 1, 77}), 0x030201);
    EXPECT_FALSE((RGBQUAD{3, 2, 1, 77}) == (RGBQUAD{3, 2, 1, 0}));
}

TEST(Colours, PlainColourTranslatesToItselfWithoutItsTopByte) {
    EXPECT_EQ(translate_colour(0x030201), 0x030201);
    EXPECT_EQ(translate_colour(0x02FFFFFF), 0xFFFFFF);
    EXPECT_EQ(translate_colour(0), 0);
}

TEST(Colours, SystemColourTranslatesToTheClassicSchemeOrBlack) {
    EXPECT_EQ(translate_colour(system_colour(5)), 0xFFFFFF) << "window";
    EXPECT_EQ(translate_colour(system_colour(8)), 0) << "window text";
    EXPECT_EQ(translate_colour(system_colour(15)), 0xC8D0D4) << "button face";
    EXPECT_EQ(translate_colour(system_colour(20)), 0xFFFFFF) << "button highlight";
    EXPECT_EQ(translate_colour(system_colour(24)), 0xE1FFFF) << "tool tip";
    EXPECT_EQ(translate_colour(system_colour(25)), 0);
    EXPECT_EQ(translate_colour(no_colour), 0);
}

TEST(Colours, NoColourDiffersFromEveryColour) {
    EXPECT_NE(no_colour, make_colour(255, 255, 255));
    EXPECT_LT(no_colour, 0);
}

} // namespace
} // namespace varnoth
