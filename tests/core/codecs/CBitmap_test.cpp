#include "core/codecs/CBitmap.h"

#include <limits>

#include <gtest/gtest.h>

#include "core/base/Truth.h"
#include "core/image/PictureSurface.h"
#include "support/codec_files.h"
#include "support/expect_failure.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

// Sets the current bitmap to a 32-bit picture of these colours, top row first.
void make_current(std::int32_t width, std::int32_t height, const Colours& colours) {
    Bytes pixels;
    for (const Colour colour : colours) {
        pixels.insert(pixels.end(), {blue_of(colour), green_of(colour), red_of(colour), 0});
    }
    CBitmap::CreateBitmap32(pixels, width, height, 1);
}

// Replaces the screen's twips per pixel for one test.
struct TwipsPerPixel {
    TwipsPerPixel(double x, double y) { screen() = {x, y}; }

    ~TwipsPerPixel() { screen() = Screen{}; }
};

TEST(CBitmap, SizesFromOnePixelToLessThan2GiBArePossible) {
    EXPECT_TRUE(CBitmap::is_possible_size(1, 1));
    EXPECT_TRUE(CBitmap::is_possible_size(1, 536870911));
    EXPECT_FALSE(CBitmap::is_possible_size(1, 536870912));
    EXPECT_TRUE(CBitmap::is_possible_size(536870911, 1));
    EXPECT_FALSE(CBitmap::is_possible_size(2, 268435456));
    EXPECT_FALSE(CBitmap::is_possible_size(0, 5));
    EXPECT_FALSE(CBitmap::is_possible_size(-1, 5));
    EXPECT_FALSE(CBitmap::is_possible_size(5, 0));
    EXPECT_FALSE(CBitmap::is_possible_size(5, -1));
}

TEST(CBitmap, Pixels1BitAreBlackAndWhiteFromTheHighestBit) {
    CBitmap::SetMonoColors();
    CBitmap::CreateBitmap1(Bytes{0b10100000, 0b01000000, 0, 0}, 10, 1, 0);
    EXPECT_EQ(decoded_colours(), (Colours{0xFFFFFF, 0, 0xFFFFFF, 0, 0, 0, 0, 0, 0, 0xFFFFFF}));
}

TEST(CBitmap, Pixels4BitAreIndicesWithTheHighNibbleLeft) {
    Bytes colours(48);
    colours[3] = 1;
    colours[4] = 2;
    colours[5] = 3;
    colours[45] = 10;
    colours[46] = 20;
    colours[47] = 30;
    CBitmap::SetColors16(colours);
    CBitmap::CreateBitmap4(Bytes{0x1F, 0x10, 0, 0}, 3, 1, 0);
    EXPECT_EQ(decoded_colours(), (Colours{0x030201, 0x1E140A, 0x030201}));
}

TEST(CBitmap, Pixels8BitAreIndicesIntoATableOf256) {
    Bytes colours(768);
    colours[765] = 7;
    colours[767] = 9;
    CBitmap::SetColors256(colours);
    CBitmap::CreateBitmap8(Bytes{255, 0, 0, 0}, 2, 1, 0);
    EXPECT_EQ(decoded_colours(), (Colours{0x090007, 0}));
}

TEST(CBitmap, Pixels16BitAreWordsOf5BitsPerChannel) {
    // Red 31; green 31 and the unused bit; blue 1.
    CBitmap::CreateBitmap16(Bytes{0x00, 0x7C, 0xE0, 0x83, 0x01, 0x00, 0, 0}, 3, 1, 0);
    EXPECT_EQ(decoded_colours(), (Colours{0x0000FF, 0x00FF00, 0x080000}));
}

TEST(CBitmap, Pixels32BitAreBlueGreenRedAndAnUnusedByte) {
    CBitmap::CreateBitmap32(Bytes{1, 2, 3, 4}, 1, 1, 0);
    EXPECT_EQ(decoded_colours(), (Colours{0x010203}));
    EXPECT_EQ(CBitmap::CurrentBitmap->bytes()[3], 0);
}

TEST(CBitmap, RowsArePaddedTo4BytesBottomRowFirst) {
    CBitmap::SetMonoColors();
    CBitmap::CreateBitmap1(Bytes{0x80, 0xFF, 0xFF, 0xFF, 0x00, 0xFF, 0xFF, 0xFF}, 1, 2, 0);
    EXPECT_EQ(decoded_colours(), (Colours{0, 0xFFFFFF}));
    CBitmap::CreateBitmap16(Bytes{1, 0, 0xFF, 0xFF, 2, 0, 0xFF, 0xFF}, 1, 2, 0);
    EXPECT_EQ(decoded_colours(), (Colours{0x100000, 0x080000}));
}

