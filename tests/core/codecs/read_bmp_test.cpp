#include "core/codecs/read_bmp.h"

#include <limits>
#include <optional>

#include <gtest/gtest.h>

#include "core/image/cDIB.h"
#include "support/TemporaryFolder.h"
#include "support/expect_failure.h"
#include "support/made_bmp.h"

namespace varnoth::test {
namespace {

constexpr Colour black = 0;
constexpr std::int64_t most_pixels = 1 << 12;

ForeignPicture read(const Bytes& file) {
    return picture_of(read_bmp(file, most_pixels));
}

Colours colours_of(const MadeBmp& bmp) {
    return read(bmp.file()).colours;
}

Bytes first_bytes(const Bytes& bytes, std::size_t count) {
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count)};
}

// ---- Headers

TEST(ReadBmp, HeadersOfFiveLengthsAreSupported) {
    for (const std::size_t header : {12U, 40U, 64U, 108U, 124U}) {
        EXPECT_EQ(colours_of({1, 2, 24, 0, {}, {3, 2, 1, 0, 6, 5, 4, 0}, header}),
                  (Colours{0x060504, 0x030201}))
            << header;
    }
}

TEST(ReadBmp, HeadersOfOtherLengthsAreInvalid) {
    Bytes file = MadeBmp{1, 1, 24, 0, {}, Bytes(200)}.file();
    for (const std::uint32_t header : {0U, 11U, 13U, 16U, 39U, 41U, 48U, 52U, 56U, 63U, 107U, 125U, 128U}) {
        put_u32(file, 14, header);
        EXPECT_FAILURE(read(file), InvalidPicture) << header;
    }
}

TEST(ReadBmp, TypeOtherThanBmIsInvalid) {
    for (const std::size_t at : {0U, 1U}) {
        Bytes bytes = MadeBmp{1, 1, 24, 0, {}, {3, 2, 1, 0}}.file();
        bytes[at] = 'b';
        EXPECT_FAILURE(read(bytes), InvalidPicture);
    }
}

TEST(ReadBmp, PlanesOtherThan1AreInvalid) {
    for (const std::uint16_t planes : {std::uint16_t{0}, std::uint16_t{2}, std::uint16_t{0x101}}) {
        Bytes bytes = MadeBmp{1, 1, 24, 0, {}, {3, 2, 1, 0}}.file();
        put_u16(bytes, 26, planes);
        EXPECT_FAILURE(read(bytes), InvalidPicture);
    }
}

TEST(ReadBmp, OtherDepthsAndCompressionsAreInvalid) {
    for (std::uint16_t bits = 0; bits <= 33; ++bits) {
        for (std::uint32_t compression = 0; compression <= 15; ++compression) {
            const bool known = compression == 0   ? bits == 1 || bits == 4 || (bits != 0 && bits % 8 == 0)
                               : compression == 1 ? bits == 8
                               : compression == 2 ? bits == 4
                               : compression == 3 ? bits == 16 || bits == 32
                                                  : false;
            const Bytes file = MadeBmp{1, 1, bits, compression, striking_table(256), {0, 0, 0, 0}}.file();
            const auto failure = failure_in([&] { read(file); });
            EXPECT_EQ(failure, known ? std::nullopt : std::optional(Failure::InvalidPicture))
                << bits << " bits, compression " << compression;
        }
    }
    EXPECT_FAILURE(read(MadeBmp{1, 1, 24, 0x80000000, {}, Bytes(4)}.file()), InvalidPicture);
}

TEST(ReadBmp, SizeOf0IsInvalid) {
    EXPECT_FAILURE(read(MadeBmp{0, 5, 24, 0, {}, {1, 2, 3, 0}}.file()), InvalidPicture);
    EXPECT_FAILURE(read(MadeBmp{5, 0, 24, 0, {}, {1, 2, 3, 0}}.file()), InvalidPicture);
    EXPECT_FAILURE(read(MadeBmp{-5, 1, 24, 0, {}, Bytes(16)}.file()), InvalidPicture);
}

