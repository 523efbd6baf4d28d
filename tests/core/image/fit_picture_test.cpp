// Reduced pictures. The tests of the command line compare random ones with an average in fractions.
#include "core/image/fit_picture.h"

#include <gtest/gtest.h>

namespace varnoth {
namespace {

using Indices = std::vector<std::uint8_t>;
using Pixels = std::vector<std::uint32_t>;

RgbaPicture fit(std::int32_t width, std::int32_t height, const Indices& indices, std::int32_t side) {
    IndexedPicture picture{width, height, indices, {}};
    picture.colours = {0xFF000000, 0xFFFFFFFF, 0x00FF0000, 0x80FF0000, 0x01020304};
    return fit_picture(picture, side);
}

TEST(FitPicture, PictureThatFitsIsUnchanged) {
    const RgbaPicture picture = fit(3, 2, {0, 1, 0, 1, 0, 1}, 3);
    EXPECT_EQ(picture.width, 3);
    EXPECT_EQ(picture.height, 2);
    EXPECT_EQ(picture.pixels,
              (Pixels{0xFF000000, 0xFFFFFFFF, 0xFF000000, 0xFFFFFFFF, 0xFF000000, 0xFFFFFFFF}));
}

TEST(FitPicture, TranslucentPixelsKeepTheirColours) {
    EXPECT_EQ(fit(2, 1, {3, 4}, 9).pixels, (Pixels{0x80FF0000, 0x01020304}));
}

TEST(FitPicture, NothingIsLeftOfInvisiblePixels) {
    EXPECT_EQ(fit(1, 1, {2}, 9).pixels, Pixels{0});
}

TEST(FitPicture, AspectRatioIsKeptAsNearlyAsPossible) {
    // 10 by 8, 6 and 5 reduced to 4: heights of 3.2, 2.4 and 2.
    EXPECT_EQ(fit(10, 8, Indices(80), 4).height, 3);
    EXPECT_EQ(fit(10, 6, Indices(60), 4).height, 2);
    EXPECT_EQ(fit(5, 10, Indices(50), 4).width, 2);
    EXPECT_EQ(fit(5, 10, Indices(50), 4).height, 4);
    EXPECT_EQ(fit(8, 5, Indices(40), 4).height, 3); // 2.5
}

TEST(FitPicture, AtLeastOnePixelIsLeft) {
    const RgbaPicture picture = fit(100, 1, Indices(100, 1), 4);
    EXPECT_EQ(picture.height, 1);
    EXPECT_EQ(picture.pixels, Pixels(4, 0xFFFFFFFF));
}

TEST(FitPicture, PartlyCoveredPixelsCountInPart) {
    // Each target pixel covers one and a half source pixels.
    EXPECT_EQ(fit(3, 1, {1, 0, 1}, 2).pixels, (Pixels{0xFFAAAAAA, 0xFFAAAAAA}));
}

TEST(FitPicture, ColoursAreWeightedByAlpha) {
    EXPECT_EQ(fit(2, 1, {1, 2}, 1).pixels, Pixels{0x80FFFFFF});
    EXPECT_EQ(fit(2, 1, {0, 3}, 1).pixels, Pixels{0xC0550000}); // 128 of 383 parts of red
}

} // namespace
} // namespace varnoth
