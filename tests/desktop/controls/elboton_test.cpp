#include "desktop/controls/elboton.h"

#include <cmath>
#include <functional>
#include <vector>

#include "desktop/controls/shown.h"
#include "desktop/theme/theme.h"
#include "desktop/widgets/fast_pair.h"
#include "support/expect_failure.h"
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

struct Button : Shown<elboton> {
    QStringList log;

    explicit Button(const QString& caption = "Ok", int width = 80) : Shown(width) {
        control.SetColor3DDark(dark);
        control.SetCaption(caption);
        record(control, log);
    }

    const TextPart& text(const char* name) { return control.part<TextPart>(name); }

    const LinePart& line(const char* name) { return control.part<LinePart>(name); }

    bool raised() {
        return line("lineA(0)").BorderColor == light && line("lineA(1)").BorderColor == light &&
               line("lineB(0)").BorderColor == dark && line("lineB(1)").BorderColor == dark;
    }

    bool sunken() {
        return line("lineA(0)").BorderColor == dark && line("lineA(1)").BorderColor == dark &&
               line("lineB(0)").BorderColor == light && line("lineB(1)").BorderColor == light;
    }

    QPoint on_label() { return text("label").place().center().toPoint(); }

    QPoint on_surface() { return {control.width() - 4, 12}; }
};

TEST(Elboton, StandsAsDesigned) {
    elboton button("b", nullptr);
    EXPECT_EQ(button.part<TextPart>("label").Left, 6);
    EXPECT_EQ(button.part<TextPart>("shadow1").Left, 7);
    EXPECT_EQ(button.part<LinePart>("lineA(1)").Y2, 23);
    EXPECT_EQ(button.part<LinePart>("lineB(1)").X1, 1);
    EXPECT_EQ(button.part<LinePart>("lineB(1)").Y1, 23);
    EXPECT_EQ(button.part<TextPart>("label").Caption(), "Boton");
    EXPECT_EQ(button.part<TextPart>("shadow1").Caption(), "Boton");
}

TEST(Elboton, EmptyCaptionIsLaidOutAndCentred) {
    Button button("");
    EXPECT_EQ(button.text("label").Left, 6);
    button->SetCenterCaption(true);
    EXPECT_EQ(button.text("label").Width, 0);
    EXPECT_EQ(button.text("label").Left, 40);
    EXPECT_EQ(button.text("shadow1").Left, 41);
}

TEST(Elboton, CentredCaptionIsNotRounded) {
    Button button("x", 81);
    button->SetCenterCaption(true);
    EXPECT_EQ(button.text("label").Left, 40.5 - button.text("label").Width / 2);
    EXPECT_EQ(button.text("shadow1").Left, button.text("label").Left + 1);
}

TEST(Elboton, IsAtLeast500TwipsWideAndAlways360High) {
    Button button;
    button->SetWidth(100);
    button->SetHeight(900);
    EXPECT_EQ(button->Width(), 500);
    EXPECT_EQ(button->Height(), 360);
    EXPECT_EQ(button->height(), 24);
    EXPECT_EQ(button.line("lineA(0)").X2, 500.0 / 15);
    EXPECT_EQ(button.line("lineB(0)").X1, 500.0 / 15 - 1);
}

TEST(Elboton, WidthSetWhileHiddenIsLaidOut) {
    elboton button("b", nullptr);
    button.SetCenterCaption(true);
    button.SetCaption("");
    button.SetWidth(1500);
    EXPECT_EQ(button.part<TextPart>("label").Left, 50);
    EXPECT_EQ(button.part<LinePart>("lineB(0)").X1, 99);
}

TEST(Elboton, HeightUsesVerticalAndWidthHorizontalTwips) {
    const test::OtherScreen flat(20, 12);
    elboton button("b", nullptr);
    button.SetWidth(100);
    EXPECT_EQ(button.size(), QSize(25, 30)); // 500 / 20 by 360 / 12
    EXPECT_EQ(button.Width(), 500);
    EXPECT_EQ(button.Height(), 360);
}

