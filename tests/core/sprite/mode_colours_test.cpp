// Colours with alpha in each render mode.
#include "core/sprite/mode_colours.h"

#include <gtest/gtest.h>

namespace varnoth {
namespace {

PaletteRecord palette() {
    PaletteRecord result;
    result.Colours[1] = {64, 128, 0};
    result.Colours[2] = {255, 1, 2};
    result.Colours[255] = {10, 20, 30};
    return result;
}

TEST(ModeColours, PlainColoursAreOpaque) {
    EXPECT_EQ(plain_colours(palette())[0], 0xFF000000);
    EXPECT_EQ(plain_colours(palette())[1], 0xFF408000);
}

TEST(ModeColours, NormalAndUnknownModesAreOpaque) {
    for (const RenderMode mode : {RenderMode::Normal, RenderMode{-1}, RenderMode{4}}) {
        EXPECT_EQ(mode_colours(palette(), mode), plain_colours(palette())) << static_cast<int>(mode);
    }
}

TEST(ModeColours, AlphaTestHidesIndex255) {
    IndexColours expected = plain_colours(palette());
    expected[255] = 0x000A141E;
    EXPECT_EQ(mode_colours(palette(), RenderMode::AlphaTest), expected);
}

TEST(ModeColours, IndexAlphaHasOneColour) {
    const IndexColours colours = mode_colours(palette(), RenderMode::IndexAlpha);
    EXPECT_EQ(colours[0], 0x000A141EU);
    EXPECT_EQ(colours[128], 0x800A141E);
    EXPECT_EQ(colours[255], 0xFF0A141E);
}

TEST(ModeColours, AdditiveScalesColoursByTheirAlpha) {
    const IndexColours colours = mode_colours(palette(), RenderMode::Additive);
    EXPECT_EQ(colours[0], 0U);
    EXPECT_EQ(colours[1], 0x8080FF00);
    EXPECT_EQ(colours[2], 0xFFFF0102);
}

TEST(ModeColours, AdditiveOverBlackIsThePalette) {
    EXPECT_EQ(colours_over(palette(), RenderMode::Additive, 0), plain_colours(palette()));
}

TEST(ModeColours, AdditiveSaturates) {
    EXPECT_EQ(colours_over(palette(), RenderMode::Additive, 0x00010203)[2], 0xFFFF0305);
}

TEST(ModeColours, AlphaTestOverABackground) {
    const IndexColours colours = colours_over(palette(), RenderMode::AlphaTest, 0x00010203);
    EXPECT_EQ(colours[255], 0xFF010203);
    EXPECT_EQ(colours[1], 0xFF408000);
}

TEST(ModeColours, IndexAlphaBlendsWithTheBackground) {
    const IndexColours colours = colours_over(palette(), RenderMode::IndexAlpha, 0x00FF00FF);
    EXPECT_EQ(colours[0], 0xFFFF00FF);
    EXPECT_EQ(colours[51], 0xFFCE04D2);  // a fifth of 10, 20, 30 and four fifths of 255, 0, 255
    EXPECT_EQ(colours[100], 0xFF9F08A7); // 158.9, 7.8 and 166.8
    EXPECT_EQ(colours[255], 0xFF0A141E);
}

} // namespace
} // namespace varnoth
