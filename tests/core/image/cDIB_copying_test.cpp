// Copying to and from a cDIB, its palette and its sizes.
#include "core/image/cDIB.h"

#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "support/dibs.h"
#include "support/expect_failure.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();

// Copying

TEST_F(CDib, LoadBltOfSize0OrBelowUsesTheWholePicture) {
    const auto surface = surface_of(2, 2, {1, 2, 3, 4});
    ASSERT_TRUE(dib.Create(2, 2, 32));
    EXPECT_EQ(dib.LoadBlt(surface->hDC(), 0, 0, 0, -3), 1);
    EXPECT_EQ(colours_of(dib), (Colours{1, 2, 3, 4}));
    dib.Cls(0);
    EXPECT_EQ(dib.LoadBlt(surface->hDC(), 0, 0, 1, 0), 1);
    EXPECT_EQ(colours_of(dib), (Colours{1, 0, 3, 0}));
}

TEST_F(CDib, LoadBltKeepsThePosition) {
    const auto surface = surface_of(2, 2, {1, 2, 3, 4});
    ASSERT_TRUE(dib.Create(2, 2, 32));
    EXPECT_EQ(dib.LoadBlt(surface->hDC(), 1, 1), 1);
    EXPECT_EQ(colours_of(dib), (Colours{0, 0, 0, 4}));
    EXPECT_EQ(dib.LoadBlt(DrawingContext()), 0);
}

TEST_F(CDib, StretchOfSourceSize0OrBelowUsesTheWholePicture) {
    fill_dib(dib, 2, 2, {1, 2, 3, 4});
    TestSurface surface(2, 2);
    EXPECT_EQ(dib.Stretch(surface.hDC(), 0, 0, 2, 2, 0, 0, 0, -1), 1);
    EXPECT_EQ(colours_of(surface), (Colours{1, 2, 3, 4}));
    TestSurface part(2, 2);
    EXPECT_EQ(dib.Stretch(part.hDC(), 0, 0, 2, 2, 1, 0, 1, 2), 1);
    EXPECT_EQ(colours_of(part), (Colours{2, 2, 4, 4}));
}

TEST_F(CDib, StretchAcceptsNegativeDestinationSizes) {
    fill_dib(dib, 2, 2, {1, 2, 3, 4});
    TestSurface surface(2, 2);
    EXPECT_EQ(dib.Stretch(surface.hDC(), 1, 0, -2, 2), 1);
    EXPECT_EQ(colours_of(surface), (Colours{2, 1, 4, 3}));
    TestSurface untouched(2, 2);
    EXPECT_EQ(dib.Stretch(untouched.hDC(), 0, 0, 0, 2), 1);
    EXPECT_EQ(colours_of(untouched), (Colours{0, 0, 0, 0}));
}

TEST_F(CDib, StretchRestoresTheModeAndReturnsTheCopysResult) {
    fill_dib(dib, 1, 1, {1});
    TestSurface surface(1, 1);
    surface.hDC().set_stretch_mode(4);
    EXPECT_EQ(dib.Stretch(surface.hDC(), 0, 0, 1, 1), 1);
    EXPECT_EQ(surface.hDC().set_stretch_mode(4), 4);
    EXPECT_EQ(dib.Stretch(surface.hDC(), 0, 0, 1, 1, 0, 0, 0, 0, 0x660046), 0);
    DrawingContext nothing;
    EXPECT_EQ(dib.Stretch(nothing, 0, 0, 1, 1), 0);
}

TEST_F(CDib, ClsFillsWithAPlainOrSystemColour) {
    ASSERT_TRUE(dib.Create(2, 1, 32));
    dib.Cls(0x123456);
    EXPECT_EQ(bytes_of(dib), (Bytes{0x12, 0x34, 0x56, 0, 0x12, 0x34, 0x56, 0}));
    dib.Cls(std::numeric_limits<Colour>::min() + 5);
    EXPECT_EQ(colours_of(dib), (Colours{0xFFFFFF, 0xFFFFFF}));
}

TEST_F(CDib, ClsOfAnIndexedPictureUsesTheNearestEntry) {
    ASSERT_TRUE(dib.Create(2, 1, 8));
    dib.SetPalette(Bytes{0, 0, 0, 0, 250, 0, 0, 0});
    dib.Cls(0xFF0000);
    EXPECT_EQ(bytes_of(dib), (Bytes{1, 1, 0, 0}));
}

