#include "core/codecs/read_tga.h"

#include <string>

#include <gtest/gtest.h>

#include "core/base/bytes.h"
#include "core/codecs/LoadTgaTest.h"
#include "support/expect_failure.h"

namespace varnoth::test {
namespace {

using Pixels = std::vector<std::uint32_t>;

constexpr std::int64_t most_pixels = 100;
constexpr std::uint8_t top_left = 0x20;

TgaHeader header(int type, int depth, int width, int height, std::uint8_t descriptor = top_left) {
    TgaHeader header = tga::header_of(type, depth, width, height);
    header.ImageDescriptor = descriptor;
    return header;
}

TgaHeader mapped(int depth, int width, int map_depth, int length, std::int16_t start = 0) {
    TgaHeader mapped = tga::with_map(header(1, depth, width, 1), length, map_depth);
    mapped.ColorMapStart = start;
    return mapped;
}

Bytes file_of(const TgaHeader& header, const Bytes& rest) {
    return joined({bytes_of(header), rest});
}

Pixels pixels_of(const TgaHeader& header, const Bytes& rest) {
    return read_tga(file_of(header, rest), most_pixels).pixels;
}

/// The extension area and footer of a TGA 2.0 file whose other bytes number `size`.
Bytes extension(std::size_t size, int attributes_type) {
    Bytes bytes(495 + 26);
    bytes[494] = static_cast<std::uint8_t>(attributes_type);
    put_u32(bytes, 495, static_cast<std::uint32_t>(size));
    const std::string signature("TRUEVISION-XFILE.\0", 18);
    std::copy(signature.begin(), signature.end(), bytes.begin() + 495 + 8);
    return bytes;
}

Pixels pixels_with_attributes_type(int type) {
    const Bytes file = file_of(header(2, 32, 1, 1, top_left | 8), {10, 20, 30, 100});
    return read_tga(joined({file, extension(file.size(), type)}), most_pixels).pixels;
}

TEST(ReadTga, TrueColourOf24Bits) {
    const RgbaPicture picture = read_tga(file_of(header(2, 24, 2, 1), {1, 2, 3, 4, 5, 6}), most_pixels);
    EXPECT_EQ(picture.width, 2);
    EXPECT_EQ(picture.height, 1);
    EXPECT_EQ(picture.pixels, (Pixels{0xFF030201, 0xFF060504}));
}

TEST(ReadTga, AlphaOf32BitsOnlyWithAttributeBits) {
    EXPECT_EQ(pixels_of(header(2, 32, 1, 1, top_left | 8), {1, 2, 3, 4}), Pixels{0x04030201});
    EXPECT_EQ(pixels_of(header(2, 32, 1, 1, top_left), {1, 2, 3, 4}), Pixels{0xFF030201});
}

TEST(ReadTga, HighestOf16BitsIsAlphaOnlyWithAttributeBits) {
    const Bytes red_without_bit_and_blue_with_it{0x00, 0x7C, 0x1F, 0x80};
    EXPECT_EQ(pixels_of(header(2, 16, 2, 1, top_left | 1), red_without_bit_and_blue_with_it),
              (Pixels{0x00FF0000, 0xFF0000FF}));
    EXPECT_EQ(pixels_of(header(2, 16, 2, 1, top_left), red_without_bit_and_blue_with_it),
              (Pixels{0xFFFF0000, 0xFF0000FF}));
}

TEST(ReadTga, HighestBitBesides15BitsIsIgnored) {
    EXPECT_EQ(pixels_of(header(2, 15, 2, 1, top_left | 1), {0xE0, 0x03, 0xE0, 0x83}),
              (Pixels{0xFF00FF00, 0xFF00FF00}));
}

TEST(ReadTga, ChannelsOf5BitsRoundToTheNearest) {
    EXPECT_EQ(pixels_of(header(2, 16, 2, 1), {3, 0, 30, 0}), (Pixels{0xFF000019, 0xFF0000F7}));
}

TEST(ReadTga, GreyOf8Bits) {
    EXPECT_EQ(pixels_of(header(3, 8, 2, 1), {7, 200}), (Pixels{0xFF070707, 0xFFC8C8C8}));
}

TEST(ReadTga, GreyOf16BitsHasAlphaInTheSecondByte) {
    EXPECT_EQ(pixels_of(header(3, 16, 1, 1, top_left | 8), {7, 9}), Pixels{0x09070707});
    EXPECT_EQ(pixels_of(header(3, 16, 1, 1, top_left), {7, 9}), Pixels{0xFF070707});
}

TEST(ReadTga, ColourMapOfEachDepth) {
    EXPECT_EQ(pixels_of(mapped(8, 1, 15, 1), {0x1F, 0x80, 0}), Pixels{0xFF0000FF});
    EXPECT_EQ(pixels_of(mapped(8, 1, 16, 1), {0x1F, 0x80, 0}), Pixels{0xFF0000FF});
    EXPECT_EQ(pixels_of(mapped(8, 2, 24, 2), {1, 2, 3, 4, 5, 6, 1, 0}), (Pixels{0xFF060504, 0xFF030201}));
    EXPECT_EQ(pixels_of(mapped(8, 1, 32, 1), {1, 2, 3, 4, 0}), Pixels{0xFF030201});
}

TEST(ReadTga, ColourMapWithAlpha) {
    TgaHeader with_alpha = mapped(8, 1, 32, 1);
    with_alpha.ImageDescriptor |= 8;
    EXPECT_EQ(pixels_of(with_alpha, {1, 2, 3, 4, 0}), Pixels{0x04030201});
}

TEST(ReadTga, IndicesOf16Bits) {
    Bytes rest(3 * 258 + 2);
    rest[3 * 257] = 9;
    put_u16(rest, 3 * 258, 257);
    EXPECT_EQ(pixels_of(mapped(16, 1, 24, 258), rest), Pixels{0xFF000009});
}

TEST(ReadTga, ColourMapStartsAtItsFirstIndex) {
    EXPECT_EQ(pixels_of(mapped(8, 1, 24, 1, 5), {1, 2, 3, 5}), Pixels{0xFF030201});
}

TEST(ReadTga, IndexOutsideTheColourMapIsBlack) {
    EXPECT_EQ(pixels_of(mapped(8, 2, 24, 1, 5), {1, 2, 3, 4, 6}), (Pixels{0xFF000000, 0xFF000000}));
}

TEST(ReadTga, RunsAndLiteralsOfEachType) {
    EXPECT_EQ(pixels_of(header(10, 24, 3, 1), {0x81, 1, 2, 3, 0x00, 4, 5, 6}),
              (Pixels{0xFF030201, 0xFF030201, 0xFF060504}));
    EXPECT_EQ(pixels_of(header(11, 8, 3, 1), {0x01, 7, 8, 0x80, 9}),
              (Pixels{0xFF070707, 0xFF080808, 0xFF090909}));
    TgaHeader packed = mapped(8, 2, 24, 1);
    packed.ImageType = 9;
    EXPECT_EQ(pixels_of(packed, {1, 2, 3, 0x81, 0}), (Pixels{0xFF030201, 0xFF030201}));
}

TEST(ReadTga, RunContinuesOnTheNextRow) {
    EXPECT_EQ(pixels_of(header(11, 8, 2, 2), {0x82, 7, 0x00, 8}),
              (Pixels{0xFF070707, 0xFF070707, 0xFF070707, 0xFF080808}));
}

TEST(ReadTga, RunBeyondTheLastPixelIsCut) {
    EXPECT_EQ(pixels_of(header(11, 8, 2, 1), {0xFF, 7}), (Pixels{0xFF070707, 0xFF070707}));
}

TEST(ReadTga, FirstPixelInEachCorner) {
    const Bytes greys{1, 2, 3, 4};
    const Pixels top_down{0xFF010101, 0xFF020202, 0xFF030303, 0xFF040404};
    const Pixels bottom_up{top_down[2], top_down[3], top_down[0], top_down[1]};
    const Pixels top_down_mirrored{top_down[1], top_down[0], top_down[3], top_down[2]};
    const Pixels bottom_up_mirrored{top_down[3], top_down[2], top_down[1], top_down[0]};
    EXPECT_EQ(pixels_of(header(3, 8, 2, 2, 0x20), greys), top_down);
    EXPECT_EQ(pixels_of(header(3, 8, 2, 2, 0x00), greys), bottom_up);
    EXPECT_EQ(pixels_of(header(3, 8, 2, 2, 0x30), greys), top_down_mirrored);
    EXPECT_EQ(pixels_of(header(3, 8, 2, 2, 0x10), greys), bottom_up_mirrored);
}

TEST(ReadTga, InterleavedRows) {
    const Bytes greys{0, 2, 4, 1, 3};
    const Pixels in_order{0xFF000000, 0xFF010101, 0xFF020202, 0xFF030303, 0xFF040404};
    EXPECT_EQ(pixels_of(header(3, 8, 1, 5, top_left | 0x40), greys), in_order);
    EXPECT_EQ(pixels_of(header(3, 8, 1, 5, top_left | 0x80), {0, 4, 1, 2, 3}), in_order);
}

TEST(ReadTga, IdAndUnusedColourMapAreSkipped) {
    TgaHeader with_both = tga::with_map(header(3, 8, 1, 1), 1, 24);
    with_both.IDLength = 2;
    EXPECT_EQ(pixels_of(with_both, {90, 91, 92, 93, 94, 7}), Pixels{0xFF070707});
}

TEST(ReadTga, AttributesTypeDecidesAboutAlpha) {
    for (const int without_alpha : {0, 1, 2, 5}) {
        EXPECT_EQ(pixels_with_attributes_type(without_alpha), Pixels{0xFF1E140A}) << without_alpha;
    }
    EXPECT_EQ(pixels_with_attributes_type(3), Pixels{0x641E140A});
}

TEST(ReadTga, PremultipliedAlphaIsDividedOut) {
    EXPECT_EQ(pixels_with_attributes_type(4), Pixels{0x644D331A});
}

TEST(ReadTga, ExtensionOutsideTheFileIsIgnored) {
    Bytes file = joined({file_of(header(2, 32, 1, 1, top_left | 8), {10, 20, 30, 100}), extension(1000, 0)});
    EXPECT_EQ(read_tga(file, most_pixels).pixels, Pixels{0x641E140A});
    put_u32(file, file.size() - 26, 0xFFFFFFFF);
    EXPECT_EQ(read_tga(file, most_pixels).pixels, Pixels{0x641E140A});
}

TEST(ReadTga, MissingPixelsAreBlack) {
    EXPECT_EQ(pixels_of(header(2, 24, 1, 2, 0), {1, 2, 3, 4, 5}), (Pixels{0xFF000000, 0xFF030201}));
}

TEST(ReadTga, MissingPixelsAreTransparentWithAlpha) {
    EXPECT_EQ(pixels_of(header(2, 32, 1, 2, top_left | 8), {1, 2, 3, 4, 5}), (Pixels{0x04030201, 0}));
}

TEST(ReadTga, TruncatedPacketsHaveNoPixels) {
    EXPECT_EQ(pixels_of(header(10, 24, 2, 1), {0x81, 1, 2}), (Pixels{0xFF000000, 0xFF000000}));
    EXPECT_EQ(pixels_of(header(11, 8, 2, 1), {0x01, 9}), (Pixels{0xFF090909, 0xFF000000}));
}

TEST(ReadTga, UnsupportedFilesAreInvalid) {
    const Bytes data(100);
    EXPECT_FAILURE(read_tga({}, most_pixels), InvalidPicture);
    EXPECT_FAILURE(read_tga(Bytes(17), most_pixels), InvalidPicture);
    for (const int type : {0, 4, 8, 12, 17, 32, 33}) {
        EXPECT_FAILURE(pixels_of(header(type, 8, 1, 1), data), InvalidPicture) << type;
    }
    for (const int depth : {0, 1, 8, 17, 64}) {
        EXPECT_FAILURE(pixels_of(header(2, depth, 1, 1), data), InvalidPicture) << depth;
    }
    EXPECT_FAILURE(pixels_of(header(3, 24, 1, 1), data), InvalidPicture);
    EXPECT_FAILURE(pixels_of(header(2, 24, 0, 1), data), InvalidPicture);
    EXPECT_FAILURE(pixels_of(header(2, 24, 1, 0), data), InvalidPicture);
    EXPECT_FAILURE(pixels_of(header(1, 8, 1, 1), data), InvalidPicture); // without a colour map
    EXPECT_FAILURE(pixels_of(mapped(8, 1, 8, 1), data), InvalidPicture);
    EXPECT_FAILURE(pixels_of(mapped(24, 1, 24, 1), data), InvalidPicture);
    EXPECT_FAILURE(pixels_of(header(2, 24, 1, 1, 0xC0), data), InvalidPicture);
    EXPECT_FAILURE(pixels_of(header(2, 24, 1, 1, 9), data), InvalidPicture);
}

TEST(ReadTga, FileThatEndsBeforeThePixelsIsInvalid) {
    EXPECT_FAILURE(pixels_of(header(2, 24, 1, 1), {}), InvalidPicture);
    EXPECT_FAILURE(pixels_of(mapped(8, 1, 24, 2), {1, 2, 3, 4, 5, 6}), InvalidPicture);
}

TEST(ReadTga, TooManyPixelsAreOutOfMemory) {
    EXPECT_EQ(pixels_of(header(3, 8, 10, 10), {7}).size(), 100U);
    EXPECT_FAILURE(pixels_of(header(3, 8, 101, 1), {7}), OutOfMemory);
    EXPECT_FAILURE(pixels_of(header(3, 8, -1, -1), {7}), OutOfMemory); // 65535 by 65535
}

TEST(ReadTga, IsRecognisedByItsHeader) {
    EXPECT_TRUE(is_tga(file_of(header(10, 32, 3, 5), {})));
    EXPECT_FALSE(is_tga(file_of(header(5, 32, 3, 5), {})));
    EXPECT_FALSE(is_tga(Bytes(100)));
}

TEST(TgaColourMap, BeginsAtIndex0) {
    const Bytes file = file_of(mapped(8, 1, 24, 1, 2), {1, 2, 3, 0});
    EXPECT_EQ(tga_colour_map(file), (std::vector<RGBQUAD>{{}, {}, {1, 2, 3, 0}}));
}

TEST(TgaColourMap, IsEmptyForTrueColour) {
    EXPECT_TRUE(tga_colour_map(file_of(header(2, 24, 1, 1), {1, 2, 3})).empty());
}

TEST(TgaColourMap, TruncatedMapIsInvalid) {
    EXPECT_FAILURE(tga_colour_map(file_of(mapped(8, 1, 24, 2), {1, 2, 3, 4, 5})), InvalidPicture);
}

} // namespace
} // namespace varnoth::test
