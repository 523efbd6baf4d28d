// The check box and the radio button.
#include <cmath>
#include <map>
#include <numbers>
#include <type_traits>

#include "desktop/controls/elcheck.h"
#include "desktop/controls/elradio.h"
#include "desktop/controls/shown.h"
#include "desktop/theme/theme.h"
#include "support/pictures.h"

namespace varnoth {
namespace {

using test::colour_at;
using test::count_of;
using test::picture_of;
using test::record;
using test::Shown;

constexpr Colour light = 0x95AAA0;
constexpr Colour dark = 0x222E28;
constexpr Colour box_light = 0x809188;
constexpr Colour checked = 0x50B5C4;
constexpr Colour unchecked = 0xD3DED8;
constexpr Colour over = 0xFF0000;

template <typename Control>
struct Mark : Shown<Control> {
    QStringList log;

    Mark() : Shown<Control>(120) {
        this->control.SetColor3DDark(dark);
        record(this->control, log);
    }

    const TextPart& text(const char* name) { return this->control.template part<TextPart>(name); }

    void click(const QPoint& point) { QTest::mouseClick(&this->control, Qt::LeftButton, {}, point); }

    QPoint beside_the_caption() { return {this->control.width() - 3, 9}; }
};

using Check = Mark<elcheck>;
using Radio = Mark<elradio>;

constexpr QPoint on_box(6, 9);

// Both controls.

template <typename Control>
class Marks : public testing::Test {
  protected:
    static constexpr bool is_check = std::is_same_v<Control, elcheck>;

    const TextPart& caption() { return mark_.text(is_check ? "Label2" : "Label1"); }

    const TextPart& shadow() { return mark_.text("shadow1"); }

