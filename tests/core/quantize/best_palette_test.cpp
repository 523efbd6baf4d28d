#include "core/quantize/best_palette.h"

#include <array>
#include <cmath>
#include <map>
#include <random>
#include <set>

#include <gtest/gtest.h>

#include "core/quantize/cPal8bpp.h"
#include "reference/NearestEntry.h"
#include "support/dibs.h"
#include "support/expect_failure.h"
#include "support/pictures.h"
#include "support/pixel_bytes.h"

namespace varnoth::test {
namespace {

ColourHistogram histogram_of(const Colours& colours) {
    ColourHistogram histogram;
    histogram.add(pixel_bytes(colours));
    return histogram;
}

Colours best(const Colours& pixels, std::size_t most_entries, const Colours& fixed = {}) {
    return colours_of(
        best_palette(histogram_of(pixels), most_entries, PaletteUse::WithoutDither, palette_of(fixed)));
}

double squared_error(const Colours& pixels, const Colours& palette) {
    const std::vector<RGBQUAD> entries = palette_of(palette);
    double sum = 0;
    for (const Colour pixel : pixels) {
        const RGBQUAD& entry = entries[reference::nearest_entry(entries, pixel)];
        const auto add = [&](int a, int b) { sum += (a - b) * (a - b); };
        add(entry.rgbRed, red_of(pixel));
        add(entry.rgbGreen, green_of(pixel));
        add(entry.rgbBlue, blue_of(pixel));
    }
    return sum;
}

Colours smooth_pixels(std::uint32_t seed = 1) {
    return random_colours(120 * 100, 120, Character::Smooth, seed);
}

// So many different colours, each one to three times, in any order; close to each other for even seeds.
Colours repeated_colours(std::size_t count, std::uint32_t seed) {
    std::mt19937 random(seed);
    const unsigned mask = seed % 2 == 0 ? 0x0F0F07 : 0xFFFFFF;
    std::set<Colour> different;
    while (different.size() < count) {
        different.insert(static_cast<Colour>(random() & mask));
    }
    Colours pixels;
    for (const Colour colour : different) {
        pixels.insert(pixels.end(), 1 + random() % 3, colour);
    }
    std::ranges::shuffle(pixels, random);
    return pixels;
}

TEST(BestPalette, ColoursNotMoreThanEntriesAreExact) {
    std::uint32_t seed = 0;
    for (const std::size_t count : {1U, 2U, 3U, 17U, 255U, 256U}) {
        for (int i = 0; i < 2; ++i) {
            const Colours pixels = repeated_colours(count, seed++);
            const std::set<Colour> different(pixels.begin(), pixels.end());
            EXPECT_EQ(best(pixels, count), Colours(different.begin(), different.end()));
            EXPECT_EQ(best(pixels, 256), Colours(different.begin(), different.end()));
        }
    }
}

TEST(BestPalette, OneColourTooManyMergesTheTwoClosest) {
    EXPECT_EQ(best({grey(10), grey(200), grey(13), grey(90)}, 3), (Colours{grey(12), grey(90), grey(200)}));
}

// Each pixel weighs a power of the number of pixels in its cube of 4 by 4 by 4 colours, rounded down.
Colour weighted_mean(const Colours& pixels, double unit, double exponent) {
    std::map<Colour, int> density;
    for (const Colour pixel : pixels) {
        ++density[pixel & 0xFCFCFC];
    }
    std::array<std::uint64_t, 4> sums{}; // of red, green, blue and weights
    for (const Colour pixel : pixels) {
        const auto weight =
            static_cast<std::uint64_t>(unit * std::pow(density[pixel & 0xFCFCFC], exponent) + 1e-6);
        sums[0] += weight * red_of(pixel);
        sums[1] += weight * green_of(pixel);
        sums[2] += weight * blue_of(pixel);
        sums[3] += weight;
    }
    const auto mean = [&](std::uint64_t sum) {
        return static_cast<std::uint8_t>((sum + sums[3] / 2) / sums[3]);
    };
    return make_colour(mean(sums[0]), mean(sums[1]), mean(sums[2]));
}

TEST(BestPalette, OneEntryIsTheMeanWeightedByDensity) {
    for (const std::size_t count : {std::size_t{3000}, ColourHistogram::most_exact + 1}) {
        Colours pixels = repeated_colours(count, 1);
        pixels.insert(pixels.end(), 5000, 0xFF0000);
        const Colours near = repeated_colours(1500, 2);
        pixels.insert(pixels.end(), near.begin(), near.end());
        const ColourHistogram histogram = histogram_of(pixels);
        EXPECT_EQ(histogram.exact(), count == 3000);
        EXPECT_EQ(colours_of(best_palette(histogram, 1, PaletteUse::WithoutDither)),
                  Colours{weighted_mean(pixels, 16, 0.25)});
        EXPECT_EQ(colours_of(best_palette(histogram, 1, PaletteUse::WithDither)),
                  Colours{weighted_mean(pixels, 65536, -5.0 / 16)});
    }
}

TEST(BestPalette, CutsTheChannelThatReducesTheErrorMost) {
    for (const int shift : {0, 8, 16}) {
        const Colours pixels{100 << shift, 104 << shift, 160 << shift, 164 << shift,
                             (100 << shift) + (0x404040 & ~(0xFF << shift))};
        const Colours palette = best(pixels, 2);
        EXPECT_EQ(palette.size(), 2U);
        EXPECT_LT(squared_error(pixels, palette), squared_error(pixels, {102 << shift, 162 << shift}));
    }
}

TEST(BestPalette, RefinementBeatsTheGreedyDivisionOfARamp) {
    Colours ramp;
    for (int value = 0; value < 120; ++value) {
        ramp.push_back(grey(value));
    }
    // Cutting always in half gives groups of 60, 30 and 30 greys. Groups of 40 have the least error.
    EXPECT_LT(squared_error(ramp, best(ramp, 3)),
              1.01 * squared_error(ramp, {grey(20), grey(60), grey(100)}));
}

TEST(BestPalette, ErrorIsLessThanThatOfTheOctree) {
    for (std::uint32_t seed = 0; seed < 3; ++seed) {
        const Colours pixels = smooth_pixels(seed);
        cDIB dib;
        fill_dib(dib, 120, 100, pixels);
        cPal8bpp octree;
        octree.CreateOptimal(dib, 64, 8, 1, 1, 1);
        Colours entries;
        for (int i = 0; i < octree.Entries(); ++i) {
            entries.push_back(colour_of(octree.lpPalette()[static_cast<std::size_t>(i)]));
        }
        EXPECT_LT(squared_error(pixels, best(pixels, 64)), squared_error(pixels, entries) * 0.7);
    }
}

TEST(BestPalette, HasAtMostThatManyEntriesAllDifferent) {
    for (const std::size_t most : {1U, 2U, 9U, 100U, 255U, 256U}) {
        for (const Character character : {Character::Noise, Character::Smooth, Character::AroundLimit}) {
            const Colours palette = best(random_colours(8000, 80, character, 1), most);
            EXPECT_LE(palette.size(), most);
            EXPECT_EQ(std::set<Colour>(palette.begin(), palette.end()).size(), palette.size());
        }
    }
}

TEST(BestPalette, OrderAndDivisionOfPixelsDoNotMatter) {
    Colours pixels = smooth_pixels();
    const Colours first = best(pixels, 50);
    std::mt19937 random(1);
    std::ranges::shuffle(pixels, random);
    ColourHistogram merged = histogram_of(Colours(pixels.begin() + 5000, pixels.end()));
    merged.add(histogram_of(Colours(pixels.begin(), pixels.begin() + 5000)));
    EXPECT_EQ(colours_of(best_palette(merged, 50, PaletteUse::WithoutDither)), first);
}

TEST(BestPalette, NumberOfThreadsDoesNotMatter) {
    const ColourHistogram histogram = histogram_of(repeated_colours(50000, 3)); // enough for three threads
    const Colours first = colours_of(best_palette(histogram, 50, PaletteUse::WithoutDither, {}, 1));
    for (const std::size_t threads : {2U, 3U, 20U}) {
        EXPECT_EQ(colours_of(best_palette(histogram, 50, PaletteUse::WithoutDither, {}, threads)), first);
    }
    EXPECT_FAILURE(best_palette(histogram, 50, PaletteUse::WithoutDither, {}, 0), InvalidProcedureCall);
}

Colours best_for_dither(const Colours& pixels, std::size_t most_entries) {
    return colours_of(best_palette(histogram_of(pixels), most_entries, PaletteUse::WithDither));
}

TEST(BestPalette, WithDitherColoursNotMoreThanEntriesAreExact) {
    const Colours pixels = repeated_colours(256, 1);
    const std::set<Colour> different(pixels.begin(), pixels.end());
    EXPECT_EQ(best_for_dither(pixels, 256), Colours(different.begin(), different.end()));
}

TEST(BestPalette, WithDitherExtremeColoursAreEntries) {
    Colours ramp;
    for (int value = 0; value < 256; ++value) {
        ramp.push_back(grey(value));
    }
    const Colours palette = best_for_dither(ramp, 32);
    EXPECT_EQ(palette.size(), 32U);
    EXPECT_EQ(palette.front(), grey(0));
    EXPECT_EQ(palette.back(), grey(255));
}

TEST(BestPalette, WithDitherExtremesOfEachDirectionAreEntries) {
    // Eight corners, each beside a colour that would be merged with it, and many colours farther apart.
    Colours corners;
    Colours pixels;
    for (int corner = 0; corner < 8; ++corner) {
        const auto at = [&](int inset) {
            const auto channel = [&](int bit) {
                return static_cast<std::uint8_t>((corner >> bit & 1) == 0 ? 20 + inset : 230 - inset);
            };
            return make_colour(channel(0), channel(1), channel(2));
        };
        corners.push_back(at(0));
        pixels.insert(pixels.end(), {at(0), at(3)});
    }
    std::mt19937 random(1);
    for (int i = 0; i < 400; ++i) {
        pixels.push_back(static_cast<Colour>(random() & 0x7F7F7F) + 0x323232);
    }
    const Colours palette = best_for_dither(pixels, 8 * 16);
    for (const Colour corner : corners) {
        EXPECT_TRUE(std::ranges::binary_search(palette, corner)) << std::hex << corner;
    }
}

TEST(BestPalette, WithDitherFrequentColoursCountLess) {
    Colours pixels(64, grey(100));
    pixels.insert(pixels.end(), {grey(120), grey(200), grey(210)});
    EXPECT_EQ(best(pixels, 2), (Colours{grey(100), grey(205)}));
    EXPECT_EQ(best_for_dither(pixels, 2), (Colours{grey(101), grey(205)}));
}

TEST(BestPalette, FixedEntriesComeFirstUnchanged) {
    const Colours fixed{0xFF00FF, 0x000000, 0xFF00FF};
    const Colours palette = best(smooth_pixels(), 40, fixed);
    ASSERT_EQ(palette.size(), 40U);
    EXPECT_EQ(Colours(palette.begin(), palette.begin() + 3), fixed);
}

TEST(BestPalette, FixedEntriesAreNotRepeated) {
    EXPECT_EQ(best({1, 2, 3, 2}, 4, {2}), (Colours{2, 1, 3}));
}

TEST(BestPalette, UnusedEntryMovesToTheGreatestError) {
    // The mean of the two is the fixed entry, which wins the tie.
    EXPECT_EQ(best({grey(100), grey(102)}, 2, {grey(101)}), (Colours{grey(101), grey(100)}));
    // A frequent colour without an error does not count.
    Colours pixels(40, grey(50));
    pixels.insert(pixels.end(), {grey(100), grey(102)});
    EXPECT_EQ(best(pixels, 3, {grey(101)}), (Colours{grey(101), grey(50), grey(100)}));
}

TEST(BestPalette, UnusedEntryMovesToTheLowestOfEqualErrors) {
    // The cut between the two frequent colours and the two others may swap the frequent ones.
    Colours pixels{0x636400, 0x676400};
    pixels.insert(pixels.end(), 100, 0x6464C8);
    pixels.insert(pixels.end(), 100, 0x6664C8);
    EXPECT_EQ(best(pixels, 3, {0x6564C8}), (Colours{0x6564C8, 0x6464C8, 0x656400}));
}

TEST(BestPalette, FixedEntriesBeyondTheNumberAreDropped) {
    EXPECT_EQ(best({5, 6}, 2, {1, 2, 3}), (Colours{1, 2}));
    EXPECT_EQ(best({5, 6}, 0), Colours());
}

TEST(BestPalette, EmptyHistogramGivesTheFixedEntriesOnly) {
    EXPECT_EQ(best({}, 256, {7}), Colours{7});
    EXPECT_EQ(best({}, 256), Colours());
}

TEST(BestPalette, MoreThan256EntriesFail) {
    EXPECT_FAILURE(best({1}, 257), InvalidProcedureCall);
}

} // namespace
} // namespace varnoth::test
