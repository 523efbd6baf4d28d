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

TEST(Elpanel, PartsAreAtTheirDesignedPositions) {
    Panel panel;
    EXPECT_EQ(panel.box("Picture1").place(), QRectF(9, 10, 16, 16));
    EXPECT_EQ(panel.box("Picture2").place(), QRectF(274, 8, 18, 18));
    EXPECT_EQ(panel.text("Label2").place(), QRectF(2, 2, 14, 14));
    EXPECT_EQ(panel.text("Label1").place(), QRectF(30, 9, 245, 18));
    EXPECT_EQ(panel.text("shadow1").place(), QRectF(31, 10, 245, 18));
    EXPECT_EQ(panel.text("Label2").Caption(), "r");
    EXPECT_EQ(panel.text("Label1").Caption(), "Title");
    EXPECT_EQ(panel.text("shadow1").Caption(), "Title");
}

TEST(Elpanel, PartsFollowASizeSetWhileHidden) {
    elpanel panel("p", nullptr);
    panel.setGeometry(0, 0, 200, 90);
    EXPECT_EQ(panel.part<LinePart>("LineB(0)").X1, 199);
    EXPECT_EQ(panel.part<LinePart>("LineB(1)").Y1, 89);
    EXPECT_EQ(panel.part<BoxPart>("Picture2").Left, 174);
    EXPECT_EQ(panel.part<TextPart>("Label1").Width, 145);
}

TEST(Elpanel, DrawingContextFollowsASizeSetWhileHidden) {
    elpanel panel("p", nullptr);
    panel.resize(30, 20);
    panel.get_the_hdc();
    panel.resize(50, 40);
    const Bitmap& pixels = *panel.get_the_hdc().bitmap();
    EXPECT_EQ(pixels.width(), 50);
    EXPECT_EQ(pixels.height(), 40);
    EXPECT_EQ(pixels.pixel(49, 39), theme::window_background);
}

TEST(Elpanel, HiddenPanelTakesABackgroundOfItsNewSize) {
    elpanel panel("p", nullptr);
    panel.resize(30, 20);
    panel.get_the_hdc();
    panel.resize(50, 40);
    TestSurface behind(100, 100, 32, 0, 0xFFFFFF);
    panel.obtener_imagen_fondo(behind.hDC(), 0, 0, 255);
    EXPECT_EQ(panel.get_the_hdc().bitmap()->pixel(48, 38), 0xFFFFFF);
    EXPECT_EQ(panel.get_the_hdc().bitmap()->pixel(49, 38), theme::window_background);
}

TEST(Elpanel, WidthAndHeightUseHorizontalTwips) {
    const OtherScreen flat(20, 12);
    Panel panel(100, 50);
    EXPECT_EQ(panel->part<LinePart>("LineB(0)").X1, 99);
    EXPECT_EQ(panel->part<LinePart>("LineB(1)").Y1, 50.0 * 12 / 20 - 1);
}

TEST(Elpanel, CloseButtonIsAtANegativeLeftBelow26Pixels) {
    Panel panel(20, 40);
    EXPECT_EQ(panel.box("Picture2").Left, -6);
    picture_of(panel.control);
}

TEST(Elpanel, HidingTheCloseButtonMovesNothingElse) {
    Panel panel;
    const QRectF title = panel.text("Label1").place();
    panel->SetCerrar(false);
    EXPECT_FALSE(panel->Cerrar());
    EXPECT_FALSE(panel.box("Picture2").Visible);
    EXPECT_EQ(panel.text("Label1").place(), title);
    EXPECT_EQ(count_of(picture_of(panel.control), theme::window_background, QRect(274, 8, 18, 18)), 18 * 18);
    panel.click(panel.on_close_glyph());
    EXPECT_EQ(panel.log.count("CloseClick"), 0);
    EXPECT_EQ(panel.log.count("Click"), 1);
}

TEST(Elpanel, HidingTheIconKeepsItsGap) {
    Panel panel;
    panel->SetIcon(false);
    EXPECT_FALSE(panel->Icon());
    EXPECT_EQ(panel.text("Label1").Left, 30);
    EXPECT_EQ(count_of(picture_of(panel.control), theme::window_background, QRect(9, 10, 16, 16)), 16 * 16);
    panel.press(panel.on_icon());
    EXPECT_EQ(panel.log, QStringList{"MouseDown 1 0 12,14"});
}

