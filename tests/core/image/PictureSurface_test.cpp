#include "core/image/PictureSurface.h"

#include <limits>

#include <gtest/gtest.h>

#include "support/expect_failure.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

TEST(PictureSurface, DefaultDesignIsA32BitFormWithoutPixels) {
    const PictureSurface surface(PictureSurface::Design{});
    EXPECT_EQ(surface.Parent(), nullptr);
    EXPECT_EQ(surface.Width(), 0);
    EXPECT_EQ(surface.Height(), 0);
    EXPECT_EQ(surface.ScaleWidth(), 0);
    EXPECT_EQ(surface.ScaleHeight(), 0);
    EXPECT_EQ(surface.description().bmBitsPixel, 32);
    EXPECT_EQ(surface.BackColor(), 0);
}

TEST(PictureSurface, NewSizeKeepsTheTopLeftOnBackground) {
    const auto surface = surface_of(2, 2, {1, 2, 3, 4});
    surface->SetWidth(3);
    EXPECT_EQ(colours_of(*surface), (Colours{1, 2, 0, 3, 4, 0}));
    surface->SetHeight(1);
    EXPECT_EQ(colours_of(*surface), (Colours{1, 2, 0}));
    for (const Colour background : {0x00FF00, 0x000001}) {
        TestSurface coloured(1, 1, 32, 0, background);
        coloured.PSet(0, 0, 5);
        coloured.SetWidth(2);
        EXPECT_EQ(colours_of(coloured), (Colours{5, background}));
    }
}

TEST(PictureSurface, PixelsOutsideAreNoColourAndNotSet) {
    TestSurface surface(2, 1);
    surface.PSet(2, 0, 7);
    surface.PSet(-1, 0, 7);
    surface.PSet(0, 1, 7);
    EXPECT_EQ(colours_of(surface), (Colours{0, 0}));
    EXPECT_EQ(surface.Point(2, 0), -1);
    EXPECT_EQ(surface.Point(0, -1), -1);
}

TEST(PictureSurface, SettingTheBackgroundColourClears) {
    const auto surface = surface_of(2, 1, {1, 2});
    surface->SetBackColor(0x112233);
    EXPECT_EQ(colours_of(*surface), (Colours{0x112233, 0x112233}));
    surface->PSet(0, 0, 9);
    surface->Cls();
    EXPECT_EQ(colours_of(*surface), (Colours{0x112233, 0x112233}));
}

TEST(PictureSurface, OuterSizeIncludesBorderInContainerUnits) {
    TestSurface surface(10, 20, 32, 2);
    EXPECT_EQ(surface.Width(), 14);
    EXPECT_EQ(surface.ScaleWidth(), 10);
    surface.Parent()->ScaleMode = ScaleTwips;
    EXPECT_EQ(surface.Width(), 14 * 15);
    EXPECT_EQ(surface.ScaleWidth(), 10);
    surface.ScaleMode = ScaleTwips;
    EXPECT_EQ(surface.ScaleHeight(), 20 * 15);
    surface.SetHeight(30 * 15);
    EXPECT_EQ(surface.ScaleHeight(), 26 * 15);
}

TEST(PictureSurface, TopLevelFormHasNoParentAndCountsInTwips) {
    PictureSurface form({nullptr, 4, 4, 32, 0, 0});
    EXPECT_EQ(form.Parent(), nullptr);
    EXPECT_EQ(form.Width(), 60);
}

TEST(PictureSurface, NegativeOrHugeSizeFails) {
    TestSurface surface(2, 2);
    EXPECT_FAILURE(surface.SetWidth(-1), InvalidPropertyValue);
    EXPECT_FAILURE(surface.SetHeight(-1), InvalidPropertyValue);
    EXPECT_FAILURE(surface.SetWidth(1e9), Overflow);
}

