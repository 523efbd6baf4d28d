#include <numeric>

#include "core/codecs/CBitmap.h"
#include "core/codecs/LoadPCX.h"
#include "core/codecs/LoadTgaTest.h"
#include "core/codecs/reader_parts.h"
#include "support/expect_failure.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

using namespace tga; // NOLINT: what the tests of this reader share

TEST(ReaderParts, TestBitCountsFromTheMostSignificantBitAs1) {
    for (std::int32_t position = 1; position <= 8; ++position) {
        for (int bit = 0; bit < 8; ++bit) {
            EXPECT_EQ(TestBit(static_cast<std::uint8_t>(1 << bit), position), position == 8 - bit ? 1 : 0);
        }
    }
    EXPECT_EQ(TestBit(255, 0), 0);
    EXPECT_EQ(TestBit(255, 9), 0);
    EXPECT_EQ(TestBit(255, -1), 0);
}

TEST_F(LoadTga, ScaleModeIsAtMost1AndAutoscaleKeepsItsValue) {
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

TEST_F(LoadTga, ProbeReturnsTheSizeWithoutSubtractingTheOrigin) {
    EXPECT_EQ(info(with_origin(header_of(2, 24, 100, 50), 10, 20)), (Info{True, 100, 50, 24}));
}

TEST_F(LoadTga, ProbeAcceptsEightTypesAndFourDepths) {
    for (int type = 0; type < 40; ++type) {
        const bool known = (type >= 1 && type <= 3) || (type >= 9 && type <= 11) || type == 32 || type == 33;
        EXPECT_EQ(info(header_of(type, 24, 3, 2)), (Info{truth(known), 3, 2, 24})) << type;
    }
    for (int depth = 0; depth < 40; ++depth) {
        const bool known = depth == 8 || depth == 16 || depth == 24 || depth == 32;
        EXPECT_EQ(info(header_of(2, depth, 3, 2)).answer, truth(known)) << depth;
    }
}

TEST_F(LoadTga, ProbeAcceptsSidesOf0AndBelow) {
    EXPECT_EQ(info(header_of(2, 24, 3, 0)), (Info{True, 3, 0, 24}));
    EXPECT_EQ(info(header_of(2, 24, 0, 2)), (Info{True, 0, 2, 24}));
    EXPECT_EQ(info(header_of(2, 24, -3, -2)), (Info{True, -3, -2, 24}));
}

TEST_F(LoadTga, ProbeReadsMissingHeaderBytesAsZero) {
    EXPECT_EQ(info_of(folder.write("a.tga", Bytes{})), (Info{False, 0, 0, 0}));
    EXPECT_EQ(info_of(folder.write("a.tga", Bytes{0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 9})),
              (Info{False, 9, 0, 0}));
}

TEST_F(LoadTga, IsTgaChecksTheLoadedHeaderLikeTheProbe) {
    load(header_of(99, 24, 1, 1), {1, 2, 3});
    EXPECT_EQ(reader.IsTGA(), False);
    EXPECT_EQ(reader.Bpp(), 24);
    EXPECT_EQ(decoded_colours(), (Colours{0x010203}));
    load(header_of(33, 24, 1, 1), {1, 2, 3});
    EXPECT_EQ(reader.IsTGA(), True);
}

TEST_F(LoadTga, CompressedIsTrueForTypes9And10Only) {
    for (const int type : {1, 2, 3, 9, 10, 11, 32, 33}) {
        load(header_of(type, 24, 1, 1), {0, 1, 2, 3});
        EXPECT_EQ(reader.Compressed(), truth(type == 9 || type == 10)) << type;
    }
}

TEST_F(LoadTga, UnknownDepthKeepsPictureAndPixelSizeButNotTwips) {
    load(header_of(2, 24, 2, 1), counting(6));
    const auto old = CBitmap::CurrentBitmap;
    load(header_of(2, 15, 7, 5), counting(99));
    EXPECT_EQ(CBitmap::CurrentBitmap, old);
    EXPECT_EQ(reader.Width(), 2);
    EXPECT_EQ(reader.Height(), 1);
    EXPECT_EQ(reader.TwipWidth(), 7 * 15);
    EXPECT_EQ(reader.TwipHeight(), 5 * 15);
}

// Sizes and direction.

TEST_F(LoadTga, OriginReducesPixelsNotTwipsAndSkewsThePicture) {
    Bytes data;
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 100; ++x) {
            data.insert(data.end(), {static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(y), 0});
        }
    }
    load(with_origin(header_of(2, 24, 100, 2), 10, 0), data);
    EXPECT_EQ(reader.Width(), 90);
    EXPECT_EQ(reader.TwipWidth(), 1500);
    EXPECT_EQ(reader.TGAWidth(), 1500);
    reader.SetScaleMode(0);
    EXPECT_EQ(reader.TGAWidth(), 90);
    const Colours colours = decoded_colours();
    ASSERT_EQ(colours.size(), 180U);
    EXPECT_EQ(colours[89], make_colour(0, 0, 89));
    // The second row starts with the ten pixels that the first one did not use.
    EXPECT_EQ(colours[90], make_colour(0, 0, 90));
    EXPECT_EQ(colours[100], make_colour(0, 1, 0));
}

