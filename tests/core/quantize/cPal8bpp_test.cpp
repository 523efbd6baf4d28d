#include "core/quantize/cPal8bpp.h"

#include <functional>
#include <vector>

#include <gtest/gtest.h>

#include "support/expect_failure.h"
#include "support/lists.h"

namespace varnoth::test {
namespace {

Colour entry(const cPal8bpp& palette, int index) {
    const auto at = static_cast<std::uint8_t>(index);
    return make_colour(palette.rgbR(at), palette.rgbG(at), palette.rgbB(at));
}

Colours entries(const cPal8bpp& palette, int first, int last) {
    Colours colours;
    for (int i = first; i <= last; ++i) {
        colours.push_back(entry(palette, i));
    }
    return colours;
}

int closest(const cPal8bpp& palette, std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    std::uint8_t index = 0;
    palette.ClosestIndex(red, green, blue, index);
    return index;
}

// Red in the low byte.
const Colours dark{0x000000, 0x000080, 0x008000, 0x008080, 0x800000, 0x800080, 0x808000, 0xC0C0C0};
const Colours bright{0x808080, 0x0000FF, 0x00FF00, 0x00FFFF, 0xFF0000, 0xFF00FF, 0xFFFF00, 0xFFFFFF};

class Palette : public testing::Test {
  protected:
    cPal8bpp palette;
};

TEST_F(Palette, NewObjectHasNeitherColoursNorAHandle) {
    EXPECT_EQ(palette.Entries(), 0);
    EXPECT_EQ(palette.hPal(), nullptr);
    EXPECT_FALSE(palette.IsGreyScale());
    EXPECT_FAILURE(palette.lpPalette(), SubscriptOutOfRange);
    EXPECT_FAILURE(palette.rgbR(0), SubscriptOutOfRange);
    EXPECT_FAILURE(palette.SetrgbB(0, 1), SubscriptOutOfRange);
    EXPECT_FAILURE(palette.BuildLogicalPalette(), SubscriptOutOfRange);
    EXPECT_FAILURE(closest(palette, 0, 0, 0), Overflow);
    palette.SetEntries(1);
    EXPECT_FAILURE(palette.IsGreyScale(), SubscriptOutOfRange);
}

TEST_F(Palette, InitializeMakesAll256EntriesBlack) {
    for (const std::int16_t number :
         {std::int16_t{0}, std::int16_t{16}, std::int16_t{-3}, std::int16_t{999}}) {
        palette.CreateEGA();
        palette.Initialize(number);
        EXPECT_EQ(palette.Entries(), number);
        EXPECT_EQ(palette.hPal(), nullptr);
        EXPECT_EQ(entries(palette, 0, 255), Colours(256, 0));
    }
}

TEST_F(Palette, DestroyResetsTheObjectAndMayBeRepeated) {
    palette.CreateEGA();
    palette.Destroy();
    palette.Destroy();
    EXPECT_EQ(palette.Entries(), 0);
    EXPECT_EQ(palette.hPal(), nullptr);
    EXPECT_FAILURE(palette.lpPalette(), SubscriptOutOfRange);
}

TEST_F(Palette, EgaHasEightDarkAndEightBrightColours) {
    palette.CreateEGA();
    EXPECT_EQ(palette.Entries(), 16);
    EXPECT_EQ(entries(palette, 0, 7), dark);
    EXPECT_EQ(entries(palette, 8, 15), bright);
    EXPECT_EQ(entry(palette, 16), 0);
    EXPECT_EQ(palette.hPal()->size(), 16);
}

TEST_F(Palette, GreyScalesRiseFromBlackToWhiteInEqualSteps) {
    const int numbers[] = {2, 16, 256};
    for (int kind = 0; kind < 3; ++kind) {
        palette.CreateGreyScale(kind);
        ASSERT_EQ(palette.Entries(), numbers[kind]);
        for (int i = 0; i < numbers[kind]; ++i) {
            const auto grey = static_cast<std::uint8_t>(255 * i / (numbers[kind] - 1));
            EXPECT_EQ(entry(palette, i), make_colour(grey, grey, grey));
        }
        EXPECT_EQ(palette.hPal()->size(), numbers[kind]);
    }
}

TEST_F(Palette, HalftoneCubesVaryRedFastestAndEndAt255) {
    const std::vector<std::vector<int>> values{
        {0, 255}, {0, 128, 255}, {0, 85, 170, 255}, {0, 64, 128, 192, 255}, {0, 51, 102, 153, 204, 255}};
    for (std::size_t kind = 0; kind < values.size(); ++kind) {
        Colours cube;
        for (const int blue : values[kind]) {
            for (const int green : values[kind]) {
                for (const int red : values[kind]) {
                    cube.push_back(red | green << 8 | blue << 16);
                }
            }
        }
        palette.CreateHalftone(static_cast<std::int32_t>(kind));
        EXPECT_EQ(palette.Entries(), static_cast<std::int16_t>(cube.size()));
        EXPECT_EQ(palette.hPal()->size(), static_cast<std::int32_t>(cube.size()));
        cube.resize(256);
        EXPECT_EQ(entries(palette, 0, 255), cube) << kind;
    }
}

TEST_F(Palette, WebsafeHasDarkColoursCubeGreysAndBrightColours) {
    palette.CreateWebsafe();
    EXPECT_EQ(palette.Entries(), 256);
    EXPECT_EQ(palette.hPal()->size(), 256);
    EXPECT_EQ(entries(palette, 0, 7), dark);
    EXPECT_EQ(entry(palette, 216), 0x000000);
    EXPECT_EQ(entries(palette, 248, 255), bright);
    Colours cube;
    for (Colour number = 0; number < 216; ++number) {
        const Colour red = number % 6 * 51;
        const Colour green = number / 6 % 6 * 51;
        const Colour blue = number / 36 * 51;
        const bool corner = red % 255 == 0 && green % 255 == 0 && blue % 255 == 0;
        if (!corner) {
            cube.push_back(red | green << 8 | blue << 16);
        }
    }
    EXPECT_EQ(cube.size(), 208U);
    EXPECT_EQ(entries(palette, 8, 215), cube);
    for (Colour i = 0; i < 31; ++i) {
        EXPECT_EQ(entry(palette, 217 + i), (8 + 8 * i) * 0x010101);
    }
}

TEST_F(Palette, FourthByteOfEveryEntryIsZero) {
    const std::vector<std::function<void(cPal8bpp&)>> makers{
        [](auto& made) { made.CreateGreyScale(2); },
        [](auto& made) { made.CreateEGA(); },
        [](auto& made) { made.CreateHalftone(4); },
        [](auto& made) { made.CreateWebsafe(); },
    };
    for (const auto& make : makers) {
        make(palette);
        for (const RGBQUAD& quad : palette.lpPalette()) {
            EXPECT_EQ(quad.rgbReserved, 0);
        }
    }
}

TEST_F(Palette, InvalidKindFailsWithoutAChange) {
    palette.CreateEGA();
    for (const std::int32_t kind : {-1, 5, 1000}) {
        EXPECT_FAILURE(palette.CreateHalftone(kind), SubscriptOutOfRange);
    }
    for (const std::int32_t kind : {-1, 3}) {
        EXPECT_FAILURE(palette.CreateGreyScale(kind), SubscriptOutOfRange);
    }
    EXPECT_EQ(palette.Entries(), 16);
    EXPECT_EQ(entries(palette, 8, 15), bright);
    EXPECT_EQ(closest(palette, 255, 255, 255), 15);
}

TEST_F(Palette, CreateReplacesTheWholeState) {
    palette.CreateWebsafe();
    palette.CreateGreyScale(0);
    EXPECT_EQ(entries(palette, 2, 255), Colours(254, 0));
    EXPECT_EQ(closest(palette, 250, 250, 250), 1);
}

TEST_F(Palette, IsGreyScaleIsTrueForGreysAndFalseForEga) {
    for (int kind = 0; kind < 3; ++kind) {
        palette.CreateGreyScale(kind);
        EXPECT_TRUE(palette.IsGreyScale());
    }
    palette.CreateEGA();
    EXPECT_FALSE(palette.IsGreyScale());
}

TEST_F(Palette, IsGreyScaleIsTrueForBlackEntries) {
    palette.Initialize(16);
    EXPECT_TRUE(palette.IsGreyScale());
    palette.Initialize(0);
    EXPECT_FALSE(palette.IsGreyScale());
    palette.Initialize(-1);
    EXPECT_FALSE(palette.IsGreyScale());
}

TEST_F(Palette, IsGreyScaleComparesAllChannelsOfValidEntries) {
    palette.Initialize(4);
    palette.SetrgbR(4, 1);
    EXPECT_TRUE(palette.IsGreyScale());
    palette.SetrgbR(3, 1);
    EXPECT_FALSE(palette.IsGreyScale());
    palette.SetrgbG(3, 1);
    EXPECT_FALSE(palette.IsGreyScale());
    palette.SetrgbB(3, 1);
    EXPECT_TRUE(palette.IsGreyScale());
}

TEST_F(Palette, IsGreyScaleFailsBeyond256EntriesUnlessAColourIsFound) {
    palette.Initialize(257);
    EXPECT_FAILURE(palette.IsGreyScale(), SubscriptOutOfRange);
    palette.SetrgbG(255, 1);
    EXPECT_FALSE(palette.IsGreyScale());
}

TEST_F(Palette, HandleAndQueriesExchangeRedAndBlue) {
    palette.Initialize(2);
    palette.SetrgbR(0, 200);
    palette.SetrgbB(1, 200);
    palette.BuildLogicalPalette();
    EXPECT_EQ(palette.hPal()->GetNearestPaletteIndex(make_colour(200, 0, 0)), 1);
    EXPECT_EQ(closest(palette, 200, 0, 0), 0);
    EXPECT_EQ(closest(palette, 0, 0, 190), 1);
}

TEST_F(Palette, ClosestColorReturnsTheColourOfTheEntry) {
    palette.CreateEGA();
    std::uint8_t red = 1;
    std::uint8_t green = 2;
    std::uint8_t blue = 3;
    palette.ClosestColor(120, 10, 100, red, green, blue);
    EXPECT_EQ(make_colour(red, green, blue), 0x800080);
    palette.Destroy();
    EXPECT_FAILURE(palette.ClosestColor(0, 0, 0, red, green, blue), Overflow);
    EXPECT_EQ(make_colour(red, green, blue), 0x800080);
}

TEST_F(Palette, ChangedEntriesReachTheHandleByBuildLogicalPalette) {
    palette.CreateGreyScale(0);
    palette.SetrgbR(2, 200);
    palette.SetEntries(3);
    EXPECT_EQ(palette.hPal()->size(), 2);
    EXPECT_EQ(closest(palette, 200, 0, 0), 0);
    palette.BuildLogicalPalette();
    EXPECT_EQ(palette.hPal()->size(), 3);
    EXPECT_EQ(closest(palette, 200, 0, 0), 2);
}

TEST_F(Palette, FewerThan1OrMoreThan256EntriesGiveNoHandle) {
    for (const std::int16_t number : {std::int16_t{0}, std::int16_t{-1}, std::int16_t{257}}) {
        palette.CreateEGA();
        palette.SetEntries(number);
        EXPECT_NE(palette.hPal(), nullptr);
        palette.BuildLogicalPalette();
        EXPECT_EQ(palette.hPal(), nullptr);
        EXPECT_FAILURE(closest(palette, 0, 0, 0), Overflow);
        EXPECT_EQ(entry(palette, 15), 0xFFFFFF);
    }
}

TEST_F(Palette, EntriesAreBlueGreenRedReservedInMemory) {
    palette.Initialize(1);
    palette.SetrgbR(255, 3);
    palette.SetrgbG(255, 2);
    palette.SetrgbB(255, 1);
    EXPECT_EQ(palette.lpPalette()[255], (RGBQUAD{1, 2, 3, 0}));
    EXPECT_EQ(palette.rgbR(255), 3);
    EXPECT_EQ(palette.rgbG(255), 2);
    EXPECT_EQ(palette.rgbB(255), 1);
}

} // namespace
} // namespace varnoth::test