    Mark<Control> mark_;
};

using MarkControls = testing::Types<elcheck, elradio>;
TYPED_TEST_SUITE(Marks, MarkControls);

TYPED_TEST(Marks, ShadowHasTheCaptionAndItsFont) {
    this->mark_->SetCaption("Overwrite");
    this->mark_->SetFontSize(7);
    EXPECT_EQ(this->caption().Caption(), "Overwrite");
    EXPECT_EQ(this->shadow().Caption(), "Overwrite");
    EXPECT_EQ(this->caption().Font(), this->mark_->Font());
    EXPECT_EQ(this->shadow().Font(), this->mark_->Font());
    const double middle = this->mark_->ScaleHeight() / 2;
    EXPECT_EQ(this->caption().Top, std::trunc(middle - this->caption().Height / 2));
    EXPECT_EQ(this->shadow().Top, this->caption().Top + 1);
}

TYPED_TEST(Marks, DropShadowShowsABlackCopyBehindTheCaption) {
    this->mark_->SetFontSize(24); // strokes wider than a pixel in any font
    const int coloured = count_of(picture_of(this->mark_.control), unchecked);
    EXPECT_FALSE(this->shadow().Visible);
    this->mark_->SetDropShadow(true);
    EXPECT_TRUE(this->shadow().Visible);
    EXPECT_TRUE(this->shadow().Enabled);
    EXPECT_GT(count_of(picture_of(this->mark_.control), theme::black), 0);
    EXPECT_EQ(count_of(picture_of(this->mark_.control), unchecked), coloured);
}

TYPED_TEST(Marks, PartsAndSurfaceRaiseMouseEvents) {
    const QPoint on_caption = this->caption().place().topLeft().toPoint() + QPoint(3, 2);
    test::move(this->mark_.control, on_caption);
    test::move(this->mark_.control, this->mark_.beside_the_caption());
    QTest::mousePress(&this->mark_.control, Qt::MiddleButton, Qt::ShiftModifier, on_caption);
    QTest::mouseRelease(&this->mark_.control, Qt::MiddleButton, {}, on_caption);
    EXPECT_EQ(this->mark_.log, (QStringList{"MouseMove 0 0 3,2", "MouseMove 0 0 117,9", "MouseDown 4 1 3,2",
                                            "MouseUp 4 0 3,2"}));
    EXPECT_FALSE(this->mark_->Value());
}

TYPED_TEST(Marks, OverColorDoesNotShowOutsideTheHoverState) {
    this->mark_->set_over_state();
    this->mark_->SetOverColor(0x00FF00);
    EXPECT_EQ(this->caption().ForeColor, over);
    this->mark_->set_over_state();
    EXPECT_EQ(this->caption().ForeColor, 0x00FF00);
    this->mark_->SetCheckedColor(0x123456);
    EXPECT_EQ(this->caption().ForeColor, unchecked);
}

// The check box.

TEST(Elcheck, StandsAsDesigned) {
    Check check;
    EXPECT_EQ(check->Height(), 270);
    EXPECT_EQ(check->part<BoxPart>("Picture2").place(), QRectF(0, 3, 12, 12));
    EXPECT_EQ(check.text("Label1").place().topLeft(), QPointF(0, 0));
    EXPECT_EQ(check.text("Label1").Caption(), "b");
    EXPECT_EQ(check.text("Label2").Left, 19);
    EXPECT_EQ(check.text("shadow1").Left, 20);
    EXPECT_EQ(check.text("Label2").Top, std::trunc(9 - check.text("Label2").Height / 2));
    EXPECT_EQ(check.text("shadow1").Top, check.text("Label2").Top + 1);
    check->SetWidth(10);
    EXPECT_EQ(check->Width(), 500);
}

TEST(Elcheck, OnlyTheLeftAndTopEdgesOfTheBoxFollowColor3DDark) {
    Check check;
    check->SetColor3DLight(0x0000FF);
    for (const int scale : {1, 2}) {
        const QImage picture = picture_of(check.control, scale);
        const int size = 12 * scale;
        EXPECT_EQ(count_of(picture, dark, QRect(0, 3 * scale, scale, size)), size * scale);
        EXPECT_EQ(count_of(picture, dark, QRect(0, 3 * scale, size - scale, scale)), (size - scale) * scale);
        EXPECT_EQ(count_of(picture, box_light, QRect(scale, 14 * scale, size - scale, scale)),
                  (size - scale) * scale);
        EXPECT_EQ(count_of(picture, box_light, QRect(11 * scale, 3 * scale, scale, size)), size * scale);
        EXPECT_EQ(count_of(picture, theme::field_background, QRect(scale, 4 * scale, 10 * scale, 10 * scale)),
                  100 * scale * scale);
        EXPECT_EQ(count_of(picture, 0x0000FF), 0);
    }
    EXPECT_EQ(check->part<LinePart>("Line1").BorderColor, dark);
    EXPECT_EQ(check->part<LinePart>("Line2").BorderColor, dark);
    EXPECT_EQ(check->part<LinePart>("Line3").BorderColor, box_light);
    EXPECT_EQ(check->part<LinePart>("Line4").BorderColor, box_light);
}

TEST(Elcheck, ClickOnBoxCheckMarkOrCaptionTogglesAndRaisesClick) {
    Check check;
    QStringList told;
    on_event(&check.control, &elcheck::property_changed, &check.control,
             [&](const QString& name) { told.append(name); });
    check.click(on_box);
    EXPECT_TRUE(check->Value());
    EXPECT_EQ(check.log.last(), "Click");
    check.click(on_box); // now on the check mark
    EXPECT_FALSE(check->Value());
    check.click(check.text("Label2").place().center().toPoint());
    EXPECT_TRUE(check->Value());
    EXPECT_EQ(check.log.count("Click"), 3);
    EXPECT_TRUE(told.isEmpty()); // no setter was called
}

TEST(Elcheck, ClickOnTheSurfaceDoesNothing) {
    Check check;
    check.click(check.beside_the_caption());
    EXPECT_FALSE(check->Value());
    EXPECT_EQ(check.log, (QStringList{"MouseDown 1 0 117,9", "MouseUp 1 0 117,9"}));
}

TEST(Elcheck, ValueIsTheVisibilityOfTheCheckMark) {
    Check check;
    EXPECT_FALSE(check.text("Label1").Visible);
    const QImage empty = picture_of(check.control);
    EXPECT_EQ(count_of(empty, checked), 0);
    check->SetValue(true);
    EXPECT_TRUE(check.text("Label1").Visible);
    EXPECT_GT(count_of(picture_of(check.control), checked, QRect(1, 4, 10, 10)), 4);
}

TEST(Elcheck, SettingValueUpdatesTheColours) {
    Check check;
    EXPECT_EQ(check.text("Label2").ForeColor, unchecked);
    check->SetValue(true);
    EXPECT_EQ(check.text("Label1").ForeColor, checked);
    EXPECT_EQ(check.text("Label2").ForeColor, checked);
    check->SetValue(false);
    EXPECT_EQ(check.text("Label2").ForeColor, unchecked);
    EXPECT_TRUE(check.log.isEmpty());
}

TEST(Elcheck, HoverStateChangesTheCaptionColour) {
    Check check;
    check->SetFontSize(24); // strokes wider than a pixel in any font
    check->set_over_state();
    EXPECT_EQ(check.text("Label2").ForeColor, over);
    EXPECT_GT(count_of(picture_of(check.control), over), 0);
    check->set_normal_state();
    EXPECT_EQ(check.text("Label2").ForeColor, unchecked);
}

TEST(Elcheck, HoverStateDoesNotAffectACheckedBox) {
    Check check;
    check->SetValue(true);
    const QImage before = picture_of(check.control);
    check->set_over_state();
    EXPECT_EQ(check.text("Label2").ForeColor, checked);
    EXPECT_EQ(picture_of(check.control), before);
}

TEST(Elcheck, ColoursFollowTheirProperties) {
    Check check;
    check->SetUncheckedColor(0x111111);
    EXPECT_EQ(check.text("Label2").ForeColor, 0x111111);
    check->SetCheckedColor(0x222222);
    EXPECT_EQ(check.text("Label2").ForeColor, 0x111111);
    check->SetValue(true);
    EXPECT_EQ(check.text("Label2").ForeColor, 0x222222);
    check->SetBackColor2(0x333333);
    EXPECT_GT(count_of(picture_of(check.control), 0x333333, QRect(1, 4, 10, 10)), 20);
}

TEST(Elcheck, EveryPartRaisesMouseEventsInItsOwnPixels) {
    Check check;
    test::move(check.control, QPoint(2, 8));
    EXPECT_EQ(check.log, QStringList{"MouseMove 0 0 2,5"});
    QTest::mousePress(&check.control, Qt::RightButton, Qt::ControlModifier, QPoint(2, 8));
    QTest::mouseRelease(&check.control, Qt::RightButton, {}, QPoint(2, 8));
    EXPECT_EQ(check.log.value(1), "MouseDown 2 2 2,5");
    EXPECT_EQ(check.log.value(2), "MouseUp 2 0 2,5");
    EXPECT_FALSE(check->Value());
}

TEST(Elcheck, ObtainedBackgroundCoversTheWholeControl) {
    Check check;
    test::TestSurface behind(200, 100, 32, 0, 0xFFFFFF);
    check->obtener_imagen_fondo(behind.hDC(), 0, 0, 255);
    EXPECT_EQ(check->get_the_hdc().bitmap()->pixel(0, 0), 0xFFFFFF);
    EXPECT_EQ(check->get_the_hdc().bitmap()->pixel(119, 17), 0xFFFFFF);
    EXPECT_EQ(colour_at(check.control, 0, 0), 0xFFFFFF);
}

// The radio button.

// The colour of the circle's line at an angle counter-clockwise from three o'clock.
Colour on_circle(const QImage& picture, int scale, double angle) {
    const double x = 9.5 + 6 * std::cos(angle);
    const double y = 9.5 - 6 * std::sin(angle);
    return colour_at(picture, static_cast<int>(std::floor(x * scale)),
                     static_cast<int>(std::floor(y * scale)));
}

TEST(Elradio, StandsAsDesigned) {
    Radio radio;
    EXPECT_EQ(radio->Height(), 285);
    EXPECT_EQ(radio->part<Part>("Picture1").place(), QRectF(0, 0, 18, 18));
    EXPECT_EQ(radio.text("Label1").Left, 28);
    EXPECT_EQ(radio.text("shadow1").Left, 29);
    EXPECT_EQ(radio.text("Label1").Top, std::trunc(9.5 - radio.text("Label1").Height / 2));
    EXPECT_EQ(radio.text("shadow1").Top, radio.text("Label1").Top + 1);
    radio->SetWidth(10);
    EXPECT_EQ(radio->Width(), 500);
}

TEST(Elradio, ClickOnCaptionCircleOrSurfaceChecksIt) {
    for (const int place : {0, 1, 2}) {
        Radio radio;
        QStringList told;
        on_event(&radio.control, &elradio::property_changed, &radio.control,
                 [&](const QString& name) { told.append(name); });
        const QPoint points[] = {radio.text("Label1").place().center().toPoint(), QPoint(9, 9),
                                 radio.beside_the_caption()};
        radio.click(points[place]);
        EXPECT_TRUE(radio->Value()) << place;
        EXPECT_EQ(radio.log.count("Click"), 1) << place;
        EXPECT_EQ(told, QStringList{"Value"}) << place;
    }
}

TEST(Elradio, ClickOnACheckedButtonRaisesClickAndChangesNothing) {
    Radio radio;
    radio.click({9, 9});
    QStringList told;
    on_event(&radio.control, &elradio::property_changed, &radio.control,
             [&](const QString& name) { told.append(name); });
    const QImage before = picture_of(radio.control);
    radio.click({9, 9});
    EXPECT_TRUE(radio->Value());
    EXPECT_EQ(radio.log.count("Click"), 2);
    EXPECT_EQ(picture_of(radio.control), before);
    EXPECT_TRUE(told.isEmpty());
}

TEST(Elradio, CheckingDoesNotUncheckOtherButtons) {
    Radio radio;
    elradio neighbour("other", &radio.window);
    neighbour.SetValue(true);
    radio.click({9, 9});
    EXPECT_TRUE(neighbour.Value());
}

TEST(Elradio, SettingValueRedrawsWithoutAClick) {
    Radio radio;
    EXPECT_EQ(radio.text("Label1").ForeColor, unchecked);
    radio->SetValue(true);
    EXPECT_EQ(radio.text("Label1").ForeColor, checked);
    EXPECT_EQ(colour_at(radio.control, 9, 9), checked);
    radio->SetValue(false);
    EXPECT_EQ(radio.text("Label1").ForeColor, unchecked);
    EXPECT_EQ(colour_at(radio.control, 9, 9), theme::field_background);
    EXPECT_TRUE(radio.log.isEmpty());
}

TEST(Elradio, CircleIsDarkFrom0Point5To4RadiansAndLightElsewhere) {
    Radio radio;
    radio->SetColor3DDark(0x0000FF);
    radio->SetColor3DLight(0x00FF00);
    radio->SetBackColor(0);
    radio->SetBackColor2(0);
    // At scale 1 the line of radius 6 also touches pixels whose centre is not on it.
    for (const int scale : {2, 3}) {
        const QImage picture = picture_of(radio.control, scale);
        for (double angle = 0.8; angle < 3.8; angle += 0.1) {
            EXPECT_EQ(on_circle(picture, scale, angle), 0x0000FF) << scale << ' ' << angle;
        }
        for (double angle = 4.3; angle < 0.2 + 2 * std::numbers::pi; angle += 0.1) {
            EXPECT_EQ(on_circle(picture, scale, angle), 0x00FF00) << scale << ' ' << angle;
        }
    }
}

// The outermost screen pixels at the centre of each side of the circle's bounding square.
struct ExtremePoints {
    QPoint right;
    QPoint top;
    QPoint left;
    QPoint bottom;

