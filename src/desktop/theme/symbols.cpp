#include "desktop/theme/symbols.h"

#include <algorithm>
#include <cmath>

#include <QPainter>
#include <QPointF>
#include <QPolygonF>

namespace varnoth {

namespace {

constexpr double triangle_share = 0.58;
constexpr double square_share = 0.58;
constexpr double cross_share = 0.58;
constexpr double check_share = 0.6;

// An even number of pixels, so that the axis of a symmetric outline is on a pixel boundary.
double even_size(const QRectF& box, double share) {
    return 2 * std::round(std::min(box.width(), box.height()) * share / 2);
}

// Centres an outline of the given size in the box; the points are relative to its top left corner. The offset
// is a whole number of pixels, so that straight edges stay crisp.
QPainterPath centred(const QRectF& box, double width, double height, QPolygonF points) {
    points.translate(box.left() + std::floor((box.width() - width) / 2),
                     box.top() + std::floor((box.height() - height) / 2));
    QPainterPath path;
    path.addPolygon(points);
    path.closeSubpath();
    return path;
}

QPainterPath cross(const QRectF& box) {
    const double size = even_size(box, cross_share);
    const double half = size / 2;
    const double arm = std::max(1.0, size / 6); // distance from a corner to the slope, along the edge
    return centred(box, size, size,
                   {{arm, 0},
                    {half, half - arm},
                    {size - arm, 0},
                    {size, arm},
                    {half + arm, half},
                    {size, size - arm},
                    {size - arm, size},
                    {half, half + arm},
                    {arm, size},
                    {0, size - arm},
                    {half - arm, half},
                    {0, arm}});
}

QPainterPath check_mark(const QRectF& box) {
    const double size = std::round(std::min(box.width(), box.height()) * check_share);
    const double unit = size / 7;
    const double bar = 2.6 * unit; // vertical thickness, and distance of the corner from the left
    const double corner = bar;
    return centred(box, size, size,
                   {{0, size - bar - corner},
                    {corner, size - bar},
                    {size, 0},
                    {size, bar},
                    {corner, size},
                    {0, size - corner}});
}

QPainterPath square(const QRectF& box) {
    const double size = even_size(box, square_share);
    return centred(box, size, size, {{0, 0}, {size, 0}, {size, size}, {0, size}});
}

} // namespace

QPainterPath symbol_path(QChar symbol, const QRectF& box) {
    const double base = even_size(box, triangle_share);
    const double tip = base / 2;
    switch (symbol.unicode()) {
    case u'r':
        return cross(box);
    case u'b':
        return check_mark(box);
    case u'5':
        return centred(box, base, tip, {{0, tip}, {tip, 0}, {base, tip}});
    case u'6':
        return centred(box, base, tip, {{0, 0}, {base, 0}, {tip, tip}});
    case u'3':
        return centred(box, tip, base, {{tip, 0}, {tip, base}, {0, tip}});
    case u'4':
        return centred(box, tip, base, {{0, 0}, {tip, tip}, {0, base}});
    case u'g':
        return square(box);
    default:
        return {};
    }
}

// The outline is built in device pixels, so that its straight edges are crisp at every scale.
void draw_symbol(QPainter& painter, QChar symbol, const QRectF& box, const QColor& colour) {
    const QTransform to_screen = painter.deviceTransform();
    const QRectF on_screen = to_screen.mapRect(box).toRect();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(to_screen.inverted().map(symbol_path(symbol, on_screen)), colour);
    painter.restore();
}

} // namespace varnoth
