#include "pictures/ProcessPicture1.h"

#include <algorithm>
#include <functional>
#include <random>

#include <gtest/gtest.h>

#include "reference/ProcessPicture1.h"
#include "support/RecordedServices.h"
#include "support/expect_failure.h"
#include "support/pictures.h"

namespace varnoth {
namespace {

using test::colours_of;
using test::surface_of;
using test::TestSurface;

// Colours first, first + 1, ..., in a picture 16 pixels wide, the last row filled with the last of them.
std::unique_ptr<TestSurface> picture_of_colours(std::int32_t count, Colour first = 1) {
    const std::int32_t height = (count + 15) / 16;
    std::vector<Colour> colours(static_cast<std::size_t>(height) * 16, first + count - 1);
    for (std::int32_t i = 0; i < count; ++i) {
        colours[static_cast<std::size_t>(i)] = first + i;
    }
    return surface_of(16, height, colours);
}

std::vector<Colour> list_of(const ProcessPicture1& toolbox) {
    return {toolbox.ColorList().begin(), toolbox.ColorList().end()};
}

std::vector<Colour> counted(Colour first, std::size_t count) {
    std::vector<Colour> colours(count);
    for (std::size_t i = 0; i < count; ++i) {
        colours[i] = first + static_cast<Colour>(i);
    }
    return colours;
}

TEST(ProcessPicture1, A256ColoursWithoutBlackAreNotMoreThan256AndOneMoreIs) {
    EXPECT_FALSE(ProcessPicture1().is_more_than_256(*picture_of_colours(256)));
    EXPECT_TRUE(ProcessPicture1().is_more_than_256(*picture_of_colours(257)));
}

TEST(ProcessPicture1, BlackBeforeTheListIsFullTakesNoPlaceInANewObject) {
    const auto picture = picture_of_colours(257, 0); // black first, then 256 others
    EXPECT_FALSE(ProcessPicture1().is_more_than_256(*picture));
}

TEST(ProcessPicture1, BlackBehindAFullListCountsAtEachPixel) {
    const auto picture = picture_of_colours(272);
    for (std::int32_t x = 0; x < 16; ++x) {
        picture->PSet(x, 16, 0);
    }
    EXPECT_TRUE(ProcessPicture1().is_more_than_256(*picture));
}

TEST(ProcessPicture1, AOneColourBlackPictureLeavesTheListAllZeroAndEmpty) {
    ProcessPicture1 toolbox;
    EXPECT_FALSE(toolbox.is_more_than_256(TestSurface(3, 3)));
    EXPECT_EQ(list_of(toolbox), std::vector<Colour>(256, 0));
    // Nothing was counted: the next colour takes the first place.
    toolbox.is_more_than_256(*surface_of(3, 1, {0, 0, 7}));
    EXPECT_EQ(toolbox.ColorList()[0], 7);
}

TEST(ProcessPicture1, ALaterScanSkipsTheColourThatAnEarlierOneLeftInTheEntryAboutToBeFilled) {
    ProcessPicture1 toolbox;
    toolbox.is_more_than_256(*surface_of(3, 1, {10, 20, 30}));
    // 20 stands in the entry that the second colour would take, so it takes none; 40 then overwrites it.
    toolbox.is_more_than_256(*surface_of(3, 1, {50, 20, 40}));
    EXPECT_EQ((std::vector<Colour>{toolbox.ColorList().begin(), toolbox.ColorList().begin() + 4}),
              (std::vector<Colour>{50, 40, 30, 0}));
}

TEST(ProcessPicture1, AStaleEntryLetsAPictureOf257ColoursPassForSmall) {
    ProcessPicture1 toolbox;
    EXPECT_FALSE(toolbox.is_more_than_256(*picture_of_colours(256)));
    const auto picture = picture_of_colours(257, 1000);
    EXPECT_TRUE(ProcessPicture1().is_more_than_256(*picture));
    // Colour 6 is what entry 5 holds from the first picture.
    picture->PSet(5, 0, 6);
    EXPECT_FALSE(toolbox.is_more_than_256(*picture));
}

TEST(ProcessPicture1, APictureOfTooFewBitsLeavesOneElementInBothBuffers) {
    ProcessPicture1 toolbox;
    EXPECT_FALSE(toolbox.is_greyscale(*surface_of(2, 1, {1, 2})));
    EXPECT_EQ(toolbox.SrcBits().bytes().size(), 8U);
    EXPECT_EQ(toolbox.DstBits().bytes().size(), 8U);
    const test::TestSurface few(3, 1, 16);
    EXPECT_FALSE(toolbox.is_greyscale(few));
    EXPECT_EQ(toolbox.SrcBits().bytes().size(), 1U);
    EXPECT_EQ(toolbox.DstBits().bytes().size(), 1U);
    EXPECT_EQ(toolbox.SrcInfo().bmWidth, 3);
}

TEST(ProcessPicture1, MissesCountPerPixelOnceTheListIsFull) {
    // One pixel a row: 256 colours, then nothing but one further colour, at whose fourth pixel the scan
    // stops.
    std::vector<Colour> colours = counted(1, 256);
    colours.resize(300, 5000);
    test::RecordedServices services;
    EXPECT_TRUE(ProcessPicture1().is_more_than_256(*surface_of(1, 300, colours)));
    EXPECT_EQ(services.yields, 256 + 4);
}

TEST(ProcessPicture1, TheScanStopsAt260MissesAndYieldsOnceForEachRowItBegins) {
    test::RecordedServices services;
    ProcessPicture1().is_more_than_256(*picture_of_colours(16 * 40));
    EXPECT_EQ(services.yields, 17) << "260 misses are reached in the row with pixels 257 to 272";
    services.yields = 0;
    ProcessPicture1().is_more_than_256(*picture_of_colours(256));
    EXPECT_EQ(services.yields, 16);
}

TEST(ProcessPicture1, ASearchUpTo300StopsAtEntry255) {
    ProcessPicture1 toolbox;
    std::vector<Colour> list(256, 1);
    list[255] = 9;
    toolbox.set_palette(list);
    EXPECT_TRUE(toolbox.existe_en_pal(9, 300));
    EXPECT_FALSE(toolbox.existe_en_pal(8, 300));
    EXPECT_FALSE(toolbox.existe_en_pal(8, 32767));
}

TEST(ProcessPicture1, ASearchUpTo3FindsEntry3AndNotEntry4) {
    ProcessPicture1 toolbox;
    toolbox.set_palette(counted(10, 256));
    EXPECT_TRUE(toolbox.existe_en_pal(13, 3));
    EXPECT_FALSE(toolbox.existe_en_pal(14, 3));
}

TEST(ProcessPicture1, ASearchUpToLessThan0FindsNothing) {
    EXPECT_FALSE(ProcessPicture1().existe_en_pal(0, -1));
    EXPECT_TRUE(ProcessPicture1().existe_en_pal(0, 0));
}

TEST(ProcessPicture1, MakePalListsColoursInOrderOfAppearanceAndKeepsTheRest) {
    ProcessPicture1 toolbox;
    toolbox.init_pal(77);
    EXPECT_TRUE(toolbox.Make_Pal_From_Pic(*surface_of(2, 3, {5, 4, 5, 77, 3, 3})));
    std::vector<Colour> expected(256, 77);
    expected[0] = 5;
    expected[1] = 4;
    expected[2] = 3; // 77 stood in the entry about to be filled
    EXPECT_EQ(list_of(toolbox), expected);
}

TEST(ProcessPicture1, MakePalStopsWhenTheListIsFull) {
    ProcessPicture1 toolbox;
    EXPECT_TRUE(toolbox.Make_Pal_From_Pic(*picture_of_colours(300)));
    EXPECT_EQ(list_of(toolbox), counted(1, 256));
}

TEST(ProcessPicture1, MakePalDoesNotYield) {
    test::RecordedServices services;
    ProcessPicture1().Make_Pal_From_Pic(*picture_of_colours(300));
    EXPECT_EQ(services.yields, 0);
}

struct Subject {
    ProcessPicture1 shipped;
    reference::ProcessPicture1 plain;