    explicit ExtremePoints(double scale) {
        const int first = static_cast<int>(std::floor(3 * scale + 0.5));
        const int size = static_cast<int>(std::floor(13 * scale + 0.5));
        const int last = first + size - 1;
        const int middle = first + size / 2;
        right = {last, middle};
        top = {middle, first};
        left = {first, middle};
        bottom = {middle, last};
    }
};

TEST(Elradio, ArcsHaveTheirColoursAtTheExtremePoints) {
    Radio radio;
    for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0}) {
        const QImage picture = picture_of(radio.control, scale);
        const ExtremePoints extreme(scale);
        EXPECT_EQ(colour_at(picture, extreme.top.x(), extreme.top.y()), dark) << scale;
        EXPECT_EQ(colour_at(picture, extreme.left.x(), extreme.left.y()), dark) << scale;
        EXPECT_EQ(colour_at(picture, extreme.bottom.x(), extreme.bottom.y()), light) << scale;
        EXPECT_EQ(colour_at(picture, extreme.right.x(), extreme.right.y()), light) << scale;
        for (const QPoint beside : {extreme.top - QPoint(0, 1), extreme.left - QPoint(1, 0),
                                    extreme.bottom + QPoint(0, 1), extreme.right + QPoint(1, 0)}) {
            EXPECT_EQ(colour_at(picture, beside.x(), beside.y()), theme::window_background) << scale;
        }
    }
}

