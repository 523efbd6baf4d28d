#include "desktop/theme/edges.h"

#include <algorithm>
#include <cmath>

#include <QPainter>

#include "desktop/theme/theme.h"

namespace varnoth {

namespace {

// Rounds halves up, as Qt does when it places widgets on the screen. The transform may miss a whole number by
// a rounding error.
double nearest(double place) {
    constexpr double hair = 1e-6;
    return std::floor(place + 0.5 + hair);
}

} // namespace

QPointF nearest_on_screen(const QPainter& painter, const QPointF& place) {
    const QTransform to_screen = painter.deviceTransform();
    const QPointF wanted = to_screen.map(place);
    return to_screen.inverted().map(QPointF(nearest(wanted.x()), nearest(wanted.y())));
}

void draw_edge(QPainter& painter, const QRectF& line, LineSide side, Colour colour) {
    const QTransform to_screen = painter.deviceTransform();
    const double scale = to_screen.m11();
    const double thick = std::max(1.0, std::floor(scale));
    const QRectF wanted = to_screen.mapRect(line);
    double left = nearest(wanted.left());
    double top = nearest(wanted.top());
    double right = nearest(wanted.right());
    double bottom = nearest(wanted.bottom());
    switch (side) {
    case LineSide::None:
        break;
    case LineSide::Top:
        bottom = top + thick;
        break;
    case LineSide::Left:
        right = left + thick;
        break;
    case LineSide::Right:
        left = right - thick;
        break;
    case LineSide::Bottom:
        top = bottom - thick;
        left = nearest(wanted.left() - scale) + thick;
        break;
    }
    const QRectF pixels(left, top, right - left, bottom - top);
    painter.fillRect(to_screen.inverted().mapRect(pixels), theme::to_qcolor(colour));
}

void draw_edges(QPainter& painter, const QRect& box, Colour top_left, Colour bottom_right) {
    const double width = box.width();
    const double height = box.height();
    const QRectF whole(box);
    draw_edge(painter, {whole.left(), whole.top(), width, 1}, LineSide::Top, top_left);
    draw_edge(painter, {whole.left(), whole.top(), 1, height}, LineSide::Left, top_left);
    draw_edge(painter, {whole.right() - 1, whole.top(), 1, height}, LineSide::Right, bottom_right);
    draw_edge(painter, {whole.left() + 1, whole.bottom() - 1, width - 1, 1}, LineSide::Bottom, bottom_right);
}

} // namespace varnoth