TEST(CBitmap, TopDownOtherThan0PutsTheTopRowFirst) {
    const Bytes pixels{1, 0, 0, 0, 2, 0, 0, 0};
    for (const std::int16_t flag : {std::int16_t{1}, std::int16_t{-1}, std::int16_t{7}}) {
        CBitmap::CreateBitmap32(pixels, 1, 2, flag);
        EXPECT_EQ(decoded_colours(), (Colours{0x010000, 0x020000}));
    }
    CBitmap::CreateBitmap32(pixels, 1, 2, 0);
    EXPECT_EQ(decoded_colours(), (Colours{0x020000, 0x010000}));
}

TEST(CBitmap, NegativeHeightReversesTheDirection) {
    const Bytes pixels{1, 0, 0, 0, 2, 0, 0, 0};
    CBitmap::CreateBitmap32(pixels, 1, -2, 0);
    EXPECT_EQ(decoded_colours(), (Colours{0x010000, 0x020000}));
    CBitmap::CreateBitmap32(pixels, 1, -2, 1);
    EXPECT_EQ(decoded_colours(), (Colours{0x020000, 0x010000}));
    EXPECT_FAILURE(CBitmap::CreateBitmap32(pixels, 1, std::numeric_limits<std::int32_t>::min(), 1), Overflow);
}

TEST(CBitmap, MissingBytesHaveTheColourOfIndex0) {
    CBitmap::CreateBitmap32(Bytes{1, 2, 3, 0, 4}, 1, 3, 1);
    EXPECT_EQ(decoded_colours(), (Colours{0x010203, 0x040000, 0}));
    CBitmap::CreateBitmap16(Bytes{0x1F}, 2, 1, 1);
    EXPECT_EQ(decoded_colours(), (Colours{0xFF0000, 0}));
    Bytes colours(768);
    colours[0] = 5;
    CBitmap::SetColors256(colours);
    CBitmap::CreateBitmap8(Bytes{1}, 2, 2, 1);
    EXPECT_EQ(decoded_colours(), (Colours{0, 5, 5, 5}));
}

TEST(CBitmap, TableAndPictureKeepTheirColours) {
    Bytes colours(768);
    colours[0] = 5;
    CBitmap::SetColors256(colours);
    CBitmap::SetColors16(Bytes(48, 1));
    CBitmap::SetMonoColors();
    CBitmap::CreateBitmap8(Bytes{0, 0, 0, 0}, 1, 1, 0);
    EXPECT_EQ(decoded_colours(), (Colours{5}));
    CBitmap::SetColors256(Bytes(768, 3));
    EXPECT_EQ(decoded_colours(), (Colours{5}));
}

TEST(CBitmap, TableTakesItsTriplesAndFailsOnFewer) {
    EXPECT_FAILURE(CBitmap::SetColors16(Bytes(47)), SubscriptOutOfRange);
    EXPECT_FAILURE(CBitmap::SetColors256(Bytes(767)), SubscriptOutOfRange);
    EXPECT_EQ(failure_in([] { CBitmap::SetColors16(Bytes(1000)); }), std::nullopt);
    EXPECT_EQ(failure_in([] { CBitmap::SetColors256(Bytes(1000)); }), std::nullopt);
}

TEST(CBitmap, EmptyArrayFailsAndKeepsTheCurrentPicture) {
    const auto old = put_old_picture();
    EXPECT_FAILURE(CBitmap::CreateBitmap1({}, 1, 1, 0), SubscriptOutOfRange);
    EXPECT_FAILURE(CBitmap::CreateBitmap4({}, 1, 1, 0), SubscriptOutOfRange);
    EXPECT_FAILURE(CBitmap::CreateBitmap8({}, 1, 1, 0), SubscriptOutOfRange);
    EXPECT_FAILURE(CBitmap::CreateBitmap16({}, 1, 1, 0), SubscriptOutOfRange);
    EXPECT_FAILURE(CBitmap::CreateBitmap32({}, 0, 0, 0), SubscriptOutOfRange);
    EXPECT_EQ(CBitmap::CurrentBitmap, old);
}

TEST(CBitmap, ImpossiblePictureLeavesNoneWithoutAFailure) {
    const Bytes pixels(4);

    struct {
        std::int32_t width, height;
    } const sizes[] = {
        {0, 1}, {1, 0}, {-1, 1}, {40000, 40000}, {1, std::numeric_limits<std::int32_t>::min()}};

    for (const auto& size : sizes) {
        put_old_picture();
        CBitmap::CreateBitmap8(pixels, size.width, size.height, 0);
        EXPECT_EQ(CBitmap::CurrentBitmap, nullptr) << size.width << " by " << size.height;
    }
}

