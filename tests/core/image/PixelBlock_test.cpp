// Blocks of pixels and their rows.
#include <algorithm>

#include <gtest/gtest.h>

#include "core/image/picture_pixels.h"
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

TEST(PixelBlock, NewBlockHasNoElements) {
    const PixelBlock block;
    EXPECT_FAILURE(block.at(0, 0, 0), SubscriptOutOfRange);
    EXPECT_FAILURE(block.row(0), SubscriptOutOfRange);
}

TEST(PixelBlock, Block32BitHasFourChannelsBlueFirst) {
    const PixelBlock block = block_of(*surface_of(2, 2, {0x030201, 0x131211, 0x232221, 0x333231}));
    EXPECT_EQ(block.channels(), 4);
    EXPECT_EQ(block.at(0, 0, 0), 3);
    EXPECT_EQ(block.at(1, 1, 0), 0x12);
    EXPECT_EQ(block.at(2, 0, 1), 0x21);
    EXPECT_EQ(block.at(3, 1, 1), 0);
    EXPECT_EQ(block.row(1)[4], 0x33);
    EXPECT_EQ(block.pixel(1, 1)[2], 0x31);
}

TEST(PixelBlock, EachIndexIsCheckedAgainstItsOwnBound) {
    const PixelBlock block = block_of(TestSurface(3, 2));
    EXPECT_FAILURE(block.at(4, 0, 0), SubscriptOutOfRange);
    EXPECT_FAILURE(block.at(-1, 0, 0), SubscriptOutOfRange);
    EXPECT_FAILURE(block.at(0, 3, 0), SubscriptOutOfRange);
    EXPECT_FAILURE(block.at(0, -1, 0), SubscriptOutOfRange);
    EXPECT_FAILURE(block.at(0, 0, 2), SubscriptOutOfRange);
    EXPECT_FAILURE(block.row(-1), SubscriptOutOfRange);
    EXPECT_FAILURE(block.pixel(3, 1), SubscriptOutOfRange);
    EXPECT_EQ(block.at(3, 2, 1), 0);
}

TEST(PixelBlock, Picture24BitOnePixelWideHasFourChannels) {
    const PixelBlock block = block_of(*surface_of(1, 2, {0x030201, 0x060504}, 24));
    EXPECT_EQ(block.channels(), 4);
    EXPECT_EQ(block.at(2, 0, 1), 4);
    EXPECT_EQ(block.at(0, 0, 1), 6);
}

TEST(PixelBlock, Picture24BitOfOddWidthIsSkewedByItsPadding) {
    const Colours colours{0x030201, 0x060504, 0x090807, 0x131211, 0x161514, 0x191817};
    const PixelBlock block = block_of(*surface_of(3, 2, colours, 24));
    EXPECT_EQ(block.channels(), 3);
    EXPECT_EQ(block.at(0, 0, 1), 0) << "the padding byte of the first row";
    EXPECT_EQ(block.at(1, 0, 1), 0x13);
    EXPECT_EQ(block.at(2, 2, 1), 0x18) << "the last byte of the picture has no place";
}

TEST(PixelBlock, ChannelBoundRoundsTiesToEven) {
    PixelBlock block;
    block.size_for({0, 2, 1, 5, 1, 24, 0}); // 5 / 2 - 1 = 1.5, to 2
    EXPECT_EQ(block.channels(), 3);
    block.size_for({0, 2, 1, 7, 1, 24, 0}); // 7 / 2 - 1 = 2.5, to 2
    EXPECT_EQ(block.channels(), 3);
}

TEST(PixelBlock, Width0DividesByZeroAndHeight0IsASubscriptFailure) {
    PixelBlock block = block_of(TestSurface(2, 2));
    EXPECT_FAILURE(block.size_for(TestSurface(0, 3).description()), DivisionByZero);
    EXPECT_FAILURE(block.size_for(TestSurface(3, 0).description()), SubscriptOutOfRange);
    EXPECT_FAILURE(block.size_for({0, 4, 4, 0, 1, 24, 0}), SubscriptOutOfRange);
    EXPECT_EQ(block.width(), 2) << "a failure leaves the block as it was";
    EXPECT_EQ(block.height(), 2);
}

TEST(PixelBlock, NegativeSidesAreASubscriptFailure) {
    PixelBlock block;
    EXPECT_FAILURE(block.size_for({0, -1, 4, -4, 1, 32, 0}), SubscriptOutOfRange);
    EXPECT_FAILURE(block.size_for({0, 1, -4, 4, 1, 32, 0}), SubscriptOutOfRange);
}

TEST(PixelBlock, SizeForZeroesAndShrinkLeavesOneZeroElement) {
    const auto surface = surface_of(2, 1, {0xFFFFFF, 0xFFFFFF});
    PixelBlock block = block_of(*surface);
    block.size_for(surface->description());
    EXPECT_FALSE(block.bytes().empty());
    EXPECT_TRUE(std::ranges::all_of(block.bytes(), [](std::uint8_t byte) { return byte == 0; }));
    block.read(*surface);
    block.shrink();
    EXPECT_EQ(block.at(0, 0, 0), 0);
    EXPECT_EQ(block.channels(), 1);
    EXPECT_EQ(block.width(), 1);
    EXPECT_EQ(block.height(), 1);
    EXPECT_FAILURE(block.at(1, 0, 0), SubscriptOutOfRange);
    EXPECT_FAILURE(block.at(0, 1, 0), SubscriptOutOfRange);
    EXPECT_FAILURE(block.at(0, 0, 1), SubscriptOutOfRange);
}

TEST(PixelBlock, CopiesNoMoreBytesThanBothSidesHave) {
    const auto surface = surface_of(2, 1, {0x010203, 0x040506});
    PixelBlock block;
    block.shrink();
    block.read(*surface);
    EXPECT_EQ(block.at(0, 0, 0), 1);
    block.row(0)[0] = 9;
    block.write(*surface);
    EXPECT_EQ(colours_of(*surface), (Colours{0x090203, 0x040506}));
    PixelBlock large = block_of(TestSurface(5, 5));
    large.read(*surface);
    EXPECT_EQ(large.at(0, 1, 0), 4);
    EXPECT_EQ(large.at(0, 2, 0), 0);
}

// Rows.

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
