// The check box and the radio button.
#include <cmath>
#include <numbers>
#include <type_traits>
#include <utility>

#include "desktop/controls/elcheck.h"
#include "desktop/controls/elradio.h"
#include "desktop/controls/shown.h"
#include "desktop/theme/theme.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

constexpr Colour box_light = 0x809188;
constexpr Colour checked = 0x50B5C4;
constexpr Colour unchecked = 0xD3DED8;
constexpr Colour over = 0xFF0000;

template <typename Control>
struct Checkable : Recorded<Control> {
    Checkable() : Recorded<Control>(120) {}

    const TextPart& caption() { return this->text(std::is_same_v<Control, elcheck> ? "Label2" : "Label1"); }

    QPoint on_caption() { return caption().place().center().toPoint(); }

    QPoint beside_the_caption() { return {this->control.width() - 3, 9}; }
};

using Check = Checkable<elcheck>;
using Radio = Checkable<elradio>;

constexpr QPoint on_box(6, 9);
constexpr QPoint on_circle(9, 9);

// Both controls.

template <typename Control>
class CheckableTest : public testing::Test {
  protected:
    Checkable<Control> checkable_;
};

using CheckableControls = testing::Types<elcheck, elradio>;
TYPED_TEST_SUITE(CheckableTest, CheckableControls);

TYPED_TEST(CheckableTest, PartsAndSurfaceRaiseMouseEvents) {
    auto& checkable = this->checkable_;
    const QPoint on_caption = checkable.caption().place().topLeft().toPoint() + QPoint(3, 2);
    move(checkable.control, on_caption);
    move(checkable.control, checkable.beside_the_caption());
    checkable.press(on_caption, Qt::MiddleButton, Qt::ShiftModifier);
    checkable.release(on_caption, Qt::MiddleButton);
    EXPECT_EQ(checkable.log, (QStringList{"MouseMove 0 0 3,2", "MouseMove 0 0 117,9", "MouseDown 4 1 3,2",
                                          "MouseUp 4 0 3,2"}));
    EXPECT_FALSE(checkable->Value());
}

TYPED_TEST(CheckableTest, HoverStateChangesTheCaptionColour) {
    auto& checkable = this->checkable_;
    checkable->SetFontSize(24); // strokes wider than a pixel in any font
    checkable->set_over_state();
    EXPECT_EQ(checkable.caption().ForeColor, over);
    EXPECT_GT(count_of(picture_of(checkable.control), over), 0);
    checkable->set_normal_state();
    EXPECT_EQ(checkable.caption().ForeColor, unchecked);
}

TYPED_TEST(CheckableTest, HoverStateDoesNotAffectACheckedControl) {
    auto& checkable = this->checkable_;
    checkable->SetValue(true);
    const QImage before = picture_of(checkable.control);
    checkable->set_over_state();
    EXPECT_EQ(checkable.caption().ForeColor, checked);
    EXPECT_EQ(picture_of(checkable.control), before);
}

TYPED_TEST(CheckableTest, OverColorDoesNotShowOutsideTheHoverState) {
    auto& checkable = this->checkable_;
    checkable->set_over_state();
    checkable->SetOverColor(0x00FF00);
    EXPECT_EQ(checkable.caption().ForeColor, over);
    checkable->set_over_state();
    EXPECT_EQ(checkable.caption().ForeColor, 0x00FF00);
    checkable->SetCheckedColor(0x123456);
    EXPECT_EQ(checkable.caption().ForeColor, unchecked);
}

TYPED_TEST(CheckableTest, CaptionHasTheColourOfTheState) {
    auto& checkable = this->checkable_;
    EXPECT_EQ(checkable.caption().ForeColor, unchecked);
    checkable->SetUncheckedColor(0x111111);
    EXPECT_EQ(checkable.caption().ForeColor, 0x111111);
    checkable->SetCheckedColor(0x222222);
    EXPECT_EQ(checkable.caption().ForeColor, 0x111111);
    checkable->SetValue(true);
    EXPECT_EQ(checkable.caption().ForeColor, 0x222222);
    checkable->SetValue(false);
    EXPECT_EQ(checkable.caption().ForeColor, 0x111111);
    EXPECT_TRUE(checkable.log.isEmpty());
}

// The check box.

class Elcheck : public testing::Test, protected Check {};

