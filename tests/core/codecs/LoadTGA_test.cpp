#include <random>

#include "core/codecs/CBitmap.h"
#include "core/codecs/LoadPCX.h"
#include "core/codecs/LoadTgaTest.h"
#include "core/codecs/reader_parts.h"
#include "reference/LoadTGA.h"
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
    EXPECT_EQ(decoded(header, {1, 1, 1, 2, 2, 2}), (Colours{0x010101, 0x020202}));
    header.ImageDescriptor = static_cast<std::uint8_t>(~32);
    EXPECT_EQ(decoded(header, {1, 1, 1, 2, 2, 2}), (Colours{0x020202, 0x010101}));
}

TEST_F(LoadTga, RightToLeftBitIsIgnored) {
    TgaHeader header = header_of(2, 24, 2, 1);
    header.ImageDescriptor = 32 + 16;
    EXPECT_EQ(decoded(header, {1, 1, 1, 2, 2, 2}), (Colours{0x010101, 0x020202}));
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

// 8 bits.

TEST_F(LoadTga, GreyPictureFailsOnANewObject) {
    const auto old = put_old_picture();
    EXPECT_FAILURE(load(header_of(3, 8, 2, 2), counting(4)), SubscriptOutOfRange);
    EXPECT_EQ(CBitmap::CurrentBitmap, old);
    EXPECT_EQ(reader.Width(), 0);
    EXPECT_EQ(reader.TwipWidth(), 30);
}

TEST_F(LoadTga, Maps16Or32BitFailOnANewObject) {
    EXPECT_FAILURE(load(with_map(header_of(1, 8, 1, 1), 2, 16), counting(5)), SubscriptOutOfRange);
    EXPECT_FAILURE(load(with_map(header_of(1, 8, 1, 1), 2, 32), counting(9)), SubscriptOutOfRange);
}

TEST_F(LoadTga, Picture8BitWith24BitMapHasItsColours) {
    EXPECT_EQ(decoded(with_map(header_of(1, 8, 3, 2), 256, 24), joined({map24(256), {0, 1, 80, 255, 4, 2}})),
              map_colours({0, 1, 80, 255, 4, 2}));
}

TEST_F(LoadTga, IdFieldShiftsMapAndPixelsByItsLength) {
    TgaHeader header = with_map(header_of(1, 8, 2, 1), 2, 24);
    header.IDLength = 1;
    load(header, {99, 1, 2, 3, 4, 5, 6, 0, 1});
    // Entry 0 is 99, 1, 2, and the first index is the map's last byte, 6, which is black.
    EXPECT_EQ(decoded_colours(), (Colours{0, 0x630102}));
}

TEST_F(LoadTga, ColorMapStartIsIgnored) {
    TgaHeader header = with_map(header_of(1, 8, 2, 1), 2, 24);
    header.ColorMapStart = 1;
    EXPECT_EQ(decoded(header, joined({map24(2), {1, 0}})), (Colours{map_colour(1), map_colour(0)}));
}

TEST_F(LoadTga, GreyPictureAfterAMapIsBlack) {
    read_map24(2);
    load(header_of(3, 8, 4, 2), counting(8));
    EXPECT_EQ(reader.Width(), 4);
    EXPECT_EQ(decoded_colours(), Colours(8, 0));
}

TEST_F(LoadTga, PixelArrayIsShorterByTheSizeOfTheOldMap) {
    // The length is file - 18 - 3 * (entries - 1) + 1; the last row must start below that.
    read_map24(1);
    EXPECT_EQ(failure_in([&] { load(header_of(3, 8, 4, 3), counting(8)); }), std::nullopt);
    EXPECT_FAILURE(load(header_of(3, 8, 4, 4), counting(8)), SubscriptOutOfRange);
    read_map24(2);
    EXPECT_EQ(failure_in([&] { load(header_of(3, 8, 4, 2), counting(8)); }), std::nullopt);
    EXPECT_FAILURE(load(header_of(3, 8, 4, 3), counting(8)), SubscriptOutOfRange);
    EXPECT_EQ(failure_in([&] { load(header_of(3, 8, 4, 1), counting(3)); }), std::nullopt);
    // An array of 0 bytes is a failure.
    EXPECT_FAILURE(load(header_of(3, 8, 4, 1), counting(2)), SubscriptOutOfRange);
    EXPECT_FAILURE(load(header_of(3, 8, 4, 1)), SubscriptOutOfRange);
}

TEST_F(LoadTga, Maps16And32BitLoadAfterA24BitMapThatSetsTheLength) {
    read_map24(1);
    EXPECT_EQ(decoded(with_map(header_of(1, 8, 2, 1), 2, 32), {1, 2, 3, 200, 4, 5, 6, 200, 1, 0}),
              (Colours{0x040506, 0x010203}));
    EXPECT_EQ(decoded(with_map(header_of(1, 8, 2, 1), 2, 16), {0, 0, 0, 2, 1, 0}), (Colours{4, 0}));
}

TEST_F(LoadTga, Map16BitHasBlueInTheHighBitsAndChannelsUpTo124) {
    read_map24(1);
    // Blue 31; green 31; red 31; red 1 with the ignored bit.
    EXPECT_EQ(
        decoded(with_map(header_of(1, 8, 4, 1), 4, 16), {0xF8, 0, 0x07, 0xC0, 0, 0x3E, 0, 0x03, 0, 1, 2, 3}),
        (Colours{124 << 16, 124 << 8, 124, 4}));
}

TEST_F(LoadTga, MapDepth15ReadsNoMap) {
    read_map24(1);
    EXPECT_EQ(decoded(with_map(header_of(1, 8, 2, 1), 1, 15), {0, 1}), (Colours{0, 0}));
    // Its length is not read either.
    EXPECT_EQ(failure_in([&] { load(with_map(header_of(1, 8, 2, 1), -5, 15), {0, 1}); }), std::nullopt);
    LoadTGA fresh;
    EXPECT_FAILURE(fresh.Load(file(with_map(header_of(1, 8, 2, 1), 1, 15), {0, 1})), SubscriptOutOfRange);
}

TEST_F(LoadTga, MapOfMoreThan256OrFewerThan1EntriesFails) {
    for (const int depth : {16, 24, 32}) {
        for (const int entries : {257, 32767, 0, -1, -32768}) {
            EXPECT_FAILURE(load(with_map(header_of(1, 8, 1, 1), entries, depth), Bytes(2000)),
                           SubscriptOutOfRange);
        }
    }
}

TEST_F(LoadTga, TooLongMapIsKept) {
    EXPECT_FAILURE(load(with_map(header_of(1, 8, 1, 1), 300, 24), Bytes(1000)), SubscriptOutOfRange);
    // A grey picture now has a map whose highest index is 299.
    EXPECT_FAILURE(load(header_of(3, 8, 1, 1), Bytes(896)), SubscriptOutOfRange);
    EXPECT_EQ(failure_in([&] { load(header_of(3, 8, 1, 1), Bytes(897)); }), std::nullopt);
}

TEST_F(LoadTga, MissingMapEntriesAndPixelsAreBlack) {
    EXPECT_EQ(decoded(with_map(header_of(1, 8, 2, 1), 3, 24), {9, 9, 9, 8, 8, 8}),
              (Colours{0x090909, 0x090909}));
    CBitmap::CreateBitmap8(Bytes{1, 2, 0, 0}, 2, 1, 0);
    EXPECT_EQ(decoded_colours(), (Colours{0x080808, 0}));
    // The length formula requires the file to extend to the map's last entry.
    EXPECT_FAILURE(load(with_map(header_of(1, 8, 2, 1), 3, 24), {9, 9, 9, 8, 8}), SubscriptOutOfRange);
}

TEST_F(LoadTga, Rows8BitArePaddedFromTheFullWidth) {
    load(with_map(header_of(1, 8, 5, 2), 11, 24), joined({map24(11), {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}}));
    Colours expected;
    for (int i = 1; i <= 10; ++i) {
        expected.push_back(map_colour(i));
    }
    EXPECT_EQ(decoded_colours(), expected);
}

TEST_F(LoadTga, PartialLastRowIsZeroFilledAndMissingRowFails) {
    EXPECT_EQ(bytes_of(LoadTGA::PadRows(counting(6), 2, 3)), (Bytes{1, 2, 3, 0, 4, 5, 6, 0}));
    EXPECT_EQ(bytes_of(LoadTGA::PadRows(counting(4), 2, 3)), (Bytes{1, 2, 3, 0, 4, 0, 0, 0}));
    EXPECT_EQ(bytes_of(LoadTGA::PadRows(counting(9), 1, 4)), (Bytes{1, 2, 3, 4}));
    EXPECT_FAILURE(LoadTGA::PadRows(counting(3), 2, 3), SubscriptOutOfRange);
    EXPECT_FAILURE(LoadTGA::PadRows(counting(3), 32767, 32767), SubscriptOutOfRange);
    EXPECT_FAILURE(LoadTGA::PadRows(counting(3), 0, 3), SubscriptOutOfRange);
    EXPECT_FAILURE(LoadTGA::PadRows(counting(3), 1, 0), SubscriptOutOfRange);
}

TEST_F(LoadTga, Picture8BitHasNoLimitOnTheBitsOfARow) {
    EXPECT_EQ(decoded(with_map(header_of(1, 8, 5000, 1), 2, 24), joined({map24(2), Bytes(5000, 1)})),
              Colours(5000, map_colour(1)));
}

TEST_F(LoadTga, Packets8BitExpandAcrossRows) {
    EXPECT_EQ(decoded(with_map(header_of(9, 8, 3, 2), 4, 24), joined({map24(4), {0x83, 3, 1, 1, 2}})),
              map_colours({3, 3, 3, 3, 1, 2}));
}

TEST_F(LoadTga, Type11IsValidButNotExpanded) {
    read_map24(4);
    load(with_map(header_of(11, 8, 2, 1), 4, 24), joined({map24(4), {0x81, 3}}));
    EXPECT_EQ(reader.IsTGA(), True);
    // The packet's code is read as an index beyond the map, which is black.
    EXPECT_EQ(decoded_colours(), (Colours{0, map_colour(3)}));
}

// 16 bits.

TEST_F(LoadTga, Pixels16BitAreCopiedUnchanged) {
    EXPECT_EQ(decoded(header_of(2, 16, 2, 2), {0x1F, 0, 0xE0, 0x03, 0x00, 0x7C, 0xFF, 0xFF}),
              (Colours{0xFF0000, 0x00FF00, 0x0000FF, 0xFFFFFF}));
}

TEST_F(LoadTga, Picture16BitOfOddWidthIsSkewed) {
    // Rows of 2 bytes are read as rows of 4: every other pixel is drawn, half of the last row is missing.
    EXPECT_EQ(decoded(header_of(2, 16, 1, 2), {0x1F, 0, 0xE0, 0x03}), (Colours{0xFF0000, 0}));
    load(header_of(2, 16, 3, 2), {1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 6, 0});
    const auto blue = [](unsigned value) { return make_colour(0, 0, widen_5_bits(value)); };
    EXPECT_EQ(decoded_colours(), (Colours{blue(1), blue(2), blue(3), blue(5), blue(6), 0}));
}

TEST_F(LoadTga, Packets16BitExpandWith3BytesPerPixel) {
    // A run of 2 copies of the pixel's two bytes and the byte after them: the words 0x001F and 0x1F00.
    EXPECT_EQ(decoded(header_of(10, 16, 2, 1), {0x81, 0x1F, 0x00, 0x00, 0x77, 0x77}),
              (Colours{0xFF0000, make_colour(widen_5_bits(7), widen_5_bits(24), 0)}));
}

TEST_F(LoadTga, Picture16BitWithoutPixelsIsBlack) {
    EXPECT_EQ(decoded(header_of(2, 16, 2, 2)), Colours(4, 0));
    load(header_of(2, 16, 0, 2));
    EXPECT_EQ(CBitmap::CurrentBitmap, nullptr);
}

TEST_F(LoadTga, Picture16BitOfNegativeHeightIsFlipped) {
    load(header_of(2, 16, 2, -2), {0x1F, 0, 0x1F, 0, 0, 0, 0, 0});
    EXPECT_EQ(reader.Height(), -2);
    EXPECT_EQ(decoded_colours(), (Colours{0, 0, 0xFF0000, 0xFF0000}));
    // Compressed, its byte count is negative, which is a failure.
    EXPECT_FAILURE(load(header_of(10, 16, 2, -2), {0x81, 1, 2, 3}), SubscriptOutOfRange);
}

// 24 and 32 bits.

TEST_F(LoadTga, Pixels24BitAreBlueGreenRed) {
    EXPECT_EQ(decoded(header_of(2, 24, 3, 1), counting(9)), (Colours{0x010203, 0x040506, 0x070809}));
    EXPECT_EQ(reader.Bpp(), 24);
}

TEST_F(LoadTga, Pixels32BitLoseTheirAlpha) {
    EXPECT_EQ(decoded(header_of(2, 32, 2, 1), counting(8)), (Colours{0x010203, 0x050607}));
    EXPECT_EQ(CBitmap::CurrentBitmap->bytes()[3], 0);
}

TEST_F(LoadTga, MapOrIdBytesAreTheFirstPixelsAt24Bits) {
    TgaHeader header = with_map(header_of(2, 24, 3, 1), 1, 24);
    header.IDLength = 3;
    EXPECT_EQ(decoded(header, {1, 1, 1, 2, 2, 2, 3, 3, 3, 4, 4, 4, 5, 5, 5}),
              (Colours{0x010101, 0x020202, 0x030303}));
}

TEST_F(LoadTga, WidestRowsAre2047And1365And1023Pixels) {
    struct {
        int depth, widest;
    } const limits[] = {{16, 2047}, {24, 1365}, {32, 1023}};

    for (const auto& limit : limits) {
        EXPECT_EQ(decoded(header_of(2, limit.depth, limit.widest, 1), Bytes(5000, 0xFF)),
                  Colours(static_cast<std::size_t>(limit.widest), 0xFFFFFF))
            << limit.depth;
        EXPECT_FAILURE(load(header_of(2, limit.depth, limit.widest + 1, 1), Bytes(5000)), Overflow);
        EXPECT_EQ(reader.Width(), limit.widest + 1);
    }
}

TEST_F(LoadTga, MissingPixelsAreBlackAndTheSpareByteCompletesOne) {
    EXPECT_EQ(decoded(header_of(2, 24, 2, 2), {1, 2, 3, 4, 5}), (Colours{0x010203, 0x040500, 0, 0}));
    // One byte is not enough for a pixel.
    EXPECT_EQ(decoded(header_of(2, 24, 2, 2), {1, 2, 3, 4}), (Colours{0x010203, 0, 0, 0}));
}

TEST_F(LoadTga, LastPixelBoundIsRoundedTiesToEven) {
    EXPECT_EQ(decoded(header_of(2, 32, 3, 1), counting(2)), (Colours{0x010200, 0, 0}));
    EXPECT_EQ(decoded(header_of(2, 32, 3, 1), counting(6)), (Colours{0x010203, 0, 0}));
    EXPECT_EQ(decoded(header_of(2, 32, 3, 1), counting(10)), (Colours{0x010203, 0x050607, 0x090A00}));
    EXPECT_EQ(decoded(header_of(2, 32, 3, 1), counting(7)), (Colours{0x010203, 0x050607, 0}));
}

TEST_F(LoadTga, FileWithoutPixelsIsASubscriptFailure) {
    const auto old = put_old_picture();
    EXPECT_FAILURE(load(header_of(2, 24, 2, 2)), SubscriptOutOfRange);
    EXPECT_FAILURE(load(header_of(2, 24, 2, 2), {1}), SubscriptOutOfRange);
    EXPECT_FAILURE(load(header_of(2, 32, 2, 2)), SubscriptOutOfRange);
    EXPECT_FAILURE(load(header_of(2, 32, 2, 2), {1}), SubscriptOutOfRange);
    EXPECT_EQ(CBitmap::CurrentBitmap, old);
}

TEST_F(LoadTga, PictureWithoutPixelsIsASubscriptFailure) {
    for (const int depth : {24, 32}) {
        EXPECT_FAILURE(load(header_of(2, depth, 0, 2), counting(9)), SubscriptOutOfRange);
        EXPECT_FAILURE(load(header_of(2, depth, 2, 0), counting(9)), SubscriptOutOfRange);
        EXPECT_FAILURE(load(header_of(2, depth, 2, -2), counting(9)), SubscriptOutOfRange);
        EXPECT_FAILURE(load(header_of(10, depth, 2, -2), counting(9)), SubscriptOutOfRange);
    }
    read_map24(1);
    EXPECT_FAILURE(load(header_of(3, 8, 2, 0), counting(9)), SubscriptOutOfRange);
    EXPECT_FAILURE(load(header_of(3, 8, 0, 2), counting(9)), SubscriptOutOfRange);
}

TEST_F(LoadTga, BufferOf2GiBIsOutOfMemory) {
    EXPECT_FAILURE(load(with_origin(header_of(2, 24, 10, 30000), -30000, 0), counting(9)), OutOfMemory);
}

TEST_F(LoadTga, BytesAfterThePictureAreDropped) {
    EXPECT_EQ(decoded(header_of(2, 24, 1, 1), counting(300)), (Colours{0x010203}));
}

TEST_F(LoadTga, Packets24And32BitExpand) {
    EXPECT_EQ(decoded(header_of(10, 24, 5, 1), {0x81, 1, 2, 3, 1, 4, 5, 6, 7, 8, 9, 0x80, 10, 11, 12}),
              (Colours{0x010203, 0x010203, 0x040506, 0x070809, 0x0A0B0C}));
    EXPECT_EQ(decoded(header_of(10, 32, 3, 1), {0x81, 1, 2, 3, 99, 0, 4, 5, 6, 99}),
              (Colours{0x010203, 0x010203, 0x040506}));
    // Type 9 is expanded as well.
    EXPECT_EQ(decoded(header_of(9, 24, 2, 1), {0x81, 1, 2, 3}), (Colours{0x010203, 0x010203}));
}

TEST_F(LoadTga, MissingPacketsLeaveBlackAndExcessOnesAreDropped) {
    EXPECT_EQ(decoded(header_of(10, 24, 3, 1), {0x80, 1, 2, 3}), (Colours{0x010203, 0, 0}));
    EXPECT_EQ(decoded(header_of(10, 24, 2, 1), {0xFF, 1, 2, 3, 0xFF, 4, 5, 6}),
              (Colours{0x010203, 0x010203}));
    EXPECT_EQ(decoded(header_of(10, 24, 2, 1), {0x81, 1}), (Colours{0x010000, 0x010000}));
    EXPECT_EQ(decoded(header_of(10, 24, 2, 1), {5, 1, 2, 3, 4}), (Colours{0x010203, 0x040000}));
    // Without any packet the picture is black, not a failure.
    EXPECT_EQ(decoded(header_of(10, 24, 2, 1)), (Colours{0, 0}));
}

TEST_F(LoadTga, ExpandedArrayHasASpareByteAndDropsTheRest) {
    EXPECT_EQ(whole(LoadTGA::DecodeRle(Bytes{0x81, 7}, 8, 1, 2)), (Bytes{7, 7, 0}));
    EXPECT_EQ(whole(LoadTGA::DecodeRle(Bytes{0xFF, 7}, 8, 1, 2)), (Bytes{7, 7, 7}));
    EXPECT_EQ(LoadTGA::DecodeRle(Bytes{0x81, 7}, 8, 0, 2).length, 1);
}

TEST_F(LoadTga, ByteCountBeyond32BitsIs0AndNegativeOneGivesNoArray) {
    EXPECT_EQ(LoadTGA::DecodeRle(Bytes{0x81, 7}, 24, 32767, 32767).length, 1);
    EXPECT_EQ(LoadTGA::DecodeRle(Bytes{0x81, 7}, 24, -1, 2).length, 0);
}

TEST_F(LoadTga, HugePictureTakesOnlyTheMemoryOfItsPackets) {
    for (const std::int32_t bits : {8, 24, 32}) {
        const LoadTGA::Expansion expansion = LoadTGA::DecodeRle(Bytes{0xFF, 1, 2, 3, 4}, bits, 20000, 20000);
        EXPECT_EQ(expansion.length, std::int64_t{20000} * 20000 * (bits / 8) + 1);
        EXPECT_LE(expansion.held.size(), 5U * 128 * 4);
        EXPECT_EQ(expansion.held[127], bits == 8 ? 1 : 1 + 127 % (bits / 8));
    }
}

TEST_F(LoadTga, ManyFullRunsExpandToTheLastPixel) {
    for (const std::int32_t pixel_bytes : {1, 3, 4}) {
        Bytes packets;
        for (int i = 0; i < 300; ++i) {
            packets.push_back(0xFF);
            packets.insert(packets.end(), static_cast<std::size_t>(pixel_bytes), 7);
        }
        const LoadTGA::Expansion expansion = LoadTGA::DecodeRle(packets, 8 * pixel_bytes, 300, 200);
        Bytes expected(static_cast<std::size_t>(300 * 128 * pixel_bytes), 7);
        expected.resize(static_cast<std::size_t>(300 * 200 * pixel_bytes + 1));
        EXPECT_EQ(whole(expansion), expected);
    }
}

TEST_F(LoadTga, RowsBeyondTheExpandedArrayFail) {
    // The array has rows of 4 pixels, but rows of 8 are read: offset 2 * 8 is outside its 13 bytes.
    const Bytes data = joined({map24(1), {0x80, 0}});
    EXPECT_FAILURE(load(with_origin(with_map(header_of(9, 8, 8, 3), 1, 24), 4, 0), data),
                   SubscriptOutOfRange);
    EXPECT_EQ(failure_in([&] { load(with_origin(with_map(header_of(9, 8, 8, 2), 1, 24), 4, 0), data); }),
              std::nullopt);
    EXPECT_EQ(reader.Height(), 2);
}

TEST_F(LoadTga, RowsWithoutPacketsAreZeroInAHugePicture) {
    for (const int depth : {24, 32}) {
        // Row 0 is the bottom row, so the packet's pixels are at its left.
        TgaHeader header = header_of(10, depth, 1000, 30000);
        header.ImageDescriptor = 0;
        load(header, {0x81, 1, 2, 3, 4});
        const auto picture = CBitmap::CurrentBitmap;
        ASSERT_EQ(picture->height(), 30000);
        EXPECT_EQ(picture->pixel(1, 29999), 0x010203);
        EXPECT_EQ(picture->pixel(2, 29999), 0);
        EXPECT_EQ(picture->pixel(999, 0), 0);
    }
    load(with_map(header_of(9, 8, 300, 30000), 4, 24), joined({map24(4), {0xFF, 3, 0xFF, 2, 0xFF, 1}}));
    const auto picture = CBitmap::CurrentBitmap;
    ASSERT_EQ(picture->height(), 30000);
    EXPECT_EQ(picture->pixel(299, 0), map_colour(1));
    EXPECT_EQ(picture->pixel(83, 1), map_colour(1));
    EXPECT_EQ(picture->pixel(84, 1), map_colour(0));
    EXPECT_EQ(picture->pixel(299, 29999), map_colour(0));
}

TEST_F(LoadTga, Rows8BitWithoutPacketsHaveTheFirstColour) {
    load(with_map(header_of(9, 8, 4, 70), 2, 24), joined({{9, 8, 7, 1, 1, 1}, {0x80, 1}}));
    Colours expected(280, 0x090807);
    expected[0] = 0x010101;
    EXPECT_EQ(decoded_colours(), expected);
}

TEST_F(LoadTga, TooLargePictureLeavesNoPicture) {
    put_old_picture();
    load(with_map(header_of(9, 8, 32767, 32767), 1, 24), {1, 2, 3, 0xFF, 0});
    EXPECT_EQ(CBitmap::CurrentBitmap, nullptr);
    EXPECT_EQ(reader.Width(), 32767);
}

TEST_F(LoadTga, RunLengthDecodingMatchesTheReference) {
    for (std::uint32_t seed = 0; seed < 3000; ++seed) {
        std::mt19937 random(seed);
        Bytes bytes(1 + random() % (seed < 200 ? 5 : 200));
        for (auto& byte : bytes) {
            byte = static_cast<std::uint8_t>(random() % 3 ? random() % 6 + random() % 2 * 128 : random());
        }
        const std::int32_t pixel_bytes = std::array{1, 3, 4}[random() % 3];
        const auto height = static_cast<std::int32_t>(random() % 8);
        const auto width = static_cast<std::int32_t>(random() % 30);
        ASSERT_EQ(whole(LoadTGA::DecodeRle(bytes, 8 * pixel_bytes, height, width)),
                  reference::decode_tga_rle(bytes, pixel_bytes, height * width * pixel_bytes))
            << seed;
    }
}

} // namespace
} // namespace varnoth::test