TEST(Elboton, HeightStays360TwipsWhenThatIsNoWholePixel) {
    const test::OtherScreen flat(15, 16);
    const elboton button("b", nullptr);
    EXPECT_EQ(button.height(), 22); // 22.5, ties to even
    EXPECT_EQ(button.Height(), 360);
}

TEST(Elboton, EdgesAreOnePixelLightAndDark) {
    Button button("");
    for (const int scale : {1, 2}) {
        const QImage picture = picture_of(button.control, scale);
        const int right = 80 * scale - 1;
        const int bottom = 24 * scale - 1;
        for (const int inner : {0, scale - 1}) {
            EXPECT_EQ(colour_at(picture, 30, inner), light) << scale;
            EXPECT_EQ(colour_at(picture, inner, 20), light) << scale;
            EXPECT_EQ(colour_at(picture, right - inner, 20), dark) << scale;
            EXPECT_EQ(colour_at(picture, 30, bottom - inner), dark) << scale;
        }
        EXPECT_EQ(colour_at(picture, 30, scale), theme::window_background);
        EXPECT_EQ(colour_at(picture, right - scale, 20), theme::window_background);
    }
}

TEST(Elboton, BottomLineStartsAfterTheLeftLine) {
    Button button("");
    const QImage picture = picture_of(button.control);
    EXPECT_EQ(colour_at(picture, 0, 23), light);
    EXPECT_EQ(colour_at(picture, 1, 23), dark);
    EXPECT_EQ(colour_at(picture, 79, 0), dark);
}

TEST(Elboton, LeftPressSwapsTheEdgeColoursUntilTheRelease) {
    Button button;
    for (const QPoint point : {button.on_surface(), button.on_label()}) {
        QTest::mousePress(&button.control, Qt::LeftButton, {}, point);
        EXPECT_TRUE(button.sunken());
        EXPECT_EQ(colour_at(button.control, 40, 0), dark);
        EXPECT_EQ(colour_at(button.control, 40, 23), light);
        QTest::mouseRelease(&button.control, Qt::LeftButton, {}, point);
        EXPECT_TRUE(button.raised());
    }
}

TEST(Elboton, RightPressLeavesTheButtonRaised) {
    Button button;
    QTest::mousePress(&button.control, Qt::RightButton, Qt::ShiftModifier, button.on_surface());
    EXPECT_TRUE(button.raised());
    EXPECT_EQ(button.log, QStringList{"MouseDown 2 1 76,12"});
    QTest::mouseRelease(&button.control, Qt::RightButton, {}, button.on_surface());
    EXPECT_EQ(button.log.last(), "MouseUp 2 0 76,12");
    EXPECT_FALSE(button.log.contains("Click"));
}

TEST(Elboton, FourthAndFifthMouseButtonsRaiseNoEvents) {
    Button button;
    for (const Qt::MouseButton other : {Qt::BackButton, Qt::ForwardButton}) {
        test::fast_pair(&button.control, other, {}, button.on_surface());
    }
    EXPECT_TRUE(button.log.isEmpty());
}

TEST(Elboton, FourthMouseButtonDoesNotAffectALeftPress) {
    Button button;
    QTest::mousePress(&button.control, Qt::LeftButton, {}, button.on_surface());
    QTest::mouseClick(&button.control, Qt::BackButton, {}, button.on_surface());
    EXPECT_TRUE(button.sunken());
    QTest::mouseRelease(&button.control, Qt::LeftButton, {}, button.on_surface());
    EXPECT_EQ(button.log, (QStringList{"MouseDown 1 0 76,12", "MouseUp 1 0 76,12", "Click"}));
}

