// The palette that the sheet becomes, the transparent colour in it, and the search of it.

#include "core/quantize/MixpalsTest.h"
#include "support/expect_failure.h"
#include "support/lists.h"

namespace varnoth::test {
namespace {

using namespace mixpals; // NOLINT: the module under test

// The palette.

TEST_F(MixpalsTest, PaletteHasTheSheetsColoursInOrder) {
    import({green, red, 0, blue});
    EXPECT_EQ(palette_from(0, 5), (Colours{green, red, blue, 0, 0}));
    EXPECT_EQ(ColorCount, 3);
    EXPECT_EQ(ImportPalette[1], (RGBQUAD{0, 0, 255, 0})) << "blue first";
    EXPECT_EQ(ColorTable, std::vector<RGBQUAD>(1001)) << "the table is emptied on the way";
}

TEST_F(MixpalsTest, BlackGetsNoEntryInAFirstImport) {
    FinalizePalette(*row_of({red, 0, green, 0, blue}));
    EXPECT_EQ(palette_from(0, 4), (Colours{red, green, blue, 0}));
    EXPECT_EQ(ColorCount, 3);
}

TEST_F(MixpalsTest, SheetOf256ColoursFillsThePalette) {
    FinalizePalette(*row_of(series(256)));
    EXPECT_EQ(ColorCount, 256);
    EXPECT_EQ(palette_from(0, 256), series(256));
}

TEST_F(MixpalsTest, Colour257FailsAndKeepsTheLookupPalette) {
    import({red});
    EXPECT_FAILURE(FinalizePalette(*row_of(series(257))), SubscriptOutOfRange);
    EXPECT_EQ(palette_from(0, 256), series(256)) << "the first 256 are in by then";
    EXPECT_EQ(ColorCount, 256);
    EXPECT_EQ(nearest(red), 0) << "the search still goes by the import before";
    EXPECT_EQ(nearest(255), 0);
    EXPECT_EQ(nearest(1), 1);
}

TEST_F(MixpalsTest, BlackAsColour257Fails) {
    Colours colours = series(256);
    colours.push_back(0);
    EXPECT_FAILURE(FinalizePalette(*row_of(colours)), SubscriptOutOfRange)
        << "behind entry 255 nothing is free";
}

TEST_F(MixpalsTest, SecondImportKeepsThePaletteTail) {
    import({red, green, blue, white});
    import({0x102030, 0x203040});
    EXPECT_EQ(palette_from(0, 6), (Colours{0x102030, 0x203040, 0, white, 0, 0}))
        << "two colours and the black of the mix, then what the first import left";
    EXPECT_EQ(nearest(white), 3);
    EXPECT_EQ(nearest(red), 1) << "the old red is gone, the new entry of most red is nearest";
}

TEST_F(MixpalsTest, StaleColourInTheNextEntryIsOverwritten) {
    FinalizePalette(*row_of({red, green, blue}));
    FinalizePalette(*row_of({white, green, 0x123456})); // green is met at the free entry 1
    EXPECT_EQ(palette_from(0, 4), (Colours{white, 0x123456, blue, 0}));
    EXPECT_EQ(ColorCount, 2);
    EXPECT_NE(palette(static_cast<std::size_t>(nearest(green))), green) << "green is in no entry any more";
}

TEST_F(MixpalsTest, NewTableKeepsThePalette) {
    import({red, green});
    InitColorTable();
    EXPECT_EQ(palette(1), green);
    EXPECT_EQ(nearest(green), 1);
}

TEST_F(MixpalsTest, PaletteSearchIncludesItsLimitUpTo255) {
    FinalizePalette(*row_of(series(256)));
    EXPECT_TRUE(SeekColorInPalette(1, 0, 0, 0));
    EXPECT_TRUE(SeekColorInPalette(6, 0, 0, 5));
    EXPECT_FALSE(SeekColorInPalette(6, 0, 0, 4));
    EXPECT_FALSE(SeekColorInPalette(1, 0, 0, -1));
    EXPECT_TRUE(SeekColorInPalette(0, 1, 0, 255)) << "colour 256 is at entry 255";
    EXPECT_FALSE(SeekColorInPalette(9, 9, 9, 0x7FFFFFFF));
}

// The transparent colour.

TEST_F(MixpalsTest, MovedTransparentColourKeepsItsIndex) {
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

TEST_F(MixpalsTest, TransparentColourAt255OrUnknownChangesNothing) {
    FinalizePalette(*row_of(series(256)));
    for (const Colour colour : {256, white, 0}) {
        swap(colour);
        EXPECT_EQ(palette_from(0, 256), series(256)) << colour;
    }
}

TEST_F(MixpalsTest, EveryTransparentEntryGetsTheOldLastEntry) {
    FinalizePalette(*row_of(series(256)));
    ImportPalette[10] = ImportPalette[20] = ImportPalette[254] = {0, 0, 255, 0};
    swap(red);
    for (const std::size_t entry : {10U, 20U, 254U, 255U}) {
        EXPECT_EQ(palette(entry), 256) << entry;
    }
    EXPECT_EQ(palette(11), 12);
}

TEST_F(MixpalsTest, TransparentColourAlsoAt255ChangesNothing) {
    FinalizePalette(*row_of(series(256)));
    ImportPalette[10] = ImportPalette[255];
    swap(256);
    EXPECT_EQ(palette(10), 256);
    EXPECT_EQ(palette(255), 256);
}

TEST_F(MixpalsTest, BlackBeforeABlackTailChangesNothing) {
    import({red, green});
    const Colours before = palette_from(0, 256);
    swap(0);
    EXPECT_EQ(palette_from(0, 256), before) << "every black entry, 255 among them, is given black";
}

// The search.

TEST_F(MixpalsTest, ExactColourGivesTheFirstOfEqualEntries) {
    ImportPalette[3] = ImportPalette[7] = {1, 2, 3, 0};
    MakeLookupPalette();
    EXPECT_EQ(nearest_index(3, 2, 1), 3);
    EXPECT_EQ(nearest_index(0, 0, 0), 0);
}

TEST_F(MixpalsTest, RedAndBlueAreSwappedTwice) {
    ImportPalette.fill({128, 128, 128, 0});
    ImportPalette[5] = {0, 0, 200, 0};
    ImportPalette[6] = {200, 0, 0, 0};
    MakeLookupPalette();
    EXPECT_EQ(nearest(red), 5);
    EXPECT_EQ(nearest(blue), 6);
    EXPECT_EQ(hLookupPalette->GetNearestPaletteIndex(blue), 5) << "the platform sees blue in its red place";
}

TEST_F(MixpalsTest, SearchIgnoresTheColourCount) {
    ImportPalette[255] = {255, 255, 255, 0};
    ColorCount = 0;
    MakeLookupPalette();
    EXPECT_EQ(nearest(white), 255);
    EXPECT_EQ(hLookupPalette->size(), 256);
}

TEST_F(MixpalsTest, NewLookupPaletteDiscardsCachedAnswers) {
    import({red, green});
    EXPECT_EQ(nearest(green), 1);
    import({green, red});
    EXPECT_EQ(nearest(green), 0);
}

TEST_F(MixpalsTest, SearchUsesThePaletteOfTheLookup) {
    import({red, green});
    ImportPalette[0] = {0, 255, 0, 0};
    EXPECT_EQ(nearest(green), 1);
    MakeLookupPalette();
    EXPECT_EQ(nearest(green), 0);
}

} // namespace
} // namespace varnoth::test