TEST_F(Elcheck, PartsAreAtTheirDesignedPositions) {
    EXPECT_EQ(control.part<BoxPart>("Picture2").place(), QRectF(0, 3, 12, 12));
    EXPECT_EQ(text("Label1").place().topLeft(), QPointF(0, 0));
    EXPECT_EQ(text("Label1").Caption(), "b");
    EXPECT_EQ(text("Label2").Left, 19);
}

TEST_F(Elcheck, OnlyTheLeftAndTopEdgesOfTheBoxFollowColor3DDark) {
    control.SetColor3DLight(0x0000FF);
    for (const auto& [name, colour] : {std::pair{"Line1", dark}, std::pair{"Line2", dark},
                                       std::pair{"Line3", box_light}, std::pair{"Line4", box_light}}) {
        EXPECT_EQ(line(name).BorderColor, colour) << name;
    }
    for (const int scale : {1, 2}) {
        const QImage picture = picture_of(control, scale);
        expect_edges(picture, {0, 3 * scale, 12 * scale, 12 * scale}, scale, dark, box_light);
        EXPECT_EQ(count_of(picture, theme::field_background, QRect(scale, 4 * scale, 10 * scale, 10 * scale)),
                  100 * scale * scale);
    }
}

TEST_F(Elcheck, ClickOnBoxCheckMarkOrCaptionTogglesAndRaisesClick) {
    const ChangedProperties changed(control);
    click(on_box);
    EXPECT_TRUE(control.Value());
    EXPECT_EQ(log.last(), "Click");
    click(on_box); // now on the check mark
    EXPECT_FALSE(control.Value());
    click(on_caption());
    EXPECT_TRUE(control.Value());
    EXPECT_EQ(log.count("Click"), 3);
    EXPECT_TRUE(changed.names.isEmpty()); // no setter was called
}

TEST_F(Elcheck, ClickOnTheSurfaceDoesNothing) {
    click(beside_the_caption());
    EXPECT_FALSE(control.Value());
    EXPECT_EQ(log, (QStringList{"MouseDown 1 0 117,9", "MouseUp 1 0 117,9"}));
}

TEST_F(Elcheck, ValueIsTheVisibilityOfTheCheckMark) {
    EXPECT_FALSE(text("Label1").Visible);
    EXPECT_EQ(count_of(picture_of(control), checked), 0);
    control.SetValue(true);
    EXPECT_TRUE(text("Label1").Visible);
    EXPECT_EQ(text("Label1").ForeColor, checked);
    EXPECT_GT(count_of(picture_of(control), checked, QRect(1, 4, 10, 10)), 4);
}

TEST_F(Elcheck, BoxIsFilledWithBackColor2) {
    control.SetBackColor2(0x333333);
    EXPECT_EQ(count_of(picture_of(control), 0x333333, QRect(1, 4, 10, 10)), 100);
}

TEST_F(Elcheck, BoxRaisesMouseEventsInItsOwnPixels) {
    move(control, QPoint(2, 8));
    press(QPoint(2, 8), Qt::RightButton, Qt::ControlModifier);
    release(QPoint(2, 8), Qt::RightButton);
    EXPECT_EQ(log, (QStringList{"MouseMove 0 0 2,5", "MouseDown 2 2 2,5", "MouseUp 2 0 2,5"}));
    EXPECT_FALSE(control.Value());
}

// The radio button.

class Elradio : public testing::Test, protected Radio {};

TEST_F(Elradio, PartsAreAtTheirDesignedPositions) {
    EXPECT_EQ(control.part<Part>("Picture1").place(), QRectF(0, 0, 18, 18));
    EXPECT_EQ(caption().Left, 28);
}

TEST_F(Elradio, ClickOnCaptionCircleOrSurfaceChecksIt) {
    for (const QPoint point : {on_caption(), on_circle, beside_the_caption()}) {
        control.SetValue(false);
        log.clear();
        const ChangedProperties changed(control);
        click(point);
        EXPECT_TRUE(control.Value()) << point.x();
        EXPECT_EQ(log.count("Click"), 1) << point.x();
        EXPECT_EQ(changed.names, QStringList{"Value"}) << point.x();
    }
}

TEST_F(Elradio, ClickOnACheckedButtonRaisesClickAndChangesNothing) {
    control.SetValue(true);
    const ChangedProperties changed(control);
    const QImage before = picture_of(control);
    click(on_circle);
    EXPECT_TRUE(control.Value());
    EXPECT_EQ(log.count("Click"), 1);
    EXPECT_EQ(picture_of(control), before);
    EXPECT_TRUE(changed.names.isEmpty());
}

