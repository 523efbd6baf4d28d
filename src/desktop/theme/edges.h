// One-pixel edges that stay crisp and even at every screen scale, including fractional ones such as 1.5. An
// edge is as thick as the whole device pixels that fit into one logical pixel, wherever it is, and follows
// the outline of the box that it borders.
#pragma once

#include <QPointF>
#include <QRect>
#include <QRectF>

#include "core/image/Colour.h"

class QPainter;

namespace varnoth {

/// The logical position nearest to `place` that is on a device pixel boundary.
QPointF nearest_on_screen(const QPainter& painter, const QPointF& place);

/// The side of a control that a one-pixel line borders. A line with None covers all its device pixels, up to
/// those of its neighbours.
enum class LineSide { None, Top, Left, Right, Bottom };

/// Fills the line. A bottom line starts where the left line of its box ends, which starts one pixel before
/// it.
void draw_edge(QPainter& painter, const QRectF& line, LineSide side, Colour colour);

/// Draws four lines inside a box. The right and bottom lines are drawn last, over the other two.
void draw_edges(QPainter& painter, const QRect& box, Colour top_left, Colour bottom_right);

} // namespace varnoth
