#include "core/codecs/read_pcx.h"

#include <initializer_list>

#include <gtest/gtest.h>

#include "core/codecs/LoadPcxTest.h"
#include "support/expect_failure.h"

namespace varnoth::test {
namespace {

using Pixels = std::vector<std::uint32_t>;

constexpr std::int64_t most_pixels = 100;

/// A plain file of version 5 whose palette is 0x010101, 0x020202 and so on.
PcxHeader header(int bits, int planes, int width, int height, int bytes_per_line) {
    PcxHeader header = pcx::header_of(bits, planes, bytes_per_line, width, height);
    for (std::size_t i = 0; i < header.ColorMap.size(); ++i) {
        header.ColorMap[i] = static_cast<std::uint8_t>(i / 3 + 1);
    }
    return header;
}

PcxHeader with_version(PcxHeader header, int version) {
    header.Version = static_cast<std::uint8_t>(version);
    return header;
}

Pixels pixels_of(const PcxHeader& header, const Bytes& rest) {
    return read_pcx(joined({bytes_of(header), rest}), most_pixels).pixels;
}

/// Opaque greys.
Pixels greys(std::initializer_list<std::uint32_t> levels) {
    Pixels pixels;
    for (const std::uint32_t level : levels) {
        pixels.push_back(0xFF000000 | level * 0x010101);
    }
    return pixels;
}

/// The mark and 256 entries; entry i is i, 0, 255 - i.
Bytes vga_palette() {
    Bytes palette{12};
    for (unsigned i = 0; i < 256; ++i) {
        palette.insert(palette.end(), {static_cast<std::uint8_t>(i), 0, static_cast<std::uint8_t>(255 - i)});
    }
    return palette;
}

TEST(ReadPcx, OneBit) {
    const RgbaPicture picture =
        read_pcx(joined({bytes_of(header(1, 1, 9, 1, 2)), {0xA0, 0x80}}), most_pixels);
    EXPECT_EQ(picture.width, 9);
    EXPECT_EQ(picture.height, 1);
    EXPECT_EQ(picture.pixels, greys({2, 1, 2, 1, 1, 1, 1, 1, 2}));
}

TEST(ReadPcx, TwoBits) {
    EXPECT_EQ(pixels_of(header(2, 1, 4, 1, 2), {0x1B, 0}), greys({1, 2, 3, 4}));
}

TEST(ReadPcx, FourBits) {
    EXPECT_EQ(pixels_of(header(4, 1, 3, 1, 2), {0x0F, 0x50}), greys({1, 16, 6}));
}

TEST(ReadPcx, EightBitsWithThePaletteAtTheEnd) {
    EXPECT_EQ(pixels_of(header(8, 1, 2, 1, 2), joined({{0, 200}, vga_palette()})),
              (Pixels{0xFF0000FF, 0xFFC80037}));
}

TEST(ReadPcx, EightBitsWithoutAPaletteAreGrey) {
    EXPECT_EQ(pixels_of(header(8, 1, 2, 1, 2), {7, 200}), greys({7, 200}));
    Bytes without_mark = joined({{7, 200}, vga_palette()});
    without_mark[2] = 13;
    EXPECT_EQ(pixels_of(header(8, 1, 2, 1, 2), without_mark), greys({7, 200}));
}

TEST(ReadPcx, TwoToFourPlanesOfOneBit) {
    EXPECT_EQ(pixels_of(header(1, 2, 4, 1, 1), {0x50, 0x30}), greys({1, 2, 3, 4}));
    EXPECT_EQ(pixels_of(header(1, 3, 2, 1, 1), {0x40, 0x00, 0x40}), greys({1, 6}));
    EXPECT_EQ(pixels_of(header(1, 4, 2, 1, 1), {0x40, 0x00, 0x00, 0x40}), greys({1, 10}));
}

TEST(ReadPcx, ThreePlanesOfEightBits) {
    EXPECT_EQ(pixels_of(header(8, 3, 2, 1, 2), {1, 2, 3, 4, 5, 6}), (Pixels{0xFF010305, 0xFF020406}));
}

TEST(ReadPcx, FourthPlaneOfEightBitsIsAlpha) {
    EXPECT_EQ(pixels_of(header(8, 4, 1, 1, 1), {1, 2, 3, 4}), Pixels{0x04010203});
}

TEST(ReadPcx, PaddingOfRowsIsSkipped) {
    EXPECT_EQ(pixels_of(header(8, 1, 1, 2, 2), {7, 90, 8, 90}), greys({7, 8}));
    EXPECT_EQ(pixels_of(header(8, 3, 1, 2, 2), {1, 90, 2, 90, 3, 90, 4, 90, 5, 90, 6, 90}),
              (Pixels{0xFF010203, 0xFF040506}));
}

TEST(ReadPcx, RunsAndLiterals) {
    EXPECT_EQ(pixels_of(pcx::compressed(header(8, 1, 4, 1, 4)), {0xC2, 7, 8, 0xC1, 200}),
              greys({7, 7, 8, 200}));
}

TEST(ReadPcx, RunsOfLength0AreSkipped) {
    EXPECT_EQ(pixels_of(pcx::compressed(header(8, 1, 2, 1, 2)), {0xC0, 7, 8, 9}), greys({8, 9}));
}

TEST(ReadPcx, RunContinuesOnTheNextRow) {
    EXPECT_EQ(pixels_of(pcx::compressed(header(8, 1, 2, 2, 2)), {0xC3, 7, 8}), greys({7, 7, 7, 8}));
}

TEST(ReadPcx, CornerIsSubtracted) {
    PcxHeader shifted = header(8, 1, 2, 1, 2);
    shifted.XMin = 30;
    shifted.XMax = 31;
    shifted.YMin = shifted.YMax = 40;
    EXPECT_EQ(pixels_of(shifted, {7, 8}), greys({7, 8}));
}

TEST(ReadPcx, OneBitIsBlackAndWhiteWithoutTwoColours) {
    PcxHeader equal = header(1, 1, 2, 1, 1);
    equal.ColorMap.fill(9);
    EXPECT_EQ(pixels_of(equal, {0x40}), greys({0, 255}));
    EXPECT_EQ(pixels_of(with_version(header(1, 1, 2, 1, 1), 3), {0x40}), greys({0, 255}));
}

TEST(ReadPcx, VersionsWithoutAPaletteHaveTheEgaColours) {
    for (const int version : {0, 3}) {
        EXPECT_EQ(pixels_of(with_version(header(4, 1, 2, 1, 2), version), {0x16, 0}),
                  (Pixels{0xFF0000AA, 0xFFAA5500}));
    }
    for (const int version : {2, 4, 5}) {
        EXPECT_EQ(pixels_of(with_version(header(4, 1, 2, 1, 2), version), {0x16, 0}), greys({2, 7}));
    }
}

TEST(ReadPcx, EmptyPaletteMeansTheEgaColours) {
    PcxHeader empty = header(4, 1, 2, 1, 2);
    empty.ColorMap.fill(0);
    EXPECT_EQ(pixels_of(empty, {0x1F, 0}), (Pixels{0xFF0000AA, 0xFFFFFFFF}));
}

TEST(ReadPcx, CgaColoursUpToVersion4) {
    PcxHeader cga = with_version(header(2, 1, 4, 1, 2), 2);
    cga.ColorMap[0] = 0x10;
    const auto with_selection = [&](std::uint8_t selection) {
        cga.ColorMap[3] = selection;
        return pixels_of(cga, {0x1B, 0});
    };
    EXPECT_EQ(with_selection(0x00), (Pixels{0xFF0000AA, 0xFF00AA00, 0xFFAA0000, 0xFFAA5500}));
    EXPECT_EQ(with_selection(0x20), (Pixels{0xFF0000AA, 0xFF55FF55, 0xFFFF5555, 0xFFFFFF55}));
    EXPECT_EQ(with_selection(0x40), (Pixels{0xFF0000AA, 0xFF00AAAA, 0xFFAA00AA, 0xFFAAAAAA}));
    EXPECT_EQ(with_selection(0x60), (Pixels{0xFF0000AA, 0xFF55FFFF, 0xFFFF55FF, 0xFFFFFFFF}));
}

TEST(ReadPcx, MissingRowsAreBlackAndMissingBytes0) {
    EXPECT_EQ(pixels_of(header(8, 1, 2, 3, 2), {7, 7, 8}), greys({7, 7, 8, 0, 0, 0}));
    EXPECT_EQ(pixels_of(header(4, 1, 1, 2, 1), {0x50}), greys({6, 0}));
}

TEST(ReadPcx, MissingRowsAreTransparentWithAlpha) {
    EXPECT_EQ(pixels_of(header(8, 4, 1, 2, 1), {1, 2, 3, 4}), (Pixels{0x04010203, 0}));
}

TEST(ReadPcx, RunWithoutItsValueIsDropped) {
    EXPECT_EQ(pixels_of(pcx::compressed(header(8, 1, 2, 2, 2)), {7, 7, 0xC2}), greys({7, 7, 0, 0}));
}

TEST(ReadPcx, UnsupportedFilesAreInvalid) {
    const Bytes data(100);
    EXPECT_FAILURE(read_pcx({}, most_pixels), InvalidPicture);
    EXPECT_FAILURE(read_pcx(Bytes(127), most_pixels), InvalidPicture);
    PcxHeader other = header(8, 1, 1, 1, 1);
    other.Manufacturer = 11;
    EXPECT_FAILURE(pixels_of(other, data), InvalidPicture);
    EXPECT_FAILURE(pixels_of(with_version(header(8, 1, 1, 1, 1), 1), data), InvalidPicture);
    EXPECT_FAILURE(pixels_of(with_version(header(8, 1, 1, 1, 1), 6), data), InvalidPicture);
    other = header(8, 1, 1, 1, 1);
    other.Encoding = 2;
    EXPECT_FAILURE(pixels_of(other, data), InvalidPicture);
    EXPECT_FAILURE(pixels_of(header(3, 1, 1, 1, 1), data), InvalidPicture);
    EXPECT_FAILURE(pixels_of(header(8, 2, 1, 1, 1), data), InvalidPicture);
    EXPECT_FAILURE(pixels_of(header(4, 4, 1, 1, 1), data), InvalidPicture);
    EXPECT_FAILURE(pixels_of(header(8, 5, 1, 1, 1), data), InvalidPicture);
    EXPECT_FAILURE(pixels_of(header(8, 0, 1, 1, 1), data), InvalidPicture);
}

TEST(ReadPcx, EmptyPicturesAreInvalid) {
    PcxHeader empty = header(8, 1, 1, 1, 1);
    empty.XMin = 1;
    EXPECT_FAILURE(pixels_of(empty, Bytes(100)), InvalidPicture);
    empty = header(8, 1, 1, 1, 1);
    empty.YMin = 1;
    EXPECT_FAILURE(pixels_of(empty, Bytes(100)), InvalidPicture);
}

TEST(ReadPcx, RowsShorterThanThePictureAreInvalid) {
    EXPECT_FAILURE(pixels_of(header(8, 1, 3, 1, 2), Bytes(10)), InvalidPicture);
    EXPECT_FAILURE(pixels_of(header(1, 1, 9, 1, 1), Bytes(10)), InvalidPicture);
}

TEST(ReadPcx, TooManyPixelsAreOutOfMemory) {
    EXPECT_EQ(pixels_of(header(8, 1, 10, 10, 10), {}).size(), 100U);
    EXPECT_FAILURE(pixels_of(header(8, 1, 101, 1, 102), {}), OutOfMemory);
    PcxHeader largest = header(8, 1, 0, 0, -1); // 65535 by 65535
    largest.XMax = largest.YMax = -2;
    EXPECT_FAILURE(pixels_of(largest, {}), OutOfMemory);
}

TEST(ReadPcx, IsRecognisedByItsHeader) {
    EXPECT_TRUE(is_pcx(bytes_of(header(8, 3, 1, 1, 1))));
    EXPECT_FALSE(is_pcx(bytes_of(header(8, 2, 1, 1, 1))));
    EXPECT_FALSE(is_pcx(Bytes(200)));
}

TEST(PcxPalette, HasAsManyColoursAsTheDepth) {
    EXPECT_EQ(pcx_palette(bytes_of(header(1, 1, 1, 1, 1))).size(), 2U);
    EXPECT_EQ(pcx_palette(bytes_of(header(1, 3, 1, 1, 1))).size(), 8U);
    EXPECT_EQ(pcx_palette(bytes_of(header(4, 1, 1, 1, 1))).size(), 16U);
    EXPECT_EQ(pcx_palette(bytes_of(header(8, 1, 1, 1, 1))).size(), 256U);
}

TEST(PcxPalette, IsEmptyForTrueColour) {
    EXPECT_TRUE(pcx_palette(bytes_of(header(8, 3, 1, 1, 1))).empty());
}

} // namespace
} // namespace varnoth::test
