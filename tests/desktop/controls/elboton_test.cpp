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
};

TEST(Elboton, PartsAreAtTheirDesignedPositions) {
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
    for (const double size : {9.75, 7.0}) {
        button->SetFontSize(size);
        EXPECT_EQ(button.text("label").Left, 40.5 - button.text("label").Width / 2) << size;
        EXPECT_EQ(button.text("shadow1").Left, button.text("label").Left + 1) << size;
    }
    EXPECT_FAILURE(button->SetFontSize(0), InvalidPropertyValue);
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
    const OtherScreen flat(20, 12);
    elboton button("b", nullptr);
    button.SetWidth(100);
    EXPECT_EQ(button.size(), QSize(25, 30)); // 500 / 20 by 360 / 12
    EXPECT_EQ(button.Width(), 500);
    EXPECT_EQ(button.Height(), 360);
}

TEST(Elboton, HeightStays360TwipsWhenThatIsNoWholePixel) {
    const OtherScreen flat(15, 16);
    const elboton button("b", nullptr);
    EXPECT_EQ(button.height(), 22); // 22.5, ties to even
    EXPECT_EQ(button.Height(), 360);
}

TEST(Elboton, LeftPressSwapsTheEdgeColoursUntilTheRelease) {
    Button button;
    for (const QPoint point : {button.on_surface(), button.on_label()}) {
        button.press(point);
        EXPECT_TRUE(button.sunken());
        EXPECT_EQ(colour_at(button.control, 40, 0), dark);
        EXPECT_EQ(colour_at(button.control, 40, 23), light);
        button.release(point);
        EXPECT_TRUE(button.raised());
    }
}

TEST(Elboton, RightPressLeavesTheButtonRaised) {
    Button button;
    button.press(button.on_surface(), Qt::RightButton, Qt::ShiftModifier);
    EXPECT_TRUE(button.raised());
    EXPECT_EQ(button.log, QStringList{"MouseDown 2 1 76,12"});
    button.release(button.on_surface(), Qt::RightButton);
    EXPECT_EQ(button.log.last(), "MouseUp 2 0 76,12");
    EXPECT_FALSE(button.log.contains("Click"));
}

TEST(Elboton, FourthAndFifthMouseButtonsRaiseNoEvents) {
    Button button;
    for (const Qt::MouseButton other : {Qt::BackButton, Qt::ForwardButton}) {
        fast_pair(&button.control, other, {}, button.on_surface());
    }
    EXPECT_TRUE(button.log.isEmpty());
}

TEST(Elboton, FourthMouseButtonDoesNotAffectALeftPress) {
    Button button;
    button.press(button.on_surface());
    button.click(button.on_surface(), Qt::BackButton);
    EXPECT_TRUE(button.sunken());
    button.release(button.on_surface());
    EXPECT_EQ(button.log, (QStringList{"MouseDown 1 0 76,12", "MouseUp 1 0 76,12", "Click"}));
}

TEST(Elboton, ReleaseOutsideRaisesTheButtonWithoutAClick) {
    Button button;
    button.press(button.on_surface());
    button.release(QPoint(300, 200));
    EXPECT_TRUE(button.raised());
    EXPECT_EQ(button.log, (QStringList{"MouseDown 1 0 76,12", "MouseUp 1 0 300,200"}));
}

// A press whose release is lost: a disabled control gets no mouse events.
void press_without_release(Button& button) {
    button.press(button.on_surface());
    button->SetEnabled(false);
    button.release(button.on_surface());
    button->SetEnabled(true);
    ASSERT_TRUE(button.sunken());
    button.log.clear();
}

TEST(Elboton, MoveWithoutButtonsAfterALostReleaseRaisesTheButton) {
    Button button;
    press_without_release(button);
    move(button.control, button.text("label").place().topLeft().toPoint() + QPoint(2, 1));
    EXPECT_TRUE(button.raised());
    EXPECT_EQ(button.log, QStringList{"MouseMove 0 0 2,1"});
}

