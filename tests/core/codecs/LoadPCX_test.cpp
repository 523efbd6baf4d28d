#include <random>

#include "core/codecs/CBitmap.h"
#include "core/codecs/LoadPcxTest.h"
#include "reference/LoadPCX.h"
#include "support/expect_failure.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

using namespace pcx; // NOLINT: what the tests of this reader share

// The probe.

TEST_F(LoadPcx, ProbeReturnsSizeAndDepth) {
    EXPECT_EQ(info(header_of(8, 3, 10, 9, 4)), (Info{True, 9, 4, 8}));
}

TEST_F(LoadPcx, ProbeAcceptsVersions0And2And3And5) {
    PcxHeader header = header_of(8, 1, 2, 2, 2);
    for (int version = 0; version < 10; ++version) {
        header.Version = static_cast<std::uint8_t>(version);
        const bool known = version == 0 || version == 2 || version == 3 || version == 5;
        EXPECT_EQ(info(header).answer, truth(known)) << version;
    }
}

TEST_F(LoadPcx, ProbeSetsResultsOfARejectedFile) {
    PcxHeader header = header_of(8, 1, 2, 3, 2);
    header.Encoding = 1;
    EXPECT_EQ(info(header), (Info{True, 3, 2, 8}));
    header.Encoding = 2;
    EXPECT_EQ(info(header), (Info{False, 3, 2, 8}));
    header = header_of(8, 1, 2, 3, 2);
    header.Manufacturer = 11;
    EXPECT_EQ(info(header), (Info{False, 3, 2, 8}));
}

TEST_F(LoadPcx, ProbeReturnsFalseForASideBeyond16Bits) {
    PcxHeader header = header_of(8, 1, 2, 3, 2);
    header.XMin = -32768;
    EXPECT_EQ(info(header), (Info{False, 77, 77, 77}));
    // The width is set before the height overflows.
    header = header_of(8, 1, 2, 3, 2);
    header.YMax = 32767;
    EXPECT_EQ(info(header), (Info{False, 3, 77, 77}));
}

TEST_F(LoadPcx, ProbeReadsMissingHeaderBytesAsZero) {
    EXPECT_EQ(info_of(folder.write("a.pcx", Bytes{})), (Info{False, 1, 1, 0}));
    EXPECT_EQ(info_of(folder.write("a.pcx", Bytes{10, 5, 1, 8, 0, 0, 0, 0, 6})), (Info{True, 7, 1, 8}));
}

TEST_F(LoadPcx, Depth2IsValidButDecodesNothing) {
    const auto old = put_old_picture();
    const PcxHeader header = header_of(2, 1, 2, 5, 4);
    EXPECT_EQ(info(header), (Info{True, 5, 4, 2}));
    load(header, counting(8));
    EXPECT_EQ(reader.IsPCX(), True);
    EXPECT_EQ(reader.Width(), 5);
    EXPECT_EQ(reader.Height(), 4);
    EXPECT_EQ(CBitmap::CurrentBitmap, old);
}

TEST_F(LoadPcx, UnknownLayoutStretchesTheOldPictureToTheNewSize) {
    const Bytes pixels{1, 0, 0, 0, 2, 0, 0, 0};
    CBitmap::CreateBitmap32(pixels, 2, 1, 0);
    load(header_of(8, 2, 2, 3, 2));
    TestSurface target(1, 1);
    reader.DrawPCX(target);
    // The source rectangle of 3 by 2 extends beyond the picture of 2 by 1; nothing is drawn there.
    EXPECT_EQ(colours_of(target), (Colours{0x010000, 0x020000, 0, 0, 0, 0}));
}

TEST_F(LoadPcx, LoadDecodesFilesWithInvalidHeaders) {
    PcxHeader header = header_of(8, 3, 1, 1, 1);
    header.Manufacturer = 99;
    header.Version = 99;
    header.Encoding = 99;
    load(header, {1, 2, 3});
    EXPECT_EQ(reader.IsPCX(), False);
    EXPECT_EQ(reader.Compressed(), False);
    EXPECT_EQ(decoded_colours(), (Colours{0x030201}));
}

