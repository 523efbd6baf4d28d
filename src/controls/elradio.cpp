#include "controls/elradio.h"

#include <cmath>
#include <numbers>

#include <QPainter>

#include "controls/parts/accessible.h"
#include "platform/qt/look.h"

namespace varnoth {

namespace {

constexpr double height_in_twips = 285;
constexpr double least_width_in_twips = 500;

// The circle is given by pixels; a pixel's middle is half a unit from its place.
constexpr QPointF centre(9.5, 9.5);
constexpr double circle_radius = 6;
constexpr double dot_radius = 3;
constexpr double line_width = 1;

// In radians, counter-clockwise from three o'clock.
constexpr double first_end = 0.5;
constexpr double second_end = 4;

const std::vector<PersistedProperty>& persisted() {
    static const std::vector<PersistedProperty> properties{
        {"BackColor", look::window_background},
        {"BackColor2", look::field_background},
        {"CheckedColor", look::highlight},
        {"UncheckedColor", look::light_text},
        {"OverColor", look::over},
        {"Enabled", true},
        {"Caption", QStringLiteral("Caption")},
        {"Value", false},
        {"Color3DLight", look::edge_light},
        {"Color3DDark", look::window_text},
        {"Font"},
        {"FontName"},
        {"FontSize"},
        {"FontItalic"},
        {"FontUnderline"},
        {"DropShadow", false},
    };
    return properties;
}

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

elradio::elradio(const QString& name, QWidget* parent) : SkinnedControl(name, parent, persisted()) {
    picture1_.Width = 18;
    picture1_.Height = 18;
    label1_.Left = 28;
    label1_.Top = 1;
    label1_.set_auto_size();
    shadow1_.Left = 29;
    shadow1_.Top = 2;
    shadow1_.set_shadow_of(label1_);
    shadow1_.set_auto_size();
    add_part("Picture1", picture1_);
    add_part("shadow1", shadow1_);
    add_part("Label1", label1_);
    fix_height(height_in_twips);
    set_minimum_width(least_width_in_twips);
    ReadProperties({});
}

void elradio::SetBackColor2(Colour colour) {
    back_colour2_ = colour;
    changed("BackColor2");
}

void elradio::SetCheckedColor(Colour colour) {
    checked_colour_ = colour;
    redraw();
    changed("CheckedColor");
}

void elradio::SetUncheckedColor(Colour colour) {
    unchecked_colour_ = colour;
    redraw();
    changed("UncheckedColor");
}

void elradio::SetOverColor(Colour colour) {
    over_colour_ = colour;
    changed("OverColor");
}

void elradio::SetCaption(const QString& caption) {
    label1_.SetCaption(caption);
    shadow1_.SetCaption(caption);
    layout_step();
    if (!reading()) {
        tell_name_changed(*this);
    }
    changed("Caption");
}

void elradio::SetValue(bool value) {
    value_ = value;
    redraw();
    if (!reading()) {
        tell_checked_changed(*this);
    }
    changed("Value");
}

void elradio::set_over_state() {
    if (!value_ && label1_.ForeColor != over_colour_) {
        label1_.ForeColor = over_colour_;
        update();
    }
}

void elradio::set_normal_state() {
    redraw();
}

void elradio::redraw() {
    label1_.ForeColor = value_ ? checked_colour_ : unchecked_colour_;
    update();
}

void elradio::Circle::paint(QPainter& painter) const {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    draw_disc(painter, circle_radius, control_.back_colour2_);
    draw_arc(painter, first_end, second_end, control_.Color3DDark());
    draw_arc(painter, second_end, first_end, control_.Color3DLight());
    if (control_.value_) {
        draw_disc(painter, dot_radius, control_.checked_colour_);
    }
    painter.restore();
}

void elradio::resized() {
    layout_step();
}

void elradio::layout_step() {
    if (label1_.Height < ScaleHeight()) {
        label1_.Top = std::trunc(ScaleHeight() / 2 - text_height(Font()) / 2);
        shadow1_.Top = label1_.Top + 1;
    }
}

void elradio::show_font() {
    label1_.SetFont(Font());
    shadow1_.SetFont(Font());
}

void elradio::show_shadow() {
    shadow1_.Visible = DropShadow();
    shadow1_.Enabled = DropShadow();
}

void elradio::part_pressed(Part* /*part*/, const MouseArguments& mouse) {
    emit MouseDown(mouse.Button, mouse.Shift, mouse.x, mouse.y);
}

void elradio::part_moved(Part* /*part*/, const MouseArguments& mouse) {
    emit MouseMove(mouse.Button, mouse.Shift, mouse.x, mouse.y);
}

void elradio::part_released(Part* /*part*/, const MouseArguments& mouse) {
    emit MouseUp(mouse.Button, mouse.Shift, mouse.x, mouse.y);
}

// A click on the caption comes to the surface behind it just the same.
void elradio::part_clicked(Part* /*part*/) {
    if (!value_) {
        SetValue(true);
    }
    emit Click();
}

} // namespace varnoth
