#include "core/image/cDIB.h"

#include <cstring>
#include <filesystem>
#include <limits>

#include <gtest/gtest.h>

#include "support/dibs.h"
#include "support/expect_failure.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();

// Creating

TEST_F(CDib, StrideOfEveryDepthIsRoundedUpTo4Bytes) {
    const struct {
        std::int32_t bits, width, stride;
    } cases[] = {{32, 1, 4}, {8, 1, 4},  {8, 5, 8},  {1, 1, 4},  {1, 32, 4},  {1, 33, 8}, {4, 8, 4},
                 {4, 9, 8},  {16, 1, 4}, {16, 3, 8}, {24, 1, 4}, {24, 4, 12}, {24, 5, 16}};

    for (const auto& each : cases) {
        ASSERT_TRUE(dib.Create(each.width, 2, each.bits));
        EXPECT_EQ(dib.BytesPerScanline(), each.stride) << each.bits << " bits, width " << each.width;
        EXPECT_EQ(dib.Size(), 2 * each.stride);
        EXPECT_EQ(dib.hDIB()->row_bytes(), each.stride);
        EXPECT_EQ(dib.hDIB()->bytes().size(), static_cast<std::size_t>(dib.Size()));
    }
}

TEST_F(CDib, NewPictureIsBlackWithABlackColourTable) {
    ASSERT_TRUE(dib.Create(3, 2, 8));
    EXPECT_EQ(bytes_of(dib), Bytes(8, 0));
    EXPECT_EQ(palette_of(dib), Bytes(1024, 0));
    EXPECT_EQ(dib.hDIBDC()->bitmap(), dib.hDIB());
}

TEST_F(CDib, CreateDiscardsPixelsAndColours) {
    ASSERT_TRUE(dib.Create(4, 1, 8));
    dib.SetPalette(Bytes{1, 2, 3, 4});
    std::memset(dib.lpBits(), 9, 4);
    ASSERT_TRUE(dib.Create(4, 1, 8));
    EXPECT_EQ(bytes_of(dib), Bytes(4, 0));
    EXPECT_EQ(palette_of(dib), Bytes(1024, 0));
}

TEST_F(CDib, FirstByteIsTheLeftmostPixelOfTheBottomRow) {
    fill_dib(dib, 1, 2, {0x010203, 0x040506});
    EXPECT_EQ(bytes_of(dib), (Bytes{4, 5, 6, 0, 1, 2, 3, 0}));
}