    void expect_equal(const PictureSurface& picture, bool count) {
        bool shipped_result = false;
        bool plain_result = false;
        const auto shipped_failure = test::failure_in([&] {
            shipped_result = count ? shipped.is_more_than_256(picture) : shipped.Make_Pal_From_Pic(picture);
        });
        const auto plain_failure = test::failure_in([&] {
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

TEST(ProcessPicture1, TheScansAlwaysEqualThePlainStepsOnOneObjectForManyPictures) {
    std::mt19937 random(3);
    int yes = 0;
    int no = 0;
    for (std::uint32_t object = 0; object < 400; ++object) {
        Subject subject;
        if (object % 4 == 3) {
            std::vector<Colour> list(256);
            for (Colour& entry : list) {
                entry = static_cast<Colour>(random());
            }
            subject.shipped.set_palette(list);
            std::ranges::copy(list, subject.plain.ColorList.begin());
        }
        // A few sizes and seeds, so that buffers are reused and colours come again.
        const std::int32_t limit = object < 100 ? 4 : 40;
        for (int i = 0; i < 10; ++i) {
            const auto width =
                static_cast<std::int32_t>(random() % static_cast<std::size_t>(limit)) + (i > 7 ? 0 : 1);
            const auto height =
                static_cast<std::int32_t>(random() % static_cast<std::size_t>(limit)) + (i > 8 ? 0 : 1);
            const std::int32_t depths[] = {32, 32, 32, 24, 24, 16};
            const auto character = test::all_characters[random() % std::size(test::all_characters)];
            const auto seed = static_cast<std::uint32_t>(object * 8 + random() % 4);
            TestSurface empty(width, height);
            const auto picture =
                width > 0 ? test::random_surface(width, height, character, seed, depths[random() % 6])
                          : nullptr;
            ASSERT_NO_FATAL_FAILURE(subject.expect_equal(picture ? *picture : empty, random() % 3 != 0))
                << "object " << object << " picture " << i << " of " << width << " by " << height;
        }
        yes += subject.yes;
        no += subject.no;
    }
    EXPECT_GT(yes, 300);
    EXPECT_GT(no, 300);
}

TEST(ProcessPicture1, TheScansEqualThePlainStepsAroundTheLimit) {
    std::mt19937 random(4);
    int yes = 0;
    int no = 0;
    for (std::uint32_t object = 0; object < 60; ++object) {
        Subject subject;
        for (int i = 0; i < 6; ++i) {
            // About 250 to 265 colours, each many times, drawn from one pool so that stale entries come
            // again.
            const std::size_t colours = 250 + random() % 16;
            std::vector<Colour> pixels(60 * 20);
            for (Colour& pixel : pixels) {
                pixel = static_cast<Colour>(random() % colours) * 3;
            }
            ASSERT_NO_FATAL_FAILURE(subject.expect_equal(*surface_of(60, 20, pixels), random() % 4 != 0));
        }
        yes += subject.yes;
        no += subject.no;
    }
    EXPECT_GT(yes, 50);
    EXPECT_GT(no, 50);
}

TEST(ProcessPicture1, AListChangedDuringAYieldIsSearchedAsItIsNow) {
    const auto picture = surface_of(2, 3, {1, 2, 3, 4, 2, 7});
    const std::vector<Colour> changed(256, 7);
    ProcessPicture1 shipped;
    {
        test::RecordedServices services;
        services.on_yield = [&] {
            if (services.yields == 2) { // before the second row
                shipped.set_palette(changed);
            }
        };
        shipped.is_more_than_256(*picture);
    }
    reference::ProcessPicture1 plain;
    {
        test::RecordedServices services;
        services.on_yield = [&] {
            if (services.yields == 4) { // a yield for the row and for each of two pixels stood before
                std::ranges::copy(changed, plain.ColorList.begin());
            }
        };
        plain.is_more_than_256(*picture);
    }
    EXPECT_TRUE(std::ranges::equal(shipped.ColorList(), plain.ColorList));
    EXPECT_EQ(shipped.ColorList()[4], 2) << "the 2 of the first row is not in the list any more";
}

TEST(ProcessPicture1, AListChangedTwiceDuringAYieldIsSearchedAsItIsNowToo) {
    const auto picture = surface_of(2, 3, {1, 2, 3, 4, 2, 7});
    const std::vector<Colour> changed(256, 7);
    const std::vector<std::function<void(ProcessPicture1&)>> first_changes{
        [&](auto& toolbox) { toolbox.set_palette(std::vector<Colour>(256, 9)); },
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
            test::RecordedServices services;
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

TEST(ProcessPicture1, AScanWhoseBuffersGoDuringAYieldIsASubscriptFailure) {
    ProcessPicture1 toolbox;
    test::RecordedServices services;
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

TEST(ProcessPicture1, GreyScansYieldOnceForEachRowUpToTheFirstColour) {
    test::RecordedServices services;
    ProcessPicture1().is_greyscale(*surface_of(1, 4, {0, 0, 5, 0}));
    EXPECT_EQ(services.yields, 3);
    ProcessPicture1().is_greyscale_and_PRGB(*surface_of(1, 4, {0, 0, 0, 0}));
    EXPECT_EQ(services.yields, 7);
}

TEST(ProcessPicture1, GreyPureRedAndPureGreenPassAndOnePureBluePixelDoesNot) {
    EXPECT_TRUE(ProcessPicture1().is_greyscale_and_PRGB(*surface_of(3, 1, {0x414141, 0x0000FF, 0x00FF00})));
    EXPECT_FALSE(
        ProcessPicture1().is_greyscale_and_PRGB(*surface_of(4, 1, {0x414141, 0x0000FF, 0x00FF00, 0xFF0000})));
    EXPECT_FALSE(ProcessPicture1().is_greyscale_and_PRGB(*surface_of(1, 1, {0x0000FE})));
    EXPECT_FALSE(ProcessPicture1().is_greyscale_and_PRGB(*surface_of(1, 1, {0x00FF01})));
}

TEST(ProcessPicture1, TwoOperationsOnSameSizedPicturesDoNotReadTheDescriptionAgain) {
    ProcessPicture1 toolbox;
    EXPECT_EQ(toolbox.SrcInfo().bmWidth, -1);
    EXPECT_EQ(toolbox.SrcInfo().bmHeight, -1);
    toolbox.is_greyscale(TestSurface(4, 2, 32));
    EXPECT_EQ(toolbox.SrcInfo().bmBitsPixel, 32);
    // 24 bits of the same size: the depth is not looked at again.
    toolbox.is_greyscale(TestSurface(4, 2, 24));
    EXPECT_EQ(toolbox.SrcInfo().bmBitsPixel, 32);
    EXPECT_EQ(toolbox.SrcBits().channels(), 4);
    // Even 16 bits pass then.
    EXPECT_TRUE(toolbox.is_greyscale(TestSurface(4, 2, 16)));
    toolbox.is_greyscale(TestSurface(2, 4, 24));
    EXPECT_EQ(toolbox.SrcInfo().bmBitsPixel, 24);
    EXPECT_EQ(toolbox.DstInfo().bmBitsPixel, 24);
}

using Operation = std::function<bool(ProcessPicture1&, PictureSurface&)>;

const std::vector<Operation>& all_operations() {
    static const std::vector<Operation> operations{
        [](auto& toolbox, auto& picture) { return toolbox.Copy_Picture(picture, picture); },
        [](auto& toolbox, auto& picture) { return toolbox.Make_Pal_From_Pic(picture); },
        [](auto& toolbox, auto& picture) { return toolbox.is_more_than_256(picture); },
        [](auto& toolbox, auto& picture) { return toolbox.is_greyscale(picture); },
        [](auto& toolbox, auto& picture) { return toolbox.is_greyscale_and_PRGB(picture); },
        [](auto& toolbox, auto& picture) { return toolbox.Flip_Picture_Vertical(picture); },
        [](auto& toolbox, auto& picture) { return toolbox.Make_Picture_GreyScale(picture); },
        [](auto& toolbox, auto& picture) {
            return toolbox.Make_Picture_GreyScale_PureRGB(picture, true, true, true);
        },
        [](auto& toolbox, auto& picture) { return toolbox.Make_Picture_Negative(picture); },
        [](auto& toolbox, auto& picture) { return toolbox.Flip_Picture_Horizontal(picture); },
        [](auto& toolbox, auto& picture) { return toolbox.Change_RGB_to_BGR(picture); },
        [](auto& toolbox, auto& picture) { return toolbox.Change_RGB_to_BRG(picture); },
        [](auto& toolbox, auto& picture) { return toolbox.Change_RGB_to_GBR(picture); },
        [](auto& toolbox, auto& picture) { return toolbox.Change_RGB_to_GRB(picture); },
        [](auto& toolbox, auto& picture) { return toolbox.Change_RGB_to_RBG(picture); },
        [](auto& toolbox, auto& picture) { return toolbox.Make_ColorShift(picture, 1, 2, 3); },
        [](auto& toolbox, auto& picture) { return toolbox.Make_BlaBla(picture); },
        [](auto& toolbox, auto& picture) { return toolbox.Make_ColorShift_bypass(picture, 1, 2, 3, 4, 5); },
    };
    return operations;
}

TEST(ProcessPicture1, APictureOf16BitsIsFalseForEveryOperationAndStaysAsItWas) {
    for (std::size_t i = 0; i < all_operations().size(); ++i) {
        const auto picture = surface_of(2, 1, {0x0000FF, 0xFFFFFF}, 16);
        int shown = 0;
        picture->on_change = [&] { ++shown; };
        ProcessPicture1 toolbox;
        EXPECT_FALSE(all_operations()[i](toolbox, *picture)) << i;
        EXPECT_EQ(colours_of(*picture), (std::vector<Colour>{0x0000FF, 0xFFFFFF})) << i;
        EXPECT_EQ(shown, 0) << i;
        EXPECT_EQ(toolbox.SrcInfo().bmWidth, 2) << "the size is remembered all the same";
    }
}

TEST(ProcessPicture1, APictureOfTheSizeThatWasRefusedMeetsOneElementAndIsASubscriptFailure) {
    for (std::size_t i = 0; i < all_operations().size(); ++i) {
        ProcessPicture1 toolbox;
        TestSurface refused(2, 2, 16);
        const auto picture = surface_of(2, 2, {1, 2, 3, 4});
        EXPECT_FALSE(all_operations()[i](toolbox, refused));
        EXPECT_FAILURE(all_operations()[i](toolbox, *picture), SubscriptOutOfRange) << i;
        EXPECT_EQ(colours_of(*picture), (std::vector<Colour>{1, 2, 3, 4})) << i;
        TestSurface other_size(3, 2);
        EXPECT_NO_THROW(all_operations()[i](toolbox, other_size)) << i;
    }
}

TEST(ProcessPicture1, AfterTheBitsAreDestroyedOnlyAnotherSizeWorks) {
    for (std::size_t i = 0; i < all_operations().size(); ++i) {
        ProcessPicture1 toolbox;
        TestSurface picture(2, 2);
        TestSurface other_size(2, 3);
        all_operations()[i](toolbox, picture);
        toolbox.Destroy_TheBits();
        EXPECT_EQ(toolbox.SrcInfo().bmWidth, 2);
        EXPECT_EQ(toolbox.DstBits().bytes().size(), 1U);
        EXPECT_FAILURE(all_operations()[i](toolbox, picture), SubscriptOutOfRange) << i;
        EXPECT_NO_THROW(all_operations()[i](toolbox, other_size)) << i;
    }
}

TEST(ProcessPicture1, APictureWithoutWidthOrHeightIsAFailure) {
    for (std::size_t i = 0; i < all_operations().size(); ++i) {
        TestSurface no_width(0, 3);
        TestSurface no_height(3, 0);
        ProcessPicture1 toolbox;
        EXPECT_FAILURE(all_operations()[i](toolbox, no_width), DivisionByZero) << i;
        EXPECT_FAILURE(all_operations()[i](toolbox, no_height), SubscriptOutOfRange) << i;
        // Its size is remembered, and then there is no pixel that could fail.
        EXPECT_NO_THROW(all_operations()[i](toolbox, no_height)) << i;
    }
}

TEST(ProcessPicture1, EveryOperationStandsEveryMixtureOfSizesAndDepths) {
    std::mt19937 random(9);
    ProcessPicture1 toolbox;
    for (int i = 0; i < 3000; ++i) {
        const std::int32_t depths[] = {16, 24, 32};
        TestSurface picture(static_cast<std::int32_t>(random() % 4), static_cast<std::int32_t>(random() % 4),
                            depths[random() % 3]);
        picture.ScaleMode = random() % 5 == 0 ? ScaleTwips : ScalePixels;
        const auto failure =
            test::failure_in([&] { all_operations()[random() % all_operations().size()](toolbox, picture); });
        if (failure) {
            ASSERT_TRUE(*failure == Failure::SubscriptOutOfRange || *failure == Failure::DivisionByZero);
        }
        if (random() % 50 == 0) {
            toolbox.Destroy_TheBits();
        }
    }
}

TEST(ProcessPicture1, CopyBetweenDifferentSizesIsFalseAndChangesNothing) {
    const auto from = surface_of(2, 1, {1, 2});
    const auto wider = surface_of(3, 1, {7, 8, 9});
    const auto higher = surface_of(2, 2, {7, 8, 9, 10});
    ProcessPicture1 toolbox;
    EXPECT_FALSE(toolbox.Copy_Picture(*from, *wider));
    EXPECT_FALSE(toolbox.Copy_Picture(*from, *higher));
    EXPECT_EQ(colours_of(*wider), (std::vector<Colour>{7, 8, 9}));
    EXPECT_EQ(colours_of(*higher), (std::vector<Colour>{7, 8, 9, 10}));
    EXPECT_EQ(toolbox.SrcInfo().bmWidth, -1) << "nothing was prepared";
}

TEST(ProcessPicture1, CopyTakesTheColoursOverAndShowsThem) {
    for (const std::int32_t bits : {24, 32}) {
        const auto from = surface_of(2, 2, {0x010203, 0x040506, 0x070809, 0x0A0B0C}, bits);
        TestSurface to(2, 2, bits);
        int shown = 0;
        to.on_change = [&] { ++shown; };
        EXPECT_TRUE(ProcessPicture1().Copy_Picture(*from, to));
        EXPECT_EQ(colours_of(to), colours_of(*from));
        EXPECT_EQ(shown, 1);
    }
}

TEST(ProcessPicture1, CopyAt24BitsAndOddWidthLosesTheBytesThatTheBufferHasNoPlaceFor) {
    const auto from = surface_of(3, 2, {0x010101, 0x020202, 0x030303, 0x040404, 0x050505, 0x060606}, 24);
    TestSurface to(3, 2, 24);
    EXPECT_TRUE(ProcessPicture1().Copy_Picture(*from, to));
    EXPECT_EQ(colours_of(to),
              (std::vector<Colour>{0x010101, 0x020202, 0x030303, 0x040404, 0x050505, 0x060600}))
        << "the red of the last pixel";
}

TEST(ProcessPicture1, TheFourthByteOfAPixelIsNeverWrittenSoItIs0) {
    for (std::size_t i = 0; i < all_operations().size(); ++i) {
        TestSurface picture(2, 1);
        picture.SetBitmapBits(std::vector<std::uint8_t>{1, 2, 3, 99, 4, 5, 6, 99});
        ProcessPicture1 toolbox;
        all_operations()[i](toolbox, picture);
        EXPECT_EQ(toolbox.SrcBits().at(3, 1, 0), 99);
        EXPECT_EQ(toolbox.DstBits().at(3, 0, 0), 0) << i;
        EXPECT_EQ(toolbox.DstBits().at(3, 1, 0), 0) << i;
    }
}

TEST(ProcessPicture1, ThePaletteGoesOutAndInWhole) {
    ProcessPicture1 toolbox;
    toolbox.set_palette(counted(-5, 256));
    std::vector<Colour> out(300, 1);
    toolbox.get_palette(out);
    EXPECT_EQ((std::vector<Colour>{out.begin(), out.begin() + 256}), counted(-5, 256));
    EXPECT_EQ(out[256], 1);
}

TEST(ProcessPicture1, AnArrayOfFewerThan256FailsBehindItsEndAndTheEntriesBeforeAreCopied) {
    ProcessPicture1 toolbox;
    toolbox.init_pal(3);
    std::vector<Colour> few(255, 1);
    EXPECT_FAILURE(toolbox.get_palette(few), SubscriptOutOfRange);
    EXPECT_EQ(few, std::vector<Colour>(255, 3));
    EXPECT_FAILURE(toolbox.set_palette(std::vector<Colour>{8, 9}), SubscriptOutOfRange);
    EXPECT_EQ(toolbox.ColorList()[0], 8);
    EXPECT_EQ(toolbox.ColorList()[1], 9);
    EXPECT_EQ(toolbox.ColorList()[2], 3);
    EXPECT_FAILURE(toolbox.get_palette({}), SubscriptOutOfRange);
}

TEST(ProcessPicture1, InitPalGivesAllEntriesTheColour) {
    ProcessPicture1 toolbox;
    toolbox.init_pal(0x123456);
    EXPECT_EQ(list_of(toolbox), std::vector<Colour>(256, 0x123456));
}

TEST(ProcessPicture1, ThePaletteIsDrawnAs16By16CellsOf10PixelsAlongRows) {
    ProcessPicture1 toolbox;
    toolbox.set_palette(counted(1, 256));
    TestSurface chart(162, 161, 32, 0, 0xFFFFFF);
    toolbox.DrawThePalette(chart);
    for (std::int32_t y = 0; y < 161; ++y) {
        for (std::int32_t x = 0; x < 162; ++x) {
            const Colour expected = x < 160 && y < 160 ? y / 10 * 16 + x / 10 + 1 : 0xFFFFFF;
            ASSERT_EQ(chart.Point(x, y), expected) << x << ", " << y;
        }
    }
}

} // namespace
} // namespace varnoth
