#include "import/mixpals.h"

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "support/RecordedServices.h"
#include "support/expect_failure.h"
#include "support/pictures.h"
#include "support/sprites.h"

namespace varnoth {
namespace {

using namespace mixpals; // NOLINT: the module under test
using test::colours_of;
using test::surface_of;
using test::TestSurface;

using Colours = std::vector<Colour>;

constexpr Colour red = 0x0000FF;
constexpr Colour green = 0x00FF00;
constexpr Colour blue = 0xFF0000;
constexpr Colour white = 0xFFFFFF;

// A row of the colours first, first + 1, ... of which none is black.
Colours series(std::size_t count, Colour first = 1) {
    Colours colours(count);
    for (std::size_t i = 0; i < count; ++i) {
        colours[i] = first + static_cast<Colour>(i);
    }
    return colours;
}

std::unique_ptr<TestSurface> row_of(const Colours& colours) {
    return surface_of(static_cast<std::int32_t>(colours.size()), 1, colours);
}

Colour table(std::size_t position) {
    return colour_of(ColorTable.at(position));
}

Colour palette(std::size_t entry) {
    return colour_of(ImportPalette[entry]);
}

Colours palette_from(std::size_t first, std::size_t count) {
    Colours colours;
    for (std::size_t i = first; i < first + count; ++i) {
        colours.push_back(palette(i));
    }
    return colours;
}

std::int16_t nearest(Colour colour) {
    return nearest_index(red_of(colour), green_of(colour), blue_of(colour));
}

void swap(Colour colour) {
    SwapTransparent(red_of(colour), green_of(colour), blue_of(colour));
}

class MixpalsTest : public testing::Test {
  protected:
    MixpalsTest() { test::reset_mixpals(); }

    ~MixpalsTest() override { test::reset_mixpals(); }

    // The whole way of an import whose sheet needs no reduction; gives the sheet.
    std::unique_ptr<TestSurface> import(const Colours& colours) {
        InitColorTable();
        AddPictureColors(*row_of(colours));
        auto sheet = std::make_unique<TestSurface>(10, 10);
        DrawColorTable(*sheet);
        FinalizePalette(*sheet);
        return sheet;
    }

