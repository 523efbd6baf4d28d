#include "desktop/theme/edges.h"

#include <cmath>

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include "desktop/theme/theme.h"

namespace varnoth {
namespace {

constexpr Colour ground = 0x112233;
constexpr Colour first = 0x445566;
constexpr Colour second = 0x778899;
constexpr QSize size(9, 7);

/// Draws a box at a position, with `scale` device pixels per logical pixel.
QImage drawn(double scale, const QPoint& place) {
    QImage image(64, 64, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(theme::to_qcolor(ground));
    QPainter painter(&image);
    painter.translate(place);
    draw_edges(painter, {{0, 0}, size}, first, second);
    return image;
}

/// The same image, composed pixel by pixel.
QImage expected(double scale, const QPoint& place) {
    QImage image(64, 64, QImage::Format_RGB32);
    const auto at = [&](int number) { return static_cast<int>(std::floor(number * scale + 0.5)); };
    const int thick = static_cast<int>(scale);
    const int left = at(place.x());
    const int top = at(place.y());
    const int right = at(place.x() + size.width());
    const int bottom = at(place.y() + size.height());
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const bool inside = x >= left && x < right && y >= top && y < bottom;
            const bool near_left = inside && x < left + thick;
            const bool at_second = inside && (x >= right - thick || (y >= bottom - thick && !near_left));
            const bool at_first = inside && (near_left || y < top + thick);
            image.setPixelColor(x, y, theme::to_qcolor(at_second ? second : at_first ? first : ground));
        }
    }
    image.setDevicePixelRatio(scale);
    return image;
}

TEST(Edges, AreEquallyThickAtEveryPositionAndScale) {
    for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0, 2.5, 3.0}) {
        for (int x = 0; x < 5; ++x) {
            for (int y = 0; y < 5; ++y) {
                EXPECT_EQ(drawn(scale, {x, y}), expected(scale, {x, y})) << scale << " " << x << "," << y;
            }
        }
    }
}

TEST(Edges, LineWithoutASideLeavesNoGapToItsNeighbour) {
    QImage image(64, 64, QImage::Format_RGB32);
    image.setDevicePixelRatio(1.5);
    image.fill(theme::to_qcolor(ground));
    QPainter painter(&image);
    draw_edge(painter, {0, 0, 40, 1}, LineSide::None, first);
    draw_edge(painter, {0, 1, 40, 1}, LineSide::None, second);
    EXPECT_EQ(image.pixelColor(5, 0), theme::to_qcolor(first));
    EXPECT_EQ(image.pixelColor(5, 1), theme::to_qcolor(first));
    EXPECT_EQ(image.pixelColor(5, 2), theme::to_qcolor(second));
    EXPECT_EQ(image.pixelColor(5, 3), theme::to_qcolor(ground));
}

} // namespace
} // namespace varnoth