TEST(Elradio, CircleContainsOnlyTheSpecifiedColours) {
    Radio radio;
    radio->SetValue(true);
    for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0}) {
        const QImage picture = picture_of(radio.control, scale);
        const int side = static_cast<int>(18 * scale);
        const QRect surface(0, 0, side, side);
        int stated = 0;
        for (const Colour colour :
             {theme::window_background, theme::field_background, dark, light, checked}) {
            EXPECT_GT(count_of(picture, colour, surface), 0) << scale << ' ' << colour;
            stated += count_of(picture, colour, surface);
        }
        EXPECT_EQ(stated, side * side) << scale;
    }
}

// At this scale every second design pixel starts at the centre of a screen pixel.
TEST(Elradio, CircleIsTheSameAtEveryPosition) {
    const auto circle_at = [](int left) {
        QWidget window;
        elradio radio("radio", &window);
        radio.SetColor3DDark(dark);
        radio.setGeometry(left, 0, 50, 19);
        window.resize(60, 30);
        window.show();
        return picture_of(window, 1.5).copy(5 + left, 5, 20, 20);
    };
    EXPECT_EQ(circle_at(0), circle_at(1));
    EXPECT_EQ(count_of(circle_at(0), dark) + count_of(circle_at(0), light), 60);
}

TEST(Elradio, CircleMatchesTheDesignAtScale1) {
    Radio radio;
    radio->SetValue(true);
    // D: dark line, L: light line, o: dot, dots: outside the circle.
    const QStringList designed{
        "....DDDDD....", //
        "..DD     DD..", //
        ".DD       DD.", //
        ".D   ooo   D.", //
        "D   ooooo   L", //
        "D  ooooooo  L", //
        "D  ooooooo  L", //
        "D  ooooooo  L", //
        "D   ooooo   L", //
        ".D   ooo   L.", //
        ".DD       LL.", //
        "..LL     LL..", //
        "....LLLLL....", //
    };
    const std::map<Colour, QChar> letters{{dark, 'D'},
                                          {light, 'L'},
                                          {checked, 'o'},
                                          {theme::field_background, ' '},
                                          {theme::window_background, '.'}};
    const QImage picture = picture_of(radio.control);
    QStringList found;
    for (int y = 3; y < 16; ++y) {
        QString row;
        for (int x = 3; x < 16; ++x) {
            row += letters.at(colour_at(picture, x, y));
        }
        found.append(row);
    }
    EXPECT_EQ(found, designed);
}