TEST(ReadBmp, MorePixelsThanTheLimitAreOutOfMemory) {
    const Bytes file = MadeBmp{5, 3, 24, 0, {}, Bytes(48)}.file();
    EXPECT_EQ(read_bmp(file, 15).width(), 5);
    EXPECT_FAILURE(read_bmp(file, 14), OutOfMemory);
    EXPECT_FAILURE(read_bmp(MadeBmp{5, -3, 24, 0, {}, Bytes(48)}.file(), 14), OutOfMemory);
    constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
    EXPECT_FAILURE(read(MadeBmp{largest, largest, 32, 0, {}, Bytes(48)}.file()), OutOfMemory);
    EXPECT_FAILURE(read(MadeBmp{largest, lowest, 32, 0, {}, Bytes(48)}.file()), OutOfMemory);
}

TEST(ReadBmp, SizesInA12ByteHeaderAreSigned) {
    EXPECT_EQ(colours_of({1, -2, 24, 0, {}, {3, 2, 1, 0, 6, 5, 4, 0}, 12}), (Colours{0x030201, 0x060504}));
    EXPECT_FAILURE(read(MadeBmp{-1, 2, 24, 0, {}, Bytes(8), 12}.file()), InvalidPicture);
}

TEST(ReadBmp, BytesBetweenColourTableAndPixelsAreSkipped) {
    Bytes between = striking_table(2);
    between.insert(between.end(), 5, 0xEE);
    EXPECT_EQ(colours_of({2, 1, 1, 0, between, {0x40, 0, 0, 0}}), striking_colours({0, 1}));
}

TEST(ReadBmp, PixelOffsetWithinTheColourTableIsIgnored) {
    Bytes file = MadeBmp{2, 1, 1, 0, striking_table(2), {0x40, 0, 0, 0}}.file();
    for (const std::uint32_t offset : {0U, 14U, 54U, 61U}) {
        put_u32(file, 10, offset);
        EXPECT_EQ(read(file).colours, striking_colours({0, 1})) << offset;
    }
}

TEST(ReadBmp, PixelOffsetBeyondTheEndIsInvalid) {
    Bytes file = MadeBmp{1, 1, 24, 0, {}, {3, 2, 1, 0}}.file();
    put_u32(file, 10, 59);
    EXPECT_FAILURE(read(file), InvalidPicture);
    put_u32(file, 10, 58);
    EXPECT_EQ(read(file).colours, (Colours{black}));
    put_u32(file, 10, 0x80000036);
    EXPECT_FAILURE(read(file), InvalidPicture);
}

// ---- Colour tables

TEST(ReadBmp, ColourTableWithoutALengthIsFull) {
    for (const std::uint16_t bits : {std::uint16_t{1}, std::uint16_t{4}, std::uint16_t{8}}) {
        const std::size_t entries = std::size_t{1} << bits;
        const MadeBmp bmp{1, 1, bits, 0, striking_table(entries), {0xFF, 0, 0, 0}};
        EXPECT_EQ(colours_of(bmp), (Colours{striking_colour(entries - 1)})) << bits;
    }
}

TEST(ReadBmp, ColourTableOfA12ByteHeaderHas3ByteEntries) {
    EXPECT_EQ(colours_of({2, 1, 1, 0, {9, 8, 7, 6, 5, 4}, {0x40, 0, 0, 0}, 12}),
              (Colours{0x090807, 0x060504}));
}

TEST(ReadBmp, IndexBeyondTheColourTableIsBlack) {
    EXPECT_EQ(colours_of({4, 1, 8, 0, striking_table(2), {0, 1, 2, 255}, 40, 2}),
              (Colours{striking_colour(0), striking_colour(1), black, black}));
}

TEST(ReadBmp, ColourTableMayBeLongerThanTheDepthNeeds) {
    EXPECT_EQ(colours_of({1, 1, 1, 0, striking_table(256), {0x80, 0, 0, 0}, 40, 256}), striking_colours({1}));
}

TEST(ReadBmp, ColourTableOfMoreThan256EntriesIsInvalid) {
    EXPECT_FAILURE(read(MadeBmp{1, 1, 8, 0, striking_table(257), Bytes(4), 40, 257}.file()), InvalidPicture);
    EXPECT_FAILURE(read(MadeBmp{1, 1, 8, 0, striking_table(256), Bytes(4), 40, 0xFFFFFFFF}.file()),
                   InvalidPicture);
}