TEST(Elpanel, GlyphAndCloseButtonRaiseCloseClick) {
    Panel panel;
    for (const QPoint point : {panel.on_close_glyph(), panel.on_close_edge()}) {
        panel.log.clear();
        panel.click(point);
        EXPECT_EQ(panel.log, QStringList{"CloseClick"});
    }
}

TEST(Elpanel, ClickOnTheTitleIsNoCloseClick) {
    Panel panel;
    panel.click(panel.on_title());
    EXPECT_EQ(panel.log, (QStringList{"TitleMouseDown 1 0 10,6", "TitleMouseUp 1 0 10,6", "Click"}));
}

TEST(Elpanel, ReleaseBesideTheCloseButtonIsNoCloseClick) {
    Panel panel;
    panel.press(panel.on_close_glyph());
    EXPECT_TRUE(panel.close_sunken());
    panel.release(panel.on_surface());
    EXPECT_TRUE(panel.close_raised());
    EXPECT_TRUE(panel.log.isEmpty());
}

TEST(Elpanel, ReleaseJustOutsideTheCloseButtonIsNoCloseClick) {
    Panel panel;
    for (const QPoint behind : {QPoint(274 + 18, 25), QPoint(280, 8 + 18)}) {
        panel.press(panel.on_close_edge());
        panel.release(behind);
    }
    EXPECT_TRUE(panel.log.isEmpty());
    panel.press(panel.on_close_edge());
    panel.release(QPoint(274 + 17, 8 + 17));
    EXPECT_EQ(panel.log, QStringList{"CloseClick"});
}

TEST(Elpanel, CloseButtonIsSunkenWhilePressed) {
    Panel panel;
    EXPECT_TRUE(panel.close_raised());
    for (const QPoint point : {panel.on_close_glyph(), panel.on_close_edge()}) {
        panel.press(point);
        EXPECT_TRUE(panel.close_sunken());
        panel.release(point);
        EXPECT_TRUE(panel.close_raised());
        panel.press(point, Qt::RightButton);
        EXPECT_TRUE(panel.close_raised());
        panel.release(point, Qt::RightButton);
    }
}

TEST(Elpanel, MoveAfterALostReleaseRaisesTheCloseButton) {
    Panel panel;
    panel.press(panel.on_close_glyph());
    panel->SetEnabled(false);
    panel.release(panel.on_close_glyph());
    panel->SetEnabled(true);
    ASSERT_TRUE(panel.close_sunken());
    move(panel.control, panel.on_surface());
    EXPECT_TRUE(panel.close_raised());
    EXPECT_EQ(panel.log, QStringList{"MouseMove 0 0 50,100"});
}

TEST(Elpanel, TitleReleasesThePointerAfterALostRelease) {
    Panel panel;
    panel.press(panel.on_title());
    move(panel.control, panel.on_surface()); // the window system consumed the release
    EXPECT_EQ(panel.log.last(), "MouseMove 0 0 50,100");
    panel.release(panel.on_surface());
    EXPECT_EQ(panel.log.last(), "MouseMove 0 0 50,100");
}

TEST(Elpanel, NewEdgeColourReachesTheCloseButtonAfterAPress) {
    Panel panel;
    panel->SetColor3DLight(0x0000FF);
    EXPECT_EQ(panel.edge("Line1A(0)"), 0x0000FF);
    EXPECT_EQ(panel.edge("Line1A(1)"), 0x0000FF);
    panel->SetColor3DDark(0x00FF00);
    EXPECT_EQ(panel.edge("Line1B(0)"), 0x00FF00);
    panel.press(panel.on_close_glyph());
    EXPECT_EQ(panel.edge("Line1A(0)"), 0x00FF00);
    EXPECT_EQ(panel.edge("Line1B(1)"), 0x0000FF);
    panel.release(panel.on_close_glyph());
    EXPECT_EQ(panel.edge("Line1A(0)"), 0x0000FF);
    EXPECT_EQ(panel.edge("Line1B(1)"), 0x00FF00);
}

TEST(Elpanel, LongTitleIsClippedWithoutAnEllipsis) {
    Panel panel(120, 40);
    panel->SetCerrar(false);
    panel->SetTitle(QString(60, QChar('W')));
    const QImage picture = picture_of(panel.control);
    const QRect beyond(95, 1, 24, 38); // starts at 30 + 120 - 55
    EXPECT_EQ(count_of(picture, theme::window_background, beyond), 24 * 38);
    panel->SetTitle(QString(30, QChar('W')));
    EXPECT_EQ(picture_of(panel.control), picture);
}

