#include "core/image/picture_pixels.h"

#include <gtest/gtest.h>

#include "support/expect_failure.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

PixelBlock block_of(const PictureSurface& surface) {
    PixelBlock block;
    block.size_for(surface.description());
    block.read(surface);
    return block;
}

TEST(PicturePixels, RowAccessSkipsTheFourthByte) {
    for (const std::int32_t bits : {24, 32}) {
        PixelBlock block = block_of(*surface_of(2, 2, {0x010203, 0x040506, 0x070809, 0x0A0B0C}, bits));
        const std::uint8_t last_byte_before = block.bytes().back();
        PixelRow row(block, 1, 2);
        EXPECT_EQ(row[0], (Pixel{.blue = 7, .green = 8, .red = 9}));
        EXPECT_EQ(colour_of(row[1]), 0x0A0B0C);
        row.set(1, {.blue = 20, .green = 21, .red = 22});
        EXPECT_EQ(row[1], (Pixel{.blue = 20, .green = 21, .red = 22}));
        EXPECT_EQ(block.pixel(1, 1)[0], 20);
        EXPECT_EQ(block.pixel(0, 1)[0], 7);
        EXPECT_EQ(block.bytes().back(), bits == 32 ? last_byte_before : 22);
    }
}

TEST(PicturePixels, RowOutsideTheBlockIsAFailure) {
    const PixelBlock block = block_of(TestSurface(2, 3));
    EXPECT_EQ((failure_in([&] { PixelRow(block, 2, 2); })), std::nullopt);
    EXPECT_FAILURE(PixelRow(block, 3, 2), SubscriptOutOfRange);
    EXPECT_FAILURE(PixelRow(block, -1, 2), SubscriptOutOfRange);
    EXPECT_FAILURE(PixelRow(block, 0, 3), SubscriptOutOfRange);
    // A block of two channels: 16 bits per pixel.
    const PixelBlock words = block_of(TestSurface(2, 1, 16));
    EXPECT_FAILURE(PixelRow(words, 0, 1), SubscriptOutOfRange);
    // A row of width 0 is not checked.
    EXPECT_EQ((failure_in([&] { PixelRow(words, 7, 0); })), std::nullopt);
}

TEST(PicturePixels, NewPixelIsBlackAndGreyIsThreeEqualChannels) {
    EXPECT_EQ(colour_of(Pixel{}), 0);
    EXPECT_TRUE(is_grey({5, 5, 5}));
    EXPECT_FALSE(is_grey({5, 5, 6}));
    EXPECT_FALSE(is_grey({6, 5, 5}));
    EXPECT_FALSE(is_grey({5, 6, 5}));
}

} // namespace
} // namespace varnoth::test
