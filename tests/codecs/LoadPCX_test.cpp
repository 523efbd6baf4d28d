#include "codecs/LoadPCX.h"

#include <numeric>
#include <random>

#include <gtest/gtest.h>

#include "codecs/CBitmap.h"
#include "reference/LoadPCX.h"
#include "support/TemporaryFolder.h"
#include "support/codec_files.h"
#include "support/expect_failure.h"
#include "support/pictures.h"

namespace varnoth {
namespace {

using test::Bytes;
using test::bytes_of;
using test::decoded_colours;
using test::joined;
using test::put_old_picture;
using test::TemporaryFolder;
using test::TestSurface;

using Colours = std::vector<Colour>;

PcxHeader header_of(int bits, int planes, int bytes_per_line, int width, int height) {
    PcxHeader header;
    header.Manufacturer = 10;
    header.Version = 5;
    header.BitsPerPixel = static_cast<std::uint8_t>(bits);
    header.NPlanes = static_cast<std::uint8_t>(planes);
    header.BytesPerLine = static_cast<std::int16_t>(bytes_per_line);
    header.XMax = static_cast<std::int16_t>(width - 1);
    header.YMax = static_cast<std::int16_t>(height - 1);
    return header;
}

PcxHeader compressed(PcxHeader header) {
    header.Encoding = 1;
    return header;
}

// A colour map whose entry i is (i, 2i, 3i).
PcxHeader with_map(PcxHeader header) {
    for (std::size_t i = 0; i < 48; ++i) {
        header.ColorMap[i] = static_cast<std::uint8_t>(i / 3 * (i % 3 + 1));
    }
    return header;
}

Colour map_colour(int i) {
    return make_colour(static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(2 * i),
                       static_cast<std::uint8_t>(3 * i));
}

Colour grey(int value) {
    return value * 0x010101;
}

// The marker and a palette whose entry i is (255 - i, i, 7).
Bytes palette_trailer() {
    Bytes bytes{12};
    for (int i = 0; i < 256; ++i) {
        bytes.insert(bytes.end(), {static_cast<std::uint8_t>(255 - i), static_cast<std::uint8_t>(i), 7});
    }
    return bytes;
}

Bytes counting(std::size_t count) {
    Bytes bytes(count);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{1});
    return bytes;
}

struct Info {
    Truth answer = 77;
    std::int32_t width = 77;
    std::int32_t height = 77;
    std::int16_t bpp = 77;

    friend bool operator==(const Info&, const Info&) = default;
};

class LoadPcx : public testing::Test {
  protected:
    std::string file(const PcxHeader& header, const Bytes& data = {}) {
        return folder.write("a.pcx", joined({bytes_of(header), data}));
    }

    void load(const PcxHeader& header, const Bytes& data = {}) { reader.Load(file(header, data)); }

    Info info(const PcxHeader& header) { return info_of(file(header)); }

    Info info_of(const std::string& path) {
        Info result;
        result.answer = reader.GetInfoPCX(path, result.width, result.height, result.bpp);
        return result;
    }

