// How the theme draws Qt's own widgets, symbols and folder icons, pixel by pixel.
#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOption>

#include <gtest/gtest.h>

#include "desktop/pixels.h"
#include "desktop/theme/edges.h"
#include "desktop/theme/symbols.h"
#include "desktop/theme/theme.h"
#include "desktop/widgets/FolderListBox.h"
#include "support/TemporaryFolder.h"

namespace varnoth::test {
namespace {

const QColor edge_light = theme::to_qcolor(theme::edge_light);
const QColor edge_dark = theme::to_qcolor(theme::edge_dark);
const QColor background = theme::to_qcolor(theme::window_background);

/// Checks a raised or sunken box: one-pixel edges around a plain fill.
void expect_box(const QImage& image, const QRect& box, const QColor& top_left, const QColor& bottom_right) {
    const QRect inner = box.adjusted(1, 1, -1, -1);
    for (int y = inner.top(); y <= inner.bottom(); ++y) {
        for (int x = inner.left(); x <= inner.right(); ++x) {
            ASSERT_EQ(image.pixelColor(x, y), background) << x << ", " << y;
        }
    }
    EXPECT_EQ(image.pixelColor(box.topLeft()), top_left);
    EXPECT_EQ(image.pixelColor(box.center().x(), box.top()), top_left);
    EXPECT_EQ(image.pixelColor(box.left(), box.center().y()), top_left);
    EXPECT_EQ(image.pixelColor(box.bottomRight()), bottom_right);
    EXPECT_EQ(image.pixelColor(box.center().x(), box.bottom()), bottom_right);
    EXPECT_EQ(image.pixelColor(box.right(), box.center().y()), bottom_right);
}

TEST(ThemeDrawing, ButtonIsRaisedAndSunkenWhilePressed) {
    for (const bool pressed : {false, true}) {
        const QImage image = painted({60, 24}, Qt::magenta, [&](QPainter& painter) {
            QStyleOptionButton option;
            option.rect = QRect(0, 0, 60, 24);
            option.state.setFlag(QStyle::State_Sunken, pressed);
            QApplication::style()->drawControl(QStyle::CE_PushButtonBevel, &option, &painter);
        });
        expect_box(image, image.rect(), pressed ? edge_dark : edge_light, pressed ? edge_light : edge_dark);
    }
}

TEST(ThemeDrawing, FocusFrameIsDarkOnTheHighlightOnly) {
    for (const bool highlighted : {false, true}) {
        const QImage image = painted({20, 10}, Qt::magenta, [&](QPainter& painter) {
            QStyleOptionFocusRect option;
            option.rect = QRect(0, 0, 20, 10);
            option.backgroundColor = highlighted ? theme::to_qcolor(theme::highlight) : background;
            QApplication::style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter);
        });
        const Colour line = highlighted ? theme::edge_dark : theme::edge_light;
        EXPECT_EQ(count_of(image, line), 2 * (20 + 10) - 4);
        EXPECT_EQ(count_of(image, line, image.rect().adjusted(1, 1, -1, -1)), 0);
    }
}

TEST(ThemeDrawing, ScrollBarSliderIsFilledAndRaised) {
    QScrollBar bar(Qt::Vertical);
    bar.resize(16, 200);
    bar.setRange(0, 100);
    bar.setPageStep(50);
    bar.setValue(50);
    QStyleOptionSlider option;
    option.initFrom(&bar);
    option.orientation = Qt::Vertical;
    option.minimum = bar.minimum();
    option.maximum = bar.maximum();
    option.pageStep = bar.pageStep();
    option.sliderValue = option.sliderPosition = bar.value();
    const QRect slider =
        bar.style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, &bar);
    ASSERT_GT(slider.height(), 30);
    const QImage image = bar.grab().toImage();
    expect_box(image, slider, edge_light, edge_dark);
    EXPECT_EQ(image.pixelColor(8, slider.top() - 1), edge_dark) << "groove";
    EXPECT_EQ(image.pixelColor(8, slider.bottom() + 1), edge_dark) << "groove";
}

TEST(ThemeDrawing, ScrollBarArrowsAreLightAndGreyWithoutARange) {
    QScrollBar bar(Qt::Vertical);
    bar.resize(16, 200);
    const auto arrows = [&] {
        const QImage image = bar.grab().toImage();
        std::vector<QColor> colours;
        for (const int top : {0, 200 - 16}) {
            colours.push_back(image.pixelColor(8, top + 8)); // within the triangle, whichever way it points
        }
        return colours;
    };
    bar.setRange(0, 100);
    EXPECT_EQ(bar.grab().toImage().pixelColor(0, 0), edge_light) << "the edge of the upper arrow";
    EXPECT_EQ(arrows(), std::vector<QColor>(2, theme::to_qcolor(theme::light_text)));
    bar.setRange(0, 0);
    EXPECT_EQ(arrows(), std::vector<QColor>(2, theme::to_qcolor(theme::disabled_text)));
}

