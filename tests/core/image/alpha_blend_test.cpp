#include "core/image/alpha_blend.h"

#include <limits>

#include <gtest/gtest.h>

#include "support/pictures.h"

namespace varnoth::test {
namespace {

std::uint32_t with_alpha(std::uint8_t alpha) {
    return packed({.SourceConstantAlpha = alpha});
}

TEST(AlphaBlend, FourBytesArePackedFromTheLowest) {
    EXPECT_EQ(packed({1, 2, 3, 4}), 0x04030201U);
    EXPECT_EQ(packed({.SourceConstantAlpha = 255}), 0x00FF0000U);
    EXPECT_EQ(packed({}), 0U);
    EXPECT_EQ(packed({255, 255, 255, 255}), 0xFFFFFFFFU);
}

TEST(AlphaBlend, AllFourBytesFollowTheFormulaAtEveryAlpha) {
    const std::uint8_t values[] = {0, 1, 2, 63, 127, 128, 200, 254, 255};
    for (unsigned alpha = 0; alpha <= 255; ++alpha) {
        for (const std::uint8_t from : values) {
            for (const std::uint8_t onto : values) {
                TestSurface source(1, 1);
                TestSurface target(1, 1);
                std::uint8_t* const above = source.bitmap().row(0);
                std::uint8_t* const below = target.bitmap().row(0);
                for (unsigned byte = 0; byte < 4; ++byte) {
                    above[byte] = static_cast<std::uint8_t>(from ^ (byte * 0x11));
                    below[byte] = static_cast<std::uint8_t>(onto ^ (byte * 0x23));
                }
                const std::vector<unsigned> before(below, below + 4);
                ASSERT_EQ(alpha_blend(target.hDC(), {0, 0, 1, 1}, source.hDC(), 0, 0,
                                      with_alpha(static_cast<std::uint8_t>(alpha))),
                          1);
                for (unsigned byte = 0; byte < 4; ++byte) {
                    ASSERT_EQ(below[byte], (above[byte] * alpha + before[byte] * (255 - alpha) + 127) / 255);
                }
            }
        }
    }
}

TEST(AlphaBlend, OnlyTheThirdByteIsUsed) {
    const auto source = surface_of(1, 1, {0xFFFFFF});
    const auto target = surface_of(1, 1, {0});
    alpha_blend(target->hDC(), {0, 0, 1, 1}, source->hDC(), 0, 0, 0xFF00FFFFU);
    EXPECT_EQ(colours_of(*target), (Colours{0}));
}

TEST(AlphaBlend, BlendIsClippedToBothBitmaps) {
    const auto source = surface_of(2, 2, {1, 2, 3, 4});
    const auto target = surface_of(3, 3, {9, 9, 9, 9, 9, 9, 9, 9, 9});
    alpha_blend(target->hDC(), {2, 2, 5, 5}, source->hDC(), 0, 0, with_alpha(255));
    EXPECT_EQ(colours_of(*target), (Colours{9, 9, 9, 9, 9, 9, 9, 9, 1}));
    alpha_blend(target->hDC(), {-1, -1, 2, 2}, source->hDC(), 0, 0, with_alpha(255));
    EXPECT_EQ(colours_of(*target), (Colours{4, 9, 9, 9, 9, 9, 9, 9, 1}));
    alpha_blend(target->hDC(), {0, 0, 3, 3}, source->hDC(), -1, -1, with_alpha(255));
    EXPECT_EQ(colours_of(*target), (Colours{4, 9, 9, 9, 1, 2, 9, 3, 4}));
    alpha_blend(target->hDC(), {0, 0, 3, 3}, source->hDC(), 1, 1, with_alpha(255));
    EXPECT_EQ(colours_of(*target), (Colours{4, 9, 9, 9, 1, 2, 9, 3, 4}));
}

TEST(AlphaBlend, EmptyRectangleChangesNothing) {
    const auto source = surface_of(1, 1, {1});
    const auto target = surface_of(1, 1, {9});
    for (const Rectangle& to : {Rectangle{0, 0, 0, 1}, Rectangle{0, 0, 1, 0}, Rectangle{0, 0, -1, 1},
                                Rectangle{0, 0, 1, -1}, Rectangle{1, 0, 1, 1}, Rectangle{0, 1, 1, 1}}) {
        EXPECT_EQ(alpha_blend(target->hDC(), to, source->hDC(), 0, 0, with_alpha(255)), 1);
    }
    EXPECT_EQ(colours_of(*target), (Colours{9}));
}

TEST(AlphaBlend, HugeCoordinatesDoNotOverflow) {
    constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    const auto source = surface_of(2, 2, {1, 2, 3, 4});
    const auto target = surface_of(2, 2, {9, 9, 9, 9});
    for (const std::int32_t place : {least, least + 1, most - 1, most}) {
        for (const std::int32_t from : {least, 0, most}) {
            alpha_blend(target->hDC(), {place, place, most, most}, source->hDC(), from, from,
                        with_alpha(255));
            alpha_blend(target->hDC(), {0, 0, least, most}, source->hDC(), from, from, with_alpha(255));
        }
    }
    EXPECT_EQ(colours_of(*target), (Colours{9, 9, 9, 9}));
    alpha_blend(target->hDC(), {-1, 0, most, most}, source->hDC(), -1, 0, with_alpha(255));
    EXPECT_EQ(colours_of(*target), (Colours{1, 2, 3, 4}));
}

TEST(AlphaBlend, ContextWithoutABitmapReturns0) {
    const auto surface = surface_of(1, 1, {9});
    DrawingContext none;
    EXPECT_EQ(alpha_blend(none, {0, 0, 1, 1}, surface->hDC(), 0, 0, with_alpha(255)), 0);
    EXPECT_EQ(alpha_blend(surface->hDC(), {0, 0, 1, 1}, none, 0, 0, with_alpha(255)), 0);
    EXPECT_EQ(colours_of(*surface), (Colours{9}));
}

TEST(AlphaBlend, OtherDepthsBlendTheThreeColours) {
    const auto source = surface_of(1, 1, {0x0000FF});
    TestSurface target(1, 1, 24);
    alpha_blend(target.hDC(), {0, 0, 1, 1}, source->hDC(), 0, 0, with_alpha(51));
    EXPECT_EQ(target.Point(0, 0), 0x000033);
}

} // namespace
} // namespace varnoth::test
