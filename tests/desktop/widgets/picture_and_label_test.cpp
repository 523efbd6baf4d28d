// The picture box, the label and the symbols, with real mouse events.
#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QImage>
#include <QPainter>
#include <QTest>

#include <gtest/gtest.h>

#include "core/base/RunTimeFailure.h"
#include "desktop/mouse_events.h"
#include "desktop/pixels.h"
#include "desktop/services/exception_barrier.h"
#include "desktop/theme/symbols.h"
#include "desktop/theme/theme.h"
#include "desktop/widgets/Label.h"
#include "desktop/widgets/PictureBox.h"

namespace varnoth::test {
namespace {

constexpr PictureSurface::Design small{
    .parent = nullptr, .width = 8, .height = 6, .bits_per_pixel = 32, .border = 0, .back_colour = 0x0000FF};

PictureSurface::Design with(std::int32_t bits_per_pixel, std::int32_t border) {
    PictureSurface::Design design = small;
    design.bits_per_pixel = bits_per_pixel;
    design.border = border;
    return design;
}

QImage shown(QWidget& widget) {
    return widget.grab().toImage();
}

QColor at(const QImage& image, int x, int y) {
    return image.pixelColor(x, y);
}

/// A picture box that records its events as text.
struct RecordedBox : PictureBox {
    std::vector<std::string> events;