/// The corners of a symbol in a box of 20 by 20 pixels, without order.
std::vector<std::pair<double, double>> corners(QChar symbol) {
    std::vector<std::pair<double, double>> points;
    for (const QPointF& point : symbol_path(symbol, {0, 0, 20, 20}).toFillPolygon()) {
        points.emplace_back(point.x(), point.y());
    }
    std::ranges::sort(points);
    points.erase(std::unique(points.begin(), points.end()), points.end());
    return points;
}

TEST(Symbols, CrossIsSymmetric) {
    const auto cross = corners(u'r');
    ASSERT_EQ(cross.size(), 12U);
    auto mirrored = cross;
    auto turned = cross;
    for (std::size_t i = 0; i < cross.size(); ++i) {
        const auto [x, y] = cross[i];
        mirrored[i] = {20 - x, y};
        turned[i] = {y, x};
    }
    std::ranges::sort(mirrored);
    std::ranges::sort(turned);
    EXPECT_EQ(mirrored, cross);
    EXPECT_EQ(turned, cross);
}

TEST(Symbols, EndsOfTheCheckMarkAreVertical) {
    const auto mark = corners(u'b');
    ASSERT_EQ(mark.size(), 6U);
    EXPECT_EQ(mark[0].first, mark[1].first);
    EXPECT_EQ(mark[4].first, mark[5].first);
    EXPECT_DOUBLE_EQ(mark[1].second - mark[0].second, mark[5].second - mark[4].second);
}

TEST(Symbols, SlopesAreAntialiased) {
    const QRect box(0, 0, 14, 14);
    const QImage page = painted(box.size(), Qt::white,
                                [&](QPainter& painter) { draw_symbol(painter, u'5', box, Qt::black); });
    // The triangle is 8 pixels wide and 4 high. In each row a slope crosses one pixel at either end; the
    // pixels between them are filled.
    const QRect triangle = symbol_path(u'5', box).boundingRect().toRect();
    ASSERT_EQ(triangle.size(), QSize(8, 4));
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 8; ++column) {
            const int from_slope = std::min(column, 7 - column) - (3 - row);
            const int grey = page.pixelColor(triangle.topLeft() + QPoint(column, row)).red();
            EXPECT_EQ(grey == 255, from_slope < 0) << column << ", " << row;
            EXPECT_EQ(grey == 0, from_slope > 0) << column << ", " << row;
        }
    }
}

TEST(Edges, LineWithoutASideIsFilledCompletely) {
    const QRect line(2, 3, 4, 5);
    const QImage image = painted({10, 10}, Qt::magenta, [&](QPainter& painter) {
        draw_edge(painter, line, LineSide::None, theme::edge_light);
    });
    EXPECT_EQ(count_of(image, theme::edge_light, line), 4 * 5);
    EXPECT_EQ(count_of(image, theme::edge_light), 4 * 5);
}

/// A part of an image as text: D and L for dark and light lines, . for the background.
std::vector<std::string> letters(const QImage& image, const QRect& place, const QColor& light,
                                 const QColor& ground) {
    std::vector<std::string> rows;
    for (int y = place.top(); y <= place.bottom(); ++y) {
        std::string& row = rows.emplace_back();
        for (int x = place.left(); x <= place.right(); ++x) {
            const QColor colour = image.pixelColor(x, y);
            row += colour == edge_dark ? 'D' : colour == light ? 'L' : colour == ground ? '.' : '?';
        }
    }
    return rows;
}

TEST(FolderListBox, FolderIconIsHighlightedForOpenFolders) {
    const std::vector<std::string> icon{"...............", ".DDDDDD........", ".DLLLLD........",
                                        ".DLLLLDDDDDDDD.", ".DLLLLLLLLLLLD.", ".DLLLLLLLLLLLD.",
                                        ".DLLLLLLLLLLLD.", ".DLLLLLLLLLLLD.", ".DLLLLLLLLLLLD.",
                                        ".DLLLLLLLLLLLD.", ".DDDDDDDDDDDDD.", "..............."};
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.file("inside"));
    FolderListBox list("Dir1", nullptr);
    list.SetPath(folder.path());
    list.resize(300, 400);
    list.setCurrentItem(nullptr); // without a selection all lines have the same background
    list.clearSelection();
    list.show();
    QCoreApplication::processEvents();
    const QImage image = list.viewport()->grab().toImage();
    const QColor ground = theme::to_qcolor(theme::field_background);
    for (int line = 0; line < list.count(); ++line) {
        const bool open = line < list.count() - 1;
        const int depth = line;
        const QRect place = list.visualItemRect(list.item(line));
        const QRect seen(place.left() + 3 + 10 * depth - 1, place.top() + (place.height() - 10) / 2 - 1, 15,
                         12);
        EXPECT_EQ(
            letters(image, seen, theme::to_qcolor(open ? theme::highlight : theme::close_glyph), ground),
            icon)
            << line;
    }
}

} // namespace
} // namespace varnoth::test
