#include "pictures/cDIB.h"

#include <cstring>
#include <filesystem>
#include <limits>

#include <gtest/gtest.h>

#include "support/TemporaryFolder.h"
#include "support/dibs.h"
#include "support/expect_failure.h"
#include "support/pictures.h"

namespace varnoth {
namespace {

using test::bytes_of;
using test::colours_of;
using test::fill_dib;
using test::surface_of;
using test::TemporaryFolder;
using test::TestSurface;
using Bytes = std::vector<std::uint8_t>;
using Colours = std::vector<Colour>;

constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();

// A picture of a given depth whose colour table, where it has one, is entry i = (i, 2 i, 3 i) in blue, green,
// red.
Picture indexed_picture(std::int32_t width, std::int32_t height, std::int32_t bits, const Bytes& pixels) {
    Bitmap bitmap(width, height, bits, Bitmap::Rows::Surface);
    for (std::size_t i = 0; i < bitmap.colour_table().size(); ++i) {
        bitmap.colour_table()[i] = {static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(2 * i),
                                    static_cast<std::uint8_t>(3 * i), 0};
    }
    std::ranges::copy(pixels, bitmap.bytes().begin());
    return make_picture(std::move(bitmap));
}

void expect_empty(cDIB& dib) {
    EXPECT_EQ(dib.hDIB(), nullptr);
    EXPECT_EQ(dib.hDIBDC(), nullptr);
    EXPECT_EQ(dib.lpBits(), nullptr);
    EXPECT_EQ(dib.Width(), 0);
    EXPECT_EQ(dib.Height(), 0);
    EXPECT_EQ(dib.Bpp(), 0);
    EXPECT_EQ(dib.BytesPerScanline(), 0);
    EXPECT_EQ(dib.Size(), 0);
}

// Creating

TEST(CDib, AWidthOf1HasAStrideOf4At32BitsAndAt8BitsAndAWidthOf5At8BitsOneOf8) {
    cDIB dib;
    ASSERT_TRUE(dib.Create(1, 3, 32));
    EXPECT_EQ(dib.BytesPerScanline(), 4);
    ASSERT_TRUE(dib.Create(1, 3, 8));
    EXPECT_EQ(dib.BytesPerScanline(), 4);
    ASSERT_TRUE(dib.Create(5, 3, 8));
    EXPECT_EQ(dib.BytesPerScanline(), 8);
    EXPECT_EQ(dib.Size(), 24);
}

TEST(CDib, StridesOfEveryDepthAreRoundedUpTo4Bytes) {
    const struct {
        std::int32_t bits, width, stride;
    } cases[] = {{1, 1, 4},  {1, 32, 4}, {1, 33, 8}, {4, 8, 4},   {4, 9, 8},
                 {16, 1, 4}, {16, 3, 8}, {24, 1, 4}, {24, 4, 12}, {24, 5, 16}};

    for (const auto& each : cases) {
        cDIB dib;
        ASSERT_TRUE(dib.Create(each.width, 2, each.bits));
        EXPECT_EQ(dib.BytesPerScanline(), each.stride) << each.bits << " bits, width " << each.width;
        EXPECT_EQ(dib.Size(), 2 * each.stride);
        EXPECT_EQ(dib.hDIB()->row_bytes(), each.stride);
        EXPECT_EQ(dib.hDIB()->bytes().size(), static_cast<std::size_t>(dib.Size()));
    }
}

TEST(CDib, ANewSurfaceIsBlackWithABlackColourTable) {
    cDIB dib;
    ASSERT_TRUE(dib.Create(3, 2, 8));
    EXPECT_EQ(bytes_of(dib), Bytes(8, 0));
    Bytes palette;
    dib.GetPalette(palette);
    EXPECT_EQ(palette, Bytes(1024, 0));
    EXPECT_EQ(dib.hDIBDC()->bitmap(), dib.hDIB());
}

TEST(CDib, CreatingAgainForgetsPixelsAndColours) {
    cDIB dib;
    ASSERT_TRUE(dib.Create(4, 1, 8));
    dib.SetPalette(Bytes{1, 2, 3, 4});
    std::memset(dib.lpBits(), 9, 4);
    ASSERT_TRUE(dib.Create(4, 1, 8));
    EXPECT_EQ(bytes_of(dib), Bytes(4, 0));
    Bytes palette;
    dib.GetPalette(palette);
    EXPECT_EQ(palette, Bytes(1024, 0));
}

TEST(CDib, TheFirstByteIsTheLeftmostPixelOfTheLowestRow) {
    cDIB dib;
    fill_dib(dib, 1, 2, {0x010203, 0x040506});
    EXPECT_EQ(bytes_of(dib), (Bytes{4, 5, 6, 0, 1, 2, 3, 0}));
}

TEST(CDib, TheHeaderHoldsSizeAndDepthAndNothingElseAndOutlivesDestroy) {
    cDIB dib;
    ASSERT_TRUE(dib.Create(7, 5, 24));
    dib.Destroy();
    const BITMAPINFOHEADER& header = dib.bmiHeader();
    EXPECT_EQ(header.biSize, 40);
    EXPECT_EQ(header.biWidth, 7);
    EXPECT_EQ(header.biHeight, 5);
    EXPECT_EQ(header.biPlanes, 1);
    EXPECT_EQ(header.biBitCount, 24);
    EXPECT_EQ(header.biCompression, 0);
    EXPECT_EQ(header.biSizeImage, 0);
    EXPECT_EQ(header.biXPelsPerMeter, 0);
    EXPECT_EQ(header.biYPelsPerMeter, 0);
    EXPECT_EQ(header.biClrUsed, 0);
    EXPECT_EQ(header.biClrImportant, 0);
}

TEST(CDib, WhatCannotBeCreatedLeavesTheObjectEmpty) {
    const struct {
        std::int32_t width, height, bits;
    } cases[] = {{0, 1, 32}, {1, 0, 32}, {-1, 4, 32}, {4, -1, 32},
                 {4, 4, 0},  {4, 4, 7},  {4, 4, -8},  {4, 4, 64}};

    for (const auto& each : cases) {
        cDIB dib;
        ASSERT_TRUE(dib.Create(2, 2, 8));
        EXPECT_FALSE(dib.Create(each.width, each.height, each.bits));
        expect_empty(dib);
        EXPECT_EQ(dib.bmiHeader().biWidth, each.width);
        EXPECT_EQ(dib.bmiHeader().biBitCount, each.bits);
    }
}

TEST(CDib, SizeFieldsThatLeaveTheir32BitsAreAnOverflow) {
    cDIB dib;
    ASSERT_TRUE(dib.Create(2, 2, 8));
    EXPECT_FAILURE(dib.Create(largest / 32 + 1, 1, 32), Overflow);
    EXPECT_EQ(dib.hDIB(), nullptr);
    EXPECT_EQ(dib.Width(), largest / 32 + 1);
    EXPECT_EQ(dib.Bpp(), 32);
    EXPECT_EQ(dib.BytesPerScanline(), 0);
    EXPECT_FAILURE(dib.Create(largest / 24, 1, 24), Overflow); // the product fits, the rounding up does not
    EXPECT_FAILURE(dib.Create(32768, 16384, 32), Overflow);
    EXPECT_EQ(dib.BytesPerScanline(), 131072);
    EXPECT_EQ(dib.Size(), 0);
    EXPECT_FAILURE(dib.Create(1, 1, 40000), Overflow);
    EXPECT_FAILURE(dib.Create(std::numeric_limits<std::int32_t>::min(), 1, 8), Overflow);
}

TEST(CDib, DestroyOnAnEmptyObjectIsHarmlessAndTwiceIsTheSameAsOnce) {
    cDIB dib;
    expect_empty(dib);
    dib.Destroy();
    expect_empty(dib);
    ASSERT_TRUE(dib.Create(2, 2, 32));
    dib.Destroy();
    expect_empty(dib);
    dib.Destroy();
    expect_empty(dib);
}

TEST(CDib, EveryOperationOnAnEmptyObjectDoesNothing) {
    cDIB dib;
    TestSurface surface(2, 2);
    surface.PSet(0, 0, 5);
    const TemporaryFolder folder;
    EXPECT_EQ(dib.LoadBlt(surface.hDC()), 0);
    EXPECT_EQ(dib.Stretch(surface.hDC(), 0, 0, 2, 2), 0);
    EXPECT_EQ(colours_of(surface), (Colours{5, 0, 0, 0}));
    dib.Cls(7);
    dib.SetPalette(Bytes{1, 2, 3, 4});
    Bytes palette{9};
    dib.GetPalette(palette);
    EXPECT_EQ(palette, Bytes{9});
    std::int32_t x = 1;
    std::int32_t y = 2;
    std::int32_t width = 3;
    std::int32_t height = 4;
    dib.GetBestFitInfo(10, 10, x, y, width, height, true);
    EXPECT_EQ((std::vector{x, y, width, height}), (std::vector{1, 2, 3, 4}));
    dib.Save(folder.file("none.bmp"));
    EXPECT_FALSE(std::filesystem::exists(folder.file("none.bmp")));
    EXPECT_TRUE(dib.Image().empty());
    dib.Resize(2, 2, true);
    expect_empty(dib);
}

// Taking over pictures and contexts

TEST(CDib, AnEmptyPictureAndOneThatIsNoBitmapGive0AndLeaveTheObject) {
    cDIB dib;
    fill_dib(dib, 1, 1, {7});
    EXPECT_EQ(dib.CreateFromStdPicture({}, true), 0);
    Picture icon = surface_of(1, 1, {9})->Image();
    icon.kind = PictureKind::Icon;
    EXPECT_EQ(dib.CreateFromStdPicture(icon, false), 0);
    icon.kind = PictureKind::Metafile;
    EXPECT_EQ(dib.CreateFromStdPicture(icon, true), 0);
    EXPECT_EQ(dib.CreateFromStdPicture({PictureKind::Bitmap, nullptr}, true), 0);
    EXPECT_EQ(colours_of(dib), Colours{7});
}

TEST(CDib, APictureWithoutPixelsGives0AndEmptiesTheObject) {
    cDIB dib;
    fill_dib(dib, 1, 1, {7});
    EXPECT_EQ(dib.CreateFromStdPicture(make_picture(Bitmap(0, 3, 32, Bitmap::Rows::Surface)), true), 0);
    expect_empty(dib);
}

TEST(CDib, An8BitPictureForcedTo32BitsReturns8AndHasItsPixelsExpanded) {
    cDIB dib;
    EXPECT_EQ(dib.CreateFromStdPicture(indexed_picture(2, 2, 8, {0, 1, 2, 85}), true), 8);
    EXPECT_EQ(dib.Bpp(), 32);
    EXPECT_EQ(bytes_of(dib), (Bytes{2, 4, 6, 0, 85, 170, 255, 0, 0, 0, 0, 0, 1, 2, 3, 0}));
}

TEST(CDib, APictureOfFewBitsKeepsItsDepthItsColourTableAndItsIndices) {
    const struct {
        std::int32_t bits;
        Bytes pixels, stored;
    } cases[] = {{8, {3, 2, 250, 7, 6, 5}, {7, 6, 5, 0, 3, 2, 250, 0}},
                 {4, {0x3F, 0xA0, 0x12, 0x30}, {0x12, 0x30, 0, 0, 0x3F, 0xA0, 0, 0}},
                 {1, {0xA0, 0x40}, {0x40, 0, 0, 0, 0xA0, 0, 0, 0}}};

    for (const auto& each : cases) {
        cDIB dib;
        EXPECT_EQ(dib.CreateFromStdPicture(indexed_picture(3, 2, each.bits, each.pixels), false), each.bits);
        EXPECT_EQ(dib.Bpp(), each.bits);
        EXPECT_EQ(bytes_of(dib), each.stored) << each.bits;
        Bytes palette;
        dib.GetPalette(palette);
        ASSERT_EQ(palette.size(), std::size_t{4} << each.bits);
        EXPECT_EQ((Bytes{palette.begin() + 4, palette.begin() + 8}), (Bytes{1, 2, 3, 0}));
    }
}

TEST(CDib, APictureOfManyBitsKeepsItsDepthOrBecomes32Bits) {
    const Picture picture = surface_of(1, 2, {0x030201, 0x060504}, 24)->Image();
    cDIB dib;
    EXPECT_EQ(dib.CreateFromStdPicture(picture, false), 24);
    EXPECT_EQ(bytes_of(dib), (Bytes{6, 5, 4, 0, 3, 2, 1, 0}));
    EXPECT_EQ(dib.Bpp(), 24);
    EXPECT_EQ(dib.CreateFromStdPicture(picture, true), 24);
    EXPECT_EQ(dib.Bpp(), 32);
    EXPECT_EQ(colours_of(dib), (Colours{0x030201, 0x060504}));
    EXPECT_EQ(dib.CreateFromStdPicture(surface_of(1, 1, {0xFF}, 16)->Image(), false), 16);
    EXPECT_EQ(bytes_of(dib), (Bytes{0x00, 0x7C, 0, 0}));
}

TEST(CDib, AContextIsTakenOverAt32BitsAndBlackWhereItHasNothing) {
    const auto surface = surface_of(2, 1, {1, 2}, 24);
    cDIB dib;
    ASSERT_TRUE(dib.CreateFromHdc(surface->hDC(), 3, 2));
    EXPECT_EQ(dib.Bpp(), 32);
    EXPECT_EQ(colours_of(dib), (Colours{1, 2, 0, 0, 0, 0}));
    ASSERT_TRUE(dib.CreateFromHdc(surface->hDC(), 1, 1));
    EXPECT_EQ(colours_of(dib), Colours{1});
    EXPECT_FALSE(dib.CreateFromHdc(surface->hDC(), 0, 1));
    expect_empty(dib);
}

TEST(CDib, AContextWithoutABitmapGivesABlackPicture) {
    DrawingContext nothing;
    cDIB dib;
    EXPECT_TRUE(dib.CreateFromHdc(nothing, 1, 1));
    EXPECT_EQ(colours_of(dib), Colours{0});
}

TEST(CDib, AContextIsTakenOverAt8BitsWithItsColourTable) {
    cDIB source;
    ASSERT_EQ(source.CreateFromStdPicture(indexed_picture(2, 1, 8, {200, 7}), false), 8);
    cDIB dib;
    ASSERT_TRUE(dib.CreateFromHdc8bpp(*source.hDIBDC(), 2, 1));
    EXPECT_EQ(bytes_of(dib), (Bytes{200, 7, 0, 0}));
    EXPECT_EQ(colours_of(dib), colours_of(source));
    Bytes expected;
    source.GetPalette(expected);
    Bytes palette;
    dib.GetPalette(palette);
    EXPECT_EQ(palette, expected);
    EXPECT_FALSE(dib.CreateFromHdc8bpp(*source.hDIBDC(), -2, 1));
    expect_empty(dib);
}

TEST(CDib, AnObjectTakenOverByItselfIsBlank) {
    cDIB dib;
    fill_dib(dib, 1, 1, {7});
    DrawingContext& own = *dib.hDIBDC();
    EXPECT_TRUE(dib.CreateFromHdc(own, 2, 1));
    EXPECT_EQ(colours_of(dib), (Colours{0, 0}));
}

TEST(CDib, ACloneHasTheSameBytesAndColours) {
    cDIB dib;
    ASSERT_EQ(dib.CreateFromStdPicture(indexed_picture(3, 2, 4, {0x12, 0x30, 0x45, 0x60}), false), 4);
    cDIB clone;
    dib.CloneTo(clone);
    EXPECT_EQ(clone.Bpp(), 4);
    EXPECT_EQ(bytes_of(clone), bytes_of(dib));
    EXPECT_EQ(colours_of(clone), colours_of(dib));
    clone.lpBits()[0] = 0xFF;
    EXPECT_NE(bytes_of(clone), bytes_of(dib));
}

TEST(CDib, ACloneOfAnEmptyObjectIsAFailureAndLeavesTheOtherEmpty) {
    const cDIB dib;
    cDIB clone;
    ASSERT_TRUE(clone.Create(1, 1, 32));
    EXPECT_FAILURE(dib.CloneTo(clone), SubscriptOutOfRange);
    expect_empty(clone);
}

TEST(CDib, ACloneOntoItselfIsBlank) {
    cDIB dib;
    fill_dib(dib, 2, 1, {1, 2});
    dib.CloneTo(dib);
    EXPECT_EQ(colours_of(dib), (Colours{0, 0}));
}

// Copying

TEST(CDib, LoadBltWithASizeOf0OrBelowUsesTheWholePicture) {
    const auto surface = surface_of(2, 2, {1, 2, 3, 4});
    cDIB dib;
    ASSERT_TRUE(dib.Create(2, 2, 32));
    EXPECT_EQ(dib.LoadBlt(surface->hDC(), 0, 0, 0, -3), 1);
    EXPECT_EQ(colours_of(dib), (Colours{1, 2, 3, 4}));
    dib.Cls(0);
    EXPECT_EQ(dib.LoadBlt(surface->hDC(), 0, 0, 1, 0), 1);
    EXPECT_EQ(colours_of(dib), (Colours{1, 0, 3, 0}));
}

TEST(CDib, LoadBltKeepsTheRectangleAtItsPlace) {
    const auto surface = surface_of(2, 2, {1, 2, 3, 4});
    cDIB dib;
    ASSERT_TRUE(dib.Create(2, 2, 32));
    EXPECT_EQ(dib.LoadBlt(surface->hDC(), 1, 1), 1);
    EXPECT_EQ(colours_of(dib), (Colours{0, 0, 0, 4}));
    EXPECT_EQ(dib.LoadBlt(DrawingContext()), 0);
}

TEST(CDib, StretchWithASourceSizeOf0OrBelowUsesTheWholePicture) {
    cDIB dib;
    fill_dib(dib, 2, 2, {1, 2, 3, 4});
    TestSurface surface(2, 2);
    EXPECT_EQ(dib.Stretch(surface.hDC(), 0, 0, 2, 2, 0, 0, 0, -1), 1);
    EXPECT_EQ(colours_of(surface), (Colours{1, 2, 3, 4}));
    TestSurface part(2, 2);
    EXPECT_EQ(dib.Stretch(part.hDC(), 0, 0, 2, 2, 1, 0, 1, 2), 1);
    EXPECT_EQ(colours_of(part), (Colours{2, 2, 4, 4}));
}

TEST(CDib, StretchPassesADestinationSizeOnWhateverItsSign) {
    cDIB dib;
    fill_dib(dib, 2, 2, {1, 2, 3, 4});
    TestSurface surface(2, 2);
    EXPECT_EQ(dib.Stretch(surface.hDC(), 1, 0, -2, 2), 1);
    EXPECT_EQ(colours_of(surface), (Colours{2, 1, 4, 3}));
    TestSurface untouched(2, 2);
    EXPECT_EQ(dib.Stretch(untouched.hDC(), 0, 0, 0, 2), 1);
    EXPECT_EQ(colours_of(untouched), (Colours{0, 0, 0, 0}));
}

TEST(CDib, StretchPutsTheContextsModeBackAndAnswersWhatThePlatformAnswers) {
    cDIB dib;
    fill_dib(dib, 1, 1, {1});
    TestSurface surface(1, 1);
    surface.hDC().set_stretch_mode(4);
    EXPECT_EQ(dib.Stretch(surface.hDC(), 0, 0, 1, 1), 1);
    EXPECT_EQ(surface.hDC().stretch_mode(), 4);
    EXPECT_EQ(dib.Stretch(surface.hDC(), 0, 0, 1, 1, 0, 0, 0, 0, 0x660046), 0);
    DrawingContext nothing;
    EXPECT_EQ(dib.Stretch(nothing, 0, 0, 1, 1), 0);
}

TEST(CDib, ClsFillsWithAPlainOrASystemColour) {
    cDIB dib;
    ASSERT_TRUE(dib.Create(2, 1, 32));
    dib.Cls(0x123456);
    EXPECT_EQ(bytes_of(dib), (Bytes{0x12, 0x34, 0x56, 0, 0x12, 0x34, 0x56, 0}));
    dib.Cls(std::numeric_limits<Colour>::min() + 5);
    EXPECT_EQ(colours_of(dib), (Colours{0xFFFFFF, 0xFFFFFF}));
}

TEST(CDib, ClsOfAnIndexedPictureTakesTheNearestColourOfItsTable) {
    cDIB dib;
    ASSERT_TRUE(dib.Create(2, 1, 8));
    dib.SetPalette(Bytes{0, 0, 0, 0, 250, 0, 0, 0});
    dib.Cls(0xFF0000);
    EXPECT_EQ(bytes_of(dib), (Bytes{1, 1, 0, 0}));
}

// Palettes

TEST(CDib, AShortColourTableLeavesTheRemainingEntriesAsTheyWere) {
    cDIB dib;
    ASSERT_TRUE(dib.Create(1, 1, 4));
    dib.SetPalette(Bytes(64, 7));
    dib.SetPalette(Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 9, 9});
    Bytes palette;
    dib.GetPalette(palette);
    Bytes expected(64, 7);
    std::ranges::copy(Bytes{1, 2, 3, 4, 5, 6, 7, 8}, expected.begin());
    EXPECT_EQ(palette, expected);
    dib.SetPalette({});
    dib.GetPalette(palette);
    EXPECT_EQ(palette, expected);
}

TEST(CDib, ALongColourTableIsCutAtTheDepthsOwn) {
    cDIB dib;
    ASSERT_TRUE(dib.Create(1, 1, 1));
    dib.SetPalette(Bytes(2000, 7));
    Bytes palette(5000, 1);
    dib.GetPalette(palette);
    EXPECT_EQ(palette, Bytes(8, 7));
}

TEST(CDib, AboveEightBitsThereIsNoPaletteAndTheArrayIsLeftAsItCame) {
    for (const std::int32_t bits : {16, 24, 32}) {
        cDIB dib;
        ASSERT_TRUE(dib.Create(1, 1, bits));
        dib.SetPalette(Bytes(1024, 7));
        Bytes palette{1, 2};
        dib.GetPalette(palette);
        EXPECT_EQ(palette, (Bytes{1, 2}));
        EXPECT_EQ(bytes_of(dib), Bytes(4, 0));
    }
}

// Sizes

TEST(CDib, ResizeStretchesThePictureIntoTheNewSize) {
    cDIB dib;
    fill_dib(dib, 2, 2, {1, 2, 3, 4});
    dib.Resize(4, 1, true);
    EXPECT_EQ(colours_of(dib), (Colours{1, 1, 2, 2}));
    EXPECT_EQ(dib.bmiHeader().biWidth, 4);
    EXPECT_EQ(dib.Size(), 16);
}

TEST(CDib, ResizeWithoutStretchingKeepsTheTopLeftCornerAndBlackBeyond) {
    cDIB dib;
    fill_dib(dib, 2, 2, {1, 2, 3, 4});
    dib.Resize(3, 1, false);
    EXPECT_EQ(colours_of(dib), (Colours{1, 2, 0}));
    dib.Resize(1, 2, false);
    EXPECT_EQ(colours_of(dib), (Colours{1, 0}));
}

TEST(CDib, ResizeKeepsDepthColoursAndIndices) {
    for (const bool stretch : {true, false}) {
        cDIB dib;
        ASSERT_EQ(dib.CreateFromStdPicture(indexed_picture(2, 1, 8, {200, 7}), false), 8);
        Bytes before;
        dib.GetPalette(before);
        dib.Resize(2, 2, stretch);
        Bytes after;
        dib.GetPalette(after);
        EXPECT_EQ(before, after);
        EXPECT_EQ(bytes_of(dib),
                  stretch ? (Bytes{200, 7, 0, 0, 200, 7, 0, 0}) : (Bytes{0, 0, 0, 0, 200, 7, 0, 0}));
    }
}

TEST(CDib, ResizeToASizeThatCannotBeEmptiesTheObject) {
    cDIB dib;
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

Fit best_fit(std::int32_t width, std::int32_t height, std::int32_t box_width, std::int32_t box_height,
             bool stretch) {
    cDIB dib;
    EXPECT_TRUE(dib.Create(width, height, 8));
    Fit fit;
    dib.GetBestFitInfo(box_width, box_height, fit.x, fit.y, fit.width, fit.height, stretch);
    return fit;
}

TEST(CDib, APictureOf100By50InABoxOf200By200StaysOrFillsTheWidth) {
    EXPECT_EQ(best_fit(100, 50, 200, 200, false), (Fit{50, 75, 100, 50}));
    EXPECT_EQ(best_fit(100, 50, 200, 200, true), (Fit{0, 50, 200, 100}));
}

TEST(CDib, ASquarePictureScaledIntoASquareBoxIsTheBoxItself) {
    EXPECT_EQ(best_fit(256, 256, 150, 150, false), (Fit{0, 0, 150, 150}));
    EXPECT_EQ(best_fit(7, 7, 150, 150, true), (Fit{0, 0, 150, 150}));
}

TEST(CDib, OfTwoEqualRatiosTheVerticalOneIsTaken) {
    // In a huge box the stored ratio, 333333344 for 333333333.3, is too coarse to give the box itself.
    EXPECT_EQ(best_fit(3, 3, 1'000'000'000, 1'000'000'000, true),
              (Fit{-16, 0, 1'000'000'032, 1'000'000'000}));
}

TEST(CDib, ALargePictureIsScaledByTheSmallerRatio) {
    EXPECT_EQ(best_fit(256, 128, 150, 150, false), (Fit{0, 37, 150, 75}));
    EXPECT_EQ(best_fit(128, 256, 150, 150, false), (Fit{37, 0, 75, 150}));
    EXPECT_EQ(best_fit(150, 151, 150, 150, false), (Fit{0, 0, 149, 150})); // 149.006...
}

TEST(CDib, ASideOfABestFitMayRoundToNothing) {
    EXPECT_EQ(best_fit(512, 1, 150, 150, false), (Fit{0, 75, 150, 0}));
    EXPECT_EQ(best_fit(1, 512, 150, 150, false), (Fit{75, 0, 0, 150}));
}

TEST(CDib, TheProductOfABestFitIsRoundedTiesToEvenFromTheStoredRatio) {
    EXPECT_EQ(best_fit(4, 2, 1, 9, false), (Fit{0, 4, 1, 0}));  // 0.25 * 2 = 0.5
    EXPECT_EQ(best_fit(4, 6, 1, 9, false), (Fit{0, 3, 1, 2}));  // 0.25 * 6 = 1.5
    EXPECT_EQ(best_fit(4, 10, 1, 9, false), (Fit{0, 3, 1, 2})); // 0.25 * 10 = 2.5
    // 1/6 stored as a float lies a little above, and the product keeps that: 2.50000007, no tie.
    EXPECT_EQ(best_fit(6, 15, 1, 99, false).height, 3);
}

TEST(CDib, ABestFitInABoxSmallerThanItsPictureTruncatesItsPlaceTowardsZero) {
    EXPECT_EQ(best_fit(3, 3, 3, -1, false), (Fit{2, 0, -1, -1}));
    EXPECT_EQ(best_fit(2, 1, 7, 2, true), (Fit{1, 0, 4, 2}));
    EXPECT_EQ(best_fit(2, 1, -1, 0, true), (Fit{0, 0, -1, 0})); // height -0.5 rounds to 0
}

TEST(CDib, ABestFitThatLeaves32BitsIsAnOverflow) {
    cDIB dib;
    ASSERT_TRUE(dib.Create(1, 1, 8));
    Fit fit;
    // Both ratios are stored as 2^31.
    EXPECT_FAILURE(dib.GetBestFitInfo(largest - 1, largest, fit.x, fit.y, fit.width, fit.height, true),
                   Overflow);
}

TEST(CDib, TheImageIsANew32BitPictureAndTheObjectStaysAsItWas) {
    cDIB dib;
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

// Saving

TEST(CDib, SavedAt32BitsTheOffsetIs54AndThereIsNoColourTable) {
    const TemporaryFolder folder;
    cDIB dib;
    fill_dib(dib, 1, 2, {0x010203, 0x040506});
    dib.Save(folder.file("a.bmp"));
    EXPECT_EQ(test::read_file(folder.file("a.bmp")),
              (Bytes{'B', 'M', 62, 0, 0, 0, 0, 0,  0, 0, 54, 0, 0, 0, 40, 0, 0, 0, 1, 0, 0,
                     0,   2,   0,  0, 0, 1, 0, 32, 0, 0, 0,  0, 0, 0, 0,  0, 0, 0, 0, 0, 0,
                     0,   0,   0,  0, 0, 0, 0, 0,  0, 0, 0,  0, 4, 5, 6,  0, 1, 2, 3, 0}));
}

TEST(CDib, SavedAt8BitsTheOffsetIs1078AndTheColourTableStandsBetween) {
    const TemporaryFolder folder;
    cDIB dib;
    ASSERT_TRUE(dib.Create(5, 1, 8));
    Bytes palette(1024);
    for (std::size_t i = 0; i < palette.size(); ++i) {
        palette[i] = static_cast<std::uint8_t>(i * 7 % 251);
    }
    dib.SetPalette(palette);
    std::ranges::copy(Bytes{9, 8, 7, 6, 5}, dib.lpBits());
    dib.Save(folder.file("a.bmp"));
    const Bytes file = test::read_file(folder.file("a.bmp"));
    Bytes expected{'B', 'M', 0x3E, 4, 0, 0, 0, 0, 0, 0, 0x36, 4, 0, 0, 40,
                   0,   0,   0,    5, 0, 0, 0, 1, 0, 0, 0,    1, 0, 8, 0};
    expected.resize(54);
    expected.insert(expected.end(), palette.begin(), palette.end());
    expected.insert(expected.end(), {9, 8, 7, 6, 5, 0, 0, 0});
    EXPECT_EQ(file, expected);
}

TEST(CDib, OffsetsOfTheOtherDepthsFollowTheirColourTables) {
    const TemporaryFolder folder;

    const struct { std::int32_t bits, offset; } cases[] = {{1, 62}, {4, 118}, {16, 54}, {24, 54}};

    for (const auto& each : cases) {
        cDIB dib;
        ASSERT_TRUE(dib.Create(3, 2, each.bits));
        dib.Save(folder.file("a.bmp"));
        const Bytes file = test::read_file(folder.file("a.bmp"));
        EXPECT_EQ(file.at(10), each.offset);
        EXPECT_EQ(file.size(), static_cast<std::size_t>(each.offset + dib.Size()));
        EXPECT_EQ(file.at(2), file.size());
    }
}

TEST(CDib, SaveReplacesALongerFile) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.bmp", Bytes(500, 1));
    cDIB dib;
    fill_dib(dib, 1, 1, {0});
    dib.Save(path);
    EXPECT_EQ(test::read_file(path).size(), 58U);
}

TEST(CDib, SaveDeletesTheOldFileSoThatItsOtherNamesKeepIt) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.bmp", Bytes{1, 2, 3});
    const std::string other = folder.file("other.bmp");
    std::filesystem::create_hard_link(path, other);
    cDIB dib;
    fill_dib(dib, 1, 1, {0});
    dib.Save(path);
    EXPECT_EQ(test::read_file(path).size(), 58U);
    EXPECT_EQ(test::read_file(other), (Bytes{1, 2, 3}));
}

TEST(CDib, SaveOntoAReadOnlyFileFailsAndTheFileStays) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.bmp", Bytes{1, 2, 3});
    std::filesystem::permissions(path, std::filesystem::perms::owner_read);
    cDIB dib;
    fill_dib(dib, 1, 1, {0});
    EXPECT_FAILURE(dib.Save(path), PermissionDenied);
    EXPECT_EQ(test::read_file(path), (Bytes{1, 2, 3}));
}

TEST(CDib, SaveOntoAFolderOrIntoAMissingOneFails) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.file("sub"));
    cDIB dib;
    fill_dib(dib, 1, 1, {0});
    EXPECT_FAILURE(dib.Save(folder.file("sub")), PermissionDenied);
    EXPECT_TRUE(std::filesystem::is_directory(folder.file("sub")));
    EXPECT_FAILURE(dib.Save(folder.file("missing/a.bmp")), PathNotFound);
}

TEST(CDib, AFileWhoseLengthLeavesItsFieldIsAnOverflowAndNothingIsWritten) {
    const TemporaryFolder folder;
    cDIB dib;
    ASSERT_TRUE(dib.Create(1, largest / 4, 32)); // pages that nobody touches cost nothing
    EXPECT_FAILURE(dib.Save(folder.file("a.bmp")), Overflow);
    EXPECT_FALSE(std::filesystem::exists(folder.file("a.bmp")));
}

} // namespace
} // namespace varnoth
