// The optimal palette: its properties, and equality with a recursive reference implementation.
#include <limits>

#include <gtest/gtest.h>

#include "core/quantize/Octree.h"
#include "core/quantize/cPal8bpp.h"
#include "reference/OptimalPalette.h"
#include "support/dibs.h"
#include "support/expect_failure.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

struct Wish {
    std::int32_t maximum = 256;
    std::int32_t levels = 8;
    float red_weight = 1.0F;
    float green_weight = 1.0F;
    float blue_weight = 1.0F;
};

void create_optimal(cPal8bpp& palette, const cDIB& dib, const Wish& wish) {
    palette.CreateOptimal(dib, wish.maximum, wish.levels, wish.red_weight, wish.green_weight,
                          wish.blue_weight);
}

Colours valid_entries(const cPal8bpp& palette) {
    Colours colours;
    for (int i = 0; i < palette.Entries(); ++i) {
        colours.push_back(colour_of(palette.lpPalette()[static_cast<std::size_t>(i)]));
    }
    return colours;
}

// The palette of a picture of one row.
Colours optimal(const Colours& pixels, const Wish& wish = {}) {
    cDIB dib;
    fill_dib(dib, static_cast<std::int32_t>(pixels.size()), 1, pixels);
    cPal8bpp palette;
    create_optimal(palette, dib, wish);
    return valid_entries(palette);
}

// 256 colours far apart: no two share more than three splits.
Colours far_apart() {
    Colours colours;
    for (int number = 0; number < 256; ++number) {
        colours.push_back(make_colour(static_cast<std::uint8_t>(16 + 32 * (number % 8)),
                                      static_cast<std::uint8_t>(16 + 32 * (number / 8 % 8)),
                                      static_cast<std::uint8_t>(32 + 64 * (number / 64))));
    }
    return colours;
}

TEST(OptimalPalette, OneColourGivesExactlyThatColour) {
    for (const Colour colour : {0x000000, 0x123456, 0xFFFFFF, 0x808080}) {
        EXPECT_EQ(optimal(Colours(700, colour)), Colours{colour});
    }
}

TEST(OptimalPalette, PictureOfOtherThan32BitsChangesNothing) {
    cPal8bpp untouched;
    cPal8bpp palette;
    palette.CreateEGA();
    for (const std::int32_t bits : {1, 4, 8, 16, 24}) {
        cDIB dib;
        ASSERT_TRUE(dib.Create(3, 3, bits));
        create_optimal(palette, dib, {});
        create_optimal(untouched, dib, {.levels = 1000});
    }
    create_optimal(palette, cDIB(), {});
    EXPECT_EQ(palette.Entries(), 16);
    EXPECT_EQ(palette.rgbG(15), 255);
    EXPECT_EQ(palette.hPal()->size(), 16);
    EXPECT_FAILURE(untouched.lpPalette(), SubscriptOutOfRange);
}

TEST(OptimalPalette, All256ColoursInDifferentLeavesAreKeptInOrder) {
    const Colours colours = far_apart();
    cDIB dib;
    fill_dib(dib, 256, 1, colours);
    EXPECT_EQ(reference::optimal_palette(dib, 256, 8, 1, 1, 1)->reductions, 0);
    cPal8bpp palette;
    create_optimal(palette, dib, {});
    EXPECT_EQ(palette.Entries(), 256);
    EXPECT_EQ(valid_entries(palette), colours);
    EXPECT_EQ(palette.hPal()->size(), 256);
}

TEST(OptimalPalette, Colour257MergesInTheDeepestNodeEnteredLast) {
    // Only the eighth split separates 127 and 128. The 255 others are below nodes entered before.
    Colours colours = far_apart();
    colours[255] = make_colour(127, 255, 255);
    colours.push_back(make_colour(128, 255, 255));
    cDIB dib;
    fill_dib(dib, 257, 1, colours);
    EXPECT_EQ(reference::optimal_palette(dib, 256, 8, 1, 1, 1)->reductions, 1);
    Colours expected(colours.begin(), colours.begin() + 255);
    expected.push_back(make_colour(128, 255, 255)); // 127.5 to even
    EXPECT_EQ(optimal(colours), expected);
}

TEST(OptimalPalette, RootPutsValue128IntoTheLowerHalf) {
    EXPECT_EQ(optimal({127, 128}, {.levels = 1}).size(), 1U);
    EXPECT_EQ(optimal({128, 129}, {.levels = 1}), (Colours{128, 129}));
    EXPECT_EQ(optimal({129, 255}, {.levels = 1}).size(), 1U);
    EXPECT_EQ(optimal({128 << 8, 129 << 8}, {.levels = 1}).size(), 2U);
    EXPECT_EQ(optimal({128 << 16, 129 << 16}, {.levels = 1}).size(), 2U);
    EXPECT_EQ(optimal({127 << 16, 128 << 16}, {.levels = 1}).size(), 1U);
}