TEST(Elpanel, TitleWithoutSpaceIsHidden) {
    Panel panel(50, 40);
    EXPECT_EQ(count_of(picture_of(panel.control), theme::white, QRect(30, 1, 19, 38)), 0);
}

TEST(Elpanel, EachPartRaisesItsOwnMouseEvents) {
    Panel panel;
    move(panel.control, panel.on_title());
    move(panel.control, panel.on_icon());
    move(panel.control, panel.on_close_glyph());
    move(panel.control, panel.on_surface());
    EXPECT_EQ(panel.log,
              (QStringList{"TitleMouseMove 0 0 10,6", "IconMouseMove 0 0 3,4", "MouseMove 0 0 50,100"}));
    panel.log.clear();
    panel.click(panel.on_icon());
    panel.click(panel.on_surface());
    EXPECT_EQ(panel.log, (QStringList{"IconMouseDown 1 0 3,4", "IconMouseUp 1 0 3,4", "MouseDown 1 0 50,100",
                                      "MouseUp 1 0 50,100", "Click"}));
}

TEST(Elpanel, TitleAndSurfaceRaiseDblClick) {
    Panel panel;
    for (const QPoint point : {panel.on_title(), panel.on_surface()}) {
        panel.log.clear();
        double_click(panel.control, point);
        EXPECT_EQ(panel.log.count("Click"), 1);
        EXPECT_EQ(panel.log.count("DblClick"), 1);
    }
    panel.log.clear();
    double_click(panel.control, panel.on_close_glyph());
    double_click(panel.control, panel.on_icon());
    EXPECT_EQ(panel.log.count("CloseClick"), 2);
    EXPECT_EQ(panel.log.count("DblClick"), 0);
}

TEST(Elpanel, DragOfTheTitleIsReportedInTitleCoordinates) {
    Panel panel;
    panel.press(panel.on_title());
    move(panel.control, panel.on_surface(), Qt::LeftButton);
    panel.release(panel.on_surface());
    EXPECT_EQ(panel.log.value(1), "TitleMouseMove 1 0 20,91");
    EXPECT_EQ(panel.log.value(2), "TitleMouseUp 1 0 20,91");
}

TEST(Elpanel, ShadowPassesMouseEventsToTheTitle) {
    Panel panel;
    panel->SetDropShadow(true);
    panel.press(panel.on_title());
    EXPECT_EQ(panel.log, QStringList{"TitleMouseDown 1 0 10,6"});
}

TEST(Elpanel, TitleCoversTheFirstColumnOfTheCloseButton) {
    Panel panel; // the title ends at 30 + 300 - 55, one pixel right of 300 - 26
    panel.click(QPoint(274, 15));
    panel.click(QPoint(275, 15));
    EXPECT_EQ(panel.log.value(0), "TitleMouseDown 1 0 244,6");
    EXPECT_EQ(panel.log.count("CloseClick"), 1);
}

TEST(Elpanel, ShadowIsBehindTheTitle) {
    Panel panel;
    panel->SetTitle("Sprite");
    panel->SetFontSize(24); // strokes wider than a pixel
    const int white = count_of(picture_of(panel.control), theme::white);
    panel->SetDropShadow(true);
    EXPECT_TRUE(panel.text("shadow1").Visible);
    EXPECT_EQ(count_of(picture_of(panel.control), theme::white), white);
    EXPECT_GT(count_of(picture_of(panel.control), theme::black), 0);
}

TEST(Elpanel, BackColorAppliesToTheCloseButtonToo) {
    Panel panel;
    panel->SetBackColor(0x123456);
    panel->SetCloseColor(0x00FFFF);
    const QImage picture = picture_of(panel.control);
    EXPECT_EQ(colour_at(picture, 276, 10), 0x123456);
    EXPECT_EQ(colour_at(picture, 150, 100), 0x123456);
    EXPECT_GT(count_of(picture, 0x00FFFF, QRect(276, 10, 14, 14)), 4);
}

