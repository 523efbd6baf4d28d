#include "core/image/Bitmap.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "core/image/packed_indices.h"
#include "support/expect_failure.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

using Rows = Bitmap::Rows;

TEST(Bitmap, SurfaceRowsArePaddedTo2BytesAt24BitsOnly) {
    EXPECT_EQ(Bitmap(3, 1, 32, Rows::Surface).row_bytes(), 12);
    EXPECT_EQ(Bitmap(3, 1, 24, Rows::Surface).row_bytes(), 10);
    EXPECT_EQ(Bitmap(2, 1, 24, Rows::Surface).row_bytes(), 6);
    EXPECT_EQ(Bitmap(3, 1, 16, Rows::Surface).row_bytes(), 6);
    EXPECT_EQ(Bitmap(3, 1, 8, Rows::Surface).row_bytes(), 3);
    EXPECT_EQ(Bitmap(3, 1, 4, Rows::Surface).row_bytes(), 2);
    EXPECT_EQ(Bitmap(9, 1, 1, Rows::Surface).row_bytes(), 2);
}

TEST(Bitmap, SectionRowsArePaddedTo4Bytes) {
    EXPECT_EQ(Bitmap(3, 1, 24, Rows::Section).rows(), Rows::Section);
    EXPECT_EQ(Bitmap(3, 1, 24, Rows::Surface).rows(), Rows::Surface);
    EXPECT_EQ(Bitmap(3, 1, 24, Rows::Section).row_bytes(), 12);
    EXPECT_EQ(Bitmap(5, 1, 24, Rows::Section).row_bytes(), 16);
    EXPECT_EQ(Bitmap(3, 1, 16, Rows::Section).row_bytes(), 8);
    EXPECT_EQ(Bitmap(5, 1, 8, Rows::Section).row_bytes(), 8);
    EXPECT_EQ(Bitmap(9, 1, 4, Rows::Section).row_bytes(), 8);
    EXPECT_EQ(Bitmap(33, 1, 1, Rows::Section).row_bytes(), 8);
}

TEST(Bitmap, StartsAllZeroWithTheColourTableOfItsDepth) {
    for (const std::int32_t bits : {1, 4, 8, 16, 24, 32}) {
        const Bitmap bitmap(3, 2, bits, Rows::Section);
        EXPECT_TRUE(std::ranges::all_of(bitmap.bytes(), [](std::uint8_t byte) { return byte == 0; }));
        EXPECT_EQ(bitmap.colour_table().size(), bits <= 8 ? std::size_t{1} << bits : 0U);
        EXPECT_EQ(bitmap.pixel(2, 1), 0);
    }
    EXPECT_EQ(Bitmap().width(), 0);
    EXPECT_EQ(Bitmap().height(), 0);
    EXPECT_EQ(Bitmap().bits_per_pixel(), 0);
    EXPECT_EQ(Bitmap().row_bytes(), 0);
    EXPECT_TRUE(Bitmap().bytes().empty());
    EXPECT_TRUE(Bitmap().colour_table().empty());
    EXPECT_EQ(Bitmap().pixel(0, 0), no_colour);
}

TEST(Bitmap, NewDescriptionIsAllZero) {
    using Record = std::array<std::uint8_t, sizeof(BITMAP)>;
    EXPECT_EQ(std::bit_cast<Record>(BITMAP{}), Record{});
}

TEST(Bitmap, DescriptionHasSizeRowBytesAndDepth) {
    const BITMAP description = Bitmap(3, 2, 24, Rows::Surface).description();
    EXPECT_EQ(description.bmType, 0);
    EXPECT_EQ(description.bmWidth, 3);
    EXPECT_EQ(description.bmHeight, 2);
    EXPECT_EQ(description.bmWidthBytes, 10);
    EXPECT_EQ(description.bmPlanes, 1);
    EXPECT_EQ(description.bmBitsPixel, 24);
}