TEST(CBitmap, DrawWithoutAPictureClearsAndSizesTheTarget) {
    CBitmap::CurrentBitmap = nullptr;
    const auto target = surface_of(1, 1, {0x123456});
    CBitmap::DrawBitmap(2, 1, *target, -1);
    EXPECT_EQ(colours_of(*target), (Colours{0, 0}));
}

TEST(CBitmap, ScreenFactorsAreRoundedBeforeMultiplying) {
    EXPECT_EQ(CBitmap::PixelsToTwips(3, 4), (CBitmap::Extent{45, 60}));
    const TwipsPerPixel changed(12.5, 13.5);
    EXPECT_EQ(CBitmap::PixelsToTwips(3, 4), (CBitmap::Extent{36, 56}));
    EXPECT_EQ(CBitmap::PixelsToTwips(-3, 0), (CBitmap::Extent{-36, 0}));
}

TEST(CBitmap, TwipsToPixelsRoundsTiesToEven) {
    const TwipsPerPixel changed(10, 4);
    EXPECT_EQ(CBitmap::TwipsToPixels(25, 6), (CBitmap::Extent{2, 2}));
    EXPECT_EQ(CBitmap::TwipsToPixels(35, 10), (CBitmap::Extent{4, 2}));
    EXPECT_EQ(CBitmap::TwipsToPixels(-25, 7), (CBitmap::Extent{-2, 2}));
}

TEST(CBitmap, SizeBeyond32BitsOverflowsAndNoTwipsDivideByZero) {
    EXPECT_FAILURE(CBitmap::PixelsToTwips(200'000'000, 1), Overflow);
    EXPECT_FAILURE(CBitmap::PixelsToTwips(1, -200'000'000), Overflow);
    const TwipsPerPixel changed(0.4, 0.4);
    EXPECT_FAILURE(CBitmap::TwipsToPixels(1, 1), DivisionByZero);
}

TEST(CBitmap, AutoscaleGivesABorderlessTargetThePicturesSize) {
    const Colours colours{1, 2, 3, 4, 5, 6};
    make_current(3, 2, colours);
    TestSurface target(7, 1);
    CBitmap::DrawBitmap(3, 2, target, -1);
    EXPECT_EQ(target.bitmap().width(), 3);
    EXPECT_EQ(target.bitmap().height(), 2);
    EXPECT_EQ(colours_of(target), colours);
}

TEST(CBitmap, AutoscaleGivesTheInnerAreaThePicturesSize) {
    Colours colours;
    for (Colour i = 0; i < 8 * 9; ++i) {
        colours.push_back(i);
    }
    make_current(8, 9, colours);
    TestSurface target(20, 20, 32, 2);
    CBitmap::DrawBitmap(8, 9, target, -1);
    EXPECT_EQ(target.bitmap().width(), 8);
    EXPECT_EQ(target.bitmap().height(), 9);
    EXPECT_EQ(target.Width(), 12);
    EXPECT_EQ(colours_of(target), colours);
}

TEST(CBitmap, PictureSmallerThanTheBorderIsDrawnUnscaled) {
    for (const std::int32_t side : {1, 2, 3, 4, 5}) {
        Colours colours;
        for (Colour i = 1; i <= side * side; ++i) {
            colours.push_back(i);
        }
        make_current(side, side, colours);
        TestSurface target(20, 20, 32, 2);
        CBitmap::DrawBitmap(side, side, target, -1);
        EXPECT_EQ(target.bitmap().width(), side);
        EXPECT_EQ(target.bitmap().height(), side);
        EXPECT_EQ(colours_of(target), colours) << side;
    }
    make_current(1, 9, Colours(9, 5));
    TestSurface target(20, 20, 32, 2);
    CBitmap::DrawBitmap(1, 9, target, -1);
    EXPECT_EQ(target.bitmap().width(), 1) << "one side alone";
    EXPECT_EQ(target.bitmap().height(), 9);
}

TEST(CBitmap, BorderedTargetGrowsAtEveryDrawWithoutAutoscale) {
    make_current(1, 1, {5});
    TestSurface target(10, 6, 32, 2);
    CBitmap::DrawBitmap(1, 1, target, 0);
    EXPECT_EQ(target.bitmap().width(), 14);
    EXPECT_EQ(target.bitmap().height(), 10);
    // The picture is stretched to the old outer size, which is the inner size after growing.
    EXPECT_EQ(colours_of(target), Colours(14 * 10, 5));
    CBitmap::DrawBitmap(1, 1, target, 0);
    EXPECT_EQ(target.bitmap().width(), 18);
    EXPECT_EQ(target.bitmap().height(), 14);
}

