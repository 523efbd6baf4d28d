// What the program draws of Qt's own widgets, and its symbols and figures, pixel by pixel.
#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOption>

#include <gtest/gtest.h>

#include "desktop/theme/edges.h"
#include "desktop/theme/symbols.h"
#include "desktop/theme/theme.h"
#include "desktop/widgets/FolderListBox.h"
#include "support/TemporaryFolder.h"

namespace varnoth {
namespace {

const QColor edge_light = theme::to_qcolor(theme::edge_light);
const QColor edge_dark = theme::to_qcolor(theme::edge_dark);
const QColor background = theme::to_qcolor(theme::window_background);

/// A raised or pressed box: edges of one pixel around a plain fill.
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

TEST(LookDrawing, AButtonOfQtIsFilledAndRaisedAndPressedItIsSunken) {
    for (const bool pressed : {false, true}) {
        QImage image(60, 24, QImage::Format_RGB32);
        image.fill(Qt::magenta);
        QPainter painter(&image);
        QStyleOptionButton option;
        option.rect = image.rect();
        option.state.setFlag(QStyle::State_Sunken, pressed);
        QApplication::style()->drawControl(QStyle::CE_PushButtonBevel, &option, &painter);
        painter.end();
        expect_box(image, image.rect(), pressed ? edge_dark : edge_light, pressed ? edge_light : edge_dark);
    }
}

TEST(LookDrawing, TheSliderOfAScrollBarIsFilledAndRaised) {
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

TEST(Symbols, SlopesAreAntialiased) {
    QImage page(14, 14, QImage::Format_RGB32);
    page.fill(Qt::white);
    QPainter painter(&page);
    draw_symbol(painter, u'5', page.rect(), Qt::black);
    painter.end();
    // Base and height of 8 and 4 pixels: each row has a pixel at either end through the middle of which the
    // slope goes, and whole ones between.
    const QRect triangle = symbol_path(u'5', page.rect()).boundingRect().toRect();
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

TEST(Edges, ALineOfNoSideIsDrawnWholeWhereverItStands) {
    QImage image(10, 10, QImage::Format_RGB32);
    image.fill(Qt::magenta);
    QPainter painter(&image);
    draw_edge(painter, {2, 3, 4, 5}, LineSide::None, theme::edge_light);
    painter.end();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const bool inside = QRect(2, 3, 4, 5).contains(x, y);
            ASSERT_EQ(image.pixelColor(x, y), inside ? edge_light : QColor(Qt::magenta)) << x << ", " << y;
        }
    }
}

/// A place of an image in letters: D and L for the colours of dark and light lines, . for the ground.
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

TEST(FolderListBox, AFolderHasAFigureAndAnOpenOneIsMarked) {
    const std::vector<std::string> figure{"...............", ".DDDDDD........", ".DLLLLD........",
                                          ".DLLLLDDDDDDDD.", ".DLLLLLLLLLLLD.", ".DLLLLLLLLLLLD.",
                                          ".DLLLLLLLLLLLD.", ".DLLLLLLLLLLLD.", ".DLLLLLLLLLLLD.",
                                          ".DLLLLLLLLLLLD.", ".DDDDDDDDDDDDD.", "..............."};
    const test::TemporaryFolder folder;
    std::filesystem::create_directory(folder.file("inside"));
    FolderListBox list("Dir1", nullptr);
    list.SetPath(folder.path());
    list.resize(300, 400);
    list.setCurrentItem(nullptr); // no line is marked, so all stand on the same ground
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
            figure)
            << line;
    }
}

} // namespace
} // namespace varnoth
