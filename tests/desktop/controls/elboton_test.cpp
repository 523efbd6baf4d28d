#include "desktop/controls/elboton.h"

#include <cmath>

#include "desktop/controls/shown.h"
#include "desktop/mouse_events.h"
#include "desktop/theme/theme.h"
#include "support/expect_failure.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

struct Button : Recorded<elboton> {
    explicit Button(const QString& caption = "Ok", int width = 80) : Recorded(width) {
        control.SetCaption(caption);
    }

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

    // A press whose release is lost: a disabled control gets no mouse events.
    void press_without_release() {
        press(on_surface());
        control.SetEnabled(false);
        release(on_surface());
        control.SetEnabled(true);
        ASSERT_TRUE(sunken());
        log.clear();
    }
};

class Elboton : public testing::Test, protected Button {};

TEST_F(Elboton, EmptyCaptionIsLaidOutAndCentred) {
    Button button("");
    EXPECT_EQ(button.text("label").Left, 6);
    button->SetCenterCaption(true);
    EXPECT_EQ(button.text("label").Width, 0);
    EXPECT_EQ(button.text("label").Left, 40);
    EXPECT_EQ(button.text("shadow1").Left, 41);
}

TEST_F(Elboton, CentredCaptionIsNotRounded) {
    Button button("x", 81);
    button->SetCenterCaption(true);
    for (const double size : {9.75, 7.0}) {
        button->SetFontSize(size);
        EXPECT_EQ(button.text("label").Left, 40.5 - button.text("label").Width / 2) << size;
        EXPECT_EQ(button.text("shadow1").Left, button.text("label").Left + 1) << size;
    }
    EXPECT_FAILURE(button->SetFontSize(0), InvalidPropertyValue);
}

TEST_F(Elboton, WidthSetWhileHiddenIsLaidOut) {
    elboton button("b", nullptr);
    button.SetCenterCaption(true);
    button.SetCaption("");
    button.SetWidth(1500);
    EXPECT_EQ(button.part<TextPart>("label").Left, 50);
    EXPECT_EQ(button.part<LinePart>("lineB(0)").X1, 99);
}

TEST_F(Elboton, HeightUsesVerticalAndWidthHorizontalTwips) {
    const OtherScreen flat(20, 12);
    elboton button("b", nullptr);
    button.SetWidth(100);
    EXPECT_EQ(button.size(), QSize(25, 30)); // 500 / 20 by 360 / 12
    EXPECT_EQ(button.Width(), 500);
    EXPECT_EQ(button.Height(), 360);
}

TEST_F(Elboton, HeightStays360TwipsWhenThatIsNoWholePixel) {
    const OtherScreen flat(15, 16);
    const elboton button("b", nullptr);
    EXPECT_EQ(button.height(), 22); // 22.5, ties to even
    EXPECT_EQ(button.Height(), 360);
}

TEST_F(Elboton, LeftPressSwapsTheEdgeColoursUntilTheRelease) {
    for (const QPoint point : {on_surface(), on_label()}) {
        press(point);
        EXPECT_TRUE(sunken());
        EXPECT_EQ(colour_at(control, 40, 0), dark);
        EXPECT_EQ(colour_at(control, 40, 23), light);
        release(point);
        EXPECT_TRUE(raised());
    }
}

TEST_F(Elboton, RightPressLeavesTheButtonRaised) {
    press(on_surface(), Qt::RightButton, Qt::ShiftModifier);
    EXPECT_TRUE(raised());
    EXPECT_EQ(log, QStringList{"MouseDown 2 1 76,12"});
    release(on_surface(), Qt::RightButton);
    EXPECT_EQ(log.last(), "MouseUp 2 0 76,12");
    EXPECT_FALSE(log.contains("Click"));
}

