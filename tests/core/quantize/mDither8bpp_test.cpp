#include "core/quantize/mDither8bpp.h"

#include <algorithm>
#include <filesystem>
#include <random>

#include <gtest/gtest.h>

#include "core/base/numbers.h"
#include "reference/Dither.h"
#include "support/TemporaryFolder.h"
#include "support/expect_failure.h"
#include "support/pictures.h"
#include "support/thoroughness.h"

namespace varnoth::test {
namespace {

// The nearest of the multiples of `step`, 0 to `highest`; no tie is possible with an odd step.
std::int32_t nearest_multiple(std::int32_t value, std::int32_t step, std::int32_t highest) {
    std::int32_t nearest = 0;
    for (std::int32_t level = 0; level <= highest; ++level) {
        if (std::abs(level * step - value) < std::abs(nearest * step - value)) {
            nearest = level;
        }
    }
    return nearest;
}

// Tables

TEST(Dither, MatricesAreOneOrderInThreeScales) {
    for (std::size_t place = 0; place < 16; ++place) {
        const std::int32_t order = mDither8bpp::Offset16[place];
        EXPECT_EQ(mDither8bpp::Threshold256[place], 16 * order);
        EXPECT_EQ(mDither8bpp::Offset51[place], round_to_even<std::int32_t>(51.0 * order / 16));
    }
}

TEST(Dither, OrderIsBayersBottomRowFirst) {
    const mDither8bpp::Matrix order{1, 9, 3, 11, 13, 5, 15, 7, 4, 12, 2, 10, 16, 8, 14, 6};
    EXPECT_EQ(mDither8bpp::Offset16, order);
}

TEST(Dither, Level16IsTheNearestMultipleOf17UpTo15) {
    const mDither8bpp dither;
    for (std::int32_t i = -8; i <= 262; ++i) {
        EXPECT_EQ(dither.Level16().at(static_cast<std::size_t>(i + 8)), nearest_multiple(i, 17, 15)) << i;
    }
}

TEST(Dither, Level6IsTheNearestMultipleOf51UpTo5) {
    const mDither8bpp dither;
    for (std::int32_t i = -51; i <= 280; ++i) {
        EXPECT_EQ(dither.Level6().at(static_cast<std::size_t>(i + 51)), nearest_multiple(i, 51, 5)) << i;
    }
}

TEST(Dither, CubeIndexIsTheIdentity) {
    const mDither8bpp dither;
    for (std::size_t i = 0; i < 216; ++i) {
        EXPECT_EQ(dither.CubeIndex().at(i), i);
    }
}

TEST(Dither, NewObjectIsInOptimalMode) {
    EXPECT_EQ(mDither8bpp().DitherMode, 1);
}

TEST(Dither, HalftoneKeepsColoursOfTheCube) {
    const Colours cube{0x0033FF, 0xFF9900, 0x663300, 0x00CC99, 0xFFFFFF, 0x000000, 0x3366CC, 0xFF0000};
    const auto surface = surface_of(4, 2, cube);
    mDither8bpp dither;
    dither.DitherMode = mDither8bpp::HalftoneMode;
    ASSERT_TRUE(dither.transform_to_8bit(*surface, *surface));
    EXPECT_EQ(colours_of(*surface), cube);
}

// The whole reduction

TEST(Dither, PictureOfOneColourIsUnchanged) {
    for (const Colour colour : {0x000000, 0x123456, 0xFFFFFF}) {
        TestSurface surface(9, 5, 32, 0, colour);
        ASSERT_TRUE(mDither8bpp().transform_to_8bit(surface, surface));
        EXPECT_EQ(colours_of(surface), Colours(45, colour));
    }
}

TEST(Dither, FourthByteOfEveryPixelBecomes0) {
    TestSurface surface(2, 1);
    surface.SetBitmapBits(Bytes{1, 2, 3, 99, 1, 2, 3, 7});
    ASSERT_TRUE(mDither8bpp().transform_to_8bit(surface, surface));
    EXPECT_TRUE(std::ranges::equal(surface.bitmap().bytes(), Bytes{1, 2, 3, 0, 1, 2, 3, 0}));
}

TEST(Dither, OtherTargetIsDrawnAtItsTopLeft) {
    const auto source = surface_of(2, 2, {0x0000FF, 0x00FF00, 0xFF0000, 0xFFFFFF});
    const Colours before = colours_of(*source);
    TestSurface larger(3, 3, 32, 0, 0x070707);
    ASSERT_TRUE(mDither8bpp().transform_to_8bit(*source, larger));
    EXPECT_EQ(colours_of(larger), (Colours{0x0000FF, 0x00FF00, 0x070707, 0xFF0000, 0xFFFFFF, 0x070707,
                                           0x070707, 0x070707, 0x070707}));
    TestSurface smaller(1, 1);
    ASSERT_TRUE(mDither8bpp().transform_to_8bit(*source, smaller));
    EXPECT_EQ(colours_of(smaller), Colours{0x0000FF});
    EXPECT_EQ(colours_of(*source), before);
}

TEST(Dither, OnlyTheTargetIsRefreshedAndOnce) {
    TestSurface source(2, 2);
    TestSurface target(2, 2);
    int source_refreshed = 0;
    int target_refreshed = 0;
    source.on_change = [&] { ++source_refreshed; };
    target.on_change = [&] { ++target_refreshed; };
    ASSERT_TRUE(mDither8bpp().transform_to_8bit(source, target));
    EXPECT_EQ(source_refreshed, 0);
    EXPECT_EQ(target_refreshed, 1);
}

TEST(Dither, SurfaceWithoutPixelsReturnsFalse) {
    TestSurface nothing(0, 5);
    TestSurface target(1, 1, 32, 0, 7);
    target.on_change = [] { FAIL() << "the target must not be touched"; };
    EXPECT_FALSE(mDither8bpp().transform_to_8bit(nothing, target));
    TestSurface flat(5, 0);
    EXPECT_FALSE(mDither8bpp().transform_to_8bit(flat, target));
    EXPECT_EQ(colours_of(target), Colours{7});
}

TEST(Dither, RowOfTooManyBitsOverflows) {
    mDither8bpp dither;
    TestSurface wide(0x7FFFFFFF / 32 + 1, 1);
    EXPECT_FAILURE(dither.transform_to_8bit(wide, wide), Overflow);
}

TEST(Dither, BorderShrinksThePictureWithinBlack) {
    TestSurface source(4, 4, 32, 2, 0xFFFFFF); // outer size 8 by 8
    ASSERT_TRUE(mDither8bpp().transform_to_8bit(source, source));
    const Colour w = 0xFFFFFF;
    EXPECT_EQ(colours_of(source), (Colours{w, w, 0, 0, w, w, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

// Palettes as lookups

TEST(Dither, LookupWithoutALogicalPaletteOverflows) {
    mDither8bpp dither;
    cPal8bpp palette;
    EXPECT_FAILURE(dither.BuildColorLookup(palette), Overflow);
    palette.Initialize(5);
    EXPECT_FAILURE(dither.BuildColorLookup(palette), Overflow);
}

TEST(Dither, LookupUsesTheLogicalPaletteRedFastest) {
    cPal8bpp palette;
    palette.CreateHalftone(0);
    palette.SetrgbR(0, 255);
    mDither8bpp dither;
    EXPECT_EQ(dither.ColorLookup(), (std::array<std::uint8_t, 4096>{})) << "before there is a lookup";
    dither.BuildColorLookup(palette);
    const auto lookup = dither.ColorLookup();
    EXPECT_EQ(lookup[0], 0);
    EXPECT_EQ(lookup[15], 1);
    EXPECT_EQ(lookup[15 * 16], 2);
    EXPECT_EQ(lookup[15 * 256], 4);
    for (std::size_t i = 0; i < 4096; ++i) {
        std::uint8_t index = 0;
        palette.ClosestIndex(static_cast<std::uint8_t>(i % 16 * 17),
                             static_cast<std::uint8_t>(i / 16 % 16 * 17),
                             static_cast<std::uint8_t>(i / 256 * 17), index);
        ASSERT_EQ(lookup.at(i), index) << i;
    }
}

TEST(Dither, LookupMatchesTheReference) {
    mDither8bpp dither;
    for (std::uint32_t seed = 0; seed < cases(120U); ++seed) {
        std::mt19937 random(seed);
        const auto any = [&](std::uint32_t limit) { return static_cast<std::uint8_t>(random() % limit); };
        const std::size_t count = seed < 40 ? 1 + seed % 8 : 1 + random() % 256;
        // Near each other, in few values with many equals, on the lookup's own grid with many ties, or
        // anywhere.
        const std::uint32_t kind = seed % 4;
        const std::uint8_t base = any(200);
        std::vector<RGBQUAD> entries(count);
        for (RGBQUAD& entry : entries) {
            for (std::uint8_t* channel : {&entry.rgbBlue, &entry.rgbGreen, &entry.rgbRed}) {
                *channel = kind == 0   ? static_cast<std::uint8_t>(base + any(30))
                           : kind == 1 ? static_cast<std::uint8_t>(any(3) * 120)
                           : kind == 2 ? static_cast<std::uint8_t>(any(16) * 17)
                                       : any(256);
            }
        }
        cPal8bpp palette;
        palette.Initialize(static_cast<std::int16_t>(count));
        std::ranges::copy(entries, palette.lpPalette().begin());
        palette.BuildLogicalPalette();
        dither.BuildColorLookup(palette);
        ASSERT_EQ(dither.ColorLookup(), reference::color_lookup(entries)) << seed;
    }
}

// Equality with the reference implementation

void expect_like_reference(std::int32_t width, std::int32_t height, Character character, std::uint32_t seed,
                           std::int32_t bits = 32, std::int32_t mode = mDither8bpp::OptimalMode) {
    const auto shipped = random_surface(width, height, character, seed, bits);
    const auto plain = random_surface(width, height, character, seed, bits);
    mDither8bpp dither;
    dither.DitherMode = mode;
    ASSERT_TRUE(dither.transform_to_8bit(*shipped, *shipped));
    ASSERT_TRUE(reference::transform_to_8bit(mode, *plain, *plain));
    ASSERT_TRUE(std::ranges::equal(shipped->bitmap().bytes(), plain->bitmap().bytes()))
        << width << " by " << height << ", character " << static_cast<int>(character) << ", seed " << seed
        << ", " << bits << " bits, mode " << mode;
}

TEST(Dither, TinyAndLargePicturesMatchTheReference) {
    std::vector<std::pair<std::int32_t, std::int32_t>> sizes{{512, 1},   {512, 9},   {1, 512},
                                                             {256, 128}, {151, 150}, {256, 256}};
    for (std::int32_t i = 0; i < 36; ++i) {
        sizes.push_back({1 + i % 6, 1 + i / 6});
    }
    std::uint32_t seed = 0;
    for (const Character character : all_characters) {
        for (const auto& [width, height] : sizes) {
            expect_like_reference(width, height, character, seed++);
            if (width <= 6 && height <= 6) {
                expect_like_reference(width, height, character, seed++, 32, mDither8bpp::HalftoneMode);
            }
            ASSERT_FALSE(HasFatalFailure());
        }
    }
}

TEST(Dither, SmallPicturesOfEveryDepthMatchTheReference) {
    constexpr std::int32_t depths[] = {32, 24, 16};
    for (std::uint32_t seed = 0; seed < cases(360U); ++seed) {
        expect_like_reference(static_cast<std::int32_t>(1 + seed * 7 % 40),
                              static_cast<std::int32_t>(1 + seed * 11 % 40), all_characters[seed % 6], seed,
                              depths[seed / 6 % 3], seed % 10 == 9 ? 0 : 1);
        ASSERT_FALSE(HasFatalFailure());
    }
}

TEST(Dither, BorderedSurfacesMatchTheReference) {
    for (std::uint32_t seed = 0; seed < cases(30U); ++seed) {
        const auto make = [&](bool twips) {
            auto surface = std::make_unique<TestSurface>(12, 10, 32, static_cast<std::int32_t>(seed % 4));
            const auto picture = random_surface(12, 10, all_characters[seed % 6], seed);
            surface->SetBitmapBits(picture->bitmap().bytes());
            surface->ScaleMode = twips ? ScaleTwips : ScalePixels;
            surface->Parent()->ScaleMode = seed % 3 == 0 ? ScaleTwips : ScalePixels;
            return surface;
        };
        for (const bool twips : {false, true}) {
            const auto shipped = make(twips);
            const auto plain = make(twips);
            const auto shipped_target = make(false);
            const auto plain_target = make(false);
            ASSERT_TRUE(mDither8bpp().transform_to_8bit(*shipped, *shipped_target));
            ASSERT_TRUE(reference::transform_to_8bit(1, *plain, *plain_target));
            ASSERT_EQ(colours_of(*shipped), colours_of(*plain)) << seed;
            ASSERT_EQ(colours_of(*shipped_target), colours_of(*plain_target)) << seed;
        }
    }
}

// Saving

TEST(Dither, SavedSurfaceIsA32BitBmpAtEveryDepth) {
    const TemporaryFolder folder;
    for (const std::int32_t bits : {32, 24}) {
        const auto surface = surface_of(1, 2, {0x010203, 0x040506}, bits);
        ASSERT_TRUE(mDither8bpp().save_bmp(folder.file("a.bmp"), *surface));
        Bytes expected{'B', 'M', 62, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0,  40,
                       0,   0,   0,  1, 0, 0, 0, 2, 0, 0, 0,  1, 0, 32, 0};
        expected.resize(54);
        expected.insert(expected.end(), {4, 5, 6, 0, 1, 2, 3, 0});
        EXPECT_EQ(read_file(folder.file("a.bmp")), expected);
    }
}

TEST(Dither, SurfaceWithoutPixelsIsNotSaved) {
    const TemporaryFolder folder;
    TestSurface nothing(0, 0);
    EXPECT_FALSE(mDither8bpp().save_bmp(folder.file("a.bmp"), nothing));
    EXPECT_FALSE(std::filesystem::exists(folder.file("a.bmp")));
}

TEST(Dither, SavedSurfaceWithABorderHasItsOuterSize) {
    const TemporaryFolder folder;
    TestSurface surface(1, 1, 32, 1, 0xFFFFFF);
    ASSERT_TRUE(mDither8bpp().save_bmp(folder.file("a.bmp"), surface));
    const Bytes file = read_file(folder.file("a.bmp"));
    ASSERT_EQ(file.size(), 54U + 36);
    EXPECT_EQ(file[18], 3);
    Bytes pixels(36, 0);
    std::fill_n(pixels.begin() + 24, 3, std::uint8_t{255}); // the top row is stored last
    EXPECT_EQ(Bytes(file.begin() + 54, file.end()), pixels);
}

} // namespace
} // namespace varnoth::test