TEST(Elboton, ReleaseOutsideRestoresTheRaisedLook) {
    Button button;
    QTest::mousePress(&button.control, Qt::LeftButton, {}, button.on_surface());
    QTest::mouseRelease(&button.control, Qt::LeftButton, {}, QPoint(300, 200));
    EXPECT_TRUE(button.raised());
    EXPECT_EQ(button.log, (QStringList{"MouseDown 1 0 76,12", "MouseUp 1 0 300,200"}));
}

// A press whose release is lost: a disabled control gets no mouse events.
void press_without_release(Button& button) {
    QTest::mousePress(&button.control, Qt::LeftButton, {}, button.on_surface());
    button->SetEnabled(false);
    QTest::mouseRelease(&button.control, Qt::LeftButton, {}, button.on_surface());
    button->SetEnabled(true);
    ASSERT_TRUE(button.sunken());
    button.log.clear();
}

TEST(Elboton, MoveWithoutButtonsAfterALostReleaseRaisesTheButton) {
    Button button;
    press_without_release(button);
    test::move(button.control, button.text("label").place().topLeft().toPoint() + QPoint(2, 1));
    EXPECT_TRUE(button.raised());
    EXPECT_EQ(button.log, QStringList{"MouseMove 0 0 2,1"});
}

TEST(Elboton, MoveWithAButtonHeldLeavesItSunken) {
    Button button;
    QTest::mousePress(&button.control, Qt::LeftButton, {}, button.on_surface());
    test::move(button.control, QPoint(300, 200), Qt::LeftButton);
    EXPECT_TRUE(button.sunken());
    QTest::mouseRelease(&button.control, Qt::LeftButton, {}, QPoint(300, 200));
}

TEST(Elboton, NewPressAfterALostReleaseRaisesTheButton) {
    Button button;
    press_without_release(button);
    QTest::mousePress(&button.control, Qt::RightButton, {}, button.on_surface());
    EXPECT_TRUE(button.raised());
    QTest::mouseRelease(&button.control, Qt::RightButton, {}, button.on_surface());
    EXPECT_EQ(button.log, (QStringList{"MouseDown 2 0 76,12", "MouseUp 2 0 76,12"}));
}

TEST(Elboton, ReleaseOfAnotherMouseButtonAfterALostReleaseIsNoClick) {
    Button button;
    press_without_release(button);
    QTest::mousePress(&button.control, Qt::RightButton, {}, button.on_surface());
    QTest::mouseRelease(&button.control, Qt::LeftButton, {}, button.on_surface());
    EXPECT_FALSE(button.log.contains("Click"));
    QTest::mouseRelease(&button.control, Qt::RightButton, {}, button.on_surface());
}

TEST(Elboton, LateReleaseAfterALostReleaseIsNoClick) {
    Button button;
    press_without_release(button);
    test::move(button.control, button.on_surface());
    QTest::mouseRelease(&button.control, Qt::LeftButton, {}, button.on_surface());
    EXPECT_TRUE(button.log.isEmpty());
}

TEST(Elboton, ReleaseJustOutsideAnEdgeIsNoClick) {
    Button button;
    for (const QPoint behind : {QPoint(80, 12), QPoint(76, 24), QPoint(-1, 12), QPoint(76, -1)}) {
        QTest::mousePress(&button.control, Qt::LeftButton, {}, button.on_surface());
        QTest::mouseRelease(&button.control, Qt::LeftButton, {}, behind);
    }
    EXPECT_EQ(button.log.count("Click"), 0);
    for (const QPoint last : {QPoint(79, 12), QPoint(76, 23), QPoint(0, 12), QPoint(76, 0)}) {
        QTest::mousePress(&button.control, Qt::LeftButton, {}, button.on_surface());
        QTest::mouseRelease(&button.control, Qt::LeftButton, {}, last);
    }
    EXPECT_EQ(button.log.count("Click"), 4);
}

TEST(Elboton, CaptionAndSurfaceRaiseClick) {
    Button button;
    QTest::mouseClick(&button.control, Qt::LeftButton, {}, button.on_surface());
    QTest::mouseClick(&button.control, Qt::LeftButton, {}, button.on_label());
    EXPECT_EQ(button.log.count("Click"), 2);
    EXPECT_EQ(button.log.last(), "Click");
}

