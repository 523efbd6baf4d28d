// The decoders of LoadPCX for 1, 4 and 8 bits.
#include <random>

#include "core/codecs/CBitmap.h"
#include "core/codecs/LoadPcxTest.h"
#include "reference/LoadPCX.h"
#include "support/expect_failure.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

using namespace pcx; // NOLINT: what the tests of this reader share

// 1 bit.

TEST_F(LoadPcx, Picture1BitIsBlackAndWhiteWithAnyColorMap) {
    PcxHeader header = header_of(1, 1, 2, 3, 2);
    header.ColorMap.fill(99);
    load(header, {0b10100000, 0, 0b01000000, 0});
    EXPECT_EQ(decoded_colours(), (Colours{0xFFFFFF, 0, 0xFFFFFF, 0, 0xFFFFFF, 0}));
    EXPECT_EQ(reader.Bpp(), 1);
}

TEST_F(LoadPcx, TooLongLinesSkewThePicture) {
    // 8 pixels need 1 byte, but the file has lines of 6: rows of 8 bytes are read as rows of 4.
    load(header_of(1, 1, 6, 8, 2), {0xFF, 0, 0, 0, 0x0F, 0, 0xAA, 0, 0, 0, 0, 0});
    const Colour white = 0xFFFFFF;
    // Bottom row: the start of the last line. Top row: bytes 4 to 7 of the same line.
    EXPECT_EQ(decoded_colours(), (Colours{0, 0, 0, 0, 0, 0, 0, 0, white, 0, white, 0, white, 0, white, 0}));
}

// 8 bits.

TEST_F(LoadPcx, Picture8BitUsesThePaletteAfterTheMarker) {
    load(with_map(header_of(8, 1, 4, 3, 2)), joined({{0, 1, 2, 99, 3, 4, 255, 99}, palette_trailer()}));
    EXPECT_EQ(decoded_colours(), (Colours{0x0700FF, 0x0701FE, 0x0702FD, 0x0703FC, 0x0704FB, 0x07FF00}));
}

TEST_F(LoadPcx, Picture8BitWithoutTheMarkerGetsAGreyRamp) {
    Bytes data(769, 5);
    data[0] = 13;
    data[768] = 200;
    load(header_of(8, 1, 769, 769, 1), data);
    Colours expected(769, grey(5));
    expected.front() = grey(13);
    expected.back() = grey(200);
    EXPECT_EQ(decoded_colours(), expected);
}

TEST_F(LoadPcx, File8BitOfFewerThan769BytesFails) {
    const PcxHeader header = header_of(8, 1, 2, 2, 1);
    EXPECT_FAILURE(load(header, Bytes(640)), DeviceIo);
    // At 769 bytes the marker is the first byte of the file.
    load(header, Bytes(641, 6));
    EXPECT_EQ(decoded_colours(), Colours(2, grey(6)));
}

TEST_F(LoadPcx, PaletteBytesFillMissingRows) {
    // One pixel for three rows: the others are the marker and the first palette bytes. The red of entry 0 is
    // 255, a run byte that repeats the next byte, 0.
    load(compressed(header_of(8, 1, 1, 1, 3)), joined({{5}, palette_trailer()}));
    EXPECT_EQ(decoded_colours(), (Colours{0x0705FA, 0x070CF3, 0x0700FF}));
}

TEST_F(LoadPcx, Picture8BitSetsThePaletteEvenWhenItsRowsFail) {
    EXPECT_FAILURE(load(header_of(8, 1, 2, 2, 32000), palette_trailer()), SubscriptOutOfRange);
    CBitmap::CreateBitmap8(Bytes{1, 0, 0, 0}, 1, 1, 0);
    EXPECT_EQ(decoded_colours(), (Colours{0x0701FE}));
}

// 4 bits and four planes.

TEST_F(LoadPcx, Picture4BitIsNibblesThroughTheColorMap) {
    load(with_map(header_of(4, 1, 2, 3, 2)), {0x1F, 0x20, 0x34, 0x50});
    EXPECT_EQ(decoded_colours(), map_colours({1, 15, 2, 3, 4, 5}));
    EXPECT_EQ(reader.Bpp(), 4);
}

TEST_F(LoadPcx, Picture4BitIgnoresBytesPerLine) {
    // Three pixels have lines of 2 bytes, though the header says 6: the second row is bytes 2 and 3.
    load(with_map(header_of(4, 1, 6, 3, 2)), {0x12, 0x30, 0x45, 0x60, 0, 0, 0x77, 0x70, 0, 0, 0, 0});
    EXPECT_EQ(decoded_colours(), map_colours({1, 2, 3, 4, 5, 6}));
}

TEST_F(LoadPcx, NibbleLinesAreRoundedUpToAnEvenNumberOfBytes) {
    for (const auto& [width, line] :
         {std::pair{1, 2}, {2, 2}, {3, 2}, {4, 2}, {5, 4}, {7, 4}, {8, 4}, {9, 6}}) {
        Bytes data(static_cast<std::size_t>(2 * line));
        data[static_cast<std::size_t>(line)] = 0x70;
        load(with_map(header_of(4, 1, 99, width, 2)), data);
        EXPECT_EQ(decoded_colours()[static_cast<std::size_t>(width)], map_colour(7)) << width;
    }
}

TEST_F(LoadPcx, FourPlanesGiveTheBitsOfAnIndexLowestFirst) {
    load(with_map(header_of(1, 4, 1, 4, 1)), {0b10010000, 0b01010000, 0b00110000, 0b00010000});
    EXPECT_EQ(decoded_colours(), map_colours({1, 2, 4, 15}));
}

