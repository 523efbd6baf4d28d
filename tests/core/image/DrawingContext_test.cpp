#include "core/image/DrawingContext.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <random>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "core/image/packed_indices.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

using Rows = Bitmap::Rows;

std::int32_t copy(TestSurface& to, const Rectangle& target, TestSurface& from, const Rectangle& source) {
    return stretch_blt(to.hDC(), target, from.hDC(), source, SRCCOPY);
}

TEST(DrawingContext, StartsWithoutABitmapInNearestNeighbourMode) {
    DrawingContext context;
    EXPECT_EQ(context.bitmap(), nullptr);
    EXPECT_EQ(context.set_stretch_mode(4), COLORONCOLOR);
    EXPECT_EQ(context.set_stretch_mode(1), 4);
    EXPECT_EQ(context.set_stretch_mode(1), 1);
}

TEST(DrawingContext, SelectReturnsThePreviousBitmap) {
    Bitmap first(1, 1, 8, Rows::Surface);
    Bitmap second(1, 1, 8, Rows::Surface);
    DrawingContext context(&first);
    EXPECT_EQ(context.select(&second), &first);
    EXPECT_EQ(context.select(nullptr), &second);
    EXPECT_EQ(context.bitmap(), nullptr);
}

TEST(DrawingContext, CopyNeedsTwoBitmapsAndSrcCopy) {
    DrawingContext none;
    TestSurface surface(1, 1);
    EXPECT_EQ(bit_blt(none, 0, 0, 1, 1, surface.hDC(), 0, 0, SRCCOPY), 0);
    EXPECT_EQ(bit_blt(surface.hDC(), 0, 0, 1, 1, none, 0, 0, SRCCOPY), 0);
    const auto source = surface_of(1, 1, {7});
    EXPECT_EQ(bit_blt(surface.hDC(), 0, 0, 1, 1, source->hDC(), 0, 0, 0x660046), 0);
    EXPECT_EQ(surface.Point(0, 0), 0);
    EXPECT_EQ(bit_blt(surface.hDC(), 0, 0, 1, 1, source->hDC(), 0, 0, SRCCOPY), 1);
    EXPECT_EQ(surface.Point(0, 0), 7);
}

TEST(DrawingContext, CopyChangesOnlyItsRectangle) {
    const auto source = surface_of(3, 2, {1, 2, 3, 4, 5, 6});
    TestSurface target(3, 3);
    bit_blt(target.hDC(), 1, 1, 2, 1, source->hDC(), 1, 1, SRCCOPY);
    EXPECT_EQ(colours_of(target), (Colours{0, 0, 0, 0, 5, 6, 0, 0, 0}));
}

TEST(DrawingContext, CopyIsClippedToBothBitmaps) {
    const auto source = surface_of(2, 2, {1, 2, 3, 4});
    const auto target = surface_of(3, 2, {9, 9, 9, 9, 9, 9});
    EXPECT_EQ(bit_blt(target->hDC(), -1, 0, 5, 5, source->hDC(), 0, 0, SRCCOPY), 1);
    EXPECT_EQ(colours_of(*target), (Colours{2, 9, 9, 4, 9, 9}));
    EXPECT_EQ(bit_blt(target->hDC(), 0, 0, 2, 2, source->hDC(), -1, 1, SRCCOPY), 1);
    EXPECT_EQ(colours_of(*target), (Colours{2, 3, 9, 4, 9, 9}));
    EXPECT_EQ(bit_blt(target->hDC(), 7, 0, 2, 2, source->hDC(), 0, 0, SRCCOPY), 1);
    EXPECT_EQ(bit_blt(target->hDC(), 0, 0, 2, 2, source->hDC(), 0, 9, SRCCOPY), 1);
    EXPECT_EQ(colours_of(*target), (Colours{2, 3, 9, 4, 9, 9}));
}