TEST(Elboton, OnlyTheCaptionRaisesMouseMoveInItsOwnPixels) {
    Button button;
    test::move(button.control, button.on_surface());
    EXPECT_TRUE(button.log.isEmpty());
    const QPoint corner = button.text("label").place().topLeft().toPoint();
    test::move(button.control, corner + QPoint(2, 1));
    EXPECT_EQ(button.log, QStringList{"MouseMove 0 0 2,1"});
}

TEST(Elboton, DropShadowOfABlackCaptionIsInvisible) {
    Button button("Shadow");
    button->SetForeColor(theme::black);
    const QImage before = picture_of(button.control);
    button->SetDropShadow(true);
    EXPECT_TRUE(button.text("shadow1").Visible);
    EXPECT_EQ(picture_of(button.control), before);
    button->SetForeColor(theme::white);
    EXPECT_NE(picture_of(button.control), before);
}

TEST(Elboton, DropShadowShowsABlackCopyBehindTheCaption) {
    Button button("Shadow");
    EXPECT_FALSE(button.text("shadow1").Visible);
    EXPECT_EQ(count_of(picture_of(button.control), theme::black), 0);
    button->SetDropShadow(true);
    EXPECT_TRUE(button.text("shadow1").Visible);
    EXPECT_TRUE(button.text("shadow1").Enabled);
    const QImage shadowed = picture_of(button.control);
    EXPECT_GT(count_of(shadowed, theme::black), 0);
    button->SetDropShadow(false);
    EXPECT_FALSE(button.text("shadow1").Enabled);
    // The shadow covers no pixel of the caption.
    EXPECT_EQ(count_of(shadowed, theme::white), count_of(picture_of(button.control), theme::white));
}

TEST(Elboton, ShadowStaysBlackAndFollowsTheCaption) {
    Button button;
    button->SetForeColor(0x0000FF);
    button->SetCaption("Other");
    EXPECT_EQ(button.text("label").ForeColor, 0x0000FF);
    EXPECT_EQ(button.text("shadow1").ForeColor, theme::black);
    EXPECT_EQ(button.text("shadow1").Caption(), "Other");
    EXPECT_EQ(button.text("shadow1").Top, button.text("label").Top + 1);
}

TEST(Elboton, LabelHigherThanTheControlKeepsItsTop) {
    Button button;
    const double top = button.text("label").Top;
    button->SetFontSize(30);
    ASSERT_GT(button.text("label").Height, 24);
    EXPECT_EQ(button.text("label").Top, top);
    EXPECT_EQ(button.text("shadow1").Top, top + 1);
}

TEST(Elboton, LowerLabelIsCentredRoundedDown) {
    Button button;
    const double height = button.text("label").Height;
    ASSERT_LT(height, 24);
    EXPECT_EQ(button.text("label").Top, std::trunc(12 - height / 2));
}

TEST(Elboton, FontAppliesToTheCaptionAndItsShadow) {
    Button button;
    button->SetFontSize(7.25);
    button->SetFontItalic(true);
    button->SetFontUnderline(true);
    for (const char* name : {"label", "shadow1"}) {
        EXPECT_EQ(button.text(name).Font(), button->Font()) << name;
        EXPECT_EQ(button.text(name).Font().pointSizeF(), 7.25) << name;
    }
    EXPECT_FAILURE(button->SetFontSize(0), InvalidPropertyValue);
}

TEST(Elboton, EveryFontPropertyMovesTheCaption) {
    Button button("Wide caption", 300);
    button->SetCenterCaption(true);
    const QFont large("Courier", 14);
    const std::vector<std::function<void()>> setters{
        [&] { button->SetFont(large); }, [&] { button->SetFontSize(7); },
        [&] { button->SetFontName("DejaVu Sans Mono"); }, [&] { button->SetFontItalic(true); },
        [&] { button->SetFontUnderline(true); }};
    for (const auto& set : setters) {
        button->SetFont(theme::design_font());
        set();
        const TextPart& label = button.text("label");
        EXPECT_EQ(label.Left, 150 - label.Width / 2);
        EXPECT_EQ(label.Top, std::trunc(12 - label.Height / 2));
    }
}