    explicit RecordedBox(const PictureSurface::Design& design, QWidget* parent = nullptr)
        : PictureBox("Picture1", parent, design) {
        const auto noted = [this](const char* name) {
            return [this, name](const MouseArguments& mouse) {
                events.push_back(QString("%1 %2 %3 at %4,%5")
                                     .arg(QLatin1String(name))
                                     .arg(mouse.Button)
                                     .arg(mouse.Shift)
                                     .arg(static_cast<int>(mouse.x))
                                     .arg(static_cast<int>(mouse.y))
                                     .toStdString());
            };
        };
        on_event(this, &PictureBox::MouseDown, this, noted("down"));
        on_event(this, &PictureBox::MouseMove, this, noted("move"));
        on_event(this, &PictureBox::MouseUp, this, noted("up"));
        on_event(this, &PictureBox::Click, this, [this] { events.emplace_back("click"); });
        on_event(this, &PictureBox::DblClick, this, [this] { events.emplace_back("double click"); });
    }
};

TEST(PictureBox, ShowsTheSurfacePixelByPixel) {
    for (const std::int32_t depth : {32, 24, 16}) {
        PictureBox box("Picture1", nullptr, with(depth, 0));
        box.surface().PSet(0, 0, 0xFFFFFF);
        box.surface().PSet(7, 5, 0xFF0000);
        const QImage image = shown(box);
        ASSERT_EQ(image.size(), QSize(8, 6));
        EXPECT_EQ(at(image, 0, 0), QColor(255, 255, 255)) << depth;
        EXPECT_EQ(at(image, 7, 5), QColor(0, 0, 255)) << depth;
        EXPECT_EQ(at(image, 3, 3), QColor(255, 0, 0)) << depth;
    }
}

TEST(PictureBox, ActAsMethodsRaiseTheMouseEvents) {
    RecordedBox box(with(32, 2));
    box.show();
    QTest::keyClick(&box, Qt::Key_F1); // without this, Ctrl stays pressed after a key click with Ctrl
    QTest::mouseMove(&box, QPoint(5, 6));
    QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(5, 6));
    const std::vector<std::string> by_mouse = std::exchange(box.events, {});
    box.perform_move({3, 4});
    box.perform_click_at({3, 4});
    EXPECT_EQ(box.events, by_mouse);
    EXPECT_EQ(box.events,
              (std::vector<std::string>{"move 0 0 at 3,4", "down 1 0 at 3,4", "up 1 0 at 3,4", "click"}));
}

TEST(PictureBox, FourthByteOfAPixelIsIgnored) {
    constexpr int rows = 150;
    PictureBox box("Picture1", nullptr, {.width = 8, .height = rows, .border = 2});
    std::vector<std::uint8_t> bytes;
    for (int i = 0; i < 8 * rows; ++i) {
        bytes.insert(bytes.end(), {10, 20, 30, static_cast<std::uint8_t>(i * 5)});
    }
    box.surface().SetBitmapBits(bytes);
    QImage page(12, rows + 4, QImage::Format_ARGB32_Premultiplied); // the background may be transparent
    page.fill(Qt::transparent);
    box.render(&page);
    for (int i = 0; i < 8 * rows; ++i) {
        ASSERT_EQ(page.pixelColor(2 + i % 8, 2 + i / 8), QColor(30, 20, 10, 255)) << i;
    }
}

TEST(PictureBox, FollowsTheOuterSizeOfTheSurface) {
    PictureBox box("Picture1", nullptr, with(32, 2));
    EXPECT_EQ(box.size(), QSize(12, 10));
    box.surface().SetWidth(30);
    EXPECT_EQ(box.size(), QSize(30, 10));
    box.surface().AutoSize = true;
    box.surface().SetPicture(make_picture(Bitmap(20, 40, 32, Bitmap::Rows::Surface)));
    EXPECT_EQ(box.size(), QSize(24, 44));
}

TEST(PictureBox, BorderIsADarkFrame) {
    PictureBox box("Picture1", nullptr, with(32, 2));
    const QColor dark = theme::to_qcolor(theme::edge_dark);
    const QImage image = shown(box);
    for (const QPoint point :
         {QPoint(0, 0), QPoint(1, 5), QPoint(6, 1), QPoint(10, 5), QPoint(11, 9), QPoint(6, 8)}) {
        EXPECT_EQ(image.pixelColor(point), dark) << point.x() << "," << point.y();
    }
    EXPECT_EQ(at(image, 2, 2), QColor(255, 0, 0));
    EXPECT_EQ(at(image, 9, 7), QColor(255, 0, 0));
}

TEST(PictureBox, SurfaceWithoutPixelsDrawsNothing) {
    PictureBox box("Picture1", nullptr, small);
    box.surface().SetWidth(0);
    EXPECT_EQ(box.width(), 0);
    QImage page(8, 6, QImage::Format_RGB32);
    page.fill(Qt::green);
    box.render(&page);
    EXPECT_EQ(page.pixelColor(0, 0), QColor(Qt::green));
}

TEST(PictureBox, PictureBeyondQtsSizeLimitIsShown) {
    QWidget window;
    window.resize(40, 20);
    PictureBox box("Picture1", &window, small);
    box.surface().SetWidth(40000);
    box.surface().PSet(39999, 0, 0x00FF00);
    EXPECT_EQ(box.width(), 40000);
    EXPECT_EQ(at(shown(window), 5, 3), QColor(255, 0, 0));
    box.move(-39980, 0);
    EXPECT_EQ(at(shown(window), 19, 0), QColor(0, 255, 0));
    EXPECT_EQ(at(shown(window), 18, 0), QColor(255, 0, 0));
}

TEST(PictureBox, ScaledPixelIsASharpSquare) {
    PictureBox box("Picture1", nullptr, small);
    box.surface().PSet(1, 1, 0xFFFFFF);
    QImage page(16, 12, QImage::Format_RGB32);
    page.setDevicePixelRatio(2);
    box.render(&page);
    for (int y = 0; y < 12; ++y) {
        for (int x = 0; x < 16; ++x) {
            const bool white = x / 2 == 1 && y / 2 == 1;
            ASSERT_EQ(page.pixelColor(x, y), white ? QColor(255, 255, 255) : QColor(255, 0, 0))
                << x << "," << y;
        }
    }
}

class CountedPaints : public PictureBox {
  public:
    using PictureBox::PictureBox;
    int paints = 0;

  protected:
    void paintEvent(QPaintEvent* event) override {
        ++paints;
        PictureBox::paintEvent(event);
    }
};

TEST(PictureBox, RefreshSetBackColorAndClsRepaintOnce) {
    CountedPaints box("Picture1", nullptr, small);
    box.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&box));
    QCoreApplication::processEvents();
    const auto paints_after = [&](auto&& change) {
        const int before = box.paints;
        change();
        QCoreApplication::processEvents();
        return box.paints - before;
    };
    EXPECT_EQ(paints_after([&] { box.surface().Refresh(); }), 1);
    EXPECT_EQ(paints_after([&] { box.SetBackColor(0x123456); }), 1);
    EXPECT_EQ(paints_after([&] { box.Cls(); }), 1);
    EXPECT_EQ(paints_after([] {}), 0);
}

