// The filters of ProcessPicture1.

#include <gtest/gtest.h>

#include "core/image/ProcessPicture1.h"
#include "support/RecordedServices.h"
#include "support/expect_failure.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

Colour rgb(int red, int green, int blue) {
    return red + 256 * green + 65536 * blue;
}

// The result of a filter on one row of pixels; it must refresh the picture exactly once and return true.
template <typename Filter>
Colours filtered(const Colours& colours, Filter filter) {
    const auto picture = surface_of(static_cast<std::int32_t>(colours.size()), 1, colours);
    int shown = 0;
    picture->on_change = [&] { ++shown; };
    ProcessPicture1 toolbox;
    EXPECT_TRUE(filter(toolbox, *picture));
    EXPECT_EQ(shown, 1);
    return colours_of(*picture);
}

Colours shifted(const Colours& colours, std::int16_t red, std::int16_t green, std::int16_t blue) {
    return filtered(colours, [&](auto& toolbox, auto& picture) {
        return toolbox.Make_ColorShift(picture, red, green, blue);
    });
}

Colours bypassed(const Colours& colours, Colour from, Colour to) {
    return filtered(colours, [&](auto& toolbox, auto& picture) {
        return toolbox.Make_ColorShift_bypass(picture, 10, 20, -30, from, to);
    });
}

Colours greyed(const Colours& colours) {
    return filtered(colours,
                    [](auto& toolbox, auto& picture) { return toolbox.Make_Picture_GreyScale(picture); });
}

Colours greyed_but(const Colours& colours, bool red, bool green, bool blue) {
    return filtered(colours, [&](auto& toolbox, auto& picture) {
        return toolbox.Make_Picture_GreyScale_PureRGB(picture, red, green, blue);
    });
}

Colour grey(int level) {
    return rgb(level, level, level);
}

TEST(PictureFilters, NegativeIs255MinusEachChannel) {
    const auto result = filtered({rgb(0, 1, 2), rgb(255, 128, 100)}, [](auto& toolbox, auto& picture) {
        return toolbox.Make_Picture_Negative(picture);
    });
    EXPECT_EQ(result, (Colours{rgb(255, 254, 253), rgb(0, 127, 155)}));
}

TEST(PictureFilters, FlipVerticalReversesTheRows) {
    const auto picture = surface_of(2, 3, {1, 2, 3, 4, 5, 6});
    EXPECT_TRUE(ProcessPicture1().Flip_Picture_Vertical(*picture));
    EXPECT_EQ(colours_of(*picture), (Colours{5, 6, 3, 4, 1, 2}));
}

TEST(PictureFilters, FlipHorizontalReversesTheColumns) {
    const auto picture = surface_of(3, 2, {1, 2, 3, 4, 5, 6});
    EXPECT_TRUE(ProcessPicture1().Flip_Picture_Horizontal(*picture));
    EXPECT_EQ(colours_of(*picture), (Colours{3, 2, 1, 6, 5, 4}));
}

TEST(PictureFilters, FlippingOneRowOrColumnChangesNothing) {
    const auto row = surface_of(3, 1, {1, 2, 3});
    EXPECT_TRUE(ProcessPicture1().Flip_Picture_Vertical(*row));
    EXPECT_EQ(colours_of(*row), (Colours{1, 2, 3}));
    for (const std::int32_t bits : {24, 32}) {
        const auto column = surface_of(1, 3, {1, 2, 3}, bits);
        EXPECT_TRUE(ProcessPicture1().Flip_Picture_Horizontal(*column));
        EXPECT_EQ(colours_of(*column), (Colours{1, 2, 3}));
    }
}

TEST(PictureFilters, ChannelOrdersNameTheSourcesOfRedGreenAndBlue) {
    const Colours in{rgb(10, 20, 30)};
    EXPECT_EQ(filtered(in, [](auto& t, auto& p) { return t.Change_RGB_to_BGR(p); }),
              Colours{rgb(30, 20, 10)});
    EXPECT_EQ(filtered(in, [](auto& t, auto& p) { return t.Change_RGB_to_BRG(p); }),
              Colours{rgb(30, 10, 20)});
    EXPECT_EQ(filtered(in, [](auto& t, auto& p) { return t.Change_RGB_to_GBR(p); }),
              Colours{rgb(20, 30, 10)});
    EXPECT_EQ(filtered(in, [](auto& t, auto& p) { return t.Change_RGB_to_GRB(p); }),
              Colours{rgb(20, 10, 30)});
    EXPECT_EQ(filtered(in, [](auto& t, auto& p) { return t.Change_RGB_to_RBG(p); }),
              Colours{rgb(10, 30, 20)});
}

TEST(PictureFilters, GreyAddsBlueLastAndRoundsExactHalvesToEven) {
    // All three sums are exact halves: 69.5, 67.5 and 29.5. With blue added first they would be slightly
    // less.
    const Colours halves{rgb(1, 77, 209), rgb(1, 81, 141), rgb(2, 18, 230)};
    EXPECT_EQ(greyed(halves), (Colours{grey(70), grey(68), grey(30)}));
    EXPECT_EQ(greyed_but(halves, true, true, true), (Colours{grey(70), grey(68), grey(30)}));
    // 0.222 * 250 = 55.5, to 56; 0.707 * 0 + 0.071 * 0; and 0.222 * 25 + 0.707 * 50 + 0.071 * 50 = 44.45.
    EXPECT_EQ(greyed({rgb(250, 0, 0), rgb(25, 50, 50)}), (Colours{grey(56), grey(44)}));
}