TEST(PictureSurface, BitsAreTopRowFirstWithEvenRows) {
    const auto surface = surface_of(1, 2, {0x030201, 0x060504}, 24);
    Bytes bytes(8, 99);
    EXPECT_EQ(surface->GetBitmapBits(bytes), 8U);
    EXPECT_EQ(bytes, (Bytes{3, 2, 1, 0, 6, 5, 4, 0}));
    EXPECT_EQ(surface->description().bmWidthBytes, 4);
    bytes.resize(3);
    EXPECT_EQ(surface->GetBitmapBits(bytes), 3U);
    EXPECT_EQ(surface->SetBitmapBits(Bytes{7, 8, 9}), 3U);
    EXPECT_EQ(surface->Point(0, 0), 0x070809);
}

TEST(PictureSurface, Channels16BitRepeatTheirHighBits) {
    const auto surface = surface_of(3, 1, {0xFFFFFF, 0x0000FF, 0x080808}, 16);
    EXPECT_EQ(colours_of(*surface), (Colours{0xFFFFFF, 0x0000FF, 0x080808}));
    EXPECT_EQ(surface->description().bmBitsPixel, 16);
    EXPECT_EQ(surface->description().bmWidthBytes, 6);
}

TEST(PictureSurface, PictureSetsTheSizeOnlyWithAutoSize) {
    const Picture picture = surface_of(2, 1, {1, 2})->Image();
    const auto fixed = surface_of(3, 2, {9, 9, 9, 9, 9, 9});
    fixed->SetPicture(picture);
    EXPECT_EQ(colours_of(*fixed), (Colours{1, 2, 0, 0, 0, 0}));
    TestSurface automatic(5, 5);
    automatic.AutoSize = true;
    automatic.SetPicture(picture);
    EXPECT_EQ(colours_of(automatic), (Colours{1, 2}));
}

TEST(PictureSurface, LineFillsARectangleWithBothCorners) {
    TestSurface surface(3, 2);
    surface.Line(1, 0, 2, 0, 7);
    EXPECT_EQ(colours_of(surface), (Colours{0, 7, 7, 0, 0, 0}));
    surface.Line(-5, 1, 9, 9, 3);
    EXPECT_EQ(colours_of(surface), (Colours{0, 7, 7, 3, 3, 3}));
}

TEST(PictureSurface, FailedResizeKeepsTheSurface) {
    const auto surface = surface_of(2, 1, {1, 2});
    EXPECT_FAILURE(surface->SetWidth(std::numeric_limits<double>::quiet_NaN()), InvalidPropertyValue);
    EXPECT_FAILURE(surface->SetHeight(600000000), Overflow);
    EXPECT_EQ(colours_of(*surface), (Colours{1, 2}));
    surface->SetWidth(0);
    EXPECT_EQ(surface->ScaleWidth(), 0);
    EXPECT_EQ(surface->ScaleHeight(), 1);
}

TEST(PictureSurface, SurfaceWithoutPixelsGrowsIntoBackground) {
    TestSurface surface(0, 2, 32, 0, 5);
    surface.SetHeight(3);
    surface.SetWidth(1);
    EXPECT_EQ(colours_of(surface), (Colours{5, 5, 5}));
}

TEST(PictureSurface, OuterSizeBelowTheBorderHasNoInnerSize) {
    TestSurface surface(5, 5, 32, 3);
    surface.SetWidth(4);
    EXPECT_EQ(surface.ScaleWidth(), 0);
    EXPECT_EQ(surface.Width(), 6);
}

TEST(PictureSurface, SizesBetweenTwoPixelsRoundTiesToEven) {
    TestSurface surface(1, 1);
    surface.SetWidth(2.5);
    EXPECT_EQ(surface.Width(), 2);
    surface.Parent()->ScaleMode = ScaleTwips;
    surface.SetWidth(22);
    EXPECT_EQ(surface.ScaleWidth(), 1);
    surface.SetWidth(22.5);
    EXPECT_EQ(surface.ScaleWidth(), 2);
    surface.SetHeight(37.5);
    EXPECT_EQ(surface.ScaleHeight(), 2);
}