TEST(PictureBox, MousePositionsAreInPicturePixels) {
    RecordedBox box(with(32, 2));
    QTest::mouseClick(&box, Qt::LeftButton, Qt::ShiftModifier, {5, 4});
    EXPECT_EQ(box.events, (std::vector<std::string>{"down 1 1 at 3,2", "up 1 1 at 3,2", "click"}));
    box.events.clear();
    QTest::mouseClick(&box, Qt::RightButton, Qt::ControlModifier, {5, 4});
    EXPECT_EQ(box.events, (std::vector<std::string>{"down 2 2 at 3,2", "up 2 2 at 3,2"}));
}

TEST(PictureBox, MouseMoveReportsNoButtonsOrAllHeldButtons) {
    RecordedBox box(small);
    box.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&box));
    QTest::mouseMove(box.windowHandle(), {2, 3});
    QTest::mousePress(&box, Qt::LeftButton, {}, {2, 3});
    QTest::mousePress(&box, Qt::RightButton, {}, {2, 3});
    QTest::mouseMove(&box, {4, 3});
    QTest::mouseRelease(&box, Qt::LeftButton, {}, {4, 3});
    QTest::mouseRelease(&box, Qt::RightButton, {}, {4, 3});
    EXPECT_EQ(box.events, (std::vector<std::string>{"move 0 0 at 2,3", "down 1 0 at 2,3", "down 2 0 at 2,3",
                                                    "move 3 0 at 4,3", "up 1 0 at 4,3", "up 2 0 at 4,3"}));
}

TEST(PictureBox, FourthMouseButtonRaisesNothing) {
    RecordedBox box(small);
    fast_pair(&box, Qt::BackButton, {}, {2, 3});
    EXPECT_TRUE(box.events.empty());
}

TEST(PictureBox, SecondLeftPressRaisesDblClickInsteadOfClick) {
    RecordedBox box(small);
    fast_pair(&box, Qt::LeftButton, {}, {2, 3});
    EXPECT_EQ(box.events, (std::vector<std::string>{"down 1 0 at 2,3", "up 1 0 at 2,3", "click",
                                                    "down 1 0 at 2,3", "double click", "up 1 0 at 2,3"}));
    box.events.clear();
    fast_pair(&box, Qt::RightButton, {}, {2, 3});
    EXPECT_EQ(box.events, (std::vector<std::string>{"down 2 0 at 2,3", "up 2 0 at 2,3", "down 2 0 at 2,3",
                                                    "up 2 0 at 2,3"}));
}

TEST(PictureBox, ReleaseOutsideRaisesNoClick) {
    RecordedBox box(small);
    QTest::mousePress(&box, Qt::LeftButton, {}, {2, 3});
    QTest::mouseRelease(&box, Qt::LeftButton, {}, {20, 3});
    EXPECT_EQ(box.events, (std::vector<std::string>{"down 1 0 at 2,3", "up 1 0 at 20,3"}));
}

struct PressCounter : QWidget {
    int presses = 0;

  protected:
    void mousePressEvent(QMouseEvent* /*event*/) override { ++presses; }
};

TEST(PictureBox, MousePressIsNotPropagatedEvenIfDisabled) {
    PressCounter window;
    window.resize(100, 100);
    PictureBox box("Picture1", &window, small);
    box.setEnabled(false);
    window.show();
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, {3, 3});
    EXPECT_EQ(window.presses, 0);
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, {50, 50});
    EXPECT_EQ(window.presses, 1);
}

// Qt 6.8 delivers the mouse events of a widget that is one pixel wide or high to its parent.
TEST(PictureBox, PictureOfOnePixelReceivesTheMouse) {
    QWidget window;
    window.resize(100, 100);
    PictureSurface::Design pixel = small;
    pixel.width = pixel.height = 1;
    RecordedBox box(pixel, &window);
    box.move(10, 20);
    window.show();
    QTest::mouseMove(window.windowHandle(), {11, 20});
    QTest::mouseMove(window.windowHandle(), {10, 20});
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, {10, 20});
    QTest::mouseMove(window.windowHandle(), {13, 24});
    QTest::mouseMove(window.windowHandle(), {10, 20});
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, {10, 20});
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, {9, 20});
    EXPECT_EQ(box.events, (std::vector<std::string>{"move 0 0 at 0,0", "down 1 0 at 0,0", "move 1 0 at 3,4",
                                                    "move 1 0 at 0,0", "up 1 0 at 0,0", "click"}));
}