TEST(Elboton, MoveWithAButtonHeldLeavesItSunken) {
    Button button;
    button.press(button.on_surface());
    move(button.control, QPoint(300, 200), Qt::LeftButton);
    EXPECT_TRUE(button.sunken());
    button.release(QPoint(300, 200));
}

TEST(Elboton, NewPressAfterALostReleaseRaisesTheButton) {
    Button button;
    press_without_release(button);
    button.press(button.on_surface(), Qt::RightButton);
    EXPECT_TRUE(button.raised());
    button.release(button.on_surface(), Qt::RightButton);
    EXPECT_EQ(button.log, (QStringList{"MouseDown 2 0 76,12", "MouseUp 2 0 76,12"}));
}

TEST(Elboton, OtherButtonsReleaseAfterALostReleaseIsNoClick) {
    Button button;
    press_without_release(button);
    button.press(button.on_surface(), Qt::RightButton);
    button.release(button.on_surface());
    EXPECT_FALSE(button.log.contains("Click"));
    button.release(button.on_surface(), Qt::RightButton);
}

TEST(Elboton, LateReleaseAfterALostReleaseIsNoClick) {
    Button button;
    press_without_release(button);
    move(button.control, button.on_surface());
    button.release(button.on_surface());
    EXPECT_TRUE(button.log.isEmpty());
}

TEST(Elboton, FirstReleaseWithoutAPressIsNoClick) {
    Button button;
    button.press(button.on_surface(), Qt::RightButton);
    button.release(button.on_surface());
    button.release(button.on_surface(), Qt::RightButton);
    EXPECT_FALSE(button.log.contains("Click"));
}

TEST(Elboton, ReleaseJustOutsideAnEdgeIsNoClick) {
    Button button;
    for (const QPoint behind : {QPoint(80, 12), QPoint(76, 24), QPoint(-1, 12), QPoint(76, -1)}) {
        button.press(button.on_surface());
        button.release(behind);
    }
    EXPECT_EQ(button.log.count("Click"), 0);
    for (const QPoint last : {QPoint(79, 12), QPoint(76, 23), QPoint(0, 12), QPoint(76, 0)}) {
        button.press(button.on_surface());
        button.release(last);
    }
    EXPECT_EQ(button.log.count("Click"), 4);
}

TEST(Elboton, CaptionAndSurfaceRaiseClick) {
    Button button;
    button.click(button.on_surface());
    button.click(button.on_label());
    EXPECT_EQ(button.log.count("Click"), 2);
    EXPECT_EQ(button.log.last(), "Click");
}

TEST(Elboton, OnlyTheCaptionRaisesMouseMoveInItsOwnPixels) {
    Button button;
    move(button.control, button.on_surface());
    EXPECT_TRUE(button.log.isEmpty());
    const QPoint corner = button.text("label").place().topLeft().toPoint();
    move(button.control, corner + QPoint(2, 1));
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

TEST(Elboton, LabelHigherThanTheControlKeepsItsTop) {
    Button button;
    const double top = button.text("label").Top;
    button->SetFontSize(30);
    ASSERT_GT(button.text("label").Height, 24);
    EXPECT_EQ(button.text("label").Top, top);
    EXPECT_EQ(button.text("shadow1").Top, top + 1);
}

TEST(Elboton, DisabledButtonIgnoresTheMouse) {
    Button button;
    button->SetEnabled(false);
    button.click(button.on_surface());
    EXPECT_TRUE(button.log.isEmpty());
}

TEST(Elboton, ObtainedBackgroundIsBlendedWithTheClearedSurface) {
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

TEST(Elboton, AlphaOutOfRangeFailsAfterClearing) {
    Button button("");
    TestSurface behind(200, 100, 32, 0, 0xFFFFFF);
    button->obtener_imagen_fondo(behind.hDC(), 0, 0, 255);
    EXPECT_FAILURE(button->obtener_imagen_fondo(behind.hDC(), 0, 0, 256), Overflow);
    EXPECT_EQ(button->get_the_hdc().bitmap()->pixel(5, 5), theme::window_background);
}

} // namespace
} // namespace varnoth::test