TEST(ReadBmp, TrueColourHasNoColourTable) {
    EXPECT_EQ(colours_of({1, 1, 24, 0, {}, {3, 2, 1, 0}, 40, 7}), (Colours{0x030201}));
}

// ---- Pixels

TEST(ReadBmp, NegativeHeightPutsTheTopRowFirst) {
    EXPECT_EQ(colours_of({1, -2, 24, 0, {}, {3, 2, 1, 0, 6, 5, 4, 0}}), (Colours{0x030201, 0x060504}));
}

TEST(ReadBmp, IndicesHaveTheMostSignificantBitsFirst) {
    EXPECT_EQ(colours_of({9, 1, 1, 0, striking_table(2), {0x81, 0x80, 0, 0}}),
              striking_colours({1, 0, 0, 0, 0, 0, 0, 1, 1}));
    EXPECT_EQ(colours_of({3, 1, 4, 0, striking_table(16), {0x12, 0xF0, 0, 0}}), striking_colours({1, 2, 15}));
}

TEST(ReadBmp, Pixels16BitHave5BitsPerChannel) {
    EXPECT_EQ(colours_of({3, 1, 16, 0, {}, {0xFF, 0x7F, 0x1F, 0x00, 0x21, 0x04, 0, 0}}),
              (Colours{0xFFFFFF, 0xFF0000, 0x080808}));
    EXPECT_EQ(colours_of({1, 1, 16, 0, {}, {0xFF, 0x7F, 0, 0}, 12}), (Colours{0xFFFFFF}));
}

TEST(ReadBmp, FourthByteOf32BitPixelsIsDropped) {
    EXPECT_EQ(colours_of({2, 1, 32, 0, {}, {1, 2, 3, 99, 4, 5, 6, 255}}), (Colours{0x010203, 0x040506}));
}

// ---- Bit fields

TEST(ReadBmp, MasksMayBeInAnyOrder) {
    // Red in the lowest byte, blue in the highest of three.
    EXPECT_EQ(colours_of({2, 1, 32, 3, dwords({0x0000FF, 0x00FF00, 0xFF0000}), {1, 2, 3, 99, 4, 5, 6, 0}}),
              (Colours{0x030201, 0x060504}));
}

TEST(ReadBmp, MasksFollowShortHeadersAndAreInsideLongOnes) {
    const Bytes data{1, 2, 3, 99};
    const Bytes masks = dwords({0x0000FF, 0x00FF00, 0xFF0000});
    for (const std::size_t header : {40U, 64U}) {
        EXPECT_EQ(colours_of({1, 1, 32, 3, masks, data, header}), (Colours{0x030201})) << header;
    }
    for (const std::size_t header : {108U, 124U}) {
        EXPECT_EQ(colours_of({1, 1, 32, 3, {}, data, header, 0, {0x0000FF, 0x00FF00, 0xFF0000}}),
                  (Colours{0x030201}))
            << header;
    }
}

TEST(ReadBmp, MasksInALongHeaderNeedBitFields) {
    EXPECT_EQ(colours_of({1, 1, 32, 0, {}, {1, 2, 3, 99}, 108, 0, {0x0000FF, 0x00FF00, 0xFF0000}}),
              (Colours{0x010203}));
}

TEST(ReadBmp, ChannelsOfFewerThan8BitsRepeatThem) {
    // Red of 4 bits, green of 3, blue of 1; the highest and lowest values, then one in between.
    EXPECT_EQ(colours_of({3, 1, 16, 3, dwords({0xF0, 0x0E, 0x01}), {0xFF, 0, 0, 0, 0x94, 0, 0, 0}}),
              (Colours{0xFFFFFF, 0, make_colour(0x99, 0x49, 0)}));
    // 5, 6 and 5 bits.
    EXPECT_EQ(colours_of({2, 1, 16, 3, dwords({0xF800, 0x07E0, 0x001F}), {0x10, 0x84, 0xE1, 0x0B}}),
              (Colours{make_colour(0x84, 0x82, 0x84), make_colour(0x08, 0x7D, 0x08)}));
}