// Palettes

TEST_F(CDib, ShortColourTableKeepsTheOtherEntries) {
    ASSERT_TRUE(dib.Create(1, 1, 4));
    dib.SetPalette(Bytes(64, 7));
    dib.SetPalette(Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 9, 9});
    Bytes expected(64, 7);
    std::ranges::copy(Bytes{1, 2, 3, 4, 5, 6, 7, 8}, expected.begin());
    EXPECT_EQ(palette_of(dib), expected);
    dib.SetPalette({});
    EXPECT_EQ(palette_of(dib), expected);
}

TEST_F(CDib, LongColourTableIsTruncated) {
    ASSERT_TRUE(dib.Create(1, 1, 1));
    dib.SetPalette(Bytes(2000, 7));
    Bytes palette(5000, 1);
    dib.GetPalette(palette);
    EXPECT_EQ(palette, Bytes(8, 7));
}

TEST_F(CDib, PaletteAbove8BitsLeavesTheArrayUnchanged) {
    for (const std::int32_t bits : {16, 24, 32}) {
        ASSERT_TRUE(dib.Create(1, 1, bits));
        dib.SetPalette(Bytes(1024, 7));
        Bytes palette{1, 2};
        dib.GetPalette(palette);
        EXPECT_EQ(palette, (Bytes{1, 2}));
        EXPECT_EQ(bytes_of(dib), Bytes(4, 0));
    }
}

// Sizes

TEST_F(CDib, ResizeStretchesThePicture) {
    fill_dib(dib, 2, 2, {1, 2, 3, 4});
    dib.Resize(4, 1, true);
    EXPECT_EQ(colours_of(dib), (Colours{1, 1, 2, 2}));
    EXPECT_EQ(dib.bmiHeader().biWidth, 4);
    EXPECT_EQ(dib.Size(), 16);
}

TEST_F(CDib, ResizeWithoutStretchKeepsTheTopLeftCorner) {
    fill_dib(dib, 2, 2, {1, 2, 3, 4});
    dib.Resize(3, 1, false);
    EXPECT_EQ(colours_of(dib), (Colours{1, 2, 0}));
    dib.Resize(1, 2, false);
    EXPECT_EQ(colours_of(dib), (Colours{1, 0}));
}

TEST_F(CDib, ResizeKeepsDepthColoursAndIndices) {
    for (const bool stretch : {true, false}) {
        ASSERT_EQ(dib.CreateFromStdPicture(indexed_picture(2, 1, 8, {200, 7}), false), 8);
        const Bytes before = palette_of(dib);
        dib.Resize(2, 2, stretch);
        const Bytes after = palette_of(dib);
        EXPECT_EQ(before, after);
        EXPECT_EQ(bytes_of(dib),
                  stretch ? (Bytes{200, 7, 0, 0, 200, 7, 0, 0}) : (Bytes{0, 0, 0, 0, 200, 7, 0, 0}));
    }
}

TEST_F(CDib, ResizeToAnInvalidSizeEmptiesTheObject) {
    fill_dib(dib, 1, 1, {1});
    dib.Resize(0, 5, true);
    expect_empty(dib);
    fill_dib(dib, 1, 1, {1});
    EXPECT_FAILURE(dib.Resize(largest, 1, true), Overflow);
    EXPECT_EQ(colours_of(dib), Colours{1});
}

struct Fit {
    std::int32_t x = 0, y = 0, width = 0, height = 0;

    friend bool operator==(const Fit&, const Fit&) = default;

    friend std::ostream& operator<<(std::ostream& stream, const Fit& fit) {
        return stream << fit.width << " by " << fit.height << " at " << fit.x << ", " << fit.y;
    }
};

struct FitCase {
    const char* name;
    std::int32_t width, height, box_width, box_height;
    bool stretch;
    Fit fit;
};