TEST_F(CDib, HeaderHasOnlySizeAndDepthAndOutlivesDestroy) {
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

TEST_F(CDib, FailedCreateLeavesTheObjectEmpty) {
    const struct {
        std::int32_t width, height, bits;
    } cases[] = {{0, 1, 32}, {1, 0, 32}, {-1, 4, 32}, {4, -1, 32},
                 {4, 4, 0},  {4, 4, 7},  {4, 4, -8},  {4, 4, 64}};

    for (const auto& each : cases) {
        ASSERT_TRUE(dib.Create(2, 2, 8));
        EXPECT_FALSE(dib.Create(each.width, each.height, each.bits));
        expect_empty(dib);
        EXPECT_EQ(dib.bmiHeader().biWidth, each.width);
        EXPECT_EQ(dib.bmiHeader().biBitCount, each.bits);
    }
}

TEST_F(CDib, SizeFieldsBeyond32BitsOverflow) {
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

TEST_F(CDib, DestroyMayBeRepeated) {
    expect_empty(dib);
    dib.Destroy();
    expect_empty(dib);
    ASSERT_TRUE(dib.Create(2, 2, 32));
    dib.Destroy();
    expect_empty(dib);
    dib.Destroy();
    expect_empty(dib);
}

TEST_F(CDib, OperationsOnAnEmptyObjectDoNothing) {
    TestSurface surface(2, 2);
    surface.PSet(0, 0, 5);
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

// Copying pictures and contexts

TEST_F(CDib, EmptyOrNonBitmapPictureReturns0WithoutAChange) {
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

TEST_F(CDib, PictureWithoutPixelsReturns0AndEmptiesTheObject) {
    fill_dib(dib, 1, 1, {7});
    EXPECT_EQ(dib.CreateFromStdPicture(make_picture(Bitmap(0, 3, 32, Bitmap::Rows::Surface)), true), 0);
    expect_empty(dib);
}

TEST_F(CDib, Picture8BitForcedTo32BitsReturns8AndIsExpanded) {
    EXPECT_EQ(dib.CreateFromStdPicture(indexed_picture(2, 2, 8, {0, 1, 2, 85}), true), 8);
    EXPECT_EQ(dib.Bpp(), 32);
    EXPECT_EQ(bytes_of(dib), (Bytes{2, 4, 6, 0, 85, 170, 255, 0, 0, 0, 0, 0, 1, 2, 3, 0}));
}

TEST_F(CDib, IndexedPictureKeepsDepthColourTableAndIndices) {
    const struct {
        std::int32_t bits;
        Bytes pixels, stored;
    } cases[] = {{8, {3, 2, 250, 7, 6, 5}, {7, 6, 5, 0, 3, 2, 250, 0}},
                 {4, {0x3F, 0xA0, 0x12, 0x30}, {0x12, 0x30, 0, 0, 0x3F, 0xA0, 0, 0}},
                 {1, {0xA0, 0x40}, {0x40, 0, 0, 0, 0xA0, 0, 0, 0}}};

    for (const auto& each : cases) {
        EXPECT_EQ(dib.CreateFromStdPicture(indexed_picture(3, 2, each.bits, each.pixels), false), each.bits);
        EXPECT_EQ(dib.Bpp(), each.bits);
        EXPECT_EQ(bytes_of(dib), each.stored) << each.bits;
        const Bytes palette = palette_of(dib);
        ASSERT_EQ(palette.size(), std::size_t{4} << each.bits);
        EXPECT_EQ((Bytes{palette.begin() + 4, palette.begin() + 8}), (Bytes{1, 2, 3, 0}));
    }
}

TEST_F(CDib, TrueColourPictureKeepsItsDepthOrBecomes32Bits) {
    const Picture picture = surface_of(1, 2, {0x030201, 0x060504}, 24)->Image();
    EXPECT_EQ(dib.CreateFromStdPicture(picture, false), 24);
    EXPECT_EQ(bytes_of(dib), (Bytes{6, 5, 4, 0, 3, 2, 1, 0}));
    EXPECT_EQ(dib.Bpp(), 24);
    EXPECT_EQ(dib.CreateFromStdPicture(picture, true), 24);
    EXPECT_EQ(dib.Bpp(), 32);
    EXPECT_EQ(colours_of(dib), (Colours{0x030201, 0x060504}));
    EXPECT_EQ(dib.CreateFromStdPicture(surface_of(1, 1, {0xFF}, 16)->Image(), false), 16);
    EXPECT_EQ(bytes_of(dib), (Bytes{0x00, 0x7C, 0, 0}));
}

TEST_F(CDib, ContextIsCopiedAt32BitsWithMissingPixelsBlack) {
    const auto surface = surface_of(2, 1, {1, 2}, 24);
    ASSERT_TRUE(dib.CreateFromHdc(surface->hDC(), 3, 2));
    EXPECT_EQ(dib.Bpp(), 32);
    EXPECT_EQ(colours_of(dib), (Colours{1, 2, 0, 0, 0, 0}));
    ASSERT_TRUE(dib.CreateFromHdc(surface->hDC(), 1, 1));
    EXPECT_EQ(colours_of(dib), Colours{1});
    EXPECT_FALSE(dib.CreateFromHdc(surface->hDC(), 0, 1));
    expect_empty(dib);
}

TEST_F(CDib, ContextWithoutABitmapGivesABlackPicture) {
    DrawingContext nothing;
    EXPECT_TRUE(dib.CreateFromHdc(nothing, 1, 1));
    EXPECT_EQ(colours_of(dib), Colours{0});
}

TEST_F(CDib, ContextIsCopiedAt8BitsWithItsColourTable) {
    cDIB source;
    ASSERT_EQ(source.CreateFromStdPicture(indexed_picture(2, 1, 8, {200, 7}), false), 8);
    ASSERT_TRUE(dib.CreateFromHdc8bpp(*source.hDIBDC(), 2, 1));
    EXPECT_EQ(bytes_of(dib), (Bytes{200, 7, 0, 0}));
    EXPECT_EQ(colours_of(dib), colours_of(source));
    const Bytes expected = palette_of(source);
    EXPECT_EQ(palette_of(dib), expected);
    EXPECT_FALSE(dib.CreateFromHdc8bpp(*source.hDIBDC(), -2, 1));
    expect_empty(dib);
}

// Creating empties the object first, including the context that is the source.
TEST_F(CDib, CopyOfItsOwnContextIsBlack) {
    for (const std::int32_t side : {19, 20, 21}) {
        const Colours black(static_cast<std::size_t>(side * side), 0);
        fill_dib(dib, 20, 20, Colours(400, 0x070809));
        ASSERT_TRUE(dib.CreateFromHdc(*dib.hDIBDC(), side, side));
        EXPECT_EQ(colours_of(dib), black) << side;
        dib.Cls(0x070809);
        ASSERT_TRUE(dib.CreateFromHdc8bpp(*dib.hDIBDC(), side, side));
        EXPECT_EQ(colours_of(dib), black) << side << ", at 8 bits";
    }
}

TEST_F(CDib, BitsPointerIsValidUntilTheObjectIsResized) {
    fill_dib(dib, 1, 1, {0x030201});
    std::uint8_t* const bits = dib.lpBits();
    cDIB source;
    fill_dib(source, 1, 1, {0x060504});
    ASSERT_EQ(dib.LoadBlt(*source.hDIBDC()), 1);
    EXPECT_EQ(bits[0], 6);
    bits[0] = 9;
    EXPECT_EQ(colours_of(dib), Colours{0x090504});
    EXPECT_EQ(colours_of(source), Colours{0x060504});
    dib.Cls(0x0C0B0A);
    EXPECT_EQ(bits[0], 0x0C);
    EXPECT_EQ(dib.lpBits(), bits);
}

TEST_F(CDib, CloneHasTheSameBytesAndColours) {
    ASSERT_EQ(dib.CreateFromStdPicture(indexed_picture(3, 2, 4, {0x12, 0x30, 0x45, 0x60}), false), 4);
    cDIB clone;
    dib.CloneTo(clone);
    EXPECT_EQ(clone.Bpp(), 4);
    EXPECT_EQ(bytes_of(clone), bytes_of(dib));
    EXPECT_EQ(colours_of(clone), colours_of(dib));
    clone.lpBits()[0] = 0xFF;
    EXPECT_NE(bytes_of(clone), bytes_of(dib));
}

TEST_F(CDib, CloneOfAnEmptyObjectIsEmpty) {
    cDIB clone;
    ASSERT_TRUE(clone.Create(1, 1, 32));
    dib.CloneTo(clone);
    expect_empty(clone);
    dib.CloneTo(dib);
    expect_empty(dib);
}

TEST_F(CDib, CloneToItselfIsBlack) {
    fill_dib(dib, 2, 1, {1, 2});
    dib.CloneTo(dib);
    EXPECT_EQ(colours_of(dib), (Colours{0, 0}));
}

} // namespace
} // namespace varnoth::test