TEST(OptimalPalette, MeansAreRoundedTiesToEven) {
    EXPECT_EQ(optimal({1, 2}, {.levels = 1}), Colours{2});
    EXPECT_EQ(optimal({2, 3}, {.levels = 1}), Colours{2});
    EXPECT_EQ(optimal({1, 1, 2}, {.levels = 1}), Colours{1});
}

TEST(OptimalPalette, SecondCallStartsFromAnEmptyTree) {
    cDIB many;
    fill_dib(many, 256, 1, far_apart());
    cDIB one;
    fill_dib(one, 3, 1, {5, 5, 5});
    cPal8bpp palette;
    create_optimal(palette, many, {});
    create_optimal(palette, one, {});
    EXPECT_EQ(valid_entries(palette), Colours{5});
    EXPECT_EQ(palette.rgbR(1), 0);
    create_optimal(palette, many, {});
    EXPECT_EQ(valid_entries(palette), far_apart());
}

TEST(OptimalPalette, LevelsBeyondAByteOverflowWithoutAChange) {
    cDIB dib;
    fill_dib(dib, 1, 1, {7});
    cPal8bpp palette;
    palette.CreateEGA();
    EXPECT_FAILURE(create_optimal(palette, dib, {.levels = 256}), Overflow);
    EXPECT_FAILURE(create_optimal(palette, dib, {.levels = -1}), Overflow);
    EXPECT_EQ(palette.Entries(), 16);
    EXPECT_NE(palette.hPal(), nullptr);
}

TEST(OptimalPalette, ListsExistForLevels1To8Only) {
    cDIB dib;
    fill_dib(dib, 2, 1, {0, 0xFFFFFF});
    cPal8bpp palette;
    palette.CreateEGA();
    for (const std::int32_t levels : {0, 10, 255}) {
        EXPECT_FAILURE(create_optimal(palette, dib, {.levels = levels}), SubscriptOutOfRange);
    }
    EXPECT_EQ(palette.Entries(), 16);
    // Nine levels touch no ninth list until something must be reduced.
    create_optimal(palette, dib, {.maximum = 2, .levels = 9});
    EXPECT_EQ(valid_entries(palette), (Colours{0, 0xFFFFFF}));
    EXPECT_FAILURE(create_optimal(palette, dib, {.maximum = 1, .levels = 9}), SubscriptOutOfRange);
    EXPECT_EQ(valid_entries(palette), (Colours{0, 0xFFFFFF}));
}

TEST(OptimalPalette, MoreThan256LeavesAreASubscriptFailure) {
    Colours colours = far_apart();
    colours.push_back(0xFFFFFF);
    cDIB dib;
    fill_dib(dib, 257, 1, colours);
    cPal8bpp palette;
    palette.CreateEGA();
    EXPECT_FAILURE(create_optimal(palette, dib, {.maximum = 257}), SubscriptOutOfRange);
    EXPECT_EQ(palette.Entries(), 0);
    EXPECT_EQ(palette.hPal(), nullptr);
    palette.SetEntries(256);
    EXPECT_EQ(valid_entries(palette), far_apart());
}

void add_greens(Octree& tree, std::uint8_t green, std::int32_t count) {
    constexpr std::int32_t at_once = 100'000;
    Bytes pixels;
    for (std::int32_t i = 0; i < std::min(count, at_once); ++i) {
        pixels.insert(pixels.end(), {0, green, 0, 77});
    }
    for (; count >= at_once; count -= at_once) {
        tree.add(pixels);
    }
    tree.add(std::span(pixels).first(4 * static_cast<std::size_t>(count)));
}

TEST(OptimalPalette, SumsBeyond32BitsOverflow) {
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max() / 255;
    Octree tree(256, 8, {1.0F, 1.0F, 1.0F});
    add_greens(tree, 255, most);
    add_greens(tree, 127, 1);
    EXPECT_EQ(tree.leaves().size(), 2U);
    EXPECT_EQ(tree.leaves().front().SumG, most * 255);
    EXPECT_EQ(tree.leaves().front().PixelCount, most);
    EXPECT_FAILURE(add_greens(tree, 255, 1), Overflow);
}

