#include <vector>

#include <gtest/gtest.h>

#include "core/sprite/hlspr.h"
#include "support/expect_failure.h"
#include "support/pictures.h"
#include "support/sprites.h"

namespace varnoth::test {
namespace {

using hlspr::document;
using hlspr::draw_frame;

class FrameDrawingTest : public testing::Test {
  protected:
    FrameDrawingTest() { reset_sprite(); }

    ~FrameDrawingTest() override { reset_sprite(); }

    // Entry i of the palette is red i, green i + 1, blue i + 2.
    void put_sprite(std::int32_t width, std::int32_t height, const std::vector<Bytes>& frames) {
        hlspr::new_sprite(width, height, 2, 0);
        for (std::size_t i = 0; i < 256; ++i) {
            const auto byte = [i](std::size_t step) { return static_cast<std::uint8_t>(i + step); };
            document().Palette.Colours[i] = {byte(0), byte(1), byte(2)};
        }
        document().SpriteHeader.FrameCount = static_cast<std::int32_t>(frames.size());
        document().FrameStore.clear();
        document().FrameOrder.clear();
        for (const Bytes& frame : frames) {
            document().FrameOrder.push_back(static_cast<std::int16_t>(document().FrameStore.size()));
            document().FrameStore.push_back(indices(frame));
        }
    }

    static constexpr Colour shown(std::uint8_t index) {
        return make_colour(index, static_cast<std::uint8_t>(index + 1), static_cast<std::uint8_t>(index + 2));
    }

    static void draw_first(PictureSurface& picture) {
        std::int16_t number = 0;
        draw_frame(number, picture);
    }