const FitCase fit_cases[] = {
    {"SmallPictureIsCentred", 100, 50, 200, 200, false, {50, 75, 100, 50}},
    {"SmallPictureIsEnlargedWithStretchFit", 100, 50, 200, 200, true, {0, 50, 200, 100}},
    {"LargeSquareInASquareBoxIsTheBox", 256, 256, 150, 150, false, {0, 0, 150, 150}},
    {"SmallSquareInASquareBoxIsTheBox", 7, 7, 150, 150, true, {0, 0, 150, 150}},
    // In a huge box the float ratio, 333333344 for 333333333.3, is too coarse to give the box itself.
    {"VerticalOfEqualRatiosIsUsed",
     3,
     3,
     1'000'000'000,
     1'000'000'000,
     true,
     {-16, 0, 1'000'000'032, 1'000'000'000}},
    {"WidePictureUsesTheHorizontalRatio", 256, 128, 150, 150, false, {0, 37, 150, 75}},
    {"HighPictureUsesTheVerticalRatio", 128, 256, 150, 150, false, {37, 0, 75, 150}},
    {"SlightlyHigherPicture", 150, 151, 150, 150, false, {0, 0, 149, 150}}, // 149.006...
    {"HeightMayRoundTo0", 512, 1, 150, 150, false, {0, 75, 150, 0}},
    {"WidthMayRoundTo0", 1, 512, 150, 150, false, {75, 0, 0, 150}},
    {"HalfRoundsToEven", 4, 2, 1, 9, false, {0, 4, 1, 0}},         // 0.25 * 2 = 0.5
    {"OneAndAHalfRoundsToEven", 4, 6, 1, 9, false, {0, 3, 1, 2}},  // 0.25 * 6 = 1.5
    {"TwoAndAHalfRoundsToEven", 4, 10, 1, 9, false, {0, 3, 1, 2}}, // 0.25 * 10 = 2.5
    // 1/6 as a float is slightly larger, and so is the product: 2.50000007, not a tie.
    {"SlightlyMoreThanAHalfRoundsUp", 6, 15, 1, 99, false, {0, 48, 1, 3}},
    {"NegativeBoxPositionIsTruncated", 3, 3, 3, -1, false, {2, 0, -1, -1}},
    {"PositionIsTruncated", 2, 1, 7, 2, true, {1, 0, 4, 2}},
    {"NegativeHeightOfMinusAHalfRoundsTo0", 2, 1, -1, 0, true, {0, 0, -1, 0}},
};

class CDibBestFit : public testing::TestWithParam<FitCase> {};

TEST_P(CDibBestFit, SizeAndPositionAreAsExpected) {
    const FitCase& each = GetParam();
    cDIB dib;
    ASSERT_TRUE(dib.Create(each.width, each.height, 8));
    Fit fit;
    dib.GetBestFitInfo(each.box_width, each.box_height, fit.x, fit.y, fit.width, fit.height, each.stretch);
    EXPECT_EQ(fit, each.fit);
}

INSTANTIATE_TEST_SUITE_P(Cases, CDibBestFit, testing::ValuesIn(fit_cases),
                         [](const auto& instance) { return instance.param.name; });

TEST_F(CDib, BestFitBeyond32BitsOverflows) {
    ASSERT_TRUE(dib.Create(1, 1, 8));
    Fit fit;
    // Both ratios are stored as 2^31.
    EXPECT_FAILURE(dib.GetBestFitInfo(largest - 1, largest, fit.x, fit.y, fit.width, fit.height, true),
                   Overflow);
}

TEST_F(CDib, ImageIsANew32BitPicture) {
    ASSERT_EQ(dib.CreateFromStdPicture(indexed_picture(2, 2, 8, {0, 1, 2, 85}), false), 8);
    const Bytes before = bytes_of(dib);
    const Picture picture = dib.Image();
    ASSERT_EQ(picture.kind, PictureKind::Bitmap);
    EXPECT_EQ(picture.bitmap->bits_per_pixel(), 32);
    EXPECT_EQ(picture.bitmap->pixel(1, 0), make_colour(3, 2, 1));
    EXPECT_EQ(picture.bitmap->pixel(1, 1), make_colour(255, 170, 85));
    std::memset(dib.lpBits(), 9, 8);
    EXPECT_EQ(picture.bitmap->pixel(0, 0), 0);
    std::ranges::copy(before, dib.lpBits());
    EXPECT_EQ(dib.Bpp(), 8);
}

} // namespace
} // namespace varnoth::test
