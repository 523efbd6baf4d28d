#include "desktop/controls/elpanel.h"

#include "desktop/controls/parts/panel_icon.h"
#include "desktop/controls/shown.h"
#include "desktop/theme/theme.h"
#include "support/expect_failure.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

struct Panel : Recorded<elpanel> {
    explicit Panel(int width = 300, int height = 200) : Recorded(width, height) {}

    const BoxPart& box(const char* name) { return control.part<BoxPart>(name); }

    Colour edge(const char* name) { return line(name).BorderColor; }

    QPoint on_surface() { return {50, 100}; }

    QPoint on_title() { return {40, 15}; }

    QPoint on_icon() { return {12, 14}; }

    QPoint on_close_glyph() { return {control.width() - 26 + 9, 17}; }

    QPoint on_close_edge() { return {control.width() - 26 + 1, 25}; }

    bool close_raised() {
        return edge("Line1A(0)") == light && edge("Line1A(1)") == light && edge("Line1B(0)") == dark &&
               edge("Line1B(1)") == dark;
    }

    bool close_sunken() {
        return edge("Line1A(0)") == dark && edge("Line1A(1)") == dark && edge("Line1B(0)") == light &&
               edge("Line1B(1)") == light;
    }
};

class Elpanel : public testing::Test, protected Panel {};

TEST_F(Elpanel, PartsFollowASizeSetWhileHidden) {
    elpanel panel("p", nullptr);
    panel.setGeometry(0, 0, 200, 90);
    EXPECT_EQ(panel.part<LinePart>("LineB(0)").X1, 199);
    EXPECT_EQ(panel.part<LinePart>("LineB(1)").Y1, 89);
    EXPECT_EQ(panel.part<BoxPart>("Picture2").Left, 174);
    EXPECT_EQ(panel.part<TextPart>("Label1").Width, 145);
}

TEST_F(Elpanel, DrawingContextFollowsASizeSetWhileHidden) {
    elpanel panel("p", nullptr);
    panel.resize(30, 20);
    panel.get_the_hdc();
    panel.resize(50, 40);
    const Bitmap& pixels = *panel.get_the_hdc().bitmap();
    EXPECT_EQ(pixels.width(), 50);
    EXPECT_EQ(pixels.height(), 40);
    EXPECT_EQ(pixels.pixel(49, 39), theme::window_background);
}

TEST_F(Elpanel, HiddenPanelTakesABackgroundOfItsNewSize) {
    elpanel panel("p", nullptr);
    panel.resize(30, 20);
    panel.get_the_hdc();
    panel.resize(50, 40);
    TestSurface behind(100, 100, 32, 0, 0xFFFFFF);
    panel.obtener_imagen_fondo(behind.hDC(), 0, 0, 255);
    EXPECT_EQ(panel.get_the_hdc().bitmap()->pixel(48, 38), 0xFFFFFF);
    EXPECT_EQ(panel.get_the_hdc().bitmap()->pixel(49, 38), theme::window_background);
}

TEST_F(Elpanel, WidthAndHeightUseHorizontalTwips) {
    const OtherScreen flat(20, 12);
    Panel panel(100, 50);
    EXPECT_EQ(panel->part<LinePart>("LineB(0)").X1, 99);
    EXPECT_EQ(panel->part<LinePart>("LineB(1)").Y1, 50.0 * 12 / 20 - 1);
}

TEST_F(Elpanel, CloseButtonIsAtANegativeLeftBelow26Pixels) {
    Panel panel(20, 40);
    EXPECT_EQ(panel.box("Picture2").Left, -6);
    picture_of(panel.control);
}

TEST_F(Elpanel, HidingTheCloseButtonMovesNothingElse) {
    const QRectF title = text("Label1").place();
    control.SetCerrar(false);
    EXPECT_FALSE(control.Cerrar());
    EXPECT_FALSE(box("Picture2").Visible);
    EXPECT_EQ(text("Label1").place(), title);
    EXPECT_EQ(count_of(picture_of(control), theme::window_background, QRect(274, 8, 18, 18)), 18 * 18);
    click(on_close_glyph());
    EXPECT_EQ(log.count("CloseClick"), 0);
    EXPECT_EQ(log.count("Click"), 1);
}