TEST(Elpanel, NewPanelShowsTheDefaultIconAt24Bits) {
    Panel panel;
    const Bitmap& icon = *panel->get_icon_hdc().bitmap();
    EXPECT_EQ(icon.bits_per_pixel(), 24);
    TestSurface drawn(16, 16, 24, 0, theme::window_background);
    draw_panel_icon(drawn);
    const QImage picture = picture_of(panel.control);
    for (int y = 0; y < 16; ++y) {
        for (int x = 0; x < 16; ++x) {
            const Colour expected = drawn.Point(x, y);
            EXPECT_EQ(icon.pixel(x, y), expected) << x << ',' << y;
            EXPECT_EQ(colour_at(picture, 9 + x, 10 + y), expected) << x << ',' << y;
        }
    }
}

TEST(Elpanel, IconHasSeveralColoursAndTransparentCorners) {
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

TEST(Elpanel, IconIsCopiedFromTheTopLeftOfAContext) {
    Panel panel;
    TestSurface source(20, 20, 32, 0, 0x0000FF);
    source.PSet(15, 15, 0x00FF00);
    panel->set_icon(source.hDC());
    EXPECT_EQ(panel->get_icon_hdc().bitmap()->pixel(15, 15), 0x00FF00);
    EXPECT_EQ(colour_at(panel.control, 9, 10), 0x0000FF);
    EXPECT_EQ(colour_at(panel.control, 24, 25), 0x00FF00);
    EXPECT_EQ(colour_at(panel.control, 25, 26), theme::window_background);
}

TEST(Elpanel, SetTheHdcCopiesAContextOverThePanelAndReturns0) {
    Panel panel;
    TestSurface source(300, 200, 32, 0, 0x654321);
    source.PSet(0, 0, 0x111111);
    EXPECT_EQ(panel->set_the_hdc(source.hDC()), 0);
    EXPECT_EQ(panel->get_the_hdc().bitmap()->pixel(0, 0), 0x111111);
    EXPECT_EQ(panel->get_the_hdc().bitmap()->pixel(299, 199), 0x654321);
    EXPECT_EQ(colour_at(panel.control, 150, 100), 0x654321);
    DrawingContext none;
    EXPECT_EQ(panel->set_the_hdc(none), 0);
}

TEST(Elpanel, ObtainedBackgroundIsBlendedIntoTheCloseButton) {
    Panel panel;
    TestSurface behind(400, 300, 32, 0, 0xFFFFFF);
    behind.PSet(10 + 274, 20 + 8, 0x0000FF);
    panel->obtener_imagen_fondo(behind.hDC(), 10, 20, 255);
    EXPECT_EQ(panel->get_the_hdc().bitmap()->pixel(0, 5), theme::window_background);
    EXPECT_EQ(panel->get_the_hdc().bitmap()->pixel(1, 5), 0xFFFFFF);
    const QImage picture = picture_of(panel.control);
    EXPECT_EQ(colour_at(picture, 275, 9), 0x0000FF);
    EXPECT_EQ(colour_at(picture, 276, 9), 0xFFFFFF);
    EXPECT_FAILURE(panel->obtener_imagen_fondo(behind.hDC(), 0x7FFFFFFF, 0, 255), Overflow);
}

TEST(Elpanel, AlphaOutOfRangeFailsBeforeThePanelIsCleared) {
    Panel panel;
    TestSurface drawn(300, 200, 32, 0, 0x0000FF);
    panel->set_the_hdc(drawn.hDC());
    TestSurface behind(400, 300, 32, 0, 0xFFFFFF);
    EXPECT_FAILURE(panel->obtener_imagen_fondo(behind.hDC(), 0, 0, 256), Overflow);
    EXPECT_EQ(panel->get_the_hdc().bitmap()->pixel(5, 5), 0x0000FF);
}

TEST(Elpanel, CloseButtonIsNotClearedBeforeBlending) {
    Panel panel;
    panel->SetBackColor(0);
    TestSurface behind(400, 300, 32, 0, 0xFFFFFF);
    panel->obtener_imagen_fondo(behind.hDC(), 0, 0, 51);
    panel->obtener_imagen_fondo(behind.hDC(), 0, 0, 51);
    EXPECT_EQ(panel->get_the_hdc().bitmap()->pixel(5, 5), 0x333333);
    EXPECT_EQ(colour_at(panel.control, 275, 9), 0x5C5C5C); // a fifth, plus a fifth of the remaining four
}

} // namespace
} // namespace varnoth::test
