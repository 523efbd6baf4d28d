#include "core/image/resize_picture.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "support/expect_failure.h"

namespace varnoth {
namespace {

using Pixels = std::vector<std::uint32_t>;

constexpr std::uint32_t red = 0xFFFF0000;
constexpr std::uint32_t green = 0xFF00FF00;

RgbaPicture filled(int width, int height, std::uint32_t pixel) {
    return {width, height, Pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), pixel)};
}

TEST(ResizePicture, PictureOfTheSameSizeIsUnchanged) {
    const Pixels pixels{0x00123456, 0x80FFFFFF, 0xFF000001, 0x01020304};
    for (const Fit fit : {Fit::Stretch, Fit::Contain, Fit::Crop}) {
        EXPECT_EQ(resize_picture({2, 2, pixels}, 2, 2, fit).pixels, pixels);
    }
}

TEST(ResizePicture, UniformPictureKeepsItsColourAtEverySize) {
    for (const std::uint32_t pixel : Pixels{red, 0x80FF7F01, 0xFFFFFFFF, 0x03FEFDFC}) {
        for (const int size : {1, 2, 3, 7, 16, 100}) {
            const RgbaPicture scaled = resize_picture(filled(7, 13, pixel), size, 101 - size, Fit::Stretch);
            EXPECT_EQ(scaled.width, size);
            EXPECT_EQ(scaled.height, 101 - size);
            EXPECT_EQ(scaled.pixels, filled(size, 101 - size, pixel).pixels);
        }
    }
}

TEST(ResizePicture, MirroredPictureGivesTheMirroredResult) {
    RgbaPicture picture{6, 1, {}};
    for (std::uint32_t x = 0; x < 6; ++x) {
        picture.pixels.push_back(0xFF000000 | x * x * 0x070301);
    }
    for (const int size : {1, 2, 4, 5, 9, 20}) {
        RgbaPicture mirrored = picture;
        std::ranges::reverse(mirrored.pixels);
        Pixels expected = resize_picture(picture, size, 1, Fit::Stretch).pixels;
        std::ranges::reverse(expected);
        EXPECT_EQ(resize_picture(mirrored, size, 1, Fit::Stretch).pixels, expected) << size;
    }
}

TEST(ResizePicture, OvershootIsClamped) {
    const RgbaPicture edge{4, 1, {0xFF000000, 0xFF000000, 0xFFFFFFFF, 0xFFFFFFFF}};
    const Pixels scaled = resize_picture(edge, 16, 1, Fit::Stretch).pixels;
    EXPECT_EQ(scaled.front(), 0xFF000000);
    EXPECT_EQ(scaled[5], 0xFF000000); // where the cubic is negative
    EXPECT_EQ(scaled[10], 0xFFFFFFFF);
    EXPECT_TRUE(std::ranges::is_sorted(scaled));
}

TEST(ResizePicture, TransparentPixelsBecomeTransparentBlack) {
    const RgbaPicture picture{2, 1, {0x0000FF00, 0x00FF0000}};
    EXPECT_EQ(resize_picture(picture, 3, 1, Fit::Stretch).pixels, std::vector<std::uint32_t>(3, 0));
}

TEST(ResizePicture, TransparentPixelsDoNotColourTheirNeighbours) {
    const RgbaPicture picture{4, 1, {red, 0x0000FF00, red, 0x0000FF00}};
    for (const std::uint32_t pixel : resize_picture(picture, 2, 1, Fit::Stretch).pixels) {
        EXPECT_EQ(pixel & 0xFFFFFF, red & 0xFFFFFF);
        EXPECT_NE(pixel >> 24, 0U);
        EXPECT_NE(pixel >> 24, 255U);
    }
}

TEST(ResizePicture, ContainCentresThePicture) {
    EXPECT_EQ(resize_picture(filled(4, 2, red), 2, 4, Fit::Contain).pixels,
              (Pixels{0, 0, red, red, 0, 0, 0, 0}));
    EXPECT_EQ(resize_picture(filled(1, 2, red), 4, 2, Fit::Contain).pixels,
              (Pixels{0, red, 0, 0, 0, red, 0, 0}));
}

TEST(ResizePicture, ContainKeepsAtLeastOnePixel) {
    EXPECT_EQ(resize_picture(filled(1000, 1, red), 2, 3, Fit::Contain).pixels,
              (Pixels{0, 0, red, red, 0, 0}));
}

TEST(ResizePicture, CropKeepsTheCentre) {
    const RgbaPicture wide{4, 1, {green, red, red, green}};
    EXPECT_EQ(resize_picture(wide, 4, 2, Fit::Crop).pixels, filled(4, 2, red).pixels);
    const RgbaPicture high{1, 4, {green, red, red, green}};
    EXPECT_EQ(resize_picture(high, 2, 4, Fit::Crop).pixels, filled(2, 4, red).pixels);
}

TEST(ResizePicture, ImpossibleSizesAreRefused) {
    const auto fit = [](int width, int height, int new_width, int new_height) {
        return resize_picture(filled(width, height, red), new_width, new_height, Fit::Stretch);
    };
    EXPECT_FAILURE(fit(0, 1, 1, 1), InvalidProcedureCall);
    EXPECT_FAILURE(fit(1, 0, 1, 1), InvalidProcedureCall);
    EXPECT_FAILURE(fit(1, 1, 0, 1), InvalidProcedureCall);
    EXPECT_FAILURE(fit(1, 1, 1, -1), InvalidProcedureCall);
    EXPECT_FAILURE(fit(1, 1, 65536, 1), InvalidProcedureCall);
    EXPECT_EQ(fit(1, 1, 65535, 1).pixels.size(), 65535U);
}

} // namespace
} // namespace varnoth