    test::RecordedServices services;
};

// The table.

TEST_F(MixpalsTest, ANewTableHas1001BlackPositions) {
    ColorTable.assign(5, {1, 1, 1, 1});
    ColorCount = 3;
    InitColorTable();
    EXPECT_EQ(ColorCount, 0);
    ASSERT_EQ(ColorTable.size(), 1001U);
    EXPECT_EQ(ColorTable, std::vector<RGBQUAD>(1001));
}

TEST_F(MixpalsTest, OnePictureOfOneColourGivesThatColourThenBlackAndASheetOfOneRow) {
    InitColorTable();
    EXPECT_TRUE(AddPictureColors(*surface_of(2, 2, {red, red, red, red})));
    EXPECT_EQ(ColorCount, 1);
    EXPECT_EQ(table(0), red);
    EXPECT_EQ(table(1), 0);
    TestSurface sheet(1, 1);
    DrawColorTable(sheet);
    EXPECT_EQ(sheet.ScaleWidth(), 512);
    EXPECT_EQ(sheet.ScaleHeight(), 1);
    Colours expected(512, red);
    expected[1] = 0;
    EXPECT_EQ(colours_of(sheet), expected);
    FinalizePalette(sheet);
    EXPECT_EQ(ColorCount, 1) << "black is met at the free entry";
    Colours entries(256, 0);
    entries[0] = red;
    EXPECT_EQ(palette_from(0, 256), entries);
}

TEST_F(MixpalsTest, OneAllBlackPictureLeavesTheTableAndThePaletteEmpty) {
    InitColorTable();
    EXPECT_TRUE(AddPictureColors(*surface_of(2, 1, {0, 0})));
    EXPECT_EQ(ColorCount, 0);
    EXPECT_EQ(table(0), 0);
    TestSurface sheet(1, 1);
    DrawColorTable(sheet);
    EXPECT_EQ(colours_of(sheet), Colours(512, 0));
    FinalizePalette(sheet);
    EXPECT_EQ(ColorCount, 0);
    EXPECT_EQ(palette_from(0, 256), Colours(256, 0));
    EXPECT_EQ(nearest(white), 0);
}

TEST_F(MixpalsTest, ColoursStandInTheOrderOfTheirFirstAppearanceFromTheTopLeftAndBlackIsNeverWritten) {
    InitColorTable();
    AddPictureColors(*surface_of(3, 2, {0, green, red, red, blue, green}));
    AddPictureColors(*surface_of(2, 1, {blue, white}));
    EXPECT_EQ(ColorCount, 4);
    EXPECT_EQ((Colours{table(0), table(1), table(2), table(3), table(4)}),
              (Colours{green, red, blue, white, 0}));
}

TEST_F(MixpalsTest, BlackIsAlwaysInTheMixWhetherAPictureHoldsItOrNot) {
    InitColorTable();
    AddPictureColors(*row_of({red, green}));
    TestSurface sheet(1, 1);
    DrawColorTable(sheet);
    EXPECT_EQ(sheet.Point(0, 0), red);
    EXPECT_EQ(sheet.Point(1, 0), green);
    EXPECT_EQ(sheet.Point(2, 0), 0);
    EXPECT_EQ(sheet.Point(3, 0), red) << "behind the black stands the background, the colour of position 0";
}

TEST_F(MixpalsTest, ATableOfExactly1001ColoursGrowsTo2001Positions) {
    InitColorTable();
    AddPictureColors(*row_of(series(1000)));
    EXPECT_EQ(ColorTable.size(), 1001U);
    AddPictureColors(*row_of(series(1, 5000)));
    EXPECT_EQ(ColorCount, 1001);
    EXPECT_EQ(ColorTable.size(), 2001U);
    EXPECT_EQ(table(1000), 5000);
    EXPECT_EQ(table(1001), 0);
    EXPECT_EQ(table(2000), 0);
    EXPECT_EQ(table(0), 1) << "growing keeps the content";
    AddPictureColors(*row_of(series(1000, 10000)));
    EXPECT_EQ(ColorCount, 2001);
    EXPECT_EQ(ColorTable.size(), 3001U);
}

TEST_F(MixpalsTest, TheSearchOfTheTableIncludesItsLimit) {
    EXPECT_FALSE(SeekColorInTable(0, 0, 0, 5)) << "there is no table yet";
    InitColorTable();
    AddPictureColors(*row_of({red, green}));
    EXPECT_TRUE(SeekColorInTable(0, 255, 0, 1));
    EXPECT_FALSE(SeekColorInTable(0, 255, 0, 0));
    EXPECT_TRUE(SeekColorInTable(255, 0, 0, 0));
    EXPECT_FALSE(SeekColorInTable(255, 0, 0, -1));
    EXPECT_FALSE(SeekColorInTable(0, 0, 0, 1));
    EXPECT_TRUE(SeekColorInTable(0, 0, 0, 2)) << "the free position counts as met";
    EXPECT_FALSE(SeekColorInTable(1, 2, 3, 0x7FFFFFFF)) << "and ends at the upper bound";
}

TEST_F(MixpalsTest, AllThreeChannelsAreCompared) {
    InitColorTable();
    AddPictureColors(*row_of({0x010203, 0x010204, 0x010303, 0x020203, 0x030201}));
    EXPECT_EQ(ColorCount, 5);
    EXPECT_EQ(ColorTable[0], (RGBQUAD{1, 2, 3, 0}));
}

TEST_F(MixpalsTest, EveryRowYields) {
    InitColorTable();
    TestSurface picture(3, 7);
    AddPictureColors(picture);
    EXPECT_EQ(services.yields, 7);
    FinalizePalette(picture);
    EXPECT_EQ(services.yields, 14);
}

TEST_F(MixpalsTest, BeforeTheFirstInitATableHasNoPositions) {
    EXPECT_FAILURE(AddPictureColors(*row_of({red})), SubscriptOutOfRange);
    TestSurface sheet(1, 1);
    EXPECT_FAILURE(DrawColorTable(sheet), SubscriptOutOfRange);
    EXPECT_EQ(sheet.ScaleWidth(), 512) << "the sheet had its size by then";
}

TEST_F(MixpalsTest, AddingAfterAnImportGoesOnBehindThePaletteEntriesThatWereCounted) {
    import({red, green});
    EXPECT_EQ(ColorCount, 2);
    AddPictureColors(*row_of({0, green, green, blue}));
    EXPECT_EQ(ColorCount, 4);
    EXPECT_EQ((Colours{table(0), table(1), table(2), table(3), table(4)}), (Colours{0, 0, green, blue, 0}));
}

// The buffer.

TEST_F(MixpalsTest, TheSizeAloneDecidesWhetherTheBufferIsMadeAnew) {
    EXPECT_EQ(MixInfo.bmWidth, 0);
    EXPECT_TRUE(PrepareMixBits(TestSurface(4, 2)));
    EXPECT_EQ(MixBits.channels(), 4);
    EXPECT_TRUE(PrepareMixBits(TestSurface(4, 2, 24)));
    EXPECT_EQ(MixBits.channels(), 4) << "another depth of the same size changes nothing";
    EXPECT_EQ(MixInfo.bmBitsPixel, 32);
    EXPECT_TRUE(PrepareMixBits(TestSurface(2, 4, 24)));
    EXPECT_EQ(MixBits.channels(), 3);
    EXPECT_TRUE(PrepareMixBits(TestSurface(1, 4, 24)));
    EXPECT_EQ(MixBits.channels(), 4) << "a row of one pixel is padded to 4 bytes";
}

TEST_F(MixpalsTest, A16BitSurfaceIsRefusedTheFirstTimeAndASubscriptFailureTheSecond) {
    InitColorTable();
    TestSurface surface(3, 3, 16);
    EXPECT_FALSE(AddPictureColors(surface));
    EXPECT_EQ(ColorCount, 0);
    EXPECT_EQ(MixBits.channels(), 1);
    EXPECT_EQ(MixInfo.bmWidth, 3);
    EXPECT_FAILURE(AddPictureColors(surface), SubscriptOutOfRange);
    EXPECT_FAILURE(AddPictureColors(*random_surface(3, 3, test::Character::Noise, 1)), SubscriptOutOfRange)
        << "a readable surface of that size meets the small buffer too";
    EXPECT_TRUE(AddPictureColors(*random_surface(2, 3, test::Character::Noise, 1)));
}

TEST_F(MixpalsTest, FinalizingA16BitSurfaceIsASubscriptFailureAtOnce) {
    TestSurface surface(3, 3, 16);
    EXPECT_FAILURE(FinalizePalette(surface), SubscriptOutOfRange);
    EXPECT_EQ(hLookupPalette, nullptr);
    EXPECT_EQ(ColorTable.size(), 1001U);
}

TEST_F(MixpalsTest, OnlyWhoAsksForAnIndexMeetsThatThereIsNoPaletteYet) {
    TestSurface surface(3, 3, 16);
    EXPECT_FAILURE(FinalizePalette(surface), SubscriptOutOfRange);
    const std::vector<std::uint8_t> pixel(4);
    std::vector<std::uint8_t> indices(1);
    EXPECT_FAILURE(nearest_index(0, 0, 0), Overflow);
    EXPECT_FAILURE(nearest_indices(pixel, 4, indices), Overflow);
    nearest_indices({}, 4, {});
}

TEST_F(MixpalsTest, ASurfaceWithoutPixelsMatchesTheBufferAtProgramStart) {
    InitColorTable();
    TestSurface none(0, 0);
    EXPECT_TRUE(AddPictureColors(none));
    EXPECT_EQ(ColorCount, 0);
    TestSurface flat(3, 0);
    EXPECT_FAILURE(AddPictureColors(flat), SubscriptOutOfRange);
    TestSurface thin(0, 3);
    EXPECT_FAILURE(AddPictureColors(thin), DivisionByZero);
}

TEST_F(MixpalsTest, A24BitSurfaceOfOddWidthSkewsByItsPadding) {
    InitColorTable();
    // The second row starts at the padding byte: black, then blue takes the place of red.
    AddPictureColors(*surface_of(3, 2, Colours(6, red), 24));
    EXPECT_EQ(ColorCount, 2);
    EXPECT_EQ(table(0), red);
    EXPECT_EQ(table(1), blue);
}

// The sheet.

TEST_F(MixpalsTest, TheSheetOf514ColoursLosesPositions512And513) {
    InitColorTable();
    AddPictureColors(*row_of(series(514)));
    ASSERT_EQ(ColorCount, 514);
    TestSurface sheet(1, 1);
    DrawColorTable(sheet);
    EXPECT_EQ(sheet.Point(511, 0), table(511));
    EXPECT_EQ(sheet.Point(0, 1), 0) << "position 514, the black behind the last colour";
    const Colours shown = colours_of(sheet);
    EXPECT_EQ(std::ranges::count(shown, table(512)), 0);
    EXPECT_EQ(std::ranges::count(shown, table(513)), 0);
}

TEST_F(MixpalsTest, ARowOfTheSheetTakes514PositionsEverywhere) {
    InitColorTable();
    AddPictureColors(*row_of(series(2000)));
    TestSurface sheet(1, 1);
    DrawColorTable(sheet);
    for (std::int32_t y = 0; y < 3; ++y) {
        for (std::int32_t x = 0; x < 512; ++x) {
            ASSERT_EQ(sheet.Point(x, y), table(static_cast<std::size_t>(514 * y + x))) << x << ", " << y;
        }
    }
    EXPECT_EQ(sheet.Point(2000 - 3 * 514, 3), 0);
    EXPECT_EQ(sheet.Point(2001 - 3 * 514, 3), table(0)) << "what no colour reached is background";
}

TEST_F(MixpalsTest, TheSheetIsTrimmedToOneRowOrToOneMoreThanItsRowsInUse) {
    struct Case {
        std::size_t colours;
        std::int32_t height;
    };

    for (const Case& each :
         {Case{1, 1}, Case{511, 1}, Case{512, 1}, Case{513, 1}, Case{514, 3}, Case{1027, 3}, Case{1028, 4}}) {
        InitColorTable();
        AddPictureColors(*row_of(series(each.colours)));
        TestSurface sheet(700, 700);
        DrawColorTable(sheet);
        EXPECT_EQ(sheet.ScaleWidth(), 512);
        EXPECT_EQ(sheet.ScaleHeight(), each.height) << each.colours;
    }
}

TEST_F(MixpalsTest, WhatTheSheetShowedBeforeIsGone) {
    InitColorTable();
    AddPictureColors(*row_of({red}));
    TestSurface sheet(512, 512);
    sheet.PSet(0, 1, white);
    sheet.PSet(7, 0, white);
    DrawColorTable(sheet);
    EXPECT_EQ(sheet.ScaleHeight(), 1);
    EXPECT_EQ(sheet.Point(7, 0), red);
    EXPECT_EQ(sheet.BackColor(), red);
}

TEST_F(MixpalsTest, PositionsPastRow511OfTheSheetAreLost) {
    constexpr std::int32_t in_use = 512 * 514;
    InitColorTable();
    AddPictureColors(*surface_of(514, 513, series(static_cast<std::size_t>(514 * 513))));
    ASSERT_EQ(ColorCount, in_use + 514);
    TestSurface sheet(1, 1);
    DrawColorTable(sheet);
    EXPECT_EQ(sheet.ScaleHeight(), 512) << "every row is in use, nothing is trimmed";
    EXPECT_EQ(sheet.Point(0, 511), table(511 * 514));
    EXPECT_EQ(sheet.Point(511, 511), table(511 * 514 + 511));
    EXPECT_EQ(sheet.Point(0, 0), table(0));
}

// The palette.

TEST_F(MixpalsTest, ThePaletteTakesTheSheetsColoursInTheOrderOfTheirFirstAppearance) {
    import({green, red, 0, blue});
    EXPECT_EQ(palette_from(0, 5), (Colours{green, red, blue, 0, 0}));
    EXPECT_EQ(ColorCount, 3);
    EXPECT_EQ(ImportPalette[1], (RGBQUAD{0, 0, 255, 0})) << "blue first";
    EXPECT_EQ(ColorTable, std::vector<RGBQUAD>(1001)) << "the table is emptied on the way";
}

TEST_F(MixpalsTest, OnAFirstImportBlackIsMetAtTheFreeEntryAndTheNextNewColourOverwritesIt) {
    FinalizePalette(*row_of({red, 0, green, 0, blue}));
    EXPECT_EQ(palette_from(0, 4), (Colours{red, green, blue, 0}));
    EXPECT_EQ(ColorCount, 3);
}

TEST_F(MixpalsTest, A256ColourSheetFillsThePalette) {
    FinalizePalette(*row_of(series(256)));
    EXPECT_EQ(ColorCount, 256);
    EXPECT_EQ(palette_from(0, 256), series(256));
}

TEST_F(MixpalsTest, A257thColourIsASubscriptFailureThatLeavesTheLookupPaletteAsItWas) {
    import({red});
    EXPECT_FAILURE(FinalizePalette(*row_of(series(257))), SubscriptOutOfRange);
    EXPECT_EQ(palette_from(0, 256), series(256)) << "the first 256 are in by then";
    EXPECT_EQ(ColorCount, 256);
    EXPECT_EQ(nearest(red), 0) << "the search still goes by the import before";
    EXPECT_EQ(nearest(255), 0);
    EXPECT_EQ(nearest(1), 1);
}

TEST_F(MixpalsTest, BlackAsThe257thColourIsAFailureToo) {
    Colours colours = series(256);
    colours.push_back(0);
    EXPECT_FAILURE(FinalizePalette(*row_of(colours)), SubscriptOutOfRange)
        << "behind entry 255 nothing is free";
}

TEST_F(MixpalsTest, ASecondImportWithFewerColoursKeepsTheTailWhichTheSearchCanReturn) {
    import({red, green, blue, white});
    import({0x102030, 0x203040});
    EXPECT_EQ(palette_from(0, 6), (Colours{0x102030, 0x203040, 0, white, 0, 0}))
        << "two colours and the black of the mix, then what the first import left";
    EXPECT_EQ(nearest(white), 3);
    EXPECT_EQ(nearest(red), 1) << "the old red is gone, the new entry of most red is nearest";
}

TEST_F(MixpalsTest, OnALaterImportAColourThatTheFreeEntryStillHoldsCountsAsMetAndIsThenOverwritten) {
    FinalizePalette(*row_of({red, green, blue}));
    FinalizePalette(*row_of({white, green, 0x123456})); // green is met at the free entry 1
    EXPECT_EQ(palette_from(0, 4), (Colours{white, 0x123456, blue, 0}));
    EXPECT_EQ(ColorCount, 2);
    EXPECT_NE(palette(static_cast<std::size_t>(nearest(green))), green) << "green is in no entry any more";
}

TEST_F(MixpalsTest, ThePaletteIsNeverClearedByANewTable) {
    import({red, green});
    InitColorTable();
    EXPECT_EQ(palette(1), green);
    EXPECT_EQ(nearest(green), 1);
}

TEST_F(MixpalsTest, TheSearchOfThePaletteIncludesItsLimitAndEndsAtEntry255) {
    FinalizePalette(*row_of(series(256)));
    EXPECT_TRUE(SeekColorInPalette(1, 0, 0, 0));
    EXPECT_TRUE(SeekColorInPalette(6, 0, 0, 5));
    EXPECT_FALSE(SeekColorInPalette(6, 0, 0, 4));
    EXPECT_FALSE(SeekColorInPalette(1, 0, 0, -1));
    EXPECT_TRUE(SeekColorInPalette(0, 1, 0, 255)) << "colour 256 is at entry 255";
    EXPECT_FALSE(SeekColorInPalette(9, 9, 9, 0x7FFFFFFF));
}

// The transparent colour.

TEST_F(MixpalsTest, AMovedTransparentColourVanishesAndItsPixelsKeepTheirIndex) {
    FinalizePalette(*row_of(series(256)));
    const Colour transparent = palette(10);
    const Colour last = palette(255);
    swap(transparent);
    Colours expected = series(256);
    expected[10] = last;
    EXPECT_EQ(palette_from(0, 256), expected) << "entries 10 and 255 both hold the old last one";
    EXPECT_EQ(nearest(transparent), 10);
    EXPECT_EQ(nearest(last), 255) << "the search goes by the palette before the swap";
}

TEST_F(MixpalsTest, ATransparentColourAtEntry255Stays) {
    FinalizePalette(*row_of(series(256)));
    swap(256);
    EXPECT_EQ(palette_from(0, 256), series(256));
}

TEST_F(MixpalsTest, ATransparentColourThatIsNotInThePaletteChangesNothing) {
    FinalizePalette(*row_of(series(256)));
    swap(white);
    swap(0);
    EXPECT_EQ(palette_from(0, 256), series(256));
}

TEST_F(MixpalsTest, EveryEntryOfTheTransparentColourTakesTheOldLastEntry) {
    FinalizePalette(*row_of(series(256)));
    ImportPalette[10] = ImportPalette[20] = ImportPalette[254] = {0, 0, 255, 0};
    swap(red);
    for (const std::size_t entry : {10U, 20U, 254U, 255U}) {
        EXPECT_EQ(palette(entry), 256) << entry;
    }
    EXPECT_EQ(palette(11), 12);
}

TEST_F(MixpalsTest, ATransparentColourAtAnEntryAndAt255ChangesNothing) {
    FinalizePalette(*row_of(series(256)));
    ImportPalette[10] = ImportPalette[255];
    swap(256);
    EXPECT_EQ(palette(10), 256);
    EXPECT_EQ(palette(255), 256);
}

TEST_F(MixpalsTest, BlackAsTransparentColourWithABlackTailChangesNothingEither) {
    import({red, green});
    const Colours before = palette_from(0, 256);
    swap(0);
    EXPECT_EQ(palette_from(0, 256), before) << "every black entry, 255 among them, is given black";
}

// The search.

TEST_F(MixpalsTest, BeforeAnyImportTheSearchOverflows) {
    EXPECT_FAILURE(nearest_index(0, 0, 0), Overflow);
}

TEST_F(MixpalsTest, AnExactColourGivesTheFirstOfEqualEntries) {
    ImportPalette[3] = ImportPalette[7] = {1, 2, 3, 0};
    MakeLookupPalette();
    EXPECT_EQ(nearest_index(3, 2, 1), 3);
    EXPECT_EQ(nearest_index(0, 0, 0), 0);
}

TEST_F(MixpalsTest, RedAndBlueAreCrossedTwiceAndSoNotAtAll) {
    ImportPalette.fill({128, 128, 128, 0});
    ImportPalette[5] = {0, 0, 200, 0};
    ImportPalette[6] = {200, 0, 0, 0};
    MakeLookupPalette();
    EXPECT_EQ(nearest(red), 5);
    EXPECT_EQ(nearest(blue), 6);
    EXPECT_EQ(hLookupPalette->GetNearestPaletteIndex(blue), 5) << "the platform sees blue in its red place";
}

TEST_F(MixpalsTest, AllEntriesAreSearchedWhateverTheCountSays) {
    ImportPalette[255] = {255, 255, 255, 0};
    ColorCount = 0;
    MakeLookupPalette();
    EXPECT_EQ(nearest(white), 255);
    EXPECT_EQ(hLookupPalette->size(), 256);
}

TEST_F(MixpalsTest, ANewLookupPaletteForgetsTheAnswersOfTheOld) {
    import({red, green});
    EXPECT_EQ(nearest(green), 1);
    import({green, red});
    EXPECT_EQ(nearest(green), 0);
}

TEST_F(MixpalsTest, ChangingThePaletteDoesNotChangeTheAnswersUntilALookupPaletteIsMade) {
    import({red, green});
    ImportPalette[0] = {0, 255, 0, 0};
    EXPECT_EQ(nearest(green), 1);
    MakeLookupPalette();
    EXPECT_EQ(nearest(green), 0);
}

} // namespace
} // namespace varnoth