TEST(ReadBmp, ChannelsOfMoreThan8BitsUseTheHighest8) {
    EXPECT_EQ(colours_of({2, 1, 32, 3, dwords({0x3FF00000, 0x000FFC00, 0x000003FF}),
                          dwords({0x3FFFFFFF, 0x10080601})}),
              (Colours{0xFFFFFF, make_colour(0x40, 0x80, 0x80)}));
    EXPECT_EQ(colours_of({1, 1, 32, 3, dwords({0xFFFFFFFF, 0, 0}), dwords({0x9ABCDEF0})}),
              (Colours{make_colour(0x9A, 0, 0)}));
}

TEST(ReadBmp, ChannelWithoutBitsIs0) {
    EXPECT_EQ(colours_of({1, 1, 32, 3, dwords({0, 0xFF00, 0}), {1, 2, 3, 4}}),
              (Colours{make_colour(0, 2, 0)}));
}

// ---- Run-length encoding

MadeBmp runs_of_8_bits(std::int32_t width, std::int32_t height, const Bytes& data) {
    return {width, height, 8, 1, striking_table(4), data, 40, 4};
}

TEST(ReadBmp, Rle4RunsAndLiteralsAreNibbles) {
    // Bottom row: a run of five from alternating nibbles, end of row; top row: three literals, a run of two.
    const MadeBmp bmp{5, 2, 4, 2, striking_table(16), {5, 0x12, 0, 0, 0, 3, 0x45, 0x60, 2, 0x77, 0, 0, 0, 1}};
    EXPECT_EQ(colours_of(bmp), striking_colours({4, 5, 6, 7, 7, 1, 2, 1, 2, 1}));
}

TEST(ReadBmp, Rle8RunsAndLiteralsAreIndices) {
    // A literal of three is padded to four bytes.
    const MadeBmp bmp = runs_of_8_bits(5, 1, {0, 3, 1, 2, 3, 99, 2, 1, 0, 1});
    EXPECT_EQ(colours_of(bmp), striking_colours({1, 2, 3, 1, 1}));
}

TEST(ReadBmp, Rle4LiteralsArePaddedTo2Bytes) {
    for (std::uint8_t length = 3; length <= 12; ++length) {
        Bytes data{0, length};
        data.resize(2 + static_cast<std::size_t>(length + 3) / 4 * 2, 0x22);
        data.insert(data.end(), {1, 0x33, 0, 1});
        Colours expected(length, striking_colour(2));
        expected.push_back(striking_colour(3));
        EXPECT_EQ(colours_of({length + 1, 1, 4, 2, striking_table(16), data}), expected) << int{length};
    }
}

TEST(ReadBmp, PixelsSkippedByAJumpHaveIndex0) {
    // One pixel of index 1, a jump of two to the right, one pixel of index 2, end.
    const MadeBmp bmp = runs_of_8_bits(4, 2, {1, 1, 0, 2, 2, 0, 1, 2, 0, 1});
    EXPECT_EQ(colours_of(bmp), striking_colours({0, 0, 0, 0, 1, 0, 0, 2}));
}

TEST(ReadBmp, JumpUpKeepsItsColumn) {
    const MadeBmp bmp = runs_of_8_bits(3, 3, {1, 1, 0, 2, 1, 2, 1, 2, 0, 1});
    EXPECT_EQ(colours_of(bmp), striking_colours({0, 0, 2, 0, 0, 0, 1, 0, 0}));
}

TEST(ReadBmp, RowsAndPicturesEndedEarlyAreFilledWithIndex0) {
    const MadeBmp bmp = runs_of_8_bits(2, 3, {1, 1, 0, 0, 2, 2, 0, 1});
    EXPECT_EQ(colours_of(bmp), striking_colours({0, 0, 2, 2, 1, 0}));
}

TEST(ReadBmp, RunLengthEncodedPictureMayBeTopDown) {
    const MadeBmp bmp = runs_of_8_bits(1, -2, {1, 1, 0, 0, 1, 2, 0, 1});
    EXPECT_EQ(colours_of(bmp), striking_colours({1, 2}));
}

TEST(ReadBmp, RunsEndAtTheEndOfTheRow) {
    const MadeBmp run = runs_of_8_bits(2, 2, {5, 1, 0, 0, 1, 2, 0, 1});
    EXPECT_EQ(colours_of(run), striking_colours({2, 0, 1, 1}));
    const MadeBmp literal = runs_of_8_bits(2, 2, {0, 3, 1, 2, 3, 0, 0, 0, 1, 2, 0, 1});
    EXPECT_EQ(colours_of(literal), striking_colours({2, 0, 1, 2}));
}

