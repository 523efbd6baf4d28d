#include "controls/elradio.h"

#include <cmath>
#include <numbers>

#include <QPainter>

#include "platform/qt/look.h"

namespace varnoth {

namespace {

constexpr double height_in_twips = 285;

// The circle is given by pixels; a pixel's middle is half a unit from its place.
constexpr QPointF centre(9.5, 9.5);
constexpr double circle_radius = 6;
constexpr double dot_radius = 3;
constexpr double line_width = 1;

// In radians, counter-clockwise from three o'clock.
constexpr double first_end = 0.5;
constexpr double second_end = 4;

// The filled circle includes the line around it.
void draw_disc(QPainter& painter, double radius, Colour colour) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(look::to_qcolor(colour));
    painter.drawEllipse(centre, radius + line_width / 2, radius + line_width / 2);
}

int sixteenths_of_a_degree(double radians) {
    return static_cast<int>(std::nearbyint(radians * 180 / std::numbers::pi * 16));
}

// Counter-clockwise; an end below the start lies behind a full turn.
void draw_arc(QPainter& painter, double start, double end, Colour colour) {
    const double length = end > start ? end - start : end - start + 2 * std::numbers::pi;
    const QRectF square(centre.x() - circle_radius, centre.y() - circle_radius, 2 * circle_radius,
                        2 * circle_radius);
    painter.setPen(QPen(look::to_qcolor(colour), line_width, Qt::SolidLine, Qt::FlatCap));
    painter.setBrush(Qt::NoBrush);
    painter.drawArc(square, sixteenths_of_a_degree(start), sixteenths_of_a_degree(length));
}

} // namespace

elradio::elradio(const QString& name, QWidget* parent) : MarkControl(name, parent, 28, 1) {
    picture1_.Width = 18;
    picture1_.Height = 18;
    add_part("Picture1", picture1_);
    add_part("shadow1", caption().shadow);
    add_part("Label1", caption().text);
    fix_height(height_in_twips);
    ReadProperties({});
}

void elradio::Circle::paint(QPainter& painter) const {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    draw_disc(painter, circle_radius, control_.BackColor2());
    draw_arc(painter, first_end, second_end, control_.Color3DDark());
    draw_arc(painter, second_end, first_end, control_.Color3DLight());
    if (control_.Value()) {
        draw_disc(painter, dot_radius, control_.CheckedColor());
    }
    painter.restore();
}

// A click on the caption comes to the surface behind it just the same.
void elradio::part_clicked(Part* /*part*/) {
    if (!value_) {
        SetValue(true);
    }
    emit Click();
}

} // namespace varnoth