TEST(Elboton, DisabledButtonLooksTheSameAndIgnoresTheMouse) {
    Button button;
    const QImage before = picture_of(button.control);
    button->SetEnabled(false);
    EXPECT_EQ(picture_of(button.control), before);
    QTest::mouseClick(&button.control, Qt::LeftButton, {}, button.on_surface());
    EXPECT_TRUE(button.log.isEmpty());
}

TEST(Elboton, DisabledWindowDoesNotChangeEnabledOfTheButton) {
    Button button;
    button.window.setEnabled(false);
    EXPECT_TRUE(button->Enabled());
    button->SetEnabled(false);
    EXPECT_FALSE(button->Enabled());
}

TEST(Elboton, EdgeColourAppliesToItsTwoLines) {
    Button button;
    button->SetColor3DLight(0x010203);
    button->SetColor3DDark(0x040506);
    EXPECT_EQ(button.line("lineA(0)").BorderColor, 0x010203);
    EXPECT_EQ(button.line("lineA(1)").BorderColor, 0x010203);
    EXPECT_EQ(button.line("lineB(0)").BorderColor, 0x040506);
    EXPECT_EQ(button.line("lineB(1)").BorderColor, 0x040506);
}

TEST(Elboton, ObtainedBackgroundLeavesOutTheEdge) {
    Button button("");
    test::TestSurface behind(200, 100, 32, 0, 0xFFFFFF);
    behind.PSet(11, 21, 0x0000FF);
    button->obtener_imagen_fondo(behind.hDC(), 11, 21, 255);
    const Bitmap& pixels = *button->get_the_hdc().bitmap();
    EXPECT_EQ(pixels.pixel(1, 1), 0x0000FF);
    EXPECT_EQ(pixels.pixel(2, 1), 0xFFFFFF);
    EXPECT_EQ(pixels.pixel(78, 22), 0xFFFFFF);
    EXPECT_EQ(pixels.pixel(0, 1), theme::window_background);
    EXPECT_EQ(pixels.pixel(79, 22), theme::window_background);
    EXPECT_EQ(pixels.pixel(78, 23), theme::window_background);
    EXPECT_EQ(colour_at(button.control, 2, 2), 0xFFFFFF);
    EXPECT_EQ(colour_at(button.control, 0, 2), light);
}

TEST(Elboton, ObtainedBackgroundIsBlendedWithTheClearedSurface) {
    Button button("");
    button->SetBackColor(0);
    test::TestSurface behind(200, 100, 32, 0, 0xFFFFFF);
    for (int again = 0; again < 2; ++again) {
        button->obtener_imagen_fondo(behind.hDC(), 0, 0, 100);
        EXPECT_EQ(button->get_the_hdc().bitmap()->pixel(5, 5), 0x646464);
    }
    EXPECT_FAILURE(button->obtener_imagen_fondo(behind.hDC(), 0, 0, 256), Overflow);
    EXPECT_FAILURE(button->obtener_imagen_fondo(behind.hDC(), 0, 0, -1), Overflow);
}

TEST(Elboton, AlphaOutOfRangeFailsAfterClearing) {
    Button button("");
    test::TestSurface behind(200, 100, 32, 0, 0xFFFFFF);
    button->obtener_imagen_fondo(behind.hDC(), 0, 0, 255);
    EXPECT_FAILURE(button->obtener_imagen_fondo(behind.hDC(), 0, 0, 256), Overflow);
    EXPECT_EQ(button->get_the_hdc().bitmap()->pixel(5, 5), theme::window_background);
}

} // namespace
} // namespace varnoth