TEST(DrawingContext, StretchTakesTheSourcePixelUnderEachCentre) {
    const auto source = surface_of(4, 1, {1, 2, 3, 4});
    TestSurface halved(2, 1);
    copy(halved, {0, 0, 2, 1}, *source, {0, 0, 4, 1});
    EXPECT_EQ(colours_of(halved), (Colours{1, 3})) << "a centre between two pixels falls to the left one";
    TestSurface doubled(8, 1);
    copy(doubled, {0, 0, 8, 1}, *source, {0, 0, 4, 1});
    EXPECT_EQ(colours_of(doubled), (Colours{1, 1, 2, 2, 3, 3, 4, 4}));
    TestSurface third(3, 1);
    copy(third, {0, 0, 3, 1}, *source, {0, 0, 4, 1});
    EXPECT_EQ(colours_of(third), (Colours{1, 2, 4}));
    TestSurface one(1, 1);
    copy(one, {0, 0, 1, 1}, *source, {0, 0, 4, 1});
    EXPECT_EQ(colours_of(one), (Colours{2}));
}

TEST(DrawingContext, RowsStretchLikeColumnsInEitherRowOrder) {
    Bitmap source(1, 4, 32, Rows::Section);
    for (std::int32_t y = 0; y < 4; ++y) {
        source.set_pixel(0, y, y + 1);
    }
    for (const Rows rows : {Rows::Surface, Rows::Section}) {
        Bitmap target(1, 2, 32, rows);
        DrawingContext to(&target);
        stretch_blt(to, {0, 0, 1, 2}, DrawingContext(&source), {0, 0, 1, 4}, SRCCOPY);
        EXPECT_EQ(target.pixel(0, 0), 1) << "counted from the top as seen";
        EXPECT_EQ(target.pixel(0, 1), 3);
    }
}

TEST(DrawingContext, NegativeSideInOneRectangleMirrors) {
    const auto source = surface_of(3, 1, {1, 2, 3});
    TestSurface target(3, 1);
    copy(target, {2, 0, -3, 1}, *source, {0, 0, 3, 1});
    EXPECT_EQ(colours_of(target), (Colours{3, 2, 1}));
    copy(target, {0, 0, 3, 1}, *source, {2, 0, -3, 1});
    EXPECT_EQ(colours_of(target), (Colours{3, 2, 1}));
    copy(target, {2, 0, -3, 1}, *source, {2, 0, -3, 1});
    EXPECT_EQ(colours_of(target), (Colours{1, 2, 3})) << "in both, nothing is mirrored";
}

TEST(DrawingContext, SideOf0DrawsNothing) {
    const auto source = surface_of(1, 1, {5});
    TestSurface target(1, 1);
    EXPECT_EQ(copy(target, {0, 0, 0, 1}, *source, {0, 0, 1, 1}), 1);
    EXPECT_EQ(copy(target, {0, 0, 1, 1}, *source, {0, 0, 1, 0}), 1);
    EXPECT_EQ(target.Point(0, 0), 0);
    TestSurface none(0, 0);
    EXPECT_EQ(copy(none, {0, 0, 1, 1}, *source, {0, 0, 1, 1}), 1);
    EXPECT_EQ(copy(target, {0, 0, 1, 1}, none, {0, 0, 1, 1}), 1);
    EXPECT_EQ(target.Point(0, 0), 0);
}

TEST(DrawingContext, WidestRectanglesDoNotOverflow) {
    constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    const auto source = surface_of(1, 1, {5});
    TestSurface target(2, 2);
    EXPECT_EQ(copy(target, {lowest, lowest, most, most}, *source, {0, 0, most, most}), 1);
    EXPECT_EQ(copy(target, {lowest + 2, 0, most, 1}, *source, {lowest + 1, 0, most, 1}), 1);
    EXPECT_EQ(copy(target, {most, most, lowest, lowest}, *source, {most, most, lowest, lowest}), 1);
    EXPECT_EQ(copy(target, {1, 1, lowest, lowest}, *source, {most, 0, lowest, 1}), 1);
    EXPECT_EQ(copy(target, {0, 0, 1, 1}, *source, {lowest, lowest, lowest, lowest}), 1);
}

TEST(DrawingContext, OverlappingCopyReadsTheOldPixels) {
    const auto surface = surface_of(4, 1, {1, 2, 3, 4});
    bit_blt(surface->hDC(), 1, 0, 3, 1, surface->hDC(), 0, 0, SRCCOPY);
    EXPECT_EQ(colours_of(*surface), (Colours{1, 1, 2, 3}));
    const auto column = surface_of(1, 3, {1, 2, 3});
    bit_blt(column->hDC(), 0, 1, 1, 2, column->hDC(), 0, 0, SRCCOPY);
    EXPECT_EQ(colours_of(*column), (Colours{1, 1, 2}));
}

