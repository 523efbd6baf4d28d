#include "core/quantize/NearestEntry.h"

#include <random>

#include <gtest/gtest.h>

#include "reference/NearestEntry.h"
#include "support/expect_failure.h"
#include "support/pixel_bytes.h"
#include "support/thoroughness.h"

namespace varnoth::test {
namespace {

void expect_as_plain(const std::vector<RGBQUAD>& palette, const NearestEntry& nearest, Colour colour) {
    ASSERT_EQ(nearest(blue_of(colour), green_of(colour), red_of(colour)),
              reference::nearest_entry(palette, colour))
        << std::hex << colour << " among " << std::dec << palette.size();
}

// Random colours, the entries and their neighbours, with 1 to 3 threads.
void expect_as_plain(const Colours& entries, std::uint32_t seed) {
    const std::vector<RGBQUAD> palette = palette_of(entries);
    const NearestEntry nearest(palette, 1 + seed % 3);
    std::mt19937 random(seed);
    for (unsigned i = 0; i < cases(3000U); ++i) {
        expect_as_plain(palette, nearest, static_cast<Colour>(random() % 0x1000000));
        const Colour entry = entries[random() % entries.size()];
        expect_as_plain(palette, nearest, entry ^ static_cast<Colour>(random() & 0x030303));
        ASSERT_FALSE(testing::Test::HasFatalFailure()) << "seed " << seed;
    }
}

Colours random_entries(std::size_t count, Colour mask, Colour base, std::uint32_t seed) {
    std::mt19937 random(seed);
    Colours entries(count);
    for (Colour& entry : entries) {
        entry = static_cast<Colour>(random() % 0x1000000 & static_cast<unsigned>(mask)) | base;
    }
    return entries;
}

TEST(NearestEntrySearch, RandomPalettesMatchTheReference) {
    std::uint32_t seed = 0;
    for (const std::size_t count : {1U, 2U, 3U, 7U, 16U, 100U, 255U, 256U}) {
        expect_as_plain(random_entries(count, 0xFFFFFF, 0, seed), seed);
        ++seed;
    }
}

TEST(NearestEntrySearch, PalettesInOneCornerMatchTheReference) {
    for (const Colour base : {0x000000, 0xF0F0F0, 0xF000F0}) {
        expect_as_plain(random_entries(256, 0x0F0F0F, base, 5), 5);
    }
}

TEST(NearestEntrySearch, LatticesWithManyTiesMatchTheReference) {
    // Entries at equal distances, in random order and repeated.
    for (const Colour mask : {0xC0C0C0, 0xE08080, 0x818181}) {
        expect_as_plain(random_entries(256, mask, 0, 6), 6);
    }
}

TEST(NearestEntrySearch, GreysMatchTheReference) {
    Colours greys;
    for (int value = 255; value >= 0; --value) {
        greys.push_back(grey(value));
    }
    expect_as_plain(greys, 7);
}

TEST(NearestEntrySearch, LowestIndexWinsTies) {
    const NearestEntry nearest(palette_of({grey(20), grey(10), grey(10)}));
    EXPECT_EQ(nearest(15, 15, 15), 0);
    EXPECT_EQ(nearest(14, 14, 14), 1);
}

TEST(NearestEntrySearch, NoThreadFails) {
    EXPECT_FAILURE(NearestEntry(palette_of({0}), 0), InvalidProcedureCall);
}

TEST(NearestEntrySearch, PaletteWithoutEntriesOrWith257Fails) {
    EXPECT_FAILURE(NearestEntry(std::vector<RGBQUAD>()), InvalidProcedureCall);
    EXPECT_FAILURE(NearestEntry(std::vector<RGBQUAD>(257)), InvalidProcedureCall);
}

} // namespace
} // namespace varnoth::test
