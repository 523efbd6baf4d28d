// The table of colours, the buffer and the sheet.

#include "core/quantize/MixpalsTest.h"
#include "support/expect_failure.h"
#include "support/lists.h"

namespace varnoth::test {
namespace {

using namespace mixpals; // NOLINT: the module under test

// The table.

TEST_F(MixpalsTest, NewTableHas1001BlackPositions) {
    ColorTable.assign(5, {1, 1, 1, 1});
    ColorCount = 3;
    InitColorTable();
    EXPECT_EQ(ColorCount, 0);
    ASSERT_EQ(ColorTable.size(), 1001U);
    EXPECT_EQ(ColorTable, std::vector<RGBQUAD>(1001));
}

TEST_F(MixpalsTest, PictureOfOneColourGivesASheetOfOneRow) {
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

TEST_F(MixpalsTest, BlackPictureLeavesTableAndPaletteEmpty) {
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

TEST_F(MixpalsTest, ColoursAreInOrderOfAppearanceWithoutBlack) {
    InitColorTable();
    AddPictureColors(*surface_of(3, 2, {0, green, red, red, blue, green}));
    AddPictureColors(*surface_of(2, 1, {blue, white}));
    EXPECT_EQ(ColorCount, 4);
    EXPECT_EQ((Colours{table(0), table(1), table(2), table(3), table(4)}),
              (Colours{green, red, blue, white, 0}));
}

TEST_F(MixpalsTest, TableOf1001ColoursGrowsTo2001Positions) {
    put(series(1000));
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

TEST_F(MixpalsTest, TableSearchIncludesItsLimit) {
    EXPECT_FALSE(SeekColorInTable(0, 0, 0, 5)) << "there is no table yet";
    put({red, green});
    EXPECT_TRUE(SeekColorInTable(0, 255, 0, 1));
    EXPECT_FALSE(SeekColorInTable(0, 255, 0, 0));
    EXPECT_TRUE(SeekColorInTable(255, 0, 0, 0));
    EXPECT_FALSE(SeekColorInTable(255, 0, 0, -1));
    EXPECT_FALSE(SeekColorInTable(0, 0, 0, 1));
    EXPECT_TRUE(SeekColorInTable(0, 0, 0, 2)) << "the free position counts as met";
    EXPECT_FALSE(SeekColorInTable(1, 2, 3, 0x7FFFFFFF)) << "and ends at the upper bound";
}

TEST_F(MixpalsTest, AllThreeChannelsAreCompared) {
    put({0x010203, 0x010204, 0x010303, 0x020203, 0x030201});
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

TEST_F(MixpalsTest, TableEmptiedDuringAYieldGetsLaterRows) {
    const auto picture = surface_of(1, 3, Colours(3, 0x010203));
    InitColorTable();
    services.on_yield = [&] {
        if (services.yields == 3) {
            InitColorTable();
        }
    };
    AddPictureColors(*picture);
    EXPECT_EQ(ColorCount, 1);
    EXPECT_EQ(ColorTable[0], (RGBQUAD{1, 2, 3, 0}));
}

TEST_F(MixpalsTest, BufferReadDuringAYieldIsUsedForLaterRows) {
    const auto picture = surface_of(1, 2, Colours(2, 0x010203));
    const auto other = surface_of(1, 2, Colours(2, 0x040506));
    InitColorTable();
    services.on_yield = [&] {
        if (services.yields == 2) {
            mixpals::ReadMixBits(*other);
        }
    };
    AddPictureColors(*picture);
    EXPECT_EQ(ColorCount, 2);
    EXPECT_EQ(table(1), 0x040506);
}

TEST_F(MixpalsTest, TableBeforeInitHasNoPositions) {
    EXPECT_FAILURE(AddPictureColors(*row_of({red})), SubscriptOutOfRange);
    TestSurface sheet(1, 1);
    EXPECT_FAILURE(DrawColorTable(sheet), SubscriptOutOfRange);
    EXPECT_EQ(sheet.ScaleWidth(), 512) << "the sheet had its size by then";
}

TEST_F(MixpalsTest, AddingAfterAnImportStartsAtItsCount) {
    import({red, green});
    EXPECT_EQ(ColorCount, 2);
    AddPictureColors(*row_of({0, green, green, blue}));
    EXPECT_EQ(ColorCount, 4);
    EXPECT_EQ((Colours{table(0), table(1), table(2), table(3), table(4)}), (Colours{0, 0, green, blue, 0}));
}

// The buffer.

TEST_F(MixpalsTest, BufferIsResizedForAnotherSizeOnly) {
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

TEST_F(MixpalsTest, Surface16BitIsRefusedThenFails) {
    InitColorTable();
    TestSurface surface(3, 3, 16);
    EXPECT_FALSE(AddPictureColors(surface));
    EXPECT_EQ(ColorCount, 0);
    EXPECT_EQ(MixBits.channels(), 1);
    EXPECT_EQ(MixInfo.bmWidth, 3);
    EXPECT_FAILURE(AddPictureColors(surface), SubscriptOutOfRange);
    EXPECT_FAILURE(AddPictureColors(*random_surface(3, 3, Character::Noise, 1)), SubscriptOutOfRange)
        << "a readable surface of that size meets the small buffer too";
    EXPECT_TRUE(AddPictureColors(*random_surface(2, 3, Character::Noise, 1)));
}

TEST_F(MixpalsTest, FinalizingASurface16BitFails) {
    TestSurface surface(3, 3, 16);
    EXPECT_FAILURE(FinalizePalette(surface), SubscriptOutOfRange);
    EXPECT_EQ(hLookupPalette, nullptr);
    EXPECT_EQ(ColorTable.size(), 1001U);
}

TEST_F(MixpalsTest, IndexWithoutAPaletteOverflows) {
    TestSurface surface(3, 3, 16);
    EXPECT_FAILURE(FinalizePalette(surface), SubscriptOutOfRange);
    const Bytes pixel(4);
    Bytes indices(1);
    EXPECT_FAILURE(nearest_index(0, 0, 0), Overflow);
    EXPECT_FAILURE(nearest_indices(pixel, 4, indices), Overflow);
    nearest_indices({}, 4, {});
}

TEST_F(MixpalsTest, SurfaceWithoutPixelsMatchesTheEmptyBuffer) {
    InitColorTable();
    TestSurface none(0, 0);
    EXPECT_TRUE(AddPictureColors(none));
    EXPECT_EQ(ColorCount, 0);
    TestSurface flat(3, 0);
    EXPECT_FAILURE(AddPictureColors(flat), SubscriptOutOfRange);
    TestSurface thin(0, 3);
    EXPECT_FAILURE(AddPictureColors(thin), DivisionByZero);
    EXPECT_TRUE(AddPictureColors(thin)) << "its size is remembered, and no pixel could fail";
}

TEST_F(MixpalsTest, Surface24BitOfOddWidthIsSkewedByPadding) {
    InitColorTable();
    // The second row starts at the padding byte: black, then blue takes the place of red.
    AddPictureColors(*surface_of(3, 2, Colours(6, red), 24));
    EXPECT_EQ(ColorCount, 2);
    EXPECT_EQ(table(0), red);
    EXPECT_EQ(table(1), blue);
}

// The sheet.

TEST_F(MixpalsTest, EverySheetRowConsumes514Positions) {
    put(series(2000));
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

TEST_F(MixpalsTest, SheetIsTrimmedAfterItsRowsInUse) {
    struct Case {
        std::size_t colours;
        std::int32_t height;
    };

    for (const Case& each :
         {Case{1, 1}, Case{511, 1}, Case{512, 1}, Case{513, 1}, Case{514, 3}, Case{1027, 3}, Case{1028, 4}}) {
        put(series(each.colours));
        TestSurface sheet(700, 700);
        DrawColorTable(sheet);
        EXPECT_EQ(sheet.ScaleWidth(), 512);
        EXPECT_EQ(sheet.ScaleHeight(), each.height) << each.colours;
    }
}

TEST_F(MixpalsTest, SheetIsClearedBeforeDrawing) {
    put({red});
    TestSurface sheet(512, 512);
    sheet.PSet(0, 1, white);
    sheet.PSet(7, 0, white);
    DrawColorTable(sheet);
    EXPECT_EQ(sheet.ScaleHeight(), 1);
    EXPECT_EQ(sheet.Point(7, 0), red);
    EXPECT_EQ(sheet.BackColor(), red);
}

TEST_F(MixpalsTest, PositionsBeyondSheetRow511AreLost) {
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

} // namespace
} // namespace varnoth::test