TEST(PictureSurface, NewSizeKeepsPixelsAtEveryDepth) {
    for (const std::int32_t bits : {16, 24, 32}) {
        const auto surface = surface_of(3, 2, {0xFF, 0xFF00, 0xFF0000, 0, 0xFFFFFF, 0xFF}, bits);
        surface->SetWidth(2);
        surface->SetHeight(3);
        EXPECT_EQ(colours_of(*surface), (Colours{0xFF, 0xFF00, 0, 0xFFFFFF, 0, 0})) << bits;
    }
}

TEST(PictureSurface, BackgroundMayBeASystemColour) {
    TestSurface surface(1, 1, 32, 0, std::numeric_limits<std::int32_t>::min() + 5);
    EXPECT_EQ(surface.Point(0, 0), 0xFFFFFF);
    surface.SetWidth(2);
    EXPECT_EQ(surface.Point(1, 0), 0xFFFFFF);
    EXPECT_LT(surface.BackColor(), 0) << "the reference itself is kept";
}

TEST(PictureSurface, ResizeRefreshAndSetPictureNotify) {
    TestSurface surface(1, 1);
    surface.Refresh(); // nobody listens
    int changes = 0;
    surface.on_change = [&] { ++changes; };
    surface.Refresh();
    EXPECT_EQ(changes, 1);
    surface.SetWidth(1);
    EXPECT_EQ(changes, 1) << "the size it has is no change";
    surface.SetWidth(2);
    EXPECT_EQ(changes, 2);
    surface.SetPicture({});
    EXPECT_EQ(changes, 3);
}

TEST(PictureSurface, ImageIsACopyOfTheDrawnPixels) {
    const auto surface = surface_of(1, 1, {5});
    const Picture image = surface->Image();
    surface->PSet(0, 0, 6);
    EXPECT_EQ(image.kind, PictureKind::Bitmap);
    EXPECT_EQ(image.bitmap->pixel(0, 0), 5);
}

TEST(PictureSurface, EmptyPictureOnlyClears) {
    const auto surface = surface_of(2, 1, {1, 2});
    surface->AutoSize = true;
    surface->SetPicture({});
    EXPECT_EQ(colours_of(*surface), (Colours{0, 0}));
    EXPECT_TRUE(surface->picture().empty());
}

TEST(PictureSurface, OwnPictureCanBeSetAgain) {
    TestSurface surface(1, 1);
    surface.AutoSize = true;
    surface.SetPicture(surface_of(2, 1, {1, 2})->Image());
    surface.PSet(0, 0, 9);
    surface.SetPicture(surface.picture());
    EXPECT_EQ(colours_of(surface), (Colours{1, 2})) << "drawing does not change the picture set";
}

TEST(PictureSurface, PictureOfAnotherDepthKeepsItsColours) {
    TestSurface surface(2, 1);
    surface.SetPicture(surface_of(2, 1, {0x010203, 0x040506}, 24)->Image());
    EXPECT_EQ(colours_of(surface), (Colours{0x010203, 0x040506}));
}

TEST(PictureSurface, DrawingContextFollowsTheSize) {
    TestSurface surface(1, 1);
    surface.SetWidth(2);
    EXPECT_EQ(surface.hDC().bitmap(), &surface.bitmap());
    const auto source = surface_of(2, 1, {7, 8});
    bit_blt(surface.hDC(), 0, 0, 2, 1, source->hDC(), 0, 0, SRCCOPY);
    EXPECT_EQ(colours_of(surface), (Colours{7, 8}));
}

TEST(Screen, Has15TwipsPerPixel) {
    EXPECT_EQ(screen().TwipsPerPixelX, 15);
    EXPECT_EQ(screen().TwipsPerPixelY, 15);
    EXPECT_EQ(&screen(), &screen());
}

} // namespace
} // namespace varnoth::test