TEST(ReadBmp, JumpBeyondThePictureEndsTheRowOrThePicture) {
    const MadeBmp right = runs_of_8_bits(2, 2, {1, 1, 0, 2, 255, 0, 1, 2, 0, 0, 1, 3, 0, 1});
    EXPECT_EQ(colours_of(right), striking_colours({3, 0, 1, 0}));
    const MadeBmp up = runs_of_8_bits(2, 2, {1, 1, 0, 2, 0, 255, 1, 2, 0, 0, 1, 3, 0, 1});
    EXPECT_EQ(colours_of(up), striking_colours({0, 0, 1, 0}));
}

TEST(ReadBmp, BytesAfterTheLastRowAreIgnored) {
    EXPECT_EQ(colours_of(runs_of_8_bits(1, 1, {1, 1, 0, 0, 1, 2, 0, 1})), striking_colours({1}));
}

// ---- Our own files

TEST(ReadBmp, FilesSavedByCDibAreReadBackAtEveryDepth) {
    const TemporaryFolder folder;
    RandomBmps random(5);
    for (const std::int32_t bits : {1, 4, 8, 16, 24, 32}) {
        SCOPED_TRACE(bits);
        cDIB picture;
        ASSERT_TRUE(picture.Create(9, 5, bits));
        picture.SetPalette(random.bytes(4 * 256));
        std::ranges::copy(random.bytes(static_cast<std::size_t>(picture.Size())), picture.lpBits());
        const std::string path = folder.file("written.bmp");
        picture.Save(path);
        const Bitmap back = read_bmp(read_file(path), most_pixels);
        for (std::int32_t y = 0; y < 5; ++y) {
            for (std::int32_t x = 0; x < 9; ++x) {
                EXPECT_EQ(back.pixel(x, y), picture.hDIB()->pixel(x, y)) << x << ", " << y;
            }
        }
    }
}

// ---- Truncated files

struct TruncatedCase {
    const char* name;
    MadeBmp bmp; ///< all pixels are of one colour that is not black
};

std::vector<TruncatedCase> truncated_cases() {
    const auto indexed = [](std::uint16_t bits, std::uint8_t byte, std::size_t header = 40) {
        const auto row_bytes = static_cast<std::size_t>((11 * bits + 31) / 32 * 4);
        Bytes table = striking_table(std::size_t{1} << bits);
        if (header == 12) {
            table.resize(table.size() / 4 * 3, 0x55);
            std::ranges::fill(table, 0x55);
        }
        return MadeBmp{11, 9, bits, 0, table, Bytes(row_bytes * 9, byte), header};
    };
    const Bytes masks = dwords({0xF800, 0x07E0, 0x001F});
    return {{"1 bit", indexed(1, 0xFF)},
            {"4 bits", indexed(4, 0x11)},
            {"8 bits", indexed(8, 1)},
            {"8 bits with the header of 12 bytes", indexed(8, 1, 12)},
            {"16 bits", {11, 9, 16, 0, {}, Bytes(24 * 9, 0x55)}},
            {"16 bits with masks", {11, 9, 16, 3, masks, Bytes(24 * 9, 0x55)}},
            {"24 bits", {11, 9, 24, 0, {}, Bytes(36 * 9, 0x55)}},
            {"24 bits with the header of 124 bytes", {11, 9, 24, 0, {}, Bytes(36 * 9, 0x55), 124}},
            {"32 bits", {11, 9, 32, 0, {}, Bytes(44 * 9, 0x55)}},
            {"24 bits top-down", {11, -9, 24, 0, {}, Bytes(36 * 9, 0x55)}}};
}