TEST(DrawingContext, EqualColourTablesCopyIndicesAndOthersColours) {
    Bitmap source(1, 1, 8, Rows::Surface);
    source.bytes()[0] = 7; // black like entry 0
    Bitmap same(1, 1, 8, Rows::Surface);
    DrawingContext to(&same);
    bit_blt(to, 0, 0, 1, 1, DrawingContext(&source), 0, 0, SRCCOPY);
    EXPECT_EQ(same.bytes()[0], 7);
    Bitmap other(1, 1, 8, Rows::Surface);
    other.colour_table()[0] = {255, 255, 255, 0};
    to.select(&other);
    bit_blt(to, 0, 0, 1, 1, DrawingContext(&source), 0, 0, SRCCOPY);
    EXPECT_EQ(other.bytes()[0], 1) << "the first black";
}

TEST(DrawingContext, FourthByteIsCopiedBetween32BitBitmapsElse0) {
    TestSurface target(1, 1);
    TestSurface source(1, 1);
    source.SetBitmapBits(Bytes{1, 2, 3, 4});
    bit_blt(target.hDC(), 0, 0, 1, 1, source.hDC(), 0, 0, SRCCOPY);
    EXPECT_EQ(bytes_of(target.bitmap()), (Bytes{1, 2, 3, 4}));
    bit_blt(target.hDC(), 0, 0, 1, 1, surface_of(1, 1, {0x010203}, 24)->hDC(), 0, 0, SRCCOPY);
    EXPECT_EQ(bytes_of(target.bitmap()), (Bytes{1, 2, 3, 0})) << "blue 1, green 2, red 3";
}

TEST(ColourTables, EntriesAreClippedToTheTable) {
    Bitmap bitmap(1, 1, 4, Rows::Section);
    DrawingContext context(&bitmap);
    const std::vector<RGBQUAD> entries{{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}};
    EXPECT_EQ(set_colour_table(context, 2, entries), 3);
    EXPECT_EQ(set_colour_table(context, 15, entries), 1);
    std::vector<RGBQUAD> read(20);
    EXPECT_EQ(get_colour_table(context, 0, read), 16);
    EXPECT_EQ(read[2], entries[0]);
    EXPECT_EQ(read[4], entries[2]);
    EXPECT_EQ(read[15], entries[0]);
    EXPECT_EQ(get_colour_table(context, 15, std::span(read).first(1)), 1);
    EXPECT_EQ(read[0], entries[0]);
    EXPECT_EQ(get_colour_table(context, 16, read), 0);
    EXPECT_EQ(get_colour_table(context, -1, read), 0);
    EXPECT_EQ(set_colour_table(context, -1, entries), 0);
}

TEST(ColourTables, NoBitmapOrMoreThan8BitsHasNoEntries) {
    std::vector<RGBQUAD> entries(4);
    DrawingContext none;
    EXPECT_EQ(get_colour_table(none, 0, entries), 0);
    EXPECT_EQ(set_colour_table(none, 0, entries), 0);
    TestSurface surface(1, 1);
    EXPECT_EQ(get_colour_table(surface.hDC(), 0, entries), 0);
    EXPECT_EQ(set_colour_table(surface.hDC(), 0, entries), 0);
}

// Reference stretch: the formula, one pixel at a time.

std::int32_t plain_source(std::int32_t index, std::int32_t from, std::int32_t from_size,
                          std::int32_t to_size) {
    const std::int32_t from_count = std::abs(from_size);
    const std::int32_t to_count = std::abs(to_size);
    std::int32_t offset = ((2 * index + 1) * from_count - 1) / (2 * to_count);
    if ((from_size < 0) != (to_size < 0)) {
        offset = from_count - 1 - offset;
    }
    return (from_size < 0 ? from - from_count + 1 : from) + offset;
}