TEST_F(LoadPcx, CompressedIsTrueForEncoding1Only) {
    load(compressed(header_of(8, 3, 1, 1, 1)), {1, 2, 3});
    EXPECT_EQ(reader.Compressed(), True);
}

// Sizes.

TEST_F(LoadPcx, OriginAffectsOnlyTheSize) {
    PcxHeader header = header_of(8, 3, 2, 2, 1);
    header.XMin = 100;
    header.XMax = 101;
    header.YMin = -7;
    header.YMax = -7;
    load(header, counting(6));
    EXPECT_EQ(reader.Width(), 2);
    EXPECT_EQ(reader.Height(), 1);
    EXPECT_EQ(reader.TwipWidth(), 30);
    EXPECT_EQ(reader.TwipHeight(), 15);
    EXPECT_EQ(decoded_colours(), (Colours{0x050301, 0x060402}));
}

TEST_F(LoadPcx, SideBeyond16BitsOverflows) {
    PcxHeader header = header_of(2, 1, 2, 2, 1);
    header.XMin = 0;
    header.XMax = 32767;
    EXPECT_FAILURE(load(header), Overflow);
    header.XMin = -1;
    EXPECT_FAILURE(load(header), Overflow);
    header.XMin = 1;
    EXPECT_EQ(failure_in([&] { load(header); }), std::nullopt);
    EXPECT_EQ(reader.Width(), 32767);
    header = header_of(2, 1, 2, 2, 1);
    header.YMin = -32768;
    EXPECT_FAILURE(load(header), Overflow);
}

TEST_F(LoadPcx, LineBeyond16BitsOverflowsInAnyLayout) {
    EXPECT_FAILURE(load(header_of(2, 2, 16384, 2, 1)), Overflow);
    EXPECT_FAILURE(load(header_of(2, 255, -129, 2, 1)), Overflow);
    EXPECT_EQ(failure_in([&] { load(header_of(2, 2, 16383, 2, 1)); }), std::nullopt);
    EXPECT_EQ(failure_in([&] { load(header_of(2, 2, -16384, 2, 1)); }), std::nullopt);
}

TEST_F(LoadPcx, FailureLeavesTheSizesOfTheNewFile) {
    const auto old = put_old_picture();
    EXPECT_FAILURE(load(header_of(8, 3, 4, 4, 9), counting(3)), SubscriptOutOfRange);
    EXPECT_EQ(reader.Width(), 4);
    EXPECT_EQ(reader.Height(), 9);
    EXPECT_EQ(CBitmap::CurrentBitmap, old);
}

TEST_F(LoadPcx, PictureWithoutPixelsIsASubscriptFailure) {
    struct {
        int bits, planes;
    } const layouts[] = {{1, 1}, {1, 4}, {4, 1}, {8, 1}, {8, 3}};

    for (const auto& layout : layouts) {
        const int bits = layout.bits;
        const int planes = layout.planes;
        EXPECT_FAILURE(load(header_of(bits, planes, 2, 3, 0), Bytes(2000)), SubscriptOutOfRange);
        EXPECT_FAILURE(load(header_of(bits, planes, 2, 3, -5), Bytes(2000)), SubscriptOutOfRange);
    }
    EXPECT_FAILURE(load(header_of(8, 3, 2, 0, 3), Bytes(2000)), SubscriptOutOfRange);
    EXPECT_FAILURE(load(header_of(1, 4, 2, 0, 3), Bytes(2000)), SubscriptOutOfRange);
    EXPECT_FAILURE(load(header_of(4, 1, 2, -9, 3), Bytes(2000)), SubscriptOutOfRange);
    EXPECT_FAILURE(load(header_of(8, 1, 0, 3, 3), Bytes(2000)), SubscriptOutOfRange);
    EXPECT_FAILURE(load(header_of(8, 1, -8, 3, 3), Bytes(2000)), SubscriptOutOfRange);
}