TEST(ReadBmp, TruncatedFileHasAllWholePixelsAndTheRestBlack) {
    for (const TruncatedCase& truncated : truncated_cases()) {
        SCOPED_TRACE(truncated.name);
        const MadeBmp& bmp = truncated.bmp;
        const Bytes whole = bmp.file();
        const Colour colour = read(whole).colours[0];
        ASSERT_NE(colour, black);
        const std::size_t row_bytes = bmp.data.size() / 9;
        for (std::size_t length = bmp.pixels_at(); length <= whole.size(); ++length) {
            const Colours colours = read(first_bytes(whole, length)).colours;
            const std::size_t present = length - bmp.pixels_at();
            for (std::size_t stored = 0; stored < 9; ++stored) {
                const std::size_t row_present =
                    std::min(present - std::min(present, stored * row_bytes), row_bytes);
                const std::size_t y = bmp.height > 0 ? 8 - stored : stored;
                for (std::size_t x = 0; x < 11; ++x) {
                    ASSERT_EQ(colours[y * 11 + x], (x + 1) * bmp.bits <= 8 * row_present ? colour : black)
                        << length << " bytes, at " << x << ", " << y;
                }
            }
        }
    }
}

TEST(ReadBmp, TruncatedRunsHaveAllWholeCommandsAndTheRestBlack) {
    const auto expect_pixels = [](std::uint16_t bits, std::uint32_t compression, const Bytes& row,
                                  const std::vector<std::size_t>& pixels_after) {
        Bytes data;
        for (int i = 0; i < 3; ++i) {
            data.insert(data.end(), row.begin(), row.end());
        }
        const MadeBmp bmp{11, 3, bits, compression, striking_table(std::size_t{1} << bits), data};
        const Bytes whole = bmp.file();
        for (std::size_t present = 0; present <= data.size(); ++present) {
            const Colours colours = read(first_bytes(whole, bmp.pixels_at() + present)).colours;
            const std::size_t rows = present / row.size();
            const std::size_t pixels = 11 * rows + (rows < 3 ? pixels_after[present % row.size()] : 0);
            for (std::size_t i = 0; i < 33; ++i) {
                const std::size_t y = 2 - i / 11;
                ASSERT_EQ(colours[y * 11 + i % 11], i < pixels ? striking_colour(1) : black)
                    << present << " bytes, pixel " << i;
            }
        }
    };
    expect_pixels(8, 1, {6, 1, 0, 5, 1, 1, 1, 1, 1, 0, 0, 0}, {0, 0, 6, 6, 6, 6, 6, 6, 6, 6, 11, 11});
    expect_pixels(4, 2, {7, 0x11, 0, 4, 0x11, 0x11, 0, 0}, {0, 0, 7, 7, 7, 7, 11, 11});
}

TEST(ReadBmp, FileThatEndsBeforeItsPixelsIsInvalid) {
    for (const TruncatedCase& truncated : truncated_cases()) {
        SCOPED_TRACE(truncated.name);
        const Bytes whole = truncated.bmp.file();
        for (std::size_t length = 0; length < truncated.bmp.pixels_at(); ++length) {
            EXPECT_FAILURE(read(first_bytes(whole, length)), InvalidPicture) << length;
        }
    }
}

TEST(ReadBmp, FileThatEndsInItsColourTableOrMasksIsInvalid) {
    for (const MadeBmp& bmp : {MadeBmp{2, 1, 8, 0, striking_table(3), Bytes(4), 40, 3},
                               MadeBmp{2, 1, 32, 3, dwords({0xFF, 0xFF00, 0xFF0000}), Bytes(8)}}) {
        Bytes file = bmp.file();
        put_u32(file, 10, 54); // where the pixels are said to begin is not where they do
        for (std::size_t length = 54; length < 66; ++length) {
            EXPECT_FAILURE(read(first_bytes(file, length)), InvalidPicture) << length;
        }
        EXPECT_EQ(read(first_bytes(file, 66)).colours, (Colours{black, black}));
    }
}

// ---- Broken files

TEST(ReadBmp, CorruptFileGivesAPictureInvalidPictureOrOutOfMemory) {
    RandomBmps random(7);
    for (int round = 0; round < 3000; ++round) {
        Bytes bytes = random.next().file();
        for (int change = 0; change < 3; ++change) {
            const auto at = random.number(0, static_cast<std::int32_t>(bytes.size()) - 1);
            bytes[static_cast<std::size_t>(at)] = random.byte();
        }
        const auto failure = failure_in([&] { read(bytes); });
        ASSERT_TRUE(!failure || *failure == Failure::InvalidPicture || *failure == Failure::OutOfMemory)
            << round;
    }
}

} // namespace
} // namespace varnoth::test