TEST(PictureBox, DragThatBeginsBesideThePictureStaysThere) {
    PressCounter window;
    window.resize(100, 100);
    RecordedBox box(small, &window);
    window.show();
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, {50, 50});
    QTest::mouseMove(window.windowHandle(), {3, 3});
    QTest::mousePress(window.windowHandle(), Qt::RightButton, {}, {3, 3});
    QTest::mouseRelease(window.windowHandle(), Qt::RightButton, {}, {3, 3});
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, {3, 3});
    EXPECT_TRUE(box.events.empty());
    EXPECT_EQ(window.presses, 2);
}

TEST(PictureBox, FailureInAHandlerIsFatal) {
    std::vector<std::string> errors;
    const FatalErrorHandlerInstallation installation(
        [&](std::string_view name, std::string_view) { errors.emplace_back(name); });
    PictureBox box("Picture1", nullptr, small);
    on_event(&box, &PictureBox::MouseDown, &box, [] { fail(Failure::Overflow); });
    QTest::mousePress(&box, Qt::LeftButton, {}, {2, 3});
    EXPECT_EQ(errors, std::vector<std::string>{"Overflow"});
}

// The press action of assistive technology.

QAccessibleActionInterface& actions_of(QWidget& widget) {
    return *QAccessible::queryAccessibleInterface(&widget)->actionInterface();
}

void press(QWidget& widget) {
    actions_of(widget).doAction(QAccessibleActionInterface::pressAction());
}

const QStringList only_press{QAccessibleActionInterface::pressAction()};

TEST(PictureBox, DisabledPictureHasNoPressAction) {
    PictureBox box("Picture1", nullptr, {.width = 8, .height = 6});
    int clicks = 0;
    on_event(&box, &PictureBox::Click, &box, [&] { ++clicks; });
    ASSERT_EQ(actions_of(box).actionNames(), only_press);
    press(box);
    EXPECT_EQ(clicks, 1);
    actions_of(box).doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(clicks, 1) << "another action";
    box.setEnabled(false);
    EXPECT_EQ(actions_of(box).actionNames(), QStringList());
    press(box);
    EXPECT_EQ(clicks, 1) << "disabled";
}

TEST(PictureBox, UnconnectedPictureHasNoPressAction) {
    PictureBox box("Picture1", nullptr, {.width = 8, .height = 6});
    EXPECT_EQ(actions_of(box).actionNames(), QStringList());
}

TEST(PictureBox, PressActionRaisesDblClickIfOnlyThatIsConnected) {
    PictureBox box("Picture1", nullptr, {.width = 8, .height = 6});
    int double_clicks = 0;
    on_event(&box, &PictureBox::DblClick, &box, [&] { ++double_clicks; });
    ASSERT_EQ(actions_of(box).actionNames(), only_press);
    press(box);
    EXPECT_EQ(double_clicks, 1);
}

// Labels.

TEST(Label, SymbolIsDrawnInItsColourInitiallyBlack) {
    Label label("Label1", nullptr, Label::Kind::Symbol, "g", "Stop");
    label.resize(14, 14);
    EXPECT_EQ(count_of(shown(label), theme::black), 8 * 8);
    label.SetForeColor(theme::highlight);
    EXPECT_EQ(count_of(shown(label), theme::highlight), 8 * 8);
    EXPECT_EQ(count_of(shown(label), theme::black), 0);
    EXPECT_EQ(label.ForeColor(), theme::highlight);
    label.SetCaption("?");
    EXPECT_EQ(count_of(shown(label), theme::highlight), 0);
}

TEST(Label, TextIsDrawnLightAndCanChange) {
    Label label("Label5", nullptr, Label::Kind::Text, "15 fps");
    label.resize(60, 20);
    EXPECT_EQ(label.ForeColor(), theme::light_text);
    const QImage before = shown(label);
    EXPECT_GT(count_of(before, theme::window_background), 60 * 20 / 2);
    label.SetCaption("16 fps");
    EXPECT_EQ(label.Caption(), "16 fps");
    EXPECT_NE(shown(label), before);
    label.SetCaption("");
    EXPECT_EQ(count_of(shown(label), theme::window_background), 60 * 20);
}