TEST(CBitmap, OnlyMinus1IsAutoscale) {
    make_current(1, 1, {5});
    for (const std::int16_t off : {std::int16_t{1}, std::int16_t{0}, std::int16_t{-2}}) {
        TestSurface target(2, 3);
        CBitmap::DrawBitmap(1, 1, target, off);
        EXPECT_EQ(colours_of(target), Colours(6, 5));
    }
}

TEST(CBitmap, TargetOfAnotherSizeStretchesThePicture) {
    make_current(2, 1, {1, 2});
    TestSurface target(4, 2);
    CBitmap::DrawBitmap(2, 1, target, 0);
    EXPECT_EQ(colours_of(target), (Colours{1, 1, 2, 2, 1, 1, 2, 2}));
}

TEST(CBitmap, DrawClearsTheTargetFirst) {
    make_current(1, 1, {5});
    const auto target = surface_of(4, 1, {9, 9, 9, 9});
    // Three quarters of the source are outside the picture and leave the target unchanged.
    CBitmap::DrawBitmap(4, 1, *target, 0);
    EXPECT_EQ(colours_of(*target), (Colours{5, 0, 0, 0}));
}

TEST(CBitmap, SmallerSourceSizeDrawsTheTopLeftPart) {
    make_current(2, 2, {1, 2, 3, 4});
    TestSurface target(9, 9);
    CBitmap::DrawBitmap(1, 2, target, -1);
    EXPECT_EQ(colours_of(target), (Colours{1, 3}));
}

TEST(CBitmap, DrawRestoresBothScaleModes) {
    make_current(2, 1, {1, 2});
    for (const std::int32_t border : {0, 3}) {
        for (const std::int16_t parent_mode : {ScaleTwips, ScalePixels}) {
            for (const std::int16_t own_mode : {ScaleTwips, ScalePixels}) {
                for (const std::int16_t autoscale : {True, False}) {
                    TestSurface target(40, 40, 32, border);
                    target.Parent()->ScaleMode = parent_mode;
                    target.ScaleMode = own_mode;
                    CBitmap::DrawBitmap(20, 20, target, autoscale);
                    EXPECT_EQ(target.Parent()->ScaleMode, parent_mode);
                    EXPECT_EQ(target.ScaleMode, own_mode);
                }
            }
        }
    }
}

TEST(CBitmap, DrawWorksOnATopLevelForm) {
    make_current(2, 1, {1, 2});
    PictureSurface form({nullptr, 5, 5, 32, 0, 0});
    form.ScaleMode = ScaleTwips;
    CBitmap::DrawBitmap(2, 1, form, -1);
    EXPECT_EQ(colours_of(form), (Colours{1, 2}));
    EXPECT_EQ(form.ScaleMode, ScaleTwips);
}

TEST(CBitmap, DrawnPixelsBecomeTheTargetsPicture) {
    make_current(2, 1, {1, 2});
    TestSurface target(1, 1);
    CBitmap::DrawBitmap(2, 1, target, -1);
    ASSERT_NE(target.picture().bitmap, nullptr);
    EXPECT_EQ(target.picture().bitmap->pixel(0, 0), 1);
    EXPECT_EQ(target.picture().bitmap->pixel(1, 0), 2);
    target.SetPicture(target.picture());
    EXPECT_EQ(colours_of(target), (Colours{1, 2}));
}

TEST(CBitmap, CurrentPictureCanBeDrawnAgain) {
    make_current(2, 1, {1, 2});
    const auto current = CBitmap::CurrentBitmap;
    TestSurface first(1, 1);
    TestSurface second(1, 1);
    CBitmap::DrawBitmap(2, 1, first, -1);
    CBitmap::DrawBitmap(2, 1, second, -1);
    EXPECT_EQ(CBitmap::CurrentBitmap, current);
    EXPECT_EQ(colours_of(first), colours_of(second));
}

TEST(CBitmap, NegativePictureSizeIsAnInvalidPropertyValue) {
    make_current(1, 1, {5});
    TestSurface target(1, 1);
    EXPECT_FAILURE(CBitmap::DrawBitmap(1, -1, target, -1), InvalidPropertyValue);
}

TEST(CBitmap, HeightIsSetBeforeWidth) {
    make_current(1, 1, {5});
    TestSurface target(3, 3);
    EXPECT_FAILURE(CBitmap::DrawBitmap(-1, 7, target, -1), InvalidPropertyValue);
    EXPECT_EQ(target.bitmap().height(), 7);
}

} // namespace
} // namespace varnoth::test
