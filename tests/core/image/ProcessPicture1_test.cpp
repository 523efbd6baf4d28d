// The scans of the toolbox: its colour list, the search in it, and the tests for colour count and greys.
#include "core/image/ProcessPicture1.h"

#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "reference/ProcessPicture1.h"
#include "support/RecordedServices.h"
#include "support/expect_failure.h"
#include "support/lists.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

// A picture 16 pixels wide of the colours first, first + 1, ...; the last one fills the last row.
std::unique_ptr<TestSurface> picture_of_colours(std::int32_t count, Colour first = 1) {
    const std::int32_t height = (count + 15) / 16;
    Colours colours(static_cast<std::size_t>(height) * 16, first + count - 1);
    for (std::int32_t i = 0; i < count; ++i) {
        colours[static_cast<std::size_t>(i)] = first + i;
    }
    return surface_of(16, height, colours);
}

Colours list_of(const ProcessPicture1& toolbox) {
    return {toolbox.ColorList().begin(), toolbox.ColorList().end()};
}

TEST(ProcessPicture1, Only257ColoursWithoutBlackAreMoreThan256) {
    EXPECT_FALSE(ProcessPicture1().is_more_than_256(*picture_of_colours(256)));
    EXPECT_TRUE(ProcessPicture1().is_more_than_256(*picture_of_colours(257)));
}

TEST(ProcessPicture1, BlackTakesNoEntryInANewList) {
    const auto picture = picture_of_colours(257, 0); // black first, then 256 others
    EXPECT_FALSE(ProcessPicture1().is_more_than_256(*picture));
}

TEST(ProcessPicture1, BlackAfterAFullListCountsPerPixel) {
    const auto picture = picture_of_colours(272);
    for (std::int32_t x = 0; x < 16; ++x) {
        picture->PSet(x, 16, 0);
    }
    EXPECT_TRUE(ProcessPicture1().is_more_than_256(*picture));
}

TEST(ProcessPicture1, BlackPictureLeavesTheListEmpty) {
    ProcessPicture1 toolbox;
    EXPECT_FALSE(toolbox.is_more_than_256(TestSurface(3, 3)));
    EXPECT_EQ(list_of(toolbox), Colours(256, 0));
    // Nothing was counted: the next colour gets the first entry.
    toolbox.is_more_than_256(*surface_of(3, 1, {0, 0, 7}));
    EXPECT_EQ(toolbox.ColorList()[0], 7);
}

TEST(ProcessPicture1, ScanSkipsTheStaleColourInTheNextEntry) {
    ProcessPicture1 toolbox;
    toolbox.is_more_than_256(*surface_of(3, 1, {10, 20, 30}));
    // 20 is already in the entry that the second colour would take, so it gets none; 40 then overwrites it.
    toolbox.is_more_than_256(*surface_of(3, 1, {50, 20, 40}));
    EXPECT_EQ((Colours{toolbox.ColorList().begin(), toolbox.ColorList().begin() + 4}),
              (Colours{50, 40, 30, 0}));
}

TEST(ProcessPicture1, StaleEntryHidesOneOf257Colours) {
    ProcessPicture1 toolbox;
    EXPECT_FALSE(toolbox.is_more_than_256(*picture_of_colours(256)));
    const auto picture = picture_of_colours(257, 1000);
    EXPECT_TRUE(ProcessPicture1().is_more_than_256(*picture));
    // Colour 6 is what entry 5 holds from the first picture.
    picture->PSet(5, 0, 6);
    EXPECT_FALSE(toolbox.is_more_than_256(*picture));
}

TEST(ProcessPicture1, TooFewBitsLeaveOneElementInBothBuffers) {
    ProcessPicture1 toolbox;
    EXPECT_FALSE(toolbox.is_greyscale(*surface_of(2, 1, {1, 2})));
    EXPECT_EQ(toolbox.SrcBits().bytes().size(), 8U);
    EXPECT_EQ(toolbox.DstBits().bytes().size(), 8U);
    const TestSurface few(3, 1, 16);
    EXPECT_FALSE(toolbox.is_greyscale(few));
    EXPECT_EQ(toolbox.SrcBits().bytes().size(), 1U);
    EXPECT_EQ(toolbox.DstBits().bytes().size(), 1U);
    EXPECT_EQ(toolbox.SrcInfo().bmWidth, 3);
}

TEST(ProcessPicture1, MissesCountPerPixelWhenTheListIsFull) {
    // One pixel per row: 256 colours, then only one further colour; the scan stops at its fourth pixel.
    Colours colours = series(256, 1);
    colours.resize(300, 5000);
    RecordedServices services;
    EXPECT_TRUE(ProcessPicture1().is_more_than_256(*surface_of(1, 300, colours)));
    EXPECT_EQ(services.yields, 256 + 4);
}

