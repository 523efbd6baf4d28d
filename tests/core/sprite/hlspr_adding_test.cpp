#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "core/quantize/mixpals.h"
#include "core/sprite/hlspr.h"
#include "support/RecordedServices.h"
#include "support/expect_failure.h"
#include "support/pictures.h"
#include "support/sprites.h"

namespace varnoth::test {
namespace {

using hlspr::add_frame;
using hlspr::document;

constexpr Colour red = 0x0000FF;
constexpr Colour green = 0x00FF00;
constexpr Colour blue = 0xFF0000;

class FrameAddingTest : public testing::Test {
  protected:
    FrameAddingTest() {
        reset_sprite();
        reset_mixpals();
        hlspr::new_sprite(2, 1, 0, 0);
        import_palette();
    }

    ~FrameAddingTest() override {
        reset_sprite();
        reset_mixpals();
    }

    // Entries 0 to 3 are black, red, green and blue; all others are white.
    static void import_palette() {
        mixpals::ImportPalette.fill({255, 255, 255, 0});
        mixpals::ImportPalette[0] = {0, 0, 0, 0};
        mixpals::ImportPalette[1] = {0, 0, 255, 0};
        mixpals::ImportPalette[2] = {0, 255, 0, 0};
        mixpals::ImportPalette[3] = {255, 0, 0, 0};
        mixpals::MakeLookupPalette();
    }

    static Bytes frame(std::size_t number) { return indices_of(document().FrameStore.at(number)); }