TEST_F(Elpanel, HidingTheIconKeepsItsGap) {
    control.SetIcon(false);
    EXPECT_FALSE(control.Icon());
    EXPECT_EQ(text("Label1").Left, 30);
    EXPECT_EQ(count_of(picture_of(control), theme::window_background, QRect(9, 10, 16, 16)), 16 * 16);
    press(on_icon());
    EXPECT_EQ(log, QStringList{"MouseDown 1 0 12,14"});
}

TEST_F(Elpanel, GlyphAndCloseButtonRaiseCloseClick) {
    for (const QPoint point : {on_close_glyph(), on_close_edge()}) {
        log.clear();
        click(point);
        EXPECT_EQ(log, QStringList{"CloseClick"});
    }
}

TEST_F(Elpanel, ClickOnTheTitleIsNoCloseClick) {
    click(on_title());
    EXPECT_EQ(log, (QStringList{"TitleMouseDown 1 0 10,6", "TitleMouseUp 1 0 10,6", "Click"}));
}

TEST_F(Elpanel, ReleaseBesideTheCloseButtonIsNoCloseClick) {
    press(on_close_glyph());
    EXPECT_TRUE(close_sunken());
    release(on_surface());
    EXPECT_TRUE(close_raised());
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(Elpanel, ReleaseJustOutsideTheCloseButtonIsNoCloseClick) {
    for (const QPoint behind : {QPoint(274 + 18, 25), QPoint(280, 8 + 18)}) {
        press(on_close_edge());
        release(behind);
    }
    EXPECT_TRUE(log.isEmpty());
    press(on_close_edge());
    release(QPoint(274 + 17, 8 + 17));
    EXPECT_EQ(log, QStringList{"CloseClick"});
}

TEST_F(Elpanel, CloseButtonIsSunkenWhilePressed) {
    EXPECT_TRUE(close_raised());
    for (const QPoint point : {on_close_glyph(), on_close_edge()}) {
        press(point);
        EXPECT_TRUE(close_sunken());
        release(point);
        EXPECT_TRUE(close_raised());
        press(point, Qt::RightButton);
        EXPECT_TRUE(close_raised());
        release(point, Qt::RightButton);
    }
}

TEST_F(Elpanel, MoveAfterALostReleaseRaisesTheCloseButton) {
    press(on_close_glyph());
    control.SetEnabled(false);
    release(on_close_glyph());
    control.SetEnabled(true);
    ASSERT_TRUE(close_sunken());
    move(control, on_surface());
    EXPECT_TRUE(close_raised());
    EXPECT_EQ(log, QStringList{"MouseMove 0 0 50,100"});
}

TEST_F(Elpanel, TitleReleasesThePointerAfterALostRelease) {
    press(on_title());
    move(control, on_surface()); // the window system consumed the release
    EXPECT_EQ(log.last(), "MouseMove 0 0 50,100");
    release(on_surface());
    EXPECT_EQ(log.last(), "MouseMove 0 0 50,100");
}

TEST_F(Elpanel, NewEdgeColourReachesTheCloseButtonAfterAPress) {
    control.SetColor3DLight(0x0000FF);
    EXPECT_EQ(edge("Line1A(0)"), 0x0000FF);
    EXPECT_EQ(edge("Line1A(1)"), 0x0000FF);
    control.SetColor3DDark(0x00FF00);
    EXPECT_EQ(edge("Line1B(0)"), 0x00FF00);
    press(on_close_glyph());
    EXPECT_EQ(edge("Line1A(0)"), 0x00FF00);
    EXPECT_EQ(edge("Line1B(1)"), 0x0000FF);
    release(on_close_glyph());
    EXPECT_EQ(edge("Line1A(0)"), 0x0000FF);
    EXPECT_EQ(edge("Line1B(1)"), 0x00FF00);
}

TEST_F(Elpanel, LongTitleIsClippedWithoutAnEllipsis) {
    Panel panel(120, 40);
    panel->SetCerrar(false);
    panel->SetTitle(QString(60, QChar('W')));
    const QImage picture = picture_of(panel.control);
    const QRect beyond(95, 1, 24, 38); // starts at 30 + 120 - 55
    EXPECT_EQ(count_of(picture, theme::window_background, beyond), 24 * 38);
    panel->SetTitle(QString(30, QChar('W')));
    EXPECT_EQ(picture_of(panel.control), picture);
}

TEST_F(Elpanel, TitleWithoutSpaceIsHidden) {
    Panel panel(50, 40);
    EXPECT_EQ(count_of(picture_of(panel.control), theme::white, QRect(30, 1, 19, 38)), 0);
}

TEST_F(Elpanel, EachPartRaisesItsOwnMouseEvents) {
    move(control, on_title());
    move(control, on_icon());
    move(control, on_close_glyph());
    move(control, on_surface());
    EXPECT_EQ(log, (QStringList{"TitleMouseMove 0 0 10,6", "IconMouseMove 0 0 3,4", "MouseMove 0 0 50,100"}));
    log.clear();
    click(on_icon());
    click(on_surface());
    EXPECT_EQ(log, (QStringList{"IconMouseDown 1 0 3,4", "IconMouseUp 1 0 3,4", "MouseDown 1 0 50,100",
                                "MouseUp 1 0 50,100", "Click"}));
}

TEST_F(Elpanel, TitleAndSurfaceRaiseDblClick) {
    for (const QPoint point : {on_title(), on_surface()}) {
        log.clear();
        double_click(control, point);
        EXPECT_EQ(log.count("Click"), 1);
        EXPECT_EQ(log.count("DblClick"), 1);
    }
    log.clear();
    double_click(control, on_close_glyph());
    double_click(control, on_icon());
    EXPECT_EQ(log.count("CloseClick"), 2);
    EXPECT_EQ(log.count("DblClick"), 0);
}

TEST_F(Elpanel, DragOfTheTitleIsReportedInTitleCoordinates) {
    press(on_title());
    move(control, on_surface(), Qt::LeftButton);
    release(on_surface());
    EXPECT_EQ(log.value(1), "TitleMouseMove 1 0 20,91");
    EXPECT_EQ(log.value(2), "TitleMouseUp 1 0 20,91");
}

TEST_F(Elpanel, ShadowPassesMouseEventsToTheTitle) {
    control.SetDropShadow(true);
    press(on_title());
    EXPECT_EQ(log, QStringList{"TitleMouseDown 1 0 10,6"});
}

TEST_F(Elpanel, TitleCoversTheFirstColumnOfTheCloseButton) {
    // the title ends at 30 + 300 - 55, one pixel right of 300 - 26
    click(QPoint(274, 15));
    click(QPoint(275, 15));
    EXPECT_EQ(log.value(0), "TitleMouseDown 1 0 244,6");
    EXPECT_EQ(log.count("CloseClick"), 1);
}

TEST_F(Elpanel, ShadowIsBehindTheTitle) {
    control.SetTitle("Sprite");
    control.SetFontSize(24); // strokes wider than a pixel
    const int white = count_of(picture_of(control), theme::white);
    control.SetDropShadow(true);
    EXPECT_TRUE(text("shadow1").Visible);
    EXPECT_EQ(text("shadow1").place(), text("Label1").place().translated(1, 1));
    EXPECT_EQ(count_of(picture_of(control), theme::white), white);
    EXPECT_GT(count_of(picture_of(control), theme::black), 0);
}

TEST_F(Elpanel, BackColorAppliesToTheCloseButtonToo) {
    control.SetBackColor(0x123456);
    control.SetCloseColor(0x00FFFF);
    const QImage picture = picture_of(control);
    EXPECT_EQ(colour_at(picture, 276, 10), 0x123456);
    EXPECT_EQ(colour_at(picture, 150, 100), 0x123456);
    EXPECT_GT(count_of(picture, 0x00FFFF, QRect(276, 10, 14, 14)), 4);
}

TEST_F(Elpanel, NewPanelShowsTheDefaultIconAt24Bits) {
    const Bitmap& icon = *control.get_icon_hdc().bitmap();
    EXPECT_EQ(icon.bits_per_pixel(), 24);
    TestSurface drawn(16, 16, 24, 0, theme::window_background);
    draw_panel_icon(drawn);
    const QImage picture = picture_of(control);
    for (int y = 0; y < 16; ++y) {
        for (int x = 0; x < 16; ++x) {
            const Colour expected = drawn.Point(x, y);
            EXPECT_EQ(icon.pixel(x, y), expected) << x << ',' << y;
            EXPECT_EQ(colour_at(picture, 9 + x, 10 + y), expected) << x << ',' << y;
        }
    }
}

TEST_F(Elpanel, IconHasSeveralColoursAndTransparentCorners) {
    constexpr Colour before = 0xFF00FF;
    TestSurface drawn(16, 16, 24, 0, before);
    draw_panel_icon(drawn);
    QSet<Colour> colours;
    int left_alone = 0;
    for (int y = 0; y < 16; ++y) {
        for (int x = 0; x < 16; ++x) {
            colours.insert(drawn.Point(x, y));
            left_alone += drawn.Point(x, y) == before ? 1 : 0;
        }
    }
    EXPECT_GE(colours.size(), 6);
    EXPECT_EQ(left_alone, 4);
    EXPECT_EQ(drawn.Point(0, 0), before);
}

TEST_F(Elpanel, IconIsCopiedFromTheTopLeftOfAContext) {
    TestSurface source(20, 20, 32, 0, 0x0000FF);
    source.PSet(15, 15, 0x00FF00);
    control.set_icon(source.hDC());
    EXPECT_EQ(control.get_icon_hdc().bitmap()->pixel(15, 15), 0x00FF00);
    EXPECT_EQ(colour_at(control, 9, 10), 0x0000FF);
    EXPECT_EQ(colour_at(control, 24, 25), 0x00FF00);
    EXPECT_EQ(colour_at(control, 25, 26), theme::window_background);
}

TEST_F(Elpanel, SetTheHdcCopiesAContextOverThePanelAndReturns0) {
    TestSurface source(300, 200, 32, 0, 0x654321);
    source.PSet(0, 0, 0x111111);
    EXPECT_EQ(control.set_the_hdc(source.hDC()), 0);
    EXPECT_EQ(control.get_the_hdc().bitmap()->pixel(0, 0), 0x111111);
    EXPECT_EQ(control.get_the_hdc().bitmap()->pixel(299, 199), 0x654321);
    EXPECT_EQ(colour_at(control, 150, 100), 0x654321);
    DrawingContext none;
    EXPECT_EQ(control.set_the_hdc(none), 0);
}

TEST_F(Elpanel, ObtainedBackgroundIsBlendedIntoTheCloseButton) {
    TestSurface behind(400, 300, 32, 0, 0xFFFFFF);
    behind.PSet(10 + 274, 20 + 8, 0x0000FF);
    control.obtener_imagen_fondo(behind.hDC(), 10, 20, 255);
    EXPECT_EQ(control.get_the_hdc().bitmap()->pixel(0, 5), theme::window_background);
    EXPECT_EQ(control.get_the_hdc().bitmap()->pixel(1, 5), 0xFFFFFF);
    const QImage picture = picture_of(control);
    EXPECT_EQ(colour_at(picture, 275, 9), 0x0000FF);
    EXPECT_EQ(colour_at(picture, 276, 9), 0xFFFFFF);
    EXPECT_FAILURE(control.obtener_imagen_fondo(behind.hDC(), 0x7FFFFFFF, 0, 255), Overflow);
}

TEST_F(Elpanel, AlphaOutOfRangeFailsBeforeThePanelIsCleared) {
    TestSurface drawn(300, 200, 32, 0, 0x0000FF);
    control.set_the_hdc(drawn.hDC());
    TestSurface behind(400, 300, 32, 0, 0xFFFFFF);
    EXPECT_FAILURE(control.obtener_imagen_fondo(behind.hDC(), 0, 0, 256), Overflow);
    EXPECT_EQ(control.get_the_hdc().bitmap()->pixel(5, 5), 0x0000FF);
}

TEST_F(Elpanel, CloseButtonIsNotClearedBeforeBlending) {
    control.SetBackColor(0);
    TestSurface behind(400, 300, 32, 0, 0xFFFFFF);
    control.obtener_imagen_fondo(behind.hDC(), 0, 0, 51);
    control.obtener_imagen_fondo(behind.hDC(), 0, 0, 51);
    EXPECT_EQ(control.get_the_hdc().bitmap()->pixel(5, 5), 0x333333);
    EXPECT_EQ(colour_at(control, 275, 9), 0x5C5C5C); // a fifth, plus a fifth of the remaining four
}

} // namespace
} // namespace varnoth::test
