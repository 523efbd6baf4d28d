#include "core/quantize/ColourHistogram.h"

#include <map>
#include <random>

#include <gtest/gtest.h>

#include "support/expect_failure.h"
#include "support/pictures.h"
#include "support/pixel_bytes.h"

namespace varnoth::test {
namespace {

// A bin as comparable values: weight, blue, green, red.
using Plain = std::array<std::uint64_t, 4>;

std::vector<Plain> plain(const ColourHistogram& histogram) {
    std::vector<Plain> result;
    for (const ColourSum& bin : histogram.bins()) {
        result.push_back({bin.weight, bin.sums[0], bin.sums[1], bin.sums[2]});
    }
    return result;
}

// The same by a map. Colours that agree in `mask` share a bin.
std::vector<Plain> count_plainly(const Colours& colours, Colour mask) {
    std::map<Colour, Plain> bins;
    for (const Colour colour : colours) {
        Plain& bin = bins[colour & mask];
        bin[0] += 1;
        bin[1] += blue_of(colour);
        bin[2] += green_of(colour);
        bin[3] += red_of(colour);
    }
    std::vector<Plain> result;
    for (const auto& [colour, bin] : bins) {
        result.push_back(bin);
    }
    return result;
}

constexpr Colour exactly = 0xFFFFFF;
constexpr Colour six_bits = 0xFCFCFC;

ColourHistogram histogram_of(const Colours& colours) {
    ColourHistogram histogram;
    histogram.add(pixel_bytes(colours));
    return histogram;
}

// More colours than are counted exactly, most of them several times.
Colours many_colours(std::uint32_t seed = 1) {
    std::mt19937 random(seed);
    Colours colours(100'000);
    for (Colour& colour : colours) {
        colour = static_cast<Colour>(random() % 0x1000000 & 0x3F7FFF);
    }
    return colours;
}

Colours few_colours(std::uint32_t seed = 1) {
    return random_colours(5000, 50, Character::Smooth, seed);
}

// So many colours that all are different.
Colours different_colours(std::size_t count) {
    Colours colours(count);
    for (std::size_t i = 0; i < count; ++i) {
        colours[i] = static_cast<Colour>(i * 0x9E3779B1U % 0x1000000);
    }
    return colours;
}

TEST(ColourHistogram, NewOneIsExactAndEmpty) {
    const ColourHistogram histogram;
    EXPECT_TRUE(histogram.exact());
    EXPECT_TRUE(histogram.bins().empty());
}

TEST(ColourHistogram, FewColoursAreCountedOneByOne) {
    for (const Character character : all_characters) {
        const Colours colours = random_colours(9000, 90, character, 3);
        EXPECT_EQ(plain(histogram_of(colours)), count_plainly(colours, exactly));
    }
}

TEST(ColourHistogram, ManyColoursAreCountedInBinsOf4By4By4) {
    const Colours colours = many_colours();
    std::vector<Plain> expected = count_plainly(colours, six_bits);
    std::vector<Plain> counted = plain(histogram_of(colours));
    // The map orders blue before red, the bins red before blue.
    std::ranges::sort(expected);
    std::ranges::sort(counted);
    EXPECT_EQ(counted, expected);
}

TEST(ColourHistogram, IsExactUpToTheLimit) {
    Colours colours = different_colours(ColourHistogram::most_exact);
    EXPECT_TRUE(histogram_of(colours).exact());
    EXPECT_EQ(histogram_of(colours).bins().size(), ColourHistogram::most_exact);
    colours = different_colours(ColourHistogram::most_exact + 1);
    EXPECT_FALSE(histogram_of(colours).exact());
}

TEST(ColourHistogram, OrderOfPixelsDoesNotMatter) {
    for (Colours colours : {few_colours(), many_colours()}) {
        const std::vector<Plain> first = plain(histogram_of(colours));
        std::mt19937 random(2);
        for (int i = 0; i < 3; ++i) {
            std::ranges::shuffle(colours, random);
            EXPECT_EQ(plain(histogram_of(colours)), first);
        }
    }
}

TEST(ColourHistogram, MergedOnesEqualOneOfAllPixels) {
    const Colours few = few_colours();
    const Colours many = many_colours();
    const Colours most = different_colours(ColourHistogram::most_exact);
    const std::pair<Colours, Colours> parts[]{{few, few_colours(3)}, {few, many},
                                              {many, few},           {many, many_colours(2)},
                                              {few, most},           {different_colours(40'000), most}};
    for (const auto& [first, second] : parts) {
        ColourHistogram merged = histogram_of(first);
        merged.add(histogram_of(second));
        Colours all = first;
        all.insert(all.end(), second.begin(), second.end());
        EXPECT_EQ(merged.exact(), histogram_of(all).exact());
        EXPECT_EQ(plain(merged), plain(histogram_of(all)));
    }
}

TEST(ColourHistogram, MergingAnEmptyOneChangesNothing) {
    for (const Colours& colours : {few_colours(), many_colours()}) {
        ColourHistogram merged = histogram_of(colours);
        merged.add(ColourHistogram());
        EXPECT_EQ(plain(merged), plain(histogram_of(colours)));
        ColourHistogram from_empty;
        from_empty.add(histogram_of(colours));
        EXPECT_EQ(plain(from_empty), plain(histogram_of(colours)));
    }
}

TEST(ColourHistogram, TransparentPixelsAreLeftOut) {
    const Colours colours = few_colours();
    std::vector<std::uint8_t> opaque(colours.size());
    Colours kept;
    for (std::size_t i = 0; i < colours.size(); ++i) {
        opaque[i] = i % 3 == 0 ? 0 : static_cast<std::uint8_t>(i % 3 * 127);
        if (opaque[i] != 0) {
            kept.push_back(colours[i]);
        }
    }
    ColourHistogram histogram;
    histogram.add(pixel_bytes(colours), opaque);
    EXPECT_EQ(plain(histogram), plain(histogram_of(kept)));
}

TEST(ColourHistogram, MaskOfAnotherSizeFails) {
    ColourHistogram histogram;
    const std::vector<std::uint8_t> opaque(3, 255);
    EXPECT_FAILURE(histogram.add(pixel_bytes({1, 2}), opaque), SubscriptOutOfRange);
    EXPECT_TRUE(histogram.bins().empty());
}

TEST(ColourSum, MeanIsRoundedHalfUp) {
    EXPECT_EQ((ColourSum{4, {10, 9, 1020}}.mean()), (RGBQUAD{3, 2, 255, 0}));
}

} // namespace
} // namespace varnoth::test