TEST(Elradio, CircleIsFilledAndTheBackgroundShowsAroundIt) {
    Radio radio;
    radio->SetBackColor(0x0A0B0C);
    radio->SetBackColor2(0x332211);
    const QImage picture = picture_of(radio.control);
    for (const QPoint inside : {QPoint(9, 9), QPoint(5, 9), QPoint(13, 9), QPoint(9, 5), QPoint(9, 13)}) {
        EXPECT_EQ(colour_at(picture, inside.x(), inside.y()), 0x332211);
    }
    for (const QPoint outside : {QPoint(0, 0), QPoint(2, 9), QPoint(17, 9), QPoint(9, 2), QPoint(9, 17)}) {
        EXPECT_EQ(colour_at(picture, outside.x(), outside.y()), 0x0A0B0C);
    }
    EXPECT_NE(colour_at(picture, 3, 9), 0x0A0B0C);
    EXPECT_NE(colour_at(picture, 15, 9), 0x0A0B0C);
}

TEST(Elradio, DotHasARadiusOf3) {
    Radio radio;
    radio->SetValue(true);
    const QImage picture = picture_of(radio.control);
    for (int x = 6; x <= 12; ++x) {
        EXPECT_EQ(colour_at(picture, x, 9), checked) << x;
    }
    EXPECT_EQ(colour_at(picture, 5, 9), theme::field_background);
    EXPECT_EQ(colour_at(picture, 13, 9), theme::field_background);
}