TEST(Bitmap, InvalidSizesAndDepthsAreFailures) {
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    EXPECT_FAILURE(Bitmap(-1, 1, 32, Rows::Surface), InvalidPropertyValue);
    EXPECT_FAILURE(Bitmap(1, -1, 32, Rows::Surface), InvalidPropertyValue);
    for (const std::int32_t bits : {0, -8, 2, 12, 15, 48, 64}) {
        EXPECT_FAILURE(Bitmap(1, 1, bits, Rows::Surface), InvalidPropertyValue) << bits;
    }
    EXPECT_FAILURE(Bitmap(most, 1, 32, Rows::Surface), Overflow) << "a row of 8 GiB";
    EXPECT_FAILURE(Bitmap(16384, 32768, 32, Rows::Surface), Overflow) << "2 GiB in all";
    EXPECT_FAILURE(Bitmap(most, most, 8, Rows::Section), Overflow);
    EXPECT_EQ(Bitmap(most, 0, 8, Rows::Surface).row_bytes(), most);
}

TEST(Bitmap, SurfaceIsTopRowFirstAndSectionBottomRowFirst) {
    Bitmap surface(1, 2, 32, Rows::Surface);
    Bitmap section(1, 2, 32, Rows::Section);
    for (Bitmap* bitmap : {&surface, &section}) {
        bitmap->set_pixel(0, 0, 0x030201);
        bitmap->set_pixel(0, 1, 0x060504);
        EXPECT_EQ(bitmap->pixel(0, 0), 0x030201);
        EXPECT_EQ(bitmap->pixel(0, 1), 0x060504);
    }
    EXPECT_EQ(bytes_of(surface), (Bytes{3, 2, 1, 0, 6, 5, 4, 0}));
    EXPECT_EQ(bytes_of(section), (Bytes{6, 5, 4, 0, 3, 2, 1, 0}));
}

TEST(Bitmap, Pixels24BitAreBlueGreenRed) {
    Bitmap bitmap(2, 1, 24, Rows::Section);
    bitmap.set_pixel(1, 0, 0x030201);
    EXPECT_EQ(bytes_of(bitmap), (Bytes{0, 0, 0, 3, 2, 1, 0, 0}));
    EXPECT_EQ(bitmap.pixel(1, 0), 0x030201);
}

TEST(Bitmap, Pixels16BitHave5BitsPerChannelRedHighest) {
    Bitmap bitmap(3, 1, 16, Rows::Surface);
    bitmap.set_pixel(0, 0, make_colour(255, 0, 0));
    bitmap.set_pixel(1, 0, make_colour(0, 255, 0));
    bitmap.set_pixel(2, 0, make_colour(0, 0, 15)); // 15 keeps its upper five bits: 1
    EXPECT_EQ(bytes_of(bitmap), (Bytes{0x00, 0x7C, 0xE0, 0x03, 0x01, 0x00}));
    EXPECT_EQ(bitmap.pixel(0, 0), make_colour(255, 0, 0));
    EXPECT_EQ(bitmap.pixel(2, 0), make_colour(0, 0, 8));
    bitmap.bytes()[1] = 0xFC;
    EXPECT_EQ(bitmap.pixel(0, 0), make_colour(255, 0, 0)) << "the uppermost bit is not used";
}

TEST(Bitmap, FiveBitsWidenByRepeatingTheHighestBits) {
    EXPECT_EQ(widen_5_bits(0), 0);
    EXPECT_EQ(widen_5_bits(1), 8);
    EXPECT_EQ(widen_5_bits(4), 33);
    EXPECT_EQ(widen_5_bits(16), 132);
    EXPECT_EQ(widen_5_bits(31), 255);
}