    static Bytes bits_of(const PictureSurface& surface) { return bytes_of(surface.bitmap()); }
};

TEST_F(FrameDrawingTest, PositionIsReplacedByTheStoredFrameNumber) {
    put_sprite(1, 1, {{10}, {20}});
    document().FrameOrder = {1, 0};
    TestSurface picture(3, 3);
    std::int16_t number = 0;
    draw_frame(number, picture);
    EXPECT_EQ(number, 1);
    EXPECT_EQ(colours_of(picture), (Colours{shown(20)}));
    draw_frame(number, picture);
    EXPECT_EQ(number, 0);
    EXPECT_EQ(colours_of(picture), (Colours{shown(10)}));
}

TEST_F(FrameDrawingTest, Sprite1By1DrawsASinglePixel) {
    put_sprite(1, 1, {{255}});
    TestSurface picture(1, 1);
    draw_first(picture);
    EXPECT_EQ(colours_of(picture), (Colours{make_colour(255, 0, 1)}));
    EXPECT_EQ(bits_of(picture), (Bytes{1, 0, 255, 0})) << "blue, green, red and a zero byte";
}

TEST_F(FrameDrawingTest, TopRowIsFirstAndThePictureIsResized) {
    put_sprite(3, 2, {{1, 2, 3, 4, 5, 6}});
    for (const std::int32_t side : {1, 5}) {
        TestSurface picture(side, side, 32, 0, 0xFFFFFF);
        draw_first(picture);
        EXPECT_EQ(picture.ScaleWidth(), 3);
        EXPECT_EQ(picture.ScaleHeight(), 2);
        EXPECT_EQ(colours_of(picture), (Colours{shown(1), shown(2), shown(3), shown(4), shown(5), shown(6)}));
    }
}

TEST_F(FrameDrawingTest, EveryRenderModeUsesThePlainPalette) {
    put_sprite(2, 1, {{0, 255}});
    TestSurface picture(2, 1, 32, 0, 0x123456);
    for (const std::int32_t mode : {0, 1, 2, 3, 99}) {
        document().SpriteHeader.RenderMode = mode;
        draw_first(picture);
        EXPECT_EQ(colours_of(picture), (Colours{shown(0), shown(255)})) << mode;
    }
}

TEST_F(FrameDrawingTest, LargerFrameIsReadInTheSpritesRows) {
    put_sprite(2, 2, {{1, 2, 3, 4, 5, 6, 7, 8, 9}}); // 3 by 3 in the file
    TestSurface picture(2, 2);
    draw_first(picture);
    EXPECT_EQ(colours_of(picture), (Colours{shown(1), shown(2), shown(3), shown(4)}));
}

TEST_F(FrameDrawingTest, ColourCountIsIgnored) {
    put_sprite(1, 1, {{200}});
    document().Palette.ColourCount = 2;
    TestSurface picture(1, 1);
    draw_first(picture);
    EXPECT_EQ(colours_of(picture), (Colours{shown(200)}));
}

TEST_F(FrameDrawingTest, UnusedByteOfEachPixelIsZero) {
    put_sprite(2, 1, {{1, 2}});
    TestSurface picture(2, 1);
    picture.SetBitmapBits(Bytes(8, 0xEE));
    draw_first(picture);
    EXPECT_EQ(bits_of(picture), (Bytes{3, 2, 1, 0, 4, 3, 2, 0}));
}

TEST_F(FrameDrawingTest, Picture24BitGetsTheBytesOf32BitPixels) {
    put_sprite(2, 2, {{10, 20, 30, 40}});
    TestSurface picture(2, 2, 24);
    draw_first(picture);
    EXPECT_EQ(bits_of(picture), (Bytes{12, 11, 10, 0, 22, 21, 20, 0, 32, 31, 30, 0}));
}

TEST_F(FrameDrawingTest, Picture16BitGetsTheBytesOf32BitPixels) {
    put_sprite(2, 2, {{10, 20, 30, 40}});
    TestSurface picture(5, 5, 16, 0, 0xFFFFFF);
    draw_first(picture);
    EXPECT_EQ(bits_of(picture), (Bytes{12, 11, 10, 0, 22, 21, 20, 0}));
}

TEST_F(FrameDrawingTest, BorderReducesTheVisiblePixels) {
    put_sprite(4, 3, {{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}});
    TestSurface picture(9, 9, 32, 1);
    draw_first(picture);
    EXPECT_EQ(picture.Width(), 4);
    EXPECT_EQ(colours_of(picture), (Colours{shown(1), shown(2)}))
        << "the bytes go over without regard to rows";
}

TEST_F(FrameDrawingTest, DrawingRefreshesThePicture) {
    put_sprite(1, 1, {{1}});
    TestSurface picture(1, 1);
    Colour seen = no_colour;
    picture.on_change = [&] { seen = picture.Point(0, 0); };
    draw_first(picture);
    EXPECT_EQ(seen, shown(1)) << "after the pixels are there";
}

// Failures.

TEST_F(FrameDrawingTest, InvalidPositionFailsWithoutAChange) {
    put_sprite(1, 1, {{1}, {2}});
    const auto picture = surface_of(2, 1, {7, 8});
    for (const std::int16_t position : {std::int16_t{2}, std::int16_t{-1}, std::int16_t{32767}}) {
        std::int16_t number = position;
        EXPECT_FAILURE(draw_frame(number, *picture), SubscriptOutOfRange);
        EXPECT_EQ(number, position);
        EXPECT_EQ(colours_of(*picture), (Colours{7, 8}));
    }
}

TEST_F(FrameDrawingTest, InvalidOrderFailsAfterClearing) {
    for (const std::int16_t stored : {std::int16_t{9}, std::int16_t{-4}}) {
        put_sprite(2, 1, {{1, 2}});
        document().FrameOrder[0] = stored;
        const auto picture = surface_of(1, 1, {7});
        std::int16_t number = 0;
        EXPECT_FAILURE(draw_frame(number, *picture), SubscriptOutOfRange);
        EXPECT_EQ(number, stored);
        EXPECT_EQ(colours_of(*picture), (Colours{0, 0}));
    }
}

TEST_F(FrameDrawingTest, TooShortFrameFailsWithThePictureCleared) {
    put_sprite(2, 2, {{1, 2, 3}});
    for (const std::int32_t side : {2, 4}) {
        TestSurface picture(side, side, 32, 0, 0x010203);
        picture.PSet(0, 0, 99);
        EXPECT_FAILURE(draw_first(picture), SubscriptOutOfRange);
        EXPECT_EQ(colours_of(picture), Colours(4, 0x010203));
    }
}

TEST_F(FrameDrawingTest, SpriteWithoutPixelsFails) {
    put_sprite(0, 3, {{1}});
    TestSurface picture(2, 2);
    EXPECT_FAILURE(draw_first(picture), SubscriptOutOfRange);
    EXPECT_EQ(picture.ScaleWidth(), 0);
    EXPECT_EQ(picture.ScaleHeight(), 3);
    put_sprite(3, 0, {{1}});
    EXPECT_FAILURE(draw_first(picture), SubscriptOutOfRange);
}

TEST_F(FrameDrawingTest, ImpossibleSizeFailsAfterClearing) {
    put_sprite(-1, 1, {{1}});
    const auto picture = surface_of(2, 1, {7, 8});
    EXPECT_FAILURE(draw_first(*picture), InvalidPropertyValue);
    EXPECT_EQ(colours_of(*picture), (Colours{0, 0}));
    put_sprite(0x7FFFFFFF, 1, {{1}});
    EXPECT_FAILURE(draw_first(*picture), Overflow);
    put_sprite(2, -2, {{1}});
    EXPECT_FAILURE(draw_first(*picture), InvalidPropertyValue);
}

} // namespace
} // namespace varnoth::test