TEST(Elradio, CircleShowsTheBackgroundOfItsLastRedraw) {
    Radio radio;
    test::TestSurface behind(200, 100, 32, 0, 0xFFFFFF);
    radio->obtener_imagen_fondo(behind.hDC(), 0, 0, 255);
    for (const int corner : {0, 17}) {
        EXPECT_EQ(colour_at(radio.control, corner, corner), theme::window_background);
    }
    EXPECT_EQ(colour_at(radio.control, 18, 18), 0xFFFFFF);
    radio->SetValue(false);
    for (const int corner : {0, 17}) {
        EXPECT_EQ(colour_at(radio.control, corner, corner), 0xFFFFFF);
    }
    EXPECT_EQ(colour_at(radio.control, 9, 9), theme::field_background);
}

TEST(Elradio, ClickOnACheckedButtonDoesNotRedraw) {
    Radio radio;
    radio->SetValue(true);
    test::TestSurface behind(200, 100, 32, 0, 0xFFFFFF);
    radio->obtener_imagen_fondo(behind.hDC(), 0, 0, 255);
    radio.click({9, 9});
    EXPECT_EQ(colour_at(radio.control, 0, 0), theme::window_background);
}

TEST(Elradio, HoverStateAppliesOnlyWhenUnchecked) {
    Radio radio;
    radio->set_over_state();
    EXPECT_EQ(radio.text("Label1").ForeColor, over);
    radio->set_normal_state();
    EXPECT_EQ(radio.text("Label1").ForeColor, unchecked);
    radio->SetValue(true);
    radio->set_over_state();
    EXPECT_EQ(radio.text("Label1").ForeColor, checked);
}

TEST(Elradio, NewEdgeColoursAreRedrawn) {
    Radio radio;
    radio->SetColor3DDark(0x0000FF);
    radio->SetColor3DLight(light);
    EXPECT_EQ(on_circle(picture_of(radio.control, 2), 2, 2), 0x0000FF);
}

} // namespace
} // namespace varnoth