TEST_F(Elboton, FourthAndFifthMouseButtonsRaiseNoEvents) {
    for (const Qt::MouseButton other : {Qt::BackButton, Qt::ForwardButton}) {
        fast_pair(&control, other, {}, on_surface());
    }
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(Elboton, FourthMouseButtonDoesNotAffectALeftPress) {
    press(on_surface());
    click(on_surface(), Qt::BackButton);
    EXPECT_TRUE(sunken());
    release(on_surface());
    EXPECT_EQ(log, (QStringList{"MouseDown 1 0 76,12", "MouseUp 1 0 76,12", "Click"}));
}

TEST_F(Elboton, ReleaseOutsideRaisesTheButtonWithoutAClick) {
    press(on_surface());
    release(QPoint(300, 200));
    EXPECT_TRUE(raised());
    EXPECT_EQ(log, (QStringList{"MouseDown 1 0 76,12", "MouseUp 1 0 300,200"}));
}

TEST_F(Elboton, MoveWithoutButtonsAfterALostReleaseRaisesTheButton) {
    press_without_release();
    move(control, text("label").place().topLeft().toPoint() + QPoint(2, 1));
    EXPECT_TRUE(raised());
    EXPECT_EQ(log, QStringList{"MouseMove 0 0 2,1"});
}

TEST_F(Elboton, MoveWithAButtonHeldLeavesItSunken) {
    press(on_surface());
    move(control, QPoint(300, 200), Qt::LeftButton);
    EXPECT_TRUE(sunken());
    release(QPoint(300, 200));
}

TEST_F(Elboton, NewPressAfterALostReleaseRaisesTheButton) {
    press_without_release();
    press(on_surface(), Qt::RightButton);
    EXPECT_TRUE(raised());
    release(on_surface(), Qt::RightButton);
    EXPECT_EQ(log, (QStringList{"MouseDown 2 0 76,12", "MouseUp 2 0 76,12"}));
}

TEST_F(Elboton, OtherButtonsReleaseAfterALostReleaseIsNoClick) {
    press_without_release();
    press(on_surface(), Qt::RightButton);
    release(on_surface());
    EXPECT_FALSE(log.contains("Click"));
    release(on_surface(), Qt::RightButton);
}

TEST_F(Elboton, LateReleaseAfterALostReleaseIsNoClick) {
    press_without_release();
    move(control, on_surface());
    release(on_surface());
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(Elboton, FirstReleaseWithoutAPressIsNoClick) {
    press(on_surface(), Qt::RightButton);
    release(on_surface());
    release(on_surface(), Qt::RightButton);
    EXPECT_FALSE(log.contains("Click"));
}

TEST_F(Elboton, ReleaseJustOutsideAnEdgeIsNoClick) {
    for (const QPoint behind : {QPoint(80, 12), QPoint(76, 24), QPoint(-1, 12), QPoint(76, -1)}) {
        press(on_surface());
        release(behind);
    }
    EXPECT_EQ(log.count("Click"), 0);
    for (const QPoint last : {QPoint(79, 12), QPoint(76, 23), QPoint(0, 12), QPoint(76, 0)}) {
        press(on_surface());
        release(last);
    }
    EXPECT_EQ(log.count("Click"), 4);
}

TEST_F(Elboton, CaptionAndSurfaceRaiseClick) {
    click(on_surface());
    click(on_label());
    EXPECT_EQ(log.count("Click"), 2);
    EXPECT_EQ(log.last(), "Click");
}

TEST_F(Elboton, OnlyTheCaptionRaisesMouseMoveInItsOwnPixels) {
    move(control, on_surface());
    EXPECT_TRUE(log.isEmpty());
    const QPoint corner = text("label").place().topLeft().toPoint();
    move(control, corner + QPoint(2, 1));
    EXPECT_EQ(log, QStringList{"MouseMove 0 0 2,1"});
}

TEST_F(Elboton, DropShadowOfABlackCaptionIsInvisible) {
    Button button("Shadow");
    button->SetForeColor(theme::black);
    const QImage before = picture_of(button.control);
    button->SetDropShadow(true);
    EXPECT_TRUE(button.text("shadow1").Visible);
    EXPECT_EQ(picture_of(button.control), before);
    button->SetForeColor(theme::white);
    EXPECT_NE(picture_of(button.control), before);
}

TEST_F(Elboton, LabelHigherThanTheControlKeepsItsTop) {
    const double top = text("label").Top;
    control.SetFontSize(30);
    ASSERT_GT(text("label").Height, 24);
    EXPECT_EQ(text("label").Top, top);
    EXPECT_EQ(text("shadow1").Top, top + 1);
}

TEST_F(Elboton, DisabledButtonIgnoresTheMouse) {
    control.SetEnabled(false);
    click(on_surface());
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(Elboton, ObtainedBackgroundIsBlendedWithTheClearedSurface) {
    Button button("");
    button->SetBackColor(0);
    TestSurface behind(200, 100, 32, 0, 0xFFFFFF);
    for (int again = 0; again < 2; ++again) {
        button->obtener_imagen_fondo(behind.hDC(), 0, 0, 100);
        EXPECT_EQ(button->get_the_hdc().bitmap()->pixel(5, 5), 0x646464);
    }
    EXPECT_FAILURE(button->obtener_imagen_fondo(behind.hDC(), 0, 0, 256), Overflow);
    EXPECT_FAILURE(button->obtener_imagen_fondo(behind.hDC(), 0, 0, -1), Overflow);
}

TEST_F(Elboton, AlphaOutOfRangeFailsAfterClearing) {
    Button button("");
    TestSurface behind(200, 100, 32, 0, 0xFFFFFF);
    button->obtener_imagen_fondo(behind.hDC(), 0, 0, 255);
    EXPECT_FAILURE(button->obtener_imagen_fondo(behind.hDC(), 0, 0, 256), Overflow);
    EXPECT_EQ(button->get_the_hdc().bitmap()->pixel(5, 5), theme::window_background);
}

} // namespace
} // namespace varnoth::test
