// Properties common to all operations of the toolbox, its copy, and access to its colour list.
#include "core/image/ProcessPicture1.h"

#include <algorithm>
#include <functional>
#include <random>

#include <gtest/gtest.h>

#include "support/expect_failure.h"
#include "support/lists.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

TEST(ProcessPicture1, SameSizeDoesNotReadTheDescriptionAgain) {
    ProcessPicture1 toolbox;
    EXPECT_EQ(toolbox.SrcInfo().bmWidth, -1);
    EXPECT_EQ(toolbox.SrcInfo().bmHeight, -1);
    toolbox.is_greyscale(TestSurface(4, 2, 32));
    EXPECT_EQ(toolbox.SrcInfo().bmBitsPixel, 32);
    // 24 bits of the same size: the depth is not checked again.
    toolbox.is_greyscale(TestSurface(4, 2, 24));
    EXPECT_EQ(toolbox.SrcInfo().bmBitsPixel, 32);
    EXPECT_EQ(toolbox.SrcBits().channels(), 4);
    // Then even 16 bits are accepted.
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

TEST(ProcessPicture1, Picture16BitIsRejectedByEveryOperation) {
    for (std::size_t i = 0; i < all_operations().size(); ++i) {
        const auto picture = surface_of(2, 1, {0x0000FF, 0xFFFFFF}, 16);
        int shown = 0;
        picture->on_change = [&] { ++shown; };
        ProcessPicture1 toolbox;
        EXPECT_FALSE(all_operations()[i](toolbox, *picture)) << i;
        EXPECT_EQ(colours_of(*picture), (Colours{0x0000FF, 0xFFFFFF})) << i;
        EXPECT_EQ(shown, 0) << i;
        EXPECT_EQ(toolbox.SrcInfo().bmWidth, 2) << "the size is remembered all the same";
    }
}

TEST(ProcessPicture1, PictureOfTheRejectedSizeIsASubscriptFailure) {
    for (std::size_t i = 0; i < all_operations().size(); ++i) {
        ProcessPicture1 toolbox;
        TestSurface refused(2, 2, 16);
        const auto picture = surface_of(2, 2, {1, 2, 3, 4});
        EXPECT_FALSE(all_operations()[i](toolbox, refused));
        EXPECT_FAILURE(all_operations()[i](toolbox, *picture), SubscriptOutOfRange) << i;
        EXPECT_EQ(colours_of(*picture), (Colours{1, 2, 3, 4})) << i;
        TestSurface other_size(3, 2);
        EXPECT_NO_THROW(all_operations()[i](toolbox, other_size)) << i;
    }
}

TEST(ProcessPicture1, OnlyAnotherSizeWorksAfterDestroyTheBits) {
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

TEST(ProcessPicture1, PictureWithoutWidthOrHeightIsAFailure) {
    for (std::size_t i = 0; i < all_operations().size(); ++i) {
        TestSurface no_width(0, 3);
        TestSurface no_height(3, 0);
        ProcessPicture1 toolbox;
        EXPECT_FAILURE(all_operations()[i](toolbox, no_width), DivisionByZero) << i;
        EXPECT_FAILURE(all_operations()[i](toolbox, no_height), SubscriptOutOfRange) << i;
        // Its size is remembered; the second time there is no pixel that could fail.
        EXPECT_NO_THROW(all_operations()[i](toolbox, no_height)) << i;
    }
}

TEST(ProcessPicture1, EveryOperationHandlesMixedSizesAndDepths) {
    std::mt19937 random(9);
    ProcessPicture1 toolbox;
    for (int i = 0; i < 3000; ++i) {
        const std::int32_t depths[] = {16, 24, 32};
        TestSurface picture(static_cast<std::int32_t>(random() % 4), static_cast<std::int32_t>(random() % 4),
                            depths[random() % 3]);
        picture.ScaleMode = random() % 5 == 0 ? ScaleTwips : ScalePixels;
        const auto failure =
            failure_in([&] { all_operations()[random() % all_operations().size()](toolbox, picture); });
        if (failure) {
            ASSERT_TRUE(*failure == Failure::SubscriptOutOfRange || *failure == Failure::DivisionByZero);
        }
        if (random() % 50 == 0) {
            toolbox.Destroy_TheBits();
        }
    }
}

TEST(ProcessPicture1, CopyBetweenDifferentSizesFailsWithoutAChange) {
    const auto from = surface_of(2, 1, {1, 2});
    const auto wider = surface_of(3, 1, {7, 8, 9});
    const auto higher = surface_of(2, 2, {7, 8, 9, 10});
    ProcessPicture1 toolbox;
    EXPECT_FALSE(toolbox.Copy_Picture(*from, *wider));
    EXPECT_FALSE(toolbox.Copy_Picture(*from, *higher));
    EXPECT_EQ(colours_of(*wider), (Colours{7, 8, 9}));
    EXPECT_EQ(colours_of(*higher), (Colours{7, 8, 9, 10}));
    EXPECT_EQ(toolbox.SrcInfo().bmWidth, -1) << "nothing was prepared";
}

TEST(ProcessPicture1, CopyCopiesTheColoursAndRefreshes) {
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

TEST(ProcessPicture1, CopyAt24BitsAndOddWidthLosesTheLastBytes) {
    const auto from = surface_of(3, 2, {0x010101, 0x020202, 0x030303, 0x040404, 0x050505, 0x060606}, 24);
    TestSurface to(3, 2, 24);
    EXPECT_TRUE(ProcessPicture1().Copy_Picture(*from, to));
    EXPECT_EQ(colours_of(to), (Colours{0x010101, 0x020202, 0x030303, 0x040404, 0x050505, 0x060600}))
        << "the red of the last pixel";
}

TEST(ProcessPicture1, FourthByteOfAPixelIs0) {
    for (std::size_t i = 0; i < all_operations().size(); ++i) {
        TestSurface picture(2, 1);
        picture.SetBitmapBits(Bytes{1, 2, 3, 99, 4, 5, 6, 99});
        ProcessPicture1 toolbox;
        all_operations()[i](toolbox, picture);
        EXPECT_EQ(toolbox.SrcBits().at(3, 1, 0), 99);
        EXPECT_EQ(toolbox.DstBits().at(3, 0, 0), 0) << i;
        EXPECT_EQ(toolbox.DstBits().at(3, 1, 0), 0) << i;
    }
}

TEST(ProcessPicture1, PaletteRoundTrips) {
    ProcessPicture1 toolbox;
    toolbox.set_palette(series(256, -5));
    Colours out(300, 1);
    toolbox.get_palette(out);
    EXPECT_EQ((Colours{out.begin(), out.begin() + 256}), series(256, -5));
    EXPECT_EQ(out[256], 1);
}

TEST(ProcessPicture1, TooShortArrayFailsAfterItsEntriesAreCopied) {
    ProcessPicture1 toolbox;
    toolbox.init_pal(3);
    Colours few(255, 1);
    EXPECT_FAILURE(toolbox.get_palette(few), SubscriptOutOfRange);
    EXPECT_EQ(few, Colours(255, 3));
    EXPECT_FAILURE(toolbox.set_palette(Colours{8, 9}), SubscriptOutOfRange);
    EXPECT_EQ(toolbox.ColorList()[0], 8);
    EXPECT_EQ(toolbox.ColorList()[1], 9);
    EXPECT_EQ(toolbox.ColorList()[2], 3);
    EXPECT_FAILURE(toolbox.get_palette({}), SubscriptOutOfRange);
}

TEST(ProcessPicture1, InitPalSetsAllEntries) {
    ProcessPicture1 toolbox;
    toolbox.init_pal(0x123456);
    EXPECT_TRUE(std::ranges::equal(toolbox.ColorList(), Colours(256, 0x123456)));
}

TEST(ProcessPicture1, PaletteIsDrawnAs16By16CellsOf10Pixels) {
    ProcessPicture1 toolbox;
    toolbox.set_palette(series(256, 1));
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
} // namespace varnoth::test