TEST_F(LoadPcx, NegativeWidthLeavesNoPicture) {
    put_old_picture();
    load(header_of(1, 1, 2, -3, 3), Bytes(10));
    EXPECT_EQ(CBitmap::CurrentBitmap, nullptr);
}

// Run-length decoding.

TEST_F(LoadPcx, RunOfLength0DropsItsValue) {
    EXPECT_EQ(bytes_of(LoadPCX::DecodeRle(Bytes{1, 192, 77, 2, 0})), (Bytes{1, 2}));
}

TEST_F(LoadPcx, BytesBelow192AreLiteralsAndOthersRepeatTheNextByte) {
    EXPECT_EQ(bytes_of(LoadPCX::DecodeRle(Bytes{191, 193, 200, 195, 5, 0})), (Bytes{191, 200, 5, 5, 5}));
    EXPECT_EQ(bytes_of(LoadPCX::DecodeRle(Bytes{255, 255, 0})), Bytes(63, 255));
}

TEST_F(LoadPcx, RunByteAtTheEndRepeatsTheSpareZero) {
    EXPECT_EQ(bytes_of(LoadPCX::DecodeRle(Bytes{7, 194, 0})), (Bytes{7, 0, 0}));
}

TEST_F(LoadPcx, SpareByteAloneExpandsToNothing) {
    EXPECT_EQ(LoadPCX::DecodeRle(Bytes{200}).size(), 0U);
    EXPECT_EQ(LoadPCX::DecodeRle(Bytes{}).size(), 0U);
    EXPECT_FAILURE(load(compressed(header_of(1, 1, 2, 1, 1))), SubscriptOutOfRange);
}

TEST_F(LoadPcx, RunsCrossLinesAndPlanes) {
    EXPECT_EQ(decoded(compressed(header_of(8, 3, 2, 2, 2)), {192 + 12, 9}), Colours(4, grey(9)));
}

TEST_F(LoadPcx, RunLengthDecodingMatchesTheReference) {
    for (std::uint32_t seed = 0; seed < 3000; ++seed) {
        std::mt19937 random(seed);
        Bytes bytes(random() % (seed < 200 ? 6 : 200));
        for (auto& byte : bytes) {
            byte = static_cast<std::uint8_t>(random() % 2 ? 188 + random() % 68 : random());
        }
        bytes.push_back(0);
        ASSERT_EQ(bytes_of(LoadPCX::DecodeRle(bytes)), reference::decode_pcx_rle(bytes)) << seed;
    }
}

// Rows.

TEST_F(LoadPcx, FlipRowsReversesAndPadsTo4Bytes) {
    EXPECT_EQ(bytes_of(LoadPCX::FlipRows(counting(6), 2, 3)), (Bytes{4, 5, 6, 0, 1, 2, 3, 0}));
    EXPECT_EQ(bytes_of(LoadPCX::FlipRows(counting(8), 2, 4)), (Bytes{5, 6, 7, 8, 1, 2, 3, 4}));
    EXPECT_EQ(bytes_of(LoadPCX::FlipRows(counting(9), 1, 5)), (Bytes{1, 2, 3, 4, 5, 0, 0, 0}));
}

TEST_F(LoadPcx, PartialLastRowIsZeroFilledAndMissingRowFails) {
    EXPECT_EQ(bytes_of(LoadPCX::FlipRows(counting(4), 2, 3)), (Bytes{4, 0, 0, 0, 1, 2, 3, 0}));
    EXPECT_FAILURE(LoadPCX::FlipRows(counting(3), 2, 3), SubscriptOutOfRange);
    EXPECT_FAILURE(LoadPCX::FlipRows(counting(3), 32767, 32767), SubscriptOutOfRange);
}

