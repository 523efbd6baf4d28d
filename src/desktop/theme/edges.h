// Lines of one pixel that stay crisp and even where the screen has more pixels than the design, also one and
// a half times as many: an edge is as many of the screen's pixels thick as fit into one of the design,
// whatever its place, and lies along the outline of what it borders.
#pragma once

#include <QPointF>
#include <QRect>
#include <QRectF>

#include "core/image/Colour.h"

class QPainter;

namespace varnoth {

/// The place nearest to that one at which a pixel of the screen begins, so that what is drawn there is crisp.
QPointF nearest_on_screen(const QPainter& painter, const QPointF& place);

/// The edge of a control that a line of one pixel is, or none: then it takes every pixel of the screen up to
/// what stands beside it.
enum class LineSide { None, Top, Left, Right, Bottom };

/// Fills the line. A line at the bottom begins behind the line at the left, one pixel before it.
void draw_edge(QPainter& painter, const QRectF& line, LineSide side, Colour colour);

/// The four lines within a box: those in front are the right one and the one at the bottom.
void draw_edges(QPainter& painter, const QRect& box, Colour top_left, Colour bottom_right);

} // namespace varnoth