TEST(Bitmap, IndicesArePackedWithTheLeftmostPixelHighest) {
    Bitmap nibbles(3, 1, 4, Rows::Surface);
    for (std::size_t i = 0; i < 16; ++i) {
        nibbles.colour_table()[i] = {0, 0, static_cast<std::uint8_t>(i * 16), 0};
    }
    for (std::int32_t x = 0; x < 3; ++x) {
        nibbles.set_pixel(x, 0, make_colour(static_cast<std::uint8_t>((x + 9) * 16), 0, 0));
    }
    EXPECT_EQ(bytes_of(nibbles), (Bytes{0x9A, 0xB0}));
    EXPECT_EQ(nibbles.pixel(1, 0), make_colour(160, 0, 0));
    Bitmap bits(9, 1, 1, Rows::Surface);
    bits.colour_table()[1] = {255, 255, 255, 0};
    for (const std::int32_t x : {0, 7, 8}) {
        bits.set_pixel(x, 0, 0xFFFFFF);
    }
    EXPECT_EQ(bytes_of(bits), (Bytes{0x81, 0x80}));
    bits.set_pixel(7, 0, 0);
    EXPECT_EQ(bytes_of(bits), (Bytes{0x80, 0x80}));
}

TEST(Bitmap, PixelGetsTheNearestEntryLowestOfEqualOnes) {
    Bitmap bitmap(1, 1, 8, Rows::Surface);
    std::ranges::fill(bitmap.colour_table(), RGBQUAD{255, 255, 255, 0});
    bitmap.colour_table()[4] = bitmap.colour_table()[9] = {0, 0, 100, 0};
    bitmap.set_pixel(0, 0, make_colour(90, 5, 5));
    EXPECT_EQ(bitmap.bytes()[0], 4);
    EXPECT_EQ(bitmap.pixel(0, 0), make_colour(100, 0, 0));
}

TEST(Bitmap, SettingOutsideIsIgnoredAndReadingGivesNoColour) {
    Bitmap bitmap(2, 2, 24, Rows::Section);
    for (const auto& [x, y] : {std::pair{-1, 0}, {0, -1}, {2, 0}, {0, 2}, {2, 2}}) {
        bitmap.set_pixel(x, y, 0xFFFFFF);
        EXPECT_EQ(bitmap.pixel(x, y), no_colour);
    }
    EXPECT_EQ(bytes_of(bitmap), Bytes(16));
}

TEST(Bitmap, FillSetsEveryPixelAtEveryDepth) {
    for (const std::int32_t bits : {1, 4, 8, 16, 24, 32}) {
        for (const Rows rows : {Rows::Surface, Rows::Section}) {
            Bitmap bitmap(5, 3, bits, rows);
            if (bits <= 8) {
                bitmap.colour_table()[1] = {255, 255, 255, 0};
            }
            bitmap.fill(0xFFFFFF);
            for (std::int32_t i = 0; i < 15; ++i) {
                EXPECT_EQ(bitmap.pixel(i % 5, i / 5), 0xFFFFFF) << bits;
            }
        }
    }
    Bitmap none(0, 4, 32, Rows::Surface);
    none.fill(1);
    Bitmap flat(4, 0, 32, Rows::Surface);
    flat.fill(1);
}

TEST(Bitmap, FillRectangleEqualsPixelByPixel) {
    constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t greatest = std::numeric_limits<std::int32_t>::max();
    constexpr std::array<std::int32_t, 14> places{least, -1, 0,  1,   5,   6,   7,
                                                  63,    64, 65, 199, 200, 201, greatest};
    std::mt19937 random(1);
    const auto place = [&] { return places.at(random() % places.size()); };
    for (const std::int32_t bits : {1, 4, 8, 16, 24, 32}) {
        Bitmap filled(200, 7, bits, Rows::Section);
        std::ranges::generate(filled.bytes(), [&] { return static_cast<std::uint8_t>(random()); });
        std::ranges::generate(filled.colour_table(),
                              [&] { return quad_of(static_cast<Colour>(random() % 0x1000000)); });
        Bitmap plotted = filled;
        for (int i = 0; i < 300; ++i) {
            const std::int32_t left = place();
            const std::int32_t top = place();
            const std::int32_t right = place();
            const std::int32_t bottom = place();
            const auto colour = static_cast<Colour>(random() % 0x1000000);
            filled.fill_rectangle(left, top, right, bottom, colour);
            for (std::int32_t y = 0; y < plotted.height(); ++y) {
                for (std::int32_t x = 0; x < plotted.width(); ++x) {
                    if (left <= x && x <= right && top <= y && y <= bottom) {
                        plotted.set_pixel(x, y, colour);
                    }
                }
            }
            ASSERT_EQ(bytes_of(filled), bytes_of(plotted))
                << bits << ": " << left << ", " << top << " to " << right << ", " << bottom;
        }
    }
}