TEST_F(LoadPcx, RowsWithoutBytesFail) {
    EXPECT_FAILURE(LoadPCX::FlipRows(counting(3), 0, 3), SubscriptOutOfRange);
    EXPECT_FAILURE(LoadPCX::FlipRows(counting(3), 1, 0), SubscriptOutOfRange);
    EXPECT_FAILURE(LoadPCX::FlipRows(counting(3), 1, -4), SubscriptOutOfRange);
    EXPECT_FAILURE(LoadPCX::FlipRows(counting(3), -1, 3), SubscriptOutOfRange);
    // Two negative sides have a positive product, but no row is written.
    EXPECT_EQ(bytes_of(LoadPCX::FlipRows(counting(3), -2, -4)), Bytes(8));
}

TEST_F(LoadPcx, LastRowMayStartAtTheSpareByte) {
    // The second row starts at the spare zero byte of the array.
    const PcxHeader header = header_of(1, 1, 1, 8, 2);
    EXPECT_EQ(decoded(header, {0xFF}), (Colours{0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF,
                                                0xFFFFFF, 0xFFFFFF, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_FAILURE(load(header_of(1, 1, 1, 8, 3), {0xFF}), SubscriptOutOfRange);
}

// 24 bits.

TEST_F(LoadPcx, Picture24BitHasOneLinePerColourAndBpp8) {
    EXPECT_EQ(decoded(header_of(8, 3, 4, 3, 2),
                      {1, 2, 3, 99, 4, 5, 6, 99, 7, 8, 9, 99, 11, 12, 13, 99, 14, 15, 16, 99, 17, 18, 19}),
              (Colours{0x070401, 0x080502, 0x090603, 0x110E0B, 0x120F0C, 0x13100D}));
    EXPECT_EQ(reader.Bpp(), 8);
}

TEST_F(LoadPcx, PixelBeyondTheArrayFailsButTheSpareByteCounts) {
    const PcxHeader header = header_of(8, 3, 1, 1, 2);
    EXPECT_FAILURE(load(header, counting(4)), SubscriptOutOfRange);
    EXPECT_EQ(decoded(header, counting(5)), (Colours{0x030201, 0x000504}));
    EXPECT_FAILURE(load(header_of(8, 3, 32, 1, 32000), counting(96)), SubscriptOutOfRange);
    EXPECT_FAILURE(load(header_of(8, 3, -1, 1, 1), counting(96)), SubscriptOutOfRange);
}

TEST_F(LoadPcx, WidthMayExtendIntoTheNextPlane) {
    EXPECT_EQ(decoded(header_of(8, 3, 1, 2, 1), {1, 2, 3, 4}), (Colours{0x030201, 0x040302}));
}

TEST_F(LoadPcx, ManyPixelsFromFewBytesFailOnlyWithoutMemory) {
    EXPECT_FAILURE(load(header_of(8, 3, 0, 30000, 30000), Bytes(30000)), OutOfMemory);
    load(header_of(8, 3, 0, 3, 300), {1, 2, 3});
    EXPECT_EQ(decoded_colours()[899], grey(3));
}

TEST_F(LoadPcx, TwoNegativeSidesGiveAnArrayButNoPicture) {
    // 2 GiB minus one byte would be 536870911.75 pixels; these are 536870910.
    put_old_picture();
    load(header_of(8, 3, 0, -28702, -18705), {1, 2, 3});
    EXPECT_EQ(CBitmap::CurrentBitmap, nullptr);
    EXPECT_FAILURE(load(header_of(8, 3, 0, -28702, -18706), {1, 2, 3}), OutOfMemory);
}

// Objects and files.

TEST_F(LoadPcx, EachLoadReplacesThePreviousPicture) {
    load(header_of(8, 3, 2, 2, 1), counting(6));
    load(header_of(1, 1, 1, 1, 1), {0x80});
    EXPECT_EQ(reader.Width(), 1);
    EXPECT_EQ(reader.Bpp(), 1);
    EXPECT_EQ(decoded_colours(), (Colours{0xFFFFFF}));
}

TEST_F(LoadPcx, TruncatedHeaderIsZeroInTheMissingBytes) {
    load(header_of(8, 3, 1, 1, 1), {1, 2, 3});
    const auto old = CBitmap::CurrentBitmap;
    // Truncated before the plane count: an unknown layout of 8 by 1 pixels.
    reader.Load(folder.write("b.pcx", Bytes{10, 5, 0, 8, 0, 0, 0, 0, 7, 0}));
    EXPECT_EQ(reader.Width(), 8);
    EXPECT_EQ(reader.Height(), 1);
    EXPECT_EQ(reader.Header().NPlanes, 0);
    EXPECT_EQ(CBitmap::CurrentBitmap, old);
    // Truncated after the line length: the picture's only row is the spare byte.
    Bytes bytes = bytes_of(header_of(1, 1, 1, 8, 1));
    bytes.resize(70);
    reader.Load(folder.write("b.pcx", bytes));
    EXPECT_EQ(decoded_colours(), Colours(8, 0));
}

// 1 bit.

TEST_F(LoadPcx, Picture1BitIsBlackAndWhiteWithAnyColorMap) {
    PcxHeader header = header_of(1, 1, 2, 3, 2);
    header.ColorMap.fill(99);
    EXPECT_EQ(decoded(header, {0b10100000, 0, 0b01000000, 0}),
              (Colours{0xFFFFFF, 0, 0xFFFFFF, 0, 0xFFFFFF, 0}));
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
    EXPECT_EQ(decoded(with_map(header_of(8, 1, 4, 3, 2)),
                      joined({{0, 1, 2, 99, 3, 4, 255, 99}, palette_trailer()})),
              (Colours{0x0700FF, 0x0701FE, 0x0702FD, 0x0703FC, 0x0704FB, 0x07FF00}));
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
    EXPECT_EQ(decoded(header, Bytes(641, 6)), Colours(2, grey(6)));
}

TEST_F(LoadPcx, PaletteBytesFillMissingRows) {
    // One pixel for three rows: the others are the marker and the first palette bytes. The red of entry 0 is
    // 255, a run byte that repeats the next byte, 0.
    EXPECT_EQ(decoded(compressed(header_of(8, 1, 1, 1, 3)), joined({{5}, palette_trailer()})),
              (Colours{0x0705FA, 0x070CF3, 0x0700FF}));
}

TEST_F(LoadPcx, Picture8BitSetsThePaletteEvenWhenItsRowsFail) {
    EXPECT_FAILURE(load(header_of(8, 1, 2, 2, 32000), palette_trailer()), SubscriptOutOfRange);
    CBitmap::CreateBitmap8(Bytes{1, 0, 0, 0}, 1, 1, 0);
    EXPECT_EQ(decoded_colours(), (Colours{0x0701FE}));
}

// 4 bits and four planes.

TEST_F(LoadPcx, Picture4BitIsNibblesThroughTheColorMap) {
    EXPECT_EQ(decoded(with_map(header_of(4, 1, 2, 3, 2)), {0x1F, 0x20, 0x34, 0x50}),
              map_colours({1, 15, 2, 3, 4, 5}));
    EXPECT_EQ(reader.Bpp(), 4);
}

TEST_F(LoadPcx, Picture4BitIgnoresBytesPerLine) {
    // Three pixels have lines of 2 bytes, though the header says 6: the second row is bytes 2 and 3.
    EXPECT_EQ(
        decoded(with_map(header_of(4, 1, 6, 3, 2)), {0x12, 0x30, 0x45, 0x60, 0, 0, 0x77, 0x70, 0, 0, 0, 0}),
        map_colours({1, 2, 3, 4, 5, 6}));
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
    EXPECT_EQ(decoded(with_map(header_of(1, 4, 1, 4, 1)), {0b10010000, 0b01010000, 0b00110000, 0b00010000}),
              map_colours({1, 2, 4, 15}));
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
    EXPECT_EQ(decoded(with_map(header_of(1, 4, 1, 2, 3)), {0x80, 0x80, 0x80, 0x80, 0x80}),
              map_colours({15, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(LoadPcx, FourPlaneFileWithoutPixelsHasTheFirstColour) {
    PcxHeader header = header_of(1, 4, 1, 2, 2);
    header.ColorMap[0] = 44;
    EXPECT_EQ(decoded(header), Colours(8, 44));
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