TEST_F(LoadTga, OriginCropsRowsAt8BitsWithoutSkew) {
    load(with_origin(with_map(header_of(1, 8, 8, 2), 16, 24), 4, 0),
         joined({map24(16), {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}}));
    // Rows of 8 bytes are read as rows of 4.
    EXPECT_EQ(decoded_colours(), map_colours({0, 1, 2, 3, 4, 5, 6, 7}));
}

TEST_F(LoadTga, SizeBeyond16BitsOverflows) {
    EXPECT_FAILURE(load(with_origin(header_of(2, 24, 1, 1), -32767, 0), counting(3)), Overflow);
    EXPECT_FAILURE(load(with_origin(header_of(2, 24, 1, 1), 0, -32767), counting(3)), Overflow);
    read_map24(1);
    EXPECT_FAILURE(load(with_origin(header_of(3, 8, 1, 1), -32767, 0), counting(3)), Overflow);
}

TEST_F(LoadTga, Bit5SelectsTopRowFirst) {
    TgaHeader header = header_of(2, 24, 1, 2);
    load(header, {1, 1, 1, 2, 2, 2});
    EXPECT_EQ(decoded_colours(), (Colours{0x010101, 0x020202}));
    header.ImageDescriptor = static_cast<std::uint8_t>(~32);
    load(header, {1, 1, 1, 2, 2, 2});
    EXPECT_EQ(decoded_colours(), (Colours{0x020202, 0x010101}));
}

TEST_F(LoadTga, RightToLeftBitIsIgnored) {
    TgaHeader header = header_of(2, 24, 2, 1);
    header.ImageDescriptor = 32 + 16;
    load(header, {1, 1, 1, 2, 2, 2});
    EXPECT_EQ(decoded_colours(), (Colours{0x010101, 0x020202}));
}

// Objects and files.

TEST_F(LoadTga, TgaAndPcxReadersShareTheColourTable) {
    read_map24(2);
    load(with_map(header_of(1, 8, 1, 1), 2, 24), joined({map24(2), {1}}));
    // The picture keeps its colours when the other reader fills the table again.
    PcxHeader header;
    header.BitsPerPixel = 8;
    header.NPlanes = 1;
    header.BytesPerLine = 1;
    LoadPCX other;
    const auto current = CBitmap::CurrentBitmap;
    other.Load(folder.write("a.pcx", joined({bytes_of(header), Bytes(769, 1)})));
    EXPECT_EQ(current->pixel(0, 0), map_colour(1));
    CBitmap::CreateBitmap8(Bytes{1}, 1, 1, 0);
    EXPECT_EQ(decoded_colours(), (Colours{0x010101}));
}

TEST_F(LoadTga, TruncatedHeaderIsZeroInTheMissingBytes) {
    load(header_of(2, 24, 1, 1), {1, 2, 3});
    const auto old = CBitmap::CurrentBitmap;
    reader.Load(folder.write("b.tga", Bytes{1, 1, 2, 1, 1, 1, 1, 1, 0, 0, 0, 0, 9, 0, 8}));
    EXPECT_EQ(reader.TwipWidth(), 9 * 15);
    EXPECT_EQ(reader.TwipHeight(), 8 * 15);
    EXPECT_EQ(reader.Bpp(), 0);
    EXPECT_EQ(CBitmap::CurrentBitmap, old);
}

} // namespace
} // namespace varnoth::test