TEST(Bitmap, RowsOfPixelsRoundTrip) {
    for (const std::int32_t bits : {1, 4, 8, 16, 24, 32}) {
        Bitmap bitmap(6, 2, bits, Rows::Section);
        for (std::size_t i = 0; i < bitmap.colour_table().size(); ++i) {
            const auto grey = static_cast<std::uint8_t>(i == 1 ? 255 : i);
            bitmap.colour_table()[i] = {grey, grey, grey, 0};
        }
        const std::vector<RGBQUAD> written{{255, 255, 255, 0}, {0, 0, 0, 0}, {255, 255, 255, 0}};
        write_pixels(bitmap, 2, 1, written);
        std::vector<RGBQUAD> read(3, RGBQUAD{9, 9, 9, 9});
        read_pixels(bitmap, 2, 1, read);
        EXPECT_EQ(read, written) << bits;
        EXPECT_EQ(bitmap.pixel(1, 1), 0);
        EXPECT_EQ(bitmap.pixel(2, 0), 0);
    }
}

TEST(Bitmap, UnusedByteIsCopiedInRowsAndZeroedBySetPixel) {
    Bitmap bitmap(2, 1, 32, Rows::Surface);
    write_pixels(bitmap, 0, 0, std::vector<RGBQUAD>{{1, 2, 3, 4}, {5, 6, 7, 8}});
    EXPECT_EQ(bytes_of(bitmap), (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(bitmap.pixel(0, 0), 0x010203);
    bitmap.set_pixel(0, 0, 0x010203);
    EXPECT_EQ(bytes_of(bitmap), (Bytes{1, 2, 3, 0, 5, 6, 7, 8}));
}

TEST(PackedIndices, EachIndexChangesOnlyItsOwnBits) {
    Bytes row(2, 0xFF);
    put_packed_index(row.data(), 1, 4, 0);
    EXPECT_EQ(row, (Bytes{0xF0, 0xFF}));
    put_packed_index(row.data(), 15, 1, 0);
    EXPECT_EQ(row, (Bytes{0xF0, 0xFE}));
    put_packed_index(row.data(), 0, 8, 0x12);
    EXPECT_EQ(row, (Bytes{0x12, 0xFE}));
    EXPECT_EQ(get_packed_index(row.data(), 0, 4), 1U);
    EXPECT_EQ(get_packed_index(row.data(), 1, 4), 2U);
    EXPECT_EQ(get_packed_index(row.data(), 15, 1), 0U);
    EXPECT_EQ(get_packed_index(row.data(), 1, 8), 0xFEU);
}

TEST(Bitmap, RowsWithoutPixelsCanBeReadAndWritten) {
    Bitmap bitmap(0, 2, 32, Bitmap::Rows::Surface);
    std::vector<RGBQUAD> pixels;
    read_pixels(bitmap, 0, 1, pixels);
    write_pixels(bitmap, 0, 1, pixels);
    EXPECT_TRUE(pixels.empty());
    EXPECT_TRUE(bitmap.bytes().empty());
}

} // namespace
} // namespace varnoth::test
