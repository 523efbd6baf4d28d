#include <numeric>
#include <random>

#include "core/codecs/CBitmap.h"
#include "core/codecs/LoadPcxTest.h"
#include "reference/LoadPCX.h"
#include "support/expect_failure.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

using namespace pcx; // NOLINT: what the tests of this reader share

TEST_F(LoadPcx, ScaleModeIsAtMost1AndAutoscaleKeepsItsValue) {
    EXPECT_EQ(reader.ScaleMode(), 1);
    EXPECT_EQ(reader.Autoscale(), -1);
    reader.SetScaleMode(0);
    EXPECT_EQ(reader.ScaleMode(), 0);
    reader.SetScaleMode(5);
    EXPECT_EQ(reader.ScaleMode(), 1);
    reader.SetAutoscale(5);
    EXPECT_EQ(reader.Autoscale(), 5);
}

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
    load(compressed(header_of(8, 3, 2, 2, 2)), {192 + 12, 9});
    EXPECT_EQ(decoded_colours(), Colours(4, grey(9)));
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
    load(header, {0xFF});
    EXPECT_EQ(decoded_colours(), (Colours{0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF,
                                          0xFFFFFF, 0xFFFFFF, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_FAILURE(load(header_of(1, 1, 1, 8, 3), {0xFF}), SubscriptOutOfRange);
}

// 24 bits.

TEST_F(LoadPcx, Picture24BitHasOneLinePerColourAndBpp8) {
    load(header_of(8, 3, 4, 3, 2),
         {1, 2, 3, 99, 4, 5, 6, 99, 7, 8, 9, 99, 11, 12, 13, 99, 14, 15, 16, 99, 17, 18, 19});
    EXPECT_EQ(decoded_colours(), (Colours{0x070401, 0x080502, 0x090603, 0x110E0B, 0x120F0C, 0x13100D}));
    EXPECT_EQ(reader.Bpp(), 8);
}

TEST_F(LoadPcx, PixelBeyondTheArrayFailsButTheSpareByteCounts) {
    const PcxHeader header = header_of(8, 3, 1, 1, 2);
    EXPECT_FAILURE(load(header, counting(4)), SubscriptOutOfRange);
    load(header, counting(5));
    EXPECT_EQ(decoded_colours(), (Colours{0x030201, 0x000504}));
    EXPECT_FAILURE(load(header_of(8, 3, 32, 1, 32000), counting(96)), SubscriptOutOfRange);
    EXPECT_FAILURE(load(header_of(8, 3, -1, 1, 1), counting(96)), SubscriptOutOfRange);
}

TEST_F(LoadPcx, WidthMayExtendIntoTheNextPlane) {
    load(header_of(8, 3, 1, 2, 1), {1, 2, 3, 4});
    EXPECT_EQ(decoded_colours(), (Colours{0x030201, 0x040302}));
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

} // namespace
} // namespace varnoth::test