TEST(OptimalPalette, SumsBeyond32BitsInAReductionOverflow) {
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max() / 255;
    Octree tree(1, 8, {1.0F, 1.0F, 1.0F});
    add_greens(tree, 255, most);
    EXPECT_FAILURE(add_greens(tree, 254, 1), Overflow);
}

// Equality with the reference implementation

void expect_like_reference(const cDIB& dib, const Wish& wish) {
    std::optional<reference::OptimalPalette> plain;
    const auto plain_failure = failure_in([&] {
        plain = reference::optimal_palette(dib, wish.maximum, wish.levels, wish.red_weight, wish.green_weight,
                                           wish.blue_weight);
    });
    cPal8bpp palette;
    const auto failure = failure_in([&] { create_optimal(palette, dib, wish); });
    ASSERT_EQ(failure, plain_failure);
    if (!failure) {
        Colours expected;
        for (const RGBQUAD& entry : plain->colors) {
            expected.push_back(colour_of(entry));
        }
        ASSERT_EQ(valid_entries(palette), expected);
    }
}

void expect_random_like_reference(std::int32_t width, std::int32_t height, Character character,
                                  std::uint32_t seed, const Wish& wish) {
    const auto surface = random_surface(width, height, character, seed);
    cDIB dib;
    ASSERT_TRUE(dib.CreateFromHdc(surface->hDC(), width, height));
    expect_like_reference(dib, wish);
    ASSERT_FALSE(testing::Test::HasFatalFailure())
        << width << " by " << height << ", character " << static_cast<int>(character) << ", seed " << seed
        << ", maximum " << wish.maximum << ", levels " << wish.levels;
}

TEST(OptimalPalette, TinyPicturesMatchTheReference) {
    std::uint32_t seed = 0;
    for (const Character character : all_characters) {
        for (const std::int32_t maximum : {-1, 0, 1, 2, 3, 7, 8, 9, 16, 40, 256, 400}) {
            for (std::int32_t levels = 0; levels <= 11; ++levels) {
                const auto width = static_cast<std::int32_t>(1 + seed % 9);
                const auto height = static_cast<std::int32_t>(1 + seed / 9 % 7);
                expect_random_like_reference(width, height, character, seed++,
                                             {.maximum = maximum, .levels = levels});
                ASSERT_FALSE(HasFatalFailure());
            }
        }
    }
}

TEST(OptimalPalette, SmallPicturesMatchTheReference) {
    for (std::uint32_t seed = 0; seed < 1800; ++seed) {
        const Character character = all_characters[seed % 6];
        const auto width = static_cast<std::int32_t>(1 + seed * 7 % 40);
        const auto height = static_cast<std::int32_t>(1 + seed * 11 % 37);
        const std::int32_t maximum = seed % 3 == 0 ? 256 : static_cast<std::int32_t>(seed % 60);
        expect_random_like_reference(width, height, character, seed, {.maximum = maximum});
        ASSERT_FALSE(HasFatalFailure());
    }
}

TEST(OptimalPalette, WeightedChannelsMatchTheReference) {
    const float weights[] = {
        1.0F, 2.0F, 0.5F, 0.299F, 0.0F, -1.0F, 1e30F, 3e38F, std::numeric_limits<float>::quiet_NaN()};
    std::uint32_t seed = 0;
    for (const float red : weights) {
        for (const float green : weights) {
            const Wish wish{.maximum = 30,
                            .levels = 1 + static_cast<std::int32_t>(seed % 8),
                            .red_weight = red,
                            .green_weight = green,
                            .blue_weight = weights[seed % 9]};
            expect_random_like_reference(20, 15, all_characters[seed % 6], seed, wish);
            ASSERT_FALSE(HasFatalFailure());
            ++seed;
        }
    }
}

// Colours that return after their leaves were merged, so that nodes are freed and reused.
TEST(OptimalPalette, ReturningColoursMatchTheReference) {
    for (std::uint32_t seed = 0; seed < 400; ++seed) {
        std::mt19937 random(seed);
        Colours colours(300);
        for (std::size_t i = 0; i < colours.size(); ++i) {
            const bool again = i > 0 && random() % 3 != 0;
            colours[i] = again ? colours[random() % i] ^ static_cast<Colour>(random() % 4)
                               : static_cast<Colour>(random() % 0x1000000);
        }
        cDIB dib;
        fill_dib(dib, 300, 1, colours);
        expect_like_reference(dib, {.maximum = static_cast<std::int32_t>(1 + seed % 50)});
        ASSERT_FALSE(HasFatalFailure()) << seed;
    }
}

} // namespace
} // namespace varnoth::test