TEST(ProcessPicture1, ScanStopsAt260MissesAndYieldsOncePerRow) {
    RecordedServices services;
    ProcessPicture1().is_more_than_256(*picture_of_colours(16 * 40));
    EXPECT_EQ(services.yields, 17) << "260 misses are reached in the row with pixels 257 to 272";
    services.yields = 0;
    ProcessPicture1().is_more_than_256(*picture_of_colours(256));
    EXPECT_EQ(services.yields, 16);
}

TEST(ProcessPicture1, SearchUpTo300StopsAtEntry255) {
    ProcessPicture1 toolbox;
    Colours list(256, 1);
    list[255] = 9;
    toolbox.set_palette(list);
    EXPECT_TRUE(toolbox.existe_en_pal(9, 300));
    EXPECT_FALSE(toolbox.existe_en_pal(8, 300));
    EXPECT_FALSE(toolbox.existe_en_pal(8, 32767));
}

TEST(ProcessPicture1, SearchUpTo3FindsEntry3ButNotEntry4) {
    ProcessPicture1 toolbox;
    toolbox.set_palette(series(256, 10));
    EXPECT_TRUE(toolbox.existe_en_pal(13, 3));
    EXPECT_FALSE(toolbox.existe_en_pal(14, 3));
}

TEST(ProcessPicture1, SearchUpToLessThan0FindsNothing) {
    EXPECT_FALSE(ProcessPicture1().existe_en_pal(0, -1));
    EXPECT_TRUE(ProcessPicture1().existe_en_pal(0, 0));
}

TEST(ProcessPicture1, MakePalListsColoursInOrderAndKeepsTheRest) {
    ProcessPicture1 toolbox;
    toolbox.init_pal(77);
    EXPECT_TRUE(toolbox.Make_Pal_From_Pic(*surface_of(2, 3, {5, 4, 5, 77, 3, 3})));
    Colours expected(256, 77);
    expected[0] = 5;
    expected[1] = 4;
    expected[2] = 3; // 77 was in the entry about to be filled
    EXPECT_EQ(list_of(toolbox), expected);
}

TEST(ProcessPicture1, MakePalStopsWhenTheListIsFull) {
    ProcessPicture1 toolbox;
    EXPECT_TRUE(toolbox.Make_Pal_From_Pic(*picture_of_colours(300)));
    EXPECT_EQ(list_of(toolbox), series(256, 1));
}

TEST(ProcessPicture1, MakePalDoesNotYield) {
    RecordedServices services;
    ProcessPicture1().Make_Pal_From_Pic(*picture_of_colours(300));
    EXPECT_EQ(services.yields, 0);
}

struct Subject {
    ProcessPicture1 shipped;
    reference::ProcessPicture1 plain;

    void expect_equal(const PictureSurface& picture, bool count) {
        bool shipped_result = false;
        bool plain_result = false;
        const auto shipped_failure = failure_in([&] {
            shipped_result = count ? shipped.is_more_than_256(picture) : shipped.Make_Pal_From_Pic(picture);
        });
        const auto plain_failure = failure_in([&] {
            plain_result = count ? plain.is_more_than_256(picture) : plain.Make_Pal_From_Pic(picture);
        });
        ASSERT_EQ(shipped_failure, plain_failure);
        ASSERT_EQ(shipped_result, plain_result);
        ASSERT_TRUE(std::ranges::equal(shipped.ColorList(), plain.ColorList));
        if (count && !plain_failure) {
            ++(plain_result ? yes : no);
        }
    }

    int yes = 0;
    int no = 0;
};