void plain_pixel(Bitmap& target, std::int32_t x, std::int32_t y, const Bitmap& source, std::int32_t from_x,
                 std::int32_t from_y) {
    const bool alike = target.bits_per_pixel() == source.bits_per_pixel() &&
                       std::ranges::equal(target.colour_table(), source.colour_table());
    if (!alike) {
        target.set_pixel(x, y, source.pixel(from_x, from_y));
    } else if (target.bits_per_pixel() <= 8) {
        const std::int32_t bits = target.bits_per_pixel();
        const auto index = get_packed_index(source.row(from_y), static_cast<std::size_t>(from_x), bits);
        put_packed_index(target.row(y), static_cast<std::size_t>(x), bits, index);
    } else {
        const std::int32_t bytes = target.bits_per_pixel() / 8;
        std::copy_n(source.row(from_y) + from_x * bytes, bytes, target.row(y) + x * bytes);
    }
}

void plain_stretch(Bitmap& target, const Rectangle& to, const Bitmap& source, const Rectangle& from) {
    if (to.width == 0 || to.height == 0 || from.width == 0 || from.height == 0) {
        return;
    }
    const std::int32_t left = to.width < 0 ? to.x + to.width + 1 : to.x;
    const std::int32_t top = to.height < 0 ? to.y + to.height + 1 : to.y;
    for (std::int32_t row = 0; row < std::abs(to.height); ++row) {
        for (std::int32_t column = 0; column < std::abs(to.width); ++column) {
            const std::int32_t from_x = plain_source(column, from.x, from.width, to.width);
            const std::int32_t from_y = plain_source(row, from.y, from.height, to.height);
            if (target.contains(left + column, top + row) && source.contains(from_x, from_y)) {
                plain_pixel(target, left + column, top + row, source, from_x, from_y);
            }
        }
    }
}

class StretchProperty : public testing::Test {
  protected:
    std::int32_t between(std::int32_t low, std::int32_t high) {
        return low + static_cast<std::int32_t>(random() % static_cast<std::uint32_t>(high - low + 1));
    }

    Bitmap any_bitmap(std::int32_t largest, std::int32_t bits) {
        Bitmap bitmap(between(0, largest), between(0, largest), bits,
                      random() % 2 == 0 ? Rows::Surface : Rows::Section);
        std::ranges::generate(bitmap.bytes(), [&] { return static_cast<std::uint8_t>(random() & 0xFF); });
        for (RGBQUAD& entry : bitmap.colour_table()) {
            const auto channel = [&] { return static_cast<std::uint8_t>(random() & 0xC3); };
            entry = {channel(), channel(), channel(), 0};
        }
        return bitmap;
    }

    Rectangle any_rectangle(std::int32_t reach, bool inside, const Bitmap& bitmap) {
        if (inside) {
            return {0, 0, bitmap.width(), bitmap.height()};
        }
        return {between(-reach, reach), between(-reach, reach), between(-reach, reach),
                between(-reach, reach)};
    }

    void check_once(std::int32_t largest) {
        constexpr std::int32_t depths[] = {1, 4, 8, 16, 24, 32};
        const Bitmap source = any_bitmap(largest, depths[random() % 6]);
        Bitmap target =
            any_bitmap(largest, random() % 2 == 0 ? source.bits_per_pixel() : depths[random() % 6]);
        if (random() % 2 == 0 && target.bits_per_pixel() == source.bits_per_pixel()) {
            std::ranges::copy(source.colour_table(), target.colour_table().begin());
        }
        const Rectangle to = any_rectangle(largest + 2, random() % 3 == 0, target);
        Rectangle from = any_rectangle(largest + 2, random() % 3 == 0, source);
        if (random() % 4 == 0) {
            from.width = to.width;
            from.height = to.height;
        }
        Bitmap expected = target;
        plain_stretch(expected, to, source, from);
        Bitmap readable = source;
        DrawingContext context(&target);
        ASSERT_EQ(stretch_blt(context, to, DrawingContext(&readable), from, SRCCOPY), 1);
        ASSERT_TRUE(std::ranges::equal(target.bytes(), expected.bytes()))
            << source.bits_per_pixel() << " to " << target.bits_per_pixel() << " bits, " << from.x << ","
            << from.y << " " << from.width << "x" << from.height << " onto " << to.x << "," << to.y << " "
            << to.width << "x" << to.height;
    }

    std::mt19937 random{11};
};

TEST_F(StretchProperty, RandomStretchesOfAllDepthsFollowTheFormula) {
    for (int i = 0; i < 6000; ++i) {
        ASSERT_NO_FATAL_FAILURE(check_once(i < 2000 ? 3 : i < 5500 ? 12 : 60));
    }
}

} // namespace
} // namespace varnoth::test