TEST(PictureFilters, GreyIsTheRoundedWeightedSum) {
    // In thousandths the sums are integers, so the nearest level can be computed exactly.
    Colours colours;
    Colours expected;
    for (int red = 0; red < 256; red += 5) {
        for (int green = 0; green < 256; green += 5) {
            for (int blue = 0; blue < 256; blue += 3) {
                const int thousandths = 222 * red + 707 * green + 71 * blue;
                if (thousandths % 1000 != 500) {
                    colours.push_back(rgb(red, green, blue));
                    expected.push_back(grey((thousandths + 500) / 1000));
                }
            }
        }
    }
    EXPECT_EQ(greyed(colours), expected);
}

TEST(PictureFilters, EachFlagKeepsOnlyItsPureColour) {
    const Colours colours{rgb(255, 0, 0), rgb(0, 255, 0), rgb(0, 0, 255), rgb(254, 0, 0), rgb(255, 255, 0)};
    const Colours plain = greyed(colours);
    EXPECT_EQ(greyed_but(colours, true, false, false),
              (Colours{colours[0], plain[1], plain[2], plain[3], plain[4]}));
    EXPECT_EQ(greyed_but(colours, false, true, false),
              (Colours{plain[0], colours[1], plain[2], plain[3], plain[4]}));
    EXPECT_EQ(greyed_but(colours, false, false, true),
              (Colours{plain[0], plain[1], colours[2], plain[3], plain[4]}));
    EXPECT_EQ(greyed_but(colours, true, true, true),
              (Colours{colours[0], colours[1], colours[2], plain[3], plain[4]}));
}

TEST(PictureFilters, ShiftClampsEachChannelSeparately) {
    EXPECT_EQ(shifted({rgb(10, 20, 30), rgb(250, 1, 5)}, 6, -2, -6),
              (Colours{rgb(16, 18, 24), rgb(255, 0, 0)}));
    EXPECT_EQ(shifted({rgb(10, 20, 30)}, -32768, -10, -32768), (Colours{rgb(0, 10, 0)}));
}

TEST(PictureFilters, ShiftBeyond16BitsOverflowsAndKeepsThePicture) {
    EXPECT_EQ(shifted({rgb(0, 0, 0)}, 32767, 32767, 32767), Colours{rgb(255, 255, 255)});
    const auto picture = surface_of(2, 1, {rgb(5, 5, 5), rgb(5, 1, 5)});
    EXPECT_FAILURE(ProcessPicture1().Make_ColorShift(*picture, 0, 32764, 0), Overflow);
    EXPECT_FAILURE(ProcessPicture1().Make_ColorShift_bypass(*picture, 32764, 0, 0, 1, 2), Overflow);
    EXPECT_EQ(colours_of(*picture), (Colours{rgb(5, 5, 5), rgb(5, 1, 5)}));
}

TEST(PictureFilters, BypassToTheSameColourKeepsItWhileOthersShift) {
    const Colour kept = rgb(1, 2, 3);
    EXPECT_EQ(bypassed({kept, rgb(1, 2, 40), kept}, kept, kept), (Colours{kept, rgb(11, 22, 10), kept}));
}

TEST(PictureFilters, BypassedColourBecomesExactlyTheOther) {
    EXPECT_EQ(bypassed({rgb(1, 2, 3), rgb(250, 250, 10)}, rgb(1, 2, 3), rgb(9, 255, 0)),
              (Colours{rgb(9, 255, 0), rgb(255, 255, 0)}));
}

TEST(PictureFilters, BypassWorksForEveryPlainColour) {
    for (const Colour to : {0, 0xFF, 0x100, 0xFF00, 0xFFFF, 0x10000, 0xFF0000, 0xFFFF00, 0xFFFFFF}) {
        EXPECT_EQ(bypassed({7}, 7, to), Colours{to});
    }
}

TEST(PictureFilters, BypassToANonPlainColourOverflowsIfItIsUsed) {
    const auto picture = surface_of(2, 1, {7, 8});
    for (const Colour bad :
         {0x1000000, -1, -256, -65536, -0x1000000, 0x7FFFFFFF, std::int32_t{-0x7FFFFFFF - 1}}) {
        EXPECT_FAILURE(ProcessPicture1().Make_ColorShift_bypass(*picture, 0, 0, 0, 8, bad), Overflow) << bad;
        EXPECT_EQ(colours_of(*picture), (Colours{7, 8}));
        EXPECT_TRUE(ProcessPicture1().Make_ColorShift_bypass(*picture, 0, 0, 0, 9, bad)) << "never met";
    }
}

TEST(PictureFilters, BlaBlaBrightensAndRemovesTheBlueOfGreys) {
    const auto blabla = [](auto& toolbox, auto& picture) { return toolbox.Make_BlaBla(picture); };
    EXPECT_EQ(filtered({rgb(255, 255, 255), rgb(0, 0, 0), rgb(200, 0, 0)}, blabla),
              (Colours{rgb(255, 255, 0), rgb(50, 50, 0), rgb(250, 50, 50)}));
    EXPECT_EQ(filtered({rgb(205, 206, 204), rgb(100, 100, 100)}, blabla),
              (Colours{rgb(255, 255, 254), rgb(150, 150, 0)}));
}

TEST(PictureFilters, FiltersDoNotYield) {
    RecordedServices services;
    TestSurface picture(4, 4);
    ProcessPicture1 toolbox;
    toolbox.Make_BlaBla(picture);
    toolbox.Flip_Picture_Vertical(picture);
    toolbox.Make_ColorShift_bypass(picture, 1, 1, 1, 2, 3);
    EXPECT_EQ(services.yields, 0);
}

} // namespace
} // namespace varnoth::test