TEST_F(Elradio, CheckingDoesNotUncheckOtherButtons) {
    elradio neighbour("other", &window);
    neighbour.SetValue(true);
    click(on_circle);
    EXPECT_TRUE(neighbour.Value());
}

/// The colour of a pixel of the circle, in screen pixels from the top left of its bounding square: a circle
/// of 13 pixels in diameter with, if it is checked, a dot inset by 3 pixels. The centre of a pixel decides
/// what it belongs to. The line is dark from 0.5 to 4 radians, counter-clockwise from three o'clock.
Colour designed_colour(int x, int y, double scale, bool has_dot) {
    const double radius = std::floor(13 * scale + 0.5) / 2;
    const double right = x + 0.5 - radius;
    const double up = radius - y - 0.5;
    const double to_outline = radius - std::hypot(right, up);
    if (to_outline < 0) {
        return theme::window_background;
    }
    if (to_outline < std::floor(scale)) {
        const double angle = std::atan2(up, right);
        const double positive = angle < 0 ? angle + 2 * std::numbers::pi : angle;
        return positive >= 0.5 && positive <= 4 ? dark : light;
    }
    return has_dot && to_outline >= std::floor(3 * scale + 0.5) ? checked : theme::field_background;
}

TEST_F(Elradio, CircleMatchesTheDesignAtEveryScale) {
    for (const bool value : {false, true}) {
        control.SetValue(value);
        for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0}) {
            const QImage picture = picture_of(control, scale);
            const int first = static_cast<int>(std::floor(3 * scale + 0.5));
            const int side = static_cast<int>(18 * scale);
            for (int y = 0; y < side; ++y) {
                for (int x = 0; x < side; ++x) {
                    ASSERT_EQ(colour_at(picture, x, y), designed_colour(x - first, y - first, scale, value))
                        << x << ", " << y << " at scale " << scale << " with value " << value;
                }
            }
        }
    }
}

// At this scale every second design pixel starts at the centre of a screen pixel.
TEST_F(Elradio, CircleIsTheSameAtEveryPosition) {
    const auto circle_at = [](int left) {
        QWidget parent;
        elradio radio("radio", &parent);
        radio.SetColor3DDark(dark);
        radio.setGeometry(left, 0, 50, 19);
        parent.resize(60, 30);
        parent.show();
        return picture_of(parent, 1.5).copy(5 + left, 5, 20, 20);
    };
    EXPECT_EQ(circle_at(0), circle_at(1));
    EXPECT_EQ(count_of(circle_at(0), dark) + count_of(circle_at(0), light), 60);
}

TEST_F(Elradio, NewColoursAreRedrawn) {
    control.SetColor3DDark(0x0000FF);
    control.SetColor3DLight(0x00FF00);
    control.SetBackColor(0x0A0B0C);
    control.SetBackColor2(0x332211);
    const QImage picture = picture_of(control);
    EXPECT_EQ(colour_at(picture, 3, 9), 0x0000FF);
    EXPECT_EQ(colour_at(picture, 15, 9), 0x00FF00);
    EXPECT_EQ(colour_at(picture, 2, 9), 0x0A0B0C);
    EXPECT_EQ(colour_at(picture, 9, 9), 0x332211);
}

TEST_F(Elradio, CircleShowsTheBackgroundOfItsLastRedraw) {
    TestSurface behind(200, 100, 32, 0, 0xFFFFFF);
    control.obtener_imagen_fondo(behind.hDC(), 0, 0, 255);
    for (const int corner : {0, 17}) {
        EXPECT_EQ(colour_at(control, corner, corner), theme::window_background);
    }
    EXPECT_EQ(colour_at(control, 18, 18), 0xFFFFFF);
    control.SetValue(false);
    for (const int corner : {0, 17}) {
        EXPECT_EQ(colour_at(control, corner, corner), 0xFFFFFF);
    }
    EXPECT_EQ(colour_at(control, 9, 9), theme::field_background);
}

TEST_F(Elradio, ClickOnACheckedButtonDoesNotRedraw) {
    control.SetValue(true);
    TestSurface behind(200, 100, 32, 0, 0xFFFFFF);
    control.obtener_imagen_fondo(behind.hDC(), 0, 0, 255);
    click(on_circle);
    EXPECT_EQ(colour_at(control, 0, 0), theme::window_background);
}

} // namespace
} // namespace varnoth::test
