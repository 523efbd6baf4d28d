#include "core/image/LogicalPalette.h"

#include <bit>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "core/image/nearest_colour.h"
#include "support/expect_failure.h"

namespace varnoth::test {
namespace {

// Reference search in floating point over the valid entries.
std::int32_t plain_nearest(const LOGPALETTE& record, Colour colour) {
    std::int32_t best = 0;
    double best_distance = 1e9;
    for (std::int32_t i = 0; i < record.palNumEntries; ++i) {
        const PALETTEENTRY& entry = record.palPalEntry[static_cast<std::size_t>(i)];
        const double red = double{1} * entry.peRed - red_of(colour);
        const double green = double{1} * entry.peGreen - green_of(colour);
        const double blue = double{1} * entry.peBlue - blue_of(colour);
        const double distance = red * red + green * green + blue * blue;
        if (distance < best_distance) {
            best_distance = distance;
            best = i;
        }
    }
    return best;
}

LOGPALETTE palette_of(const std::vector<PALETTEENTRY>& entries) {
    LOGPALETTE record;
    record.palNumEntries = static_cast<std::uint16_t>(entries.size());
    std::copy(entries.begin(), entries.end(), record.palPalEntry.begin());
    return record;
}

TEST(LogicalPalette, NewRecordHasItsVersionOnly) {
    const LOGPALETTE record;
    EXPECT_EQ(record.palVersion, 768);
    EXPECT_EQ(record.palNumEntries, 0);
    for (const PALETTEENTRY& entry : record.palPalEntry) {
        EXPECT_EQ(std::bit_cast<std::uint32_t>(entry), 0U);
    }
}

TEST(LogicalPalette, LowestIndexOfEquallyNearEntriesIsFound) {
    const LogicalPalette palette(palette_of({{0, 0, 10, 0}, {0, 0, 20, 0}, {0, 0, 20, 0}, {0, 0, 10, 0}}));
    EXPECT_EQ(palette.GetNearestPaletteIndex(make_colour(0, 0, 20)), 1);
    EXPECT_EQ(palette.GetNearestPaletteIndex(make_colour(0, 0, 15)), 0) << "half way";
    EXPECT_EQ(palette.GetNearestPaletteIndex(make_colour(0, 0, 16)), 1);
}

TEST(LogicalPalette, EntriesBeyondTheCountAreNotSearched) {
    LOGPALETTE record = palette_of({{0, 0, 0, 0}, {255, 255, 255, 0}});
    record.palNumEntries = 1;
    const LogicalPalette palette(record);
    EXPECT_EQ(palette.size(), 1);
    EXPECT_EQ(palette.GetNearestPaletteIndex(0xFFFFFF), 0);
}

TEST(LogicalPalette, OtherVersionOrCountOutside1To256IsAFailure) {
    LOGPALETTE record = palette_of({{1, 2, 3, 0}});
    record.palVersion = 0x301;
    EXPECT_FAILURE(LogicalPalette(record), InvalidPropertyValue);
    record.palVersion = 768;
    record.palNumEntries = 0;
    EXPECT_FAILURE(LogicalPalette(record), InvalidPropertyValue);
    record.palNumEntries = 257;
    EXPECT_FAILURE(LogicalPalette(record), InvalidPropertyValue);
    record.palNumEntries = 256;
    EXPECT_EQ(LogicalPalette(record).size(), 256);
}

TEST(LogicalPalette, RandomPalettesMatchTheReferenceSearch) {
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round) {
        // Few bits per channel, so that duplicates and ties are common.
        const std::uint32_t mask = round % 3 == 0 ? 0xFFU : round % 3 == 1 ? 0xC0U : 0x81U;
        const auto channel = [&] { return static_cast<std::uint8_t>(random() & mask); };
        const std::size_t count = round < 300 ? 1 + random() % 4 : 1 + random() % 256;
        std::vector<PALETTEENTRY> entries(count);
        std::vector<RGBQUAD> quads;
        for (PALETTEENTRY& entry : entries) {
            entry = {channel(), channel(), channel(), static_cast<std::uint8_t>(random() & 0xFF)};
            quads.push_back({entry.peBlue, entry.peGreen, entry.peRed, entry.peFlags});
        }
        const LOGPALETTE record = palette_of(entries);
        const LogicalPalette palette(record);
        for (int i = 0; i < 20; ++i) {
            const std::uint32_t bits = i % 2 == 0 ? 0xFFU : mask;
            const auto any = [&] { return static_cast<std::uint8_t>(random() & bits); };
            const Colour colour = make_colour(any(), any(), any());
            ASSERT_EQ(palette.GetNearestPaletteIndex(colour), plain_nearest(record, colour));
            ASSERT_EQ(nearest_entry(quads, quad_of(colour)),
                      static_cast<std::size_t>(plain_nearest(record, colour)));
        }
    }
}

TEST(NearestEntry, NoEntriesGiveIndex0) {
    EXPECT_EQ(nearest_entry({}, {1, 2, 3, 0}), 0U);
}

} // namespace
} // namespace varnoth::test