TEST(Label, DoubleClickRaisesTwoClicks) {
    Label label("Label3", nullptr, Label::Kind::Symbol, "4", "Faster");
    label.resize(14, 14);
    int clicks = 0;
    on_event(&label, &Label::Click, &label, [&] { ++clicks; });
    QTest::mouseClick(&label, Qt::LeftButton);
    EXPECT_EQ(clicks, 1);
    fast_pair(&label, Qt::LeftButton, {}, {5, 5});
    EXPECT_EQ(clicks, 3);
}

TEST(Label, OnlyALeftReleaseOnTheLabelRaisesClick) {
    Label label("Label3", nullptr, Label::Kind::Symbol, "4", "Faster");
    label.resize(14, 14);
    int clicks = 0;
    on_event(&label, &Label::Click, &label, [&] { ++clicks; });
    QTest::mouseClick(&label, Qt::RightButton);
    QTest::mousePress(&label, Qt::LeftButton, {}, {5, 5});
    QTest::mouseRelease(&label, Qt::LeftButton, {}, {50, 5});
    QTest::mouseRelease(&label, Qt::LeftButton, {}, {5, 5});
    EXPECT_EQ(clicks, 0);
}

TEST(Label, SymbolIsAnAccessibleButton) {
    Label label("Label1", nullptr, Label::Kind::Symbol, "5", "Move up");
    int clicks = 0;
    on_event(&label, &Label::Click, &label, [&] { ++clicks; });
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&label);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::Button);
    EXPECT_EQ(accessible->text(QAccessible::Name), "Move up");
    ASSERT_NE(accessible->actionInterface(), nullptr);
    accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(clicks, 1);
    label.setEnabled(false);
    accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(clicks, 1) << "disabled";
}

TEST(Label, TextIsAccessibleStaticText) {
    Label label("Label5", nullptr, Label::Kind::Text, "15 fps");
    label.SetCaption("16 fps");
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&label);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::StaticText);
    EXPECT_EQ(accessible->text(QAccessible::Name), "16 fps");
}

// Symbols.

TEST(Symbols, OutlinesAreCentredInTheirBox) {
    for (const QSizeF size : {QSizeF(14, 14), QSizeF(12, 12), QSizeF(20, 18), QSizeF(16, 16)}) {
        const QRectF box(QPointF(3, 40), size);
        for (const char* symbol = "rb5634g"; *symbol != '\0'; ++symbol) {
            const QRectF outline = symbol_path(QLatin1Char(*symbol), box).boundingRect();
            EXPECT_TRUE(box.contains(outline)) << *symbol;
            // Outlines begin on whole pixels, which moves them by up to half a pixel: the arrows in a box of
            // 18 are 5 pixels thick.
            EXPECT_LE(std::abs(outline.center().x() - box.center().x()), 0.5) << *symbol;
            EXPECT_LE(std::abs(outline.center().y() - box.center().y()), 0.5) << *symbol;
            EXPECT_GE(std::max(outline.width(), outline.height()), box.height() * 0.45) << *symbol;
        }
    }
}

TEST(Symbols, ArrowsPointInTheirDirection) {
    const QRectF box(0, 0, 14, 14);
    const auto inside = [&](char symbol, double x, double y) {
        return symbol_path(QLatin1Char(symbol), box).contains(QPointF(x, y));
    };
    // Points near the corners of the square in the middle.
    EXPECT_TRUE(inside('5', 4, 8.5) && inside('5', 10, 8.5) && !inside('5', 4, 5.5));
    EXPECT_TRUE(inside('6', 4, 5.5) && inside('6', 10, 5.5) && !inside('6', 4, 8.5));
    EXPECT_TRUE(inside('3', 8.5, 4) && inside('3', 8.5, 10) && !inside('3', 5.5, 4));
    EXPECT_TRUE(inside('4', 5.5, 4) && inside('4', 5.5, 10) && !inside('4', 8.5, 4));
}

TEST(Symbols, OtherCharactersHaveNoOutline) {
    for (const QChar other : {QChar(u'a'), QChar(u'7'), QChar(u' '), QChar()}) {
        EXPECT_TRUE(symbol_path(other, {0, 0, 14, 14}).isEmpty());
    }
}

TEST(Symbols, StraightEdgesAreOnPixelBoundaries) {
    const QImage page = painted({14, 14}, Qt::white, [](QPainter& painter) {
        draw_symbol(painter, u'g', {0, 0, 14, 14}, Qt::black);
    });
    EXPECT_EQ(count_of(page, theme::black) + count_of(page, theme::white), 14 * 14);
}

} // namespace
} // namespace varnoth::test