TEST_F(LoadPcx, FourPlanesOfWidth10GiveABitmapOf12ButReport10) {
    const PcxHeader header = with_map(header_of(1, 4, 2, 10, 2));
    Bytes data(16);
    data[0] = 0xFF;
    data[1] = 0xFF; // six pixels more than the picture has
    data[10] = 0xFF;
    load(header, data);
    EXPECT_EQ(CBitmap::CurrentBitmap->width(), 12);
    EXPECT_EQ(reader.PCXWidth(), 150);
    reader.SetScaleMode(0);
    EXPECT_EQ(reader.PCXWidth(), 10);
    TestSurface target(1, 1);
    reader.DrawPCX(target);
    Colours expected(10, map_colour(1));
    expected.insert(expected.end(), 8, map_colour(2));
    expected.insert(expected.end(), 2, map_colour(0));
    EXPECT_EQ(colours_of(target), expected);
}

TEST_F(LoadPcx, RoundWidthRoundsUpToAMultipleOf4) {
    for (const auto& [width, widened] : {std::pair{1, 4},
                                         {2, 4},
                                         {3, 4},
                                         {4, 4},
                                         {5, 8},
                                         {6, 8},
                                         {7, 8},
                                         {8, 8},
                                         {9, 12},
                                         {10, 12},
                                         {256, 256},
                                         {0, 0}}) {
        EXPECT_EQ(LoadPCX::RoundWidth(width), widened) << width;
    }
}

TEST_F(LoadPcx, MissingPlaneBytesAreZero) {
    // The second line lacks its planes 1 to 3, the third all of them.
    load(with_map(header_of(1, 4, 1, 2, 3)), {0x80, 0x80, 0x80, 0x80, 0x80});
    EXPECT_EQ(decoded_colours(), map_colours({15, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(LoadPcx, FourPlaneFileWithoutPixelsHasTheFirstColour) {
    PcxHeader header = header_of(1, 4, 1, 2, 2);
    header.ColorMap[0] = 44;
    load(header);
    EXPECT_EQ(decoded_colours(), Colours(8, 44));
}

TEST_F(LoadPcx, MergedLinesHaveHalfTheWidthInBytes) {
    const Bytes planes(64, 0xFF);
    EXPECT_EQ(bytes_of(LoadPCX::MergePlanes(planes, 2, 12, 2)), Bytes(12, 0xFF));
    EXPECT_EQ(bytes_of(LoadPCX::MergePlanes(planes, 2, 4, 3)), Bytes(6, 0xFF));
    EXPECT_EQ(bytes_of(LoadPCX::MergePlanes(planes, 2, 2, 1)), Bytes(1, 0xFF));
}

TEST_F(LoadPcx, MergePlanesMatchesTheReference) {
    for (std::uint32_t seed = 0; seed < 2000; ++seed) {
        std::mt19937 random(seed);
        const auto any = [&](std::uint32_t limit) { return static_cast<std::int32_t>(random() % limit); };
        Bytes planes(static_cast<std::size_t>(any(seed < 300 ? 4 : 300)));
        for (auto& byte : planes) {
            byte = static_cast<std::uint8_t>(random());
        }
        const std::int32_t bytes_per_line = any(12) - 1;
        const std::int32_t width = 2 + any(60);
        const std::int32_t height = 1 + any(9);
        ASSERT_EQ(bytes_of(LoadPCX::MergePlanes(planes, bytes_per_line, width, height)),
                  reference::merge_pcx_planes(planes, bytes_per_line, width, height))
            << seed;
    }
}

TEST_F(LoadPcx, WideLinesOfZeroOrNegativeLengthMatchTheReference) {
    // Wide enough that the groups of later lines overlap the bytes before them.
    for (const std::int32_t bytes_per_line : {-3, -2, -1, 0, 1}) {
        for (const std::int32_t width : {8, 30, 32, 34, 250}) {
            const Bytes planes = counting(40);
            EXPECT_EQ(bytes_of(LoadPCX::MergePlanes(planes, bytes_per_line, width, 12)),
                      reference::merge_pcx_planes(planes, bytes_per_line, width, 12))
                << bytes_per_line << " " << width;
        }
    }
}

TEST_F(LoadPcx, LinesOfZeroOrNegativeLengthMergeForAnyHeight) {
    for (const int bytes_per_line : {0, -1, -8191}) {
        EXPECT_EQ(LoadPCX::MergePlanes(Bytes{0x80, 0}, bytes_per_line, 32000, 8000)[0] & 0x10, 0x10);
        put_old_picture();
        load(header_of(1, 4, bytes_per_line, 32767, 32767), {0x80});
        EXPECT_EQ(CBitmap::CurrentBitmap, nullptr);
        EXPECT_EQ(reader.Width(), 32767);
    }
}

TEST_F(LoadPcx, MergeBytesCombines8PixelsInto4Bytes) {
    EXPECT_EQ(LoadPCX::MergeBytes(0b10000001, 0, 0, 0), (std::array<std::uint8_t, 4>{0x10, 0, 0, 0x01}));
    EXPECT_EQ(LoadPCX::MergeBytes(0, 0b01000000, 0b00100000, 0b00010000),
              (std::array<std::uint8_t, 4>{0x02, 0x48, 0, 0}));
}

} // namespace
} // namespace varnoth::test