    TemporaryFolder folder;
    LoadPCX reader;
};

TEST_F(LoadPcx, ANewObjectCountsInTwipsScalesItsTargetAndHasNoSize) {
    EXPECT_EQ(reader.ScaleMode(), 1);
    EXPECT_EQ(reader.Autoscale(), -1);
    EXPECT_EQ(reader.PCXWidth(), 0);
    EXPECT_EQ(reader.PCXHeight(), 0);
    EXPECT_EQ(reader.IsPCX(), False);
    EXPECT_EQ(reader.Compressed(), False);
    EXPECT_EQ(reader.Bpp(), 0);
}

TEST_F(LoadPcx, ScaleModeSetTo5ReadsBackAs1AndMinus1StaysAndGivesNoSize) {
    load(header_of(8, 3, 2, 2, 1), counting(6));
    reader.SetScaleMode(5);
    EXPECT_EQ(reader.ScaleMode(), 1);
    EXPECT_EQ(reader.PCXWidth(), 30);
    EXPECT_EQ(reader.PCXHeight(), 15);
    reader.SetScaleMode(0);
    EXPECT_EQ(reader.PCXWidth(), 2);
    EXPECT_EQ(reader.PCXHeight(), 1);
    reader.SetScaleMode(-1);
    EXPECT_EQ(reader.ScaleMode(), -1);
    EXPECT_EQ(reader.PCXWidth(), 0);
    EXPECT_EQ(reader.PCXHeight(), 0);
}

TEST_F(LoadPcx, AutoscaleIsKeptAsItIsSet) {
    reader.SetAutoscale(5);
    EXPECT_EQ(reader.Autoscale(), 5);
}

// The look at the header.

TEST_F(LoadPcx, TheProbeTellsSizeAndBitsPerPlaneAndLeavesTheObjectAlone) {
    EXPECT_EQ(info(header_of(8, 3, 10, 9, 4)), (Info{True, 9, 4, 8}));
    EXPECT_EQ(reader.Width(), 0);
    EXPECT_EQ(reader.Header(), PcxHeader{});
}

TEST_F(LoadPcx, TheProbeAcceptsTheVersions0And2And3And5) {
    PcxHeader header = header_of(8, 1, 2, 2, 2);
    for (int version = 0; version < 10; ++version) {
        header.Version = static_cast<std::uint8_t>(version);
        const bool known = version == 0 || version == 2 || version == 3 || version == 5;
        EXPECT_EQ(info(header).answer, truth(known)) << version;
    }
}

TEST_F(LoadPcx, TheProbeRefusesAnotherManufacturerAndEncodingsFrom2UpButTellsTheNumbers) {
    PcxHeader header = header_of(8, 1, 2, 3, 2);
    header.Encoding = 1;
    EXPECT_EQ(info(header), (Info{True, 3, 2, 8}));
    header.Encoding = 2;
    EXPECT_EQ(info(header), (Info{False, 3, 2, 8}));
    header = header_of(8, 1, 2, 3, 2);
    header.Manufacturer = 11;
    EXPECT_EQ(info(header), (Info{False, 3, 2, 8}));
}

TEST_F(LoadPcx, TheProbeTurnsFailuresIntoFalse) {
    EXPECT_EQ(info_of(folder.file("none.pcx")), (Info{False, 77, 77, 77}));
    EXPECT_EQ(info_of(folder.path()), (Info{False, 77, 77, 77}));
    PcxHeader header = header_of(8, 1, 2, 3, 2);
    header.XMin = -32768;
    EXPECT_EQ(info(header), (Info{False, 77, 77, 77}));
    // The width is set before the height overflows.
    header = header_of(8, 1, 2, 3, 2);
    header.YMax = 32767;
    EXPECT_EQ(info(header), (Info{False, 3, 77, 77}));
}

TEST_F(LoadPcx, TheProbeTakesWhatAShortFileLacksForZero) {
    EXPECT_EQ(info_of(folder.write("a.pcx", Bytes{})), (Info{False, 1, 1, 0}));
    EXPECT_EQ(info_of(folder.write("a.pcx", Bytes{10, 5, 1, 8, 0, 0, 0, 0, 6})), (Info{True, 7, 1, 8}));
}

TEST_F(LoadPcx, ADepthOf2PassesTheTestsAndChangesNoPicture) {
    const auto old = put_old_picture();
    const PcxHeader header = header_of(2, 1, 2, 5, 4);
    EXPECT_EQ(info(header), (Info{True, 5, 4, 2}));
    load(header, counting(8));
    EXPECT_EQ(reader.IsPCX(), True);
    EXPECT_EQ(reader.Width(), 5);
    EXPECT_EQ(reader.Height(), 4);
    EXPECT_EQ(CBitmap::CurrentBitmap, old);
}

TEST_F(LoadPcx, ALayoutThatIsNotKnownStretchesTheOldPictureToTheNewSize) {
    const Bytes pixels{1, 0, 0, 0, 2, 0, 0, 0};
    CBitmap::CreateBitmap32(pixels, 2, 1, 0);
    load(header_of(8, 2, 2, 3, 2));
    TestSurface target(1, 1);
    reader.DrawPCX(target);
    // The source rectangle of 3 by 2 reaches beyond the picture of 2 by 1, and nothing is drawn there.
    EXPECT_EQ(test::colours_of(target), (Colours{0x010000, 0x020000, 0, 0, 0, 0}));
}

TEST_F(LoadPcx, TheFileIsLoadedWhateverTheHeaderTestsSay) {
    PcxHeader header = header_of(8, 3, 1, 1, 1);
    header.Manufacturer = 99;
    header.Version = 99;
    header.Encoding = 99;
    load(header, {1, 2, 3});
    EXPECT_EQ(reader.IsPCX(), False);
    EXPECT_EQ(reader.Compressed(), False);
    EXPECT_EQ(decoded_colours(), (Colours{0x030201}));
}

TEST_F(LoadPcx, CompressedIsTrueForEncoding1) {
    load(compressed(header_of(8, 3, 1, 1, 1)), {1, 2, 3});
    EXPECT_EQ(reader.Compressed(), True);
}

// Sizes.

TEST_F(LoadPcx, AnOriginOtherThanZeroHasNoOtherEffectThanOnTheSize) {
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

TEST_F(LoadPcx, ASideOutside16BitsIsAnOverflow) {
    PcxHeader header = header_of(2, 1, 2, 2, 1);
    header.XMin = 0;
    header.XMax = 32767;
    EXPECT_FAILURE(load(header), Overflow);
    header.XMin = -1;
    EXPECT_FAILURE(load(header), Overflow);
    header.XMin = 1;
    EXPECT_EQ(test::failure_in([&] { load(header); }), std::nullopt);
    EXPECT_EQ(reader.Width(), 32767);
    header = header_of(2, 1, 2, 2, 1);
    header.YMin = -32768;
    EXPECT_FAILURE(load(header), Overflow);
}

TEST_F(LoadPcx, ALineOfAllPlanesBeyond16BitsIsAnOverflowAlsoForALayoutThatIsNotKnown) {
    EXPECT_FAILURE(load(header_of(2, 2, 16384, 2, 1)), Overflow);
    EXPECT_FAILURE(load(header_of(2, 255, -129, 2, 1)), Overflow);
    EXPECT_EQ(test::failure_in([&] { load(header_of(2, 2, 16383, 2, 1)); }), std::nullopt);
    EXPECT_EQ(test::failure_in([&] { load(header_of(2, 2, -16384, 2, 1)); }), std::nullopt);
}

TEST_F(LoadPcx, AfterAFailureTheSizesAreTheNewFiles) {
    const auto old = put_old_picture();
    EXPECT_FAILURE(load(header_of(8, 3, 4, 4, 9), counting(3)), SubscriptOutOfRange);
    EXPECT_EQ(reader.Width(), 4);
    EXPECT_EQ(reader.Height(), 9);
    EXPECT_EQ(CBitmap::CurrentBitmap, old);
}

TEST_F(LoadPcx, APictureWithoutPixelsIsASubscriptFailure) {
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

TEST_F(LoadPcx, APictureOfNegativeWidthWithRowsLeavesNoPicture) {
    put_old_picture();
    load(header_of(1, 1, 2, -3, 3), Bytes(10));
    EXPECT_EQ(CBitmap::CurrentBitmap, nullptr);
}

// Run-length decoding.

TEST_F(LoadPcx, ARunByteOf192SwallowsTheNextByteAndYieldsNothing) {
    EXPECT_EQ(bytes_of(LoadPCX::DecodeRle(Bytes{1, 192, 77, 2, 0})), (Bytes{1, 2}));
}

TEST_F(LoadPcx, BytesBelow192StandForThemselvesAndRunsRepeatTheNext) {
    EXPECT_EQ(bytes_of(LoadPCX::DecodeRle(Bytes{191, 193, 200, 195, 5, 0})), (Bytes{191, 200, 5, 5, 5}));
    EXPECT_EQ(bytes_of(LoadPCX::DecodeRle(Bytes{255, 255, 0})), Bytes(63, 255));
}

TEST_F(LoadPcx, ARunByteAtTheVeryEndRepeatsTheSpareZero) {
    EXPECT_EQ(bytes_of(LoadPCX::DecodeRle(Bytes{7, 194, 0})), (Bytes{7, 0, 0}));
}

TEST_F(LoadPcx, NothingButTheSpareByteExpandsToNothing) {
    EXPECT_EQ(LoadPCX::DecodeRle(Bytes{200}).size(), 0U);
    EXPECT_EQ(LoadPCX::DecodeRle(Bytes{}).size(), 0U);
    EXPECT_FAILURE(load(compressed(header_of(1, 1, 2, 1, 1))), SubscriptOutOfRange);
}

TEST_F(LoadPcx, RunsCrossLinesAndPlanes) {
    load(compressed(header_of(8, 3, 2, 2, 2)), {192 + 12, 9});
    EXPECT_EQ(decoded_colours(), Colours(4, grey(9)));
}

TEST_F(LoadPcx, RunLengthDecodingEqualsThePlainSteps) {
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

TEST_F(LoadPcx, RowsAreTurnedOverAndPaddedTo4Bytes) {
    EXPECT_EQ(bytes_of(LoadPCX::FlipRows(counting(6), 2, 3)), (Bytes{4, 5, 6, 0, 1, 2, 3, 0}));
    EXPECT_EQ(bytes_of(LoadPCX::FlipRows(counting(8), 2, 4)), (Bytes{5, 6, 7, 8, 1, 2, 3, 4}));
    EXPECT_EQ(bytes_of(LoadPCX::FlipRows(counting(9), 1, 5)), (Bytes{1, 2, 3, 4, 5, 0, 0, 0}));
}

TEST_F(LoadPcx, ARowThatEndsOutsideGetsZerosAndOneThatStartsOutsideFails) {
    EXPECT_EQ(bytes_of(LoadPCX::FlipRows(counting(4), 2, 3)), (Bytes{4, 0, 0, 0, 1, 2, 3, 0}));
    EXPECT_FAILURE(LoadPCX::FlipRows(counting(3), 2, 3), SubscriptOutOfRange);
    EXPECT_FAILURE(LoadPCX::FlipRows(counting(3), 32767, 32767), SubscriptOutOfRange);
}

TEST_F(LoadPcx, RowsThatHaveNoBytesFail) {
    EXPECT_FAILURE(LoadPCX::FlipRows(counting(3), 0, 3), SubscriptOutOfRange);
    EXPECT_FAILURE(LoadPCX::FlipRows(counting(3), 1, 0), SubscriptOutOfRange);
    EXPECT_FAILURE(LoadPCX::FlipRows(counting(3), 1, -4), SubscriptOutOfRange);
    EXPECT_FAILURE(LoadPCX::FlipRows(counting(3), -1, 3), SubscriptOutOfRange);
    // Two negative numbers make a size, of which no row is filled.
    EXPECT_EQ(bytes_of(LoadPCX::FlipRows(counting(3), -2, -4)), Bytes(8));
}

TEST_F(LoadPcx, AFileOneSpareByteShortOfItsLastRowStillLoads) {
    // The array has a spare zero byte, so that the second row starts on it.
    const PcxHeader header = header_of(1, 1, 1, 8, 2);
    load(header, {0xFF});
    EXPECT_EQ(decoded_colours(), (Colours{0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF,
                                          0xFFFFFF, 0xFFFFFF, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_FAILURE(load(header_of(1, 1, 1, 8, 3), {0xFF}), SubscriptOutOfRange);
}

// 1 bit.

TEST_F(LoadPcx, AOneBitPictureIsBlackAndWhiteWhateverItsColorMapHolds) {
    PcxHeader header = header_of(1, 1, 2, 3, 2);
    header.ColorMap.fill(99);
    load(header, {0b10100000, 0, 0b01000000, 0});
    EXPECT_EQ(decoded_colours(), (Colours{0xFFFFFF, 0, 0xFFFFFF, 0, 0xFFFFFF, 0}));
    EXPECT_EQ(reader.Bpp(), 1);
}

TEST_F(LoadPcx, ALongerLineThanTheWidthNeedsSkewsThePicture) {
    // 8 pixels need 1 byte, the file has lines of 6: rows of 8 bytes meet a picture of rows of 4.
    load(header_of(1, 1, 6, 8, 2), {0xFF, 0, 0, 0, 0x0F, 0, 0xAA, 0, 0, 0, 0, 0});
    const Colour white = 0xFFFFFF;
    // Bottom row: the start of the last line. Top row: bytes 4 to 7 of that same line.
    EXPECT_EQ(decoded_colours(), (Colours{0, 0, 0, 0, 0, 0, 0, 0, white, 0, white, 0, white, 0, white, 0}));
}

// 8 bits.

TEST_F(LoadPcx, AnEightBitPictureTakesThePaletteBehindItsMarkerAndNeverTheColorMap) {
    load(with_map(header_of(8, 1, 4, 3, 2)), joined({{0, 1, 2, 99, 3, 4, 255, 99}, palette_trailer()}));
    EXPECT_EQ(decoded_colours(), (Colours{0x0700FF, 0x0701FE, 0x0702FD, 0x0703FC, 0x0704FB, 0x07FF00}));
}

TEST_F(LoadPcx, AnEightBitFileWithoutTheMarkerGetsAGreyRampAndItsTailIsPartOfTheData) {
    Bytes data(769, 5);
    data[0] = 13;
    data[768] = 200;
    load(header_of(8, 1, 769, 769, 1), data);
    Colours expected(769, grey(5));
    expected.front() = grey(13);
    expected.back() = grey(200);
    EXPECT_EQ(decoded_colours(), expected);
}

TEST_F(LoadPcx, AnEightBitFileOfLessThan769BytesIsAFailure) {
    const PcxHeader header = header_of(8, 1, 2, 2, 1);
    EXPECT_FAILURE(load(header, Bytes(640)), DeviceIo);
    // At 769 bytes the marker's place is the first byte of the file.
    load(header, Bytes(641, 6));
    EXPECT_EQ(decoded_colours(), Colours(2, grey(6)));
}

TEST_F(LoadPcx, ThePaletteIsExpandedWithThePixelsAndFeedsMissingRows) {
    // One pixel for three rows: the marker and the first palette bytes are the others. The file's red of
    // entry 0 is 255, a run byte that repeats the next byte, 0.
    load(compressed(header_of(8, 1, 1, 1, 3)), joined({{5}, palette_trailer()}));
    EXPECT_EQ(decoded_colours(), (Colours{0x0705FA, 0x070CF3, 0x0700FF}));
}

TEST_F(LoadPcx, AnEightBitPictureFillsItsPaletteEvenWhenItsRowsFail) {
    EXPECT_FAILURE(load(header_of(8, 1, 2, 2, 32000), palette_trailer()), SubscriptOutOfRange);
    CBitmap::CreateBitmap8(Bytes{1, 0, 0, 0}, 1, 1, 0);
    EXPECT_EQ(decoded_colours(), (Colours{0x0701FE}));
}

// 4 bits and four planes.

TEST_F(LoadPcx, FourBitsOnOnePlaneAreNibblesThroughTheColorMap) {
    load(with_map(header_of(4, 1, 2, 3, 2)), {0x1F, 0x20, 0x34, 0x50});
    EXPECT_EQ(decoded_colours(), (Colours{map_colour(1), map_colour(15), map_colour(2), map_colour(3),
                                          map_colour(4), map_colour(5)}));
    EXPECT_EQ(reader.Bpp(), 4);
}

TEST_F(LoadPcx, FourBitsOnOnePlaneIgnoreTheFilesLineLength) {
    // Three pixels make lines of 2 bytes, though the file says 6: the second row comes from bytes 2 and 3.
    load(with_map(header_of(4, 1, 6, 3, 2)), {0x12, 0x30, 0x45, 0x60, 0, 0, 0x77, 0x70, 0, 0, 0, 0});
    EXPECT_EQ(decoded_colours(), (Colours{map_colour(1), map_colour(2), map_colour(3), map_colour(4),
                                          map_colour(5), map_colour(6)}));
}

TEST_F(LoadPcx, LinesOfNibblesAreHalfTheWidthRoundedUpToAnEvenNumberOfBytes) {
    for (const auto& [width, line] :
         {std::pair{1, 2}, {2, 2}, {3, 2}, {4, 2}, {5, 4}, {7, 4}, {8, 4}, {9, 6}}) {
        Bytes data(static_cast<std::size_t>(2 * line));
        data[static_cast<std::size_t>(line)] = 0x70;
        load(with_map(header_of(4, 1, 99, width, 2)), data);
        EXPECT_EQ(decoded_colours()[static_cast<std::size_t>(width)], map_colour(7)) << width;
    }
}

TEST_F(LoadPcx, FourPlanesGiveTheBitsOfAnIndexLowestPlaneFirst) {
    load(with_map(header_of(1, 4, 1, 4, 1)), {0b10010000, 0b01010000, 0b00110000, 0b00010000});
    EXPECT_EQ(decoded_colours(), (Colours{map_colour(1), map_colour(2), map_colour(4), map_colour(15)}));
}

TEST_F(LoadPcx, AFourPlanePictureOfWidth10MakesABitmapOf12AndStillAnswers10) {
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
    EXPECT_EQ(test::colours_of(target), expected);
}

TEST_F(LoadPcx, WidthsAreWidenedToTheNextMultipleOf4) {
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

TEST_F(LoadPcx, PlaneBytesThatTheFileLacksAreZero) {
    // The second line lacks its planes 1 to 3, the third all of them.
    load(with_map(header_of(1, 4, 1, 2, 3)), {0x80, 0x80, 0x80, 0x80, 0x80});
    EXPECT_EQ(decoded_colours(), (Colours{map_colour(15), map_colour(0), map_colour(0), map_colour(0),
                                          map_colour(1), map_colour(0), map_colour(0), map_colour(0),
                                          map_colour(0), map_colour(0), map_colour(0), map_colour(0)}));
}

TEST_F(LoadPcx, AFourPlaneFileWithoutAnyPixelsIsAllTheFirstColour) {
    PcxHeader header = header_of(1, 4, 1, 2, 2);
    header.ColorMap[0] = 44;
    load(header);
    EXPECT_EQ(decoded_colours(), Colours(8, 44));
}

TEST_F(LoadPcx, MergingGivesExactlyHalfTheWidthOfBytesALine) {
    const Bytes planes(64, 0xFF);
    EXPECT_EQ(bytes_of(LoadPCX::MergePlanes(planes, 2, 12, 2)), Bytes(12, 0xFF));
    EXPECT_EQ(bytes_of(LoadPCX::MergePlanes(planes, 2, 4, 3)), Bytes(6, 0xFF));
    EXPECT_EQ(bytes_of(LoadPCX::MergePlanes(planes, 2, 2, 1)), Bytes(1, 0xFF));
}

TEST_F(LoadPcx, MergingPlanesEqualsThePlainSteps) {
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

TEST_F(LoadPcx, LinesThatGoBackwardsOrNowhereMergeAsThePlainStepsSayInWidePicturesToo) {
    // Wide enough for the groups of later lines to reach what stands before them.
    for (const std::int32_t bytes_per_line : {-3, -2, -1, 0, 1}) {
        for (const std::int32_t width : {8, 30, 32, 34, 250}) {
            const Bytes planes = counting(40);
            EXPECT_EQ(bytes_of(LoadPCX::MergePlanes(planes, bytes_per_line, width, 12)),
                      reference::merge_pcx_planes(planes, bytes_per_line, width, 12))
                << bytes_per_line << " " << width;
        }
    }
}

TEST_F(LoadPcx, LinesThatAllBeginAtTheSameByteOrRunBackwardsAreMergedForWhateverHeightAFileClaims) {
    for (const int bytes_per_line : {0, -1, -8191}) {
        EXPECT_EQ(LoadPCX::MergePlanes(Bytes{0x80, 0}, bytes_per_line, 32000, 8000)[0] & 0x10, 0x10);
        put_old_picture();
        load(header_of(1, 4, bytes_per_line, 32767, 32767), {0x80});
        EXPECT_EQ(CBitmap::CurrentBitmap, nullptr);
        EXPECT_EQ(reader.Width(), 32767);
    }
}

TEST_F(LoadPcx, EightPixelsOfFourPlanesMakeFourBytes) {
    EXPECT_EQ(LoadPCX::MergeBytes(0b10000001, 0, 0, 0), (std::array<std::uint8_t, 4>{0x10, 0, 0, 0x01}));
    EXPECT_EQ(LoadPCX::MergeBytes(0, 0b01000000, 0b00100000, 0b00010000),
              (std::array<std::uint8_t, 4>{0x02, 0x48, 0, 0}));
}

// 24 bits.

TEST_F(LoadPcx, A24BitPictureHasALineOfEachColourAndAnswersBppWith8) {
    load(header_of(8, 3, 4, 3, 2),
         {1, 2, 3, 99, 4, 5, 6, 99, 7, 8, 9, 99, 11, 12, 13, 99, 14, 15, 16, 99, 17, 18, 19});
    EXPECT_EQ(decoded_colours(), (Colours{0x070401, 0x080502, 0x090603, 0x110E0B, 0x120F0C, 0x13100D}));
    EXPECT_EQ(reader.Bpp(), 8);
}

TEST_F(LoadPcx, APixelOutsideTheArrayFailsAndTheSpareByteIsInside) {
    const PcxHeader header = header_of(8, 3, 1, 1, 2);
    EXPECT_FAILURE(load(header, counting(4)), SubscriptOutOfRange);
    load(header, counting(5));
    EXPECT_EQ(decoded_colours(), (Colours{0x030201, 0x000504}));
    EXPECT_FAILURE(load(header_of(8, 3, 32, 1, 32000), counting(96)), SubscriptOutOfRange);
    EXPECT_FAILURE(load(header_of(8, 3, -1, 1, 1), counting(96)), SubscriptOutOfRange);
}

TEST_F(LoadPcx, TheWidthMayReachIntoTheNextPlane) {
    load(header_of(8, 3, 1, 2, 1), {1, 2, 3, 4});
    EXPECT_EQ(decoded_colours(), (Colours{0x030201, 0x040302}));
}

TEST_F(LoadPcx, ManyPixelsFromFewBytesAreAFailureOnlyWhenMemoryEnds) {
    EXPECT_FAILURE(load(header_of(8, 3, 0, 30000, 30000), Bytes(30000)), OutOfMemory);
    load(header_of(8, 3, 0, 3, 300), {1, 2, 3});
    EXPECT_EQ(decoded_colours()[899], grey(3));
}

TEST_F(LoadPcx, TwoNegativeSidesMakeAnArrayOfLessThan2GibibytesAndNoPicture) {
    // One byte less than 2 GiB would be 536870911.75 pixels; these are 536870910.
    put_old_picture();
    load(header_of(8, 3, 0, -28702, -18705), {1, 2, 3});
    EXPECT_EQ(CBitmap::CurrentBitmap, nullptr);
    EXPECT_FAILURE(load(header_of(8, 3, 0, -28702, -18706), {1, 2, 3}), OutOfMemory);
}

// Objects and files.

TEST_F(LoadPcx, ASecondLoadBetweenLoadAndDrawMakesTheEarlierReaderDrawTheLaterPictureStretched) {
    load(header_of(8, 3, 2, 2, 1), {1, 2, 1, 2, 1, 2});
    LoadPCX later;
    later.Load(file(header_of(8, 3, 1, 1, 1), {9, 9, 9}));
    TestSurface target(4, 1);
    reader.SetAutoscale(0);
    reader.DrawPCX(target);
    // The first half of the earlier size lies on the one pixel of the later picture, the rest outside it.
    EXPECT_EQ(test::colours_of(target), (Colours{grey(9), grey(9), 0, 0}));
}

TEST_F(LoadPcx, EachLoadOverwritesTheOneBefore) {
    load(header_of(8, 3, 2, 2, 1), counting(6));
    load(header_of(1, 1, 1, 1, 1), {0x80});
    EXPECT_EQ(reader.Width(), 1);
    EXPECT_EQ(reader.Bpp(), 1);
    EXPECT_EQ(decoded_colours(), (Colours{0xFFFFFF}));
}

TEST_F(LoadPcx, AFileThatIsNotThereIsAFailure) {
    EXPECT_FAILURE(reader.Load(folder.file("none.pcx")), FileNotFound);
}

TEST_F(LoadPcx, AHeaderThatTheFileCutsShortIsZeroInTheMissingBytes) {
    load(header_of(8, 3, 1, 1, 1), {1, 2, 3});
    const auto old = CBitmap::CurrentBitmap;
    // Cut before the planes: a layout that is not known, of 8 by 1 pixels.
    reader.Load(folder.write("b.pcx", Bytes{10, 5, 0, 8, 0, 0, 0, 0, 7, 0}));
    EXPECT_EQ(reader.Width(), 8);
    EXPECT_EQ(reader.Height(), 1);
    EXPECT_EQ(reader.Header().NPlanes, 0);
    EXPECT_EQ(CBitmap::CurrentBitmap, old);
    // Cut behind the line length: the picture's one row is the spare byte.
    Bytes bytes = bytes_of(header_of(1, 1, 1, 8, 1));
    bytes.resize(70);
    reader.Load(folder.write("b.pcx", bytes));
    EXPECT_EQ(decoded_colours(), Colours(8, 0));
}

} // namespace
} // namespace varnoth
