// Vector outlines of the symbol font's glyphs that captions use, so that the font need not be installed.
#pragma once

#include <QChar>
#include <QColor>
#include <QPainterPath>
#include <QRectF>

class QPainter;

namespace varnoth {

/// The outline of a symbol, centred in the box: "r" a cross, "b" a check mark, "5" and "6" triangles up and
/// down, "3" and "4" triangles left and right, "g" a square. Empty for every other character.
QPainterPath symbol_path(QChar symbol, const QRectF& box);

/// Fills the outline with a colour; draws nothing for any other character.
void draw_symbol(QPainter& painter, QChar symbol, const QRectF& box, const QColor& colour);

} // namespace varnoth