TEST(ProcessPicture1, ScansMatchTheReferenceForManyPictures) {
    std::mt19937 random(3);
    int yes = 0;
    int no = 0;
    for (std::uint32_t object = 0; object < 400; ++object) {
        Subject subject;
        if (object % 4 == 3) {
            Colours list(256);
            for (Colour& entry : list) {
                entry = static_cast<Colour>(random());
            }
            subject.shipped.set_palette(list);
            std::ranges::copy(list, subject.plain.ColorList.begin());
        }
        // A few sizes and seeds, so that buffers are reused and colours repeat.
        const std::int32_t limit = object < 100 ? 4 : 40;
        for (int i = 0; i < 10; ++i) {
            const auto width =
                static_cast<std::int32_t>(random() % static_cast<std::size_t>(limit)) + (i > 7 ? 0 : 1);
            const auto height =
                static_cast<std::int32_t>(random() % static_cast<std::size_t>(limit)) + (i > 8 ? 0 : 1);
            const std::int32_t depths[] = {32, 32, 32, 24, 24, 16};
            const auto character = all_characters[random() % std::size(all_characters)];
            const auto seed = static_cast<std::uint32_t>(object * 8 + random() % 4);
            TestSurface empty(width, height);
            const auto picture =
                width > 0 ? random_surface(width, height, character, seed, depths[random() % 6]) : nullptr;
            ASSERT_NO_FATAL_FAILURE(subject.expect_equal(picture ? *picture : empty, random() % 3 != 0))
                << "object " << object << " picture " << i << " of " << width << " by " << height;
        }
        yes += subject.yes;
        no += subject.no;
    }
    EXPECT_GT(yes, 300);
    EXPECT_GT(no, 300);
}

TEST(ProcessPicture1, ListChangedDuringAYieldIsSearchedAnew) {
    const auto picture = surface_of(2, 3, {1, 2, 3, 4, 2, 7});
    const Colours changed(256, 7);
    const std::vector<std::function<void(ProcessPicture1&)>> first_changes{
        [](auto&) {},
        [&](auto& toolbox) { toolbox.set_palette(Colours(256, 9)); },
        [&](auto& toolbox) { toolbox.init_pal(9); },
        [&](auto& toolbox) { toolbox.Make_Pal_From_Pic(*picture); },
        [&](auto& toolbox) { toolbox.is_more_than_256(*picture); },
    };
    const std::vector<std::function<void(ProcessPicture1&)>> second_changes{
        [&](auto& toolbox) { toolbox.set_palette(changed); },
        [&](auto& toolbox) { toolbox.init_pal(7); },
    };
    for (const auto& first : first_changes) {
        for (const auto& second : second_changes) {
            ProcessPicture1 toolbox;
            RecordedServices services;
            services.on_yield = [&] {
                if (services.yields == 2) { // before the second row
                    first(toolbox);
                    second(toolbox);
                }
            };
            toolbox.is_more_than_256(*picture);
            EXPECT_EQ(toolbox.ColorList()[4], 2) << "the 2 of the first row is not in the list any more";
        }
    }
}

TEST(ProcessPicture1, BuffersDestroyedDuringAYieldFail) {
    ProcessPicture1 toolbox;
    RecordedServices services;
    services.on_yield = [&] {
        if (services.yields == 2) {
            toolbox.Destroy_TheBits();
        }
    };
    EXPECT_FAILURE(toolbox.is_more_than_256(TestSurface(3, 3)), SubscriptOutOfRange);
}

TEST(ProcessPicture1, GreyIsThreeEqualChannelsInEveryPixel) {
    EXPECT_TRUE(ProcessPicture1().is_greyscale(*surface_of(2, 1, {0x111111, 0xFFFFFF})));
    EXPECT_FALSE(ProcessPicture1().is_greyscale(*surface_of(2, 1, {0x111111, 0x111112})));
    EXPECT_FALSE(ProcessPicture1().is_greyscale(*surface_of(2, 1, {0x111111, 0x121111})));
    EXPECT_FALSE(ProcessPicture1().is_greyscale(*surface_of(1, 1, {0x0000FF})));
}

TEST(ProcessPicture1, GreyScansYieldOncePerRowUpToTheFirstColour) {
    RecordedServices services;
    ProcessPicture1().is_greyscale(*surface_of(1, 4, {0, 0, 5, 0}));
    EXPECT_EQ(services.yields, 3);
    ProcessPicture1().is_greyscale_and_PRGB(*surface_of(1, 4, {0, 0, 0, 0}));
    EXPECT_EQ(services.yields, 7);
}

TEST(ProcessPicture1, PureRedAndGreenPassButPureBlueDoesNot) {
    EXPECT_TRUE(ProcessPicture1().is_greyscale_and_PRGB(*surface_of(3, 1, {0x414141, 0x0000FF, 0x00FF00})));
    EXPECT_FALSE(
        ProcessPicture1().is_greyscale_and_PRGB(*surface_of(4, 1, {0x414141, 0x0000FF, 0x00FF00, 0xFF0000})));
    EXPECT_FALSE(ProcessPicture1().is_greyscale_and_PRGB(*surface_of(1, 1, {0x0000FE})));
    EXPECT_FALSE(ProcessPicture1().is_greyscale_and_PRGB(*surface_of(1, 1, {0x00FF01})));
}

} // namespace
} // namespace varnoth::test