    RecordedServices services;
};

TEST_F(FrameAddingTest, PaletteColourGivesItsIndex) {
    add_frame(*surface_of(3, 2, {red, green, blue, blue, 0, 0xFFFFFF}));
    ASSERT_EQ(document().SpriteHeader.FrameCount, 1);
    ASSERT_EQ(document().FrameStore.size(), 1U);
    EXPECT_EQ(frame(0), (Bytes{1, 2, 3, 3, 0, 4})) << "white is at the first of equals";
    EXPECT_EQ(document().FrameOrder, (std::vector<std::int16_t>{0}));
}

TEST_F(FrameAddingTest, PixelGetsTheNearestIndex) {
    add_frame(*surface_of(2, 1, {0x0000F0, 0x808080}));
    EXPECT_EQ(frame(0), (Bytes{1, 4}));
}

TEST_F(FrameAddingTest, FramesAreAppendedWithTheirOwnNumber) {
    add_frame(*surface_of(1, 1, {red}));
    add_frame(*surface_of(2, 1, {green, blue}));
    document().FrameOrder = {1, 0};
    add_frame(*surface_of(1, 1, {blue}));
    EXPECT_EQ(document().SpriteHeader.FrameCount, 3);
    EXPECT_EQ(document().FrameOrder, (std::vector<std::int16_t>{1, 0, 2}));
    EXPECT_EQ(frame(0), (Bytes{1}));
    EXPECT_EQ(frame(1), (Bytes{2, 3}));
    EXPECT_EQ(frame(2), (Bytes{3}));
    EXPECT_EQ(document().SpriteHeader.Width, 2) << "sizes are not reconciled here";
}

TEST_F(FrameAddingTest, OnlyTheFirstFrameCopiesTheImportPalette) {
    document().Palette.ColourCount = 7;
    add_frame(*surface_of(1, 1, {red}));
    EXPECT_EQ(document().Palette.Colours[1], (PaletteColour{255, 0, 0}));
    EXPECT_EQ(document().Palette.Colours[3], (PaletteColour{0, 0, 255}));
    EXPECT_EQ(document().Palette.Colours[255], (PaletteColour{255, 255, 255}));
    EXPECT_EQ(document().Palette.ColourCount, 7) << "the count stays";
    mixpals::ImportPalette[1] = {1, 2, 3, 0};
    add_frame(*surface_of(1, 1, {red}));
    EXPECT_EQ(document().Palette.Colours[1], (PaletteColour{255, 0, 0}));
    hlspr::clear_frames();
    add_frame(*surface_of(1, 1, {red}));
    EXPECT_EQ(document().Palette.Colours[1], (PaletteColour{3, 2, 1}));
}

TEST_F(FrameAddingTest, SearchUsesTheLookupPalette) {
    mixpals::SwapTransparent(255, 0, 0);
    add_frame(*surface_of(1, 1, {red}));
    EXPECT_EQ(frame(0), (Bytes{1}));
    EXPECT_EQ(document().Palette.Colours[1], (PaletteColour{255, 255, 255}));
}

TEST_F(FrameAddingTest, YieldsBeforeEachRowIsLookedUp) {
    std::vector<Bytes> frames;
    services.on_yield = [&] { frames.push_back(frame(0)); };
    add_frame(*surface_of(2, 3, {red, red, green, green, blue, blue}));
    EXPECT_EQ(frames, (std::vector<Bytes>{
                          {0, 0, 0, 0, 0, 0},
                          {1, 1, 0, 0, 0, 0},
                          {1, 1, 2, 2, 0, 0},
                      }));
}

TEST_F(FrameAddingTest, Picture24BitOfOddWidthIsSkewedByItsPadding) {
    add_frame(*surface_of(1, 3, {red, green, blue}, 24));
    EXPECT_EQ(frame(0), (Bytes{1, 2, 3})) << "one column is read without its padding";
    add_frame(*surface_of(2, 2, {red, green, blue, 0xFFFFFF}, 24));
    EXPECT_EQ(frame(1), (Bytes{1, 2, 3, 4}));
    // Rows of 10 bytes read as rows of 9: the second row begins with the padding byte of the first. Its
    // pixels are then black, blue, blue.
    add_frame(*surface_of(3, 2, {red, red, red, red, red, red}, 24));
    EXPECT_EQ(frame(2), (Bytes{1, 1, 1, 0, 3, 3}));
}

TEST_F(FrameAddingTest, Picture16BitFailsAtItsLastPixel) {
    TestSurface picture(2, 1, 16);
    EXPECT_FAILURE(add_frame(picture), SubscriptOutOfRange);
    EXPECT_EQ(document().SpriteHeader.FrameCount, 1);
    EXPECT_EQ(document().FrameStore[0].size(), 2U);
}

TEST_F(FrameAddingTest, LookupBeforeAnImportOverflowsAfterCounting) {
    reset_mixpals();
    EXPECT_FAILURE(add_frame(*surface_of(1, 1, {red})), Overflow);
    EXPECT_EQ(document().SpriteHeader.FrameCount, 1);
    EXPECT_EQ(frame(0), (Bytes{0}));
}

TEST_F(FrameAddingTest, PictureWithoutPixelsFailsWithTheFrameCounted) {
    TestSurface none(0, 4);
    EXPECT_FAILURE(add_frame(none), SubscriptOutOfRange);
    EXPECT_EQ(document().SpriteHeader.FrameCount, 1);
    EXPECT_EQ(document().FrameStore.size(), 1U);
    EXPECT_EQ(document().FrameOrder, (std::vector<std::int16_t>{0}));
}

TEST_F(FrameAddingTest, Frame32768FitsAndTheNextOverflows) {
    const auto picture = surface_of(1, 1, {red});
    document().SpriteHeader.FrameCount = 32767;
    document().FrameStore.resize(32767);
    document().FrameOrder.resize(32767);
    add_frame(*picture); // the number 32,767 still fits
    EXPECT_EQ(document().SpriteHeader.FrameCount, 32768);
    EXPECT_EQ(indices_of(document().FrameStore.back()), Bytes{1});
    EXPECT_EQ(document().FrameOrder.back(), 32767);
    EXPECT_FAILURE(add_frame(*picture), Overflow);
    EXPECT_EQ(document().SpriteHeader.FrameCount, 32769);
    EXPECT_EQ(document().FrameStore.size(), 32768U);
    document().SpriteHeader.FrameCount = std::numeric_limits<std::int32_t>::max();
    EXPECT_FAILURE(add_frame(*picture), Overflow);
}

TEST_F(FrameAddingTest, NegativeFrameCountOfARejectedFileFails) {
    for (const std::int32_t count : {-1, -5}) {
        document().SpriteHeader.FrameCount = count;
        EXPECT_FAILURE(add_frame(*surface_of(1, 1, {red})), SubscriptOutOfRange);
    }
}

TEST_F(FrameAddingTest, SurfaceInTwipsFailsForTooFewPixels) {
    const auto picture = surface_of(2, 2, {red, red, red, red});
    picture->ScaleMode = ScaleTwips;
    EXPECT_FAILURE(add_frame(*picture), SubscriptOutOfRange);
    EXPECT_EQ(document().FrameStore[0].size(), 900U);
}

TEST_F(FrameAddingTest, LookupChangedDuringAYieldAppliesToLaterRows) {
    const auto picture = surface_of(1, 2, {red, red});
    services.on_yield = [&] {
        if (services.yields == 2) {
            std::swap(mixpals::ImportPalette[1], mixpals::ImportPalette[2]);
            mixpals::MakeLookupPalette();
        }
    };
    add_frame(*picture);
    EXPECT_EQ(frame(0), (Bytes{1, 2}));
}

TEST_F(FrameAddingTest, PixelsDrawnDuringAYieldAreNotInTheFrame) {
    const auto picture = surface_of(1, 2, {red, green});
    services.on_yield = [&] { picture->Cls(); };
    add_frame(*picture);
    EXPECT_EQ(frame(0), (Bytes{1, 2}));
}

} // namespace
} // namespace varnoth::test
