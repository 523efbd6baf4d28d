#include "desktop/controls/parts/SkinnedControl.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>

#include "core/base/RunTimeFailure.h"
#include "core/base/numbers.h"
#include "core/image/PictureSurface.h"
#include "desktop/services/exception_barrier.h"
#include "desktop/theme/theme.h"
#include "desktop/widgets/accessible.h"

namespace varnoth {

namespace {

constexpr double twips_per_point = 20;
constexpr double font_size_places = 10000;

int pixels_across(double twips) {
    return round_to_even<int>(twips / varnoth::screen().TwipsPerPixelX);
}

int pixels_down(double twips) {
    return round_to_even<int>(twips / varnoth::screen().TwipsPerPixelY);
}

// Whether a font was set for this widget or for an ancestor from which it inherits. The application's font
// does not count: it only replaces the design font.
bool is_font_set(const QWidget* widget) {
    for (; widget != nullptr; widget = widget->isWindow() ? nullptr : widget->parentWidget()) {
        if (widget->testAttribute(Qt::WA_SetFont)) {
            return true;
        }
    }
    return false;
}

} // namespace

SkinnedControl::SkinnedControl(const QString& name, QWidget* parent,
                               const std::vector<ControlProperty>& properties)
    : QWidget(parent), properties_(properties) {
    setObjectName(name);
    setAttribute(Qt::WA_OpaquePaintEvent);
    // A disabled control discards mouse events; they must not reach the widget behind it.
    setAttribute(Qt::WA_NoMousePropagation);
    setMouseTracking(true);
}

// Properties.

bool SkinnedControl::Enabled() const {
    return !testAttribute(Qt::WA_ForceDisabled);
}

void SkinnedControl::SetEnabled(bool enabled) {
    setEnabled(enabled);
    changed("Enabled");
}

void SkinnedControl::SetBackColor(Colour colour) {
    back_colour_ = colour;
    if (surface_) {
        surface_->SetBackColor(colour);
    }
    show_back_colour();
    changed("BackColor");
}

void SkinnedControl::SetForeColor(Colour colour) {
    fore_colour_ = colour;
    show_fore_colour();
    changed("ForeColor");
}

void SkinnedControl::SetColor3DLight(Colour colour) {
    light_ = colour;
    show_light();
    changed("Color3DLight");
}

void SkinnedControl::SetColor3DDark(Colour colour) {
    dark_ = colour;
    show_dark();
    changed("Color3DDark");
}

void SkinnedControl::SetFont(const QFont& font) {
    font_ = font;
    show_font();
    layout_step();
    changed("Font");
}

void SkinnedControl::SetFontName(const QString& name) {
    font_.setFamily(name);
    show_font();
    layout_step();
    changed("FontName");
}

double SkinnedControl::FontSize() const {
    const double size = font_.pointSizeF() > 0
                            ? font_.pointSizeF()
                            : font_.pixelSize() * varnoth::screen().TwipsPerPixelY / twips_per_point;
    return std::nearbyint(size * font_size_places) / font_size_places;
}

void SkinnedControl::SetFontSize(double size) {
    const double kept =
        static_cast<double>(round_to_even<std::int64_t>(size * font_size_places)) / font_size_places;
    if (!(kept > 0)) {
        fail(Failure::InvalidPropertyValue);
    }
    font_.setPointSizeF(kept);
    show_font();
    layout_step();
    changed("FontSize");
}

void SkinnedControl::SetFontItalic(bool italic) {
    font_.setItalic(italic);
    show_font();
    layout_step();
    changed("FontItalic");
}

void SkinnedControl::SetFontUnderline(bool underline) {
    font_.setUnderline(underline);
    show_font();
    layout_step();
    changed("FontUnderline");
}

void SkinnedControl::SetDropShadow(bool shadow) {
    drop_shadow_ = shadow;
    show_shadow();
    changed("DropShadow");
}

void SkinnedControl::changed(const char* property) {
    update();
    if (!reading_) {
        emit property_changed(QString::fromLatin1(property));
    }
}

void SkinnedControl::caption_changed() {
    layout_step();
    if (!reading_) {
        notify_name_changed(*this);
    }
    changed("Caption");
}

bool SkinnedControl::setProperty(const char* name, const QVariant& value) {
    const auto property = std::ranges::find_if(
        properties_, [&](const ControlProperty& each) { return std::strcmp(each.name, name) == 0; });
    if (property == properties_.end()) {
        return QWidget::setProperty(name, value);
    }
    property->set(*this, value);
    return true;
}

// Storing.

void SkinnedControl::WriteProperties(PropertyBag& bag) const {
    for (const ControlProperty& property : properties_) {
        if (property.stored) {
            bag.WriteProperty(QString::fromLatin1(property.name), this->property(property.name));
        }
    }
}

void SkinnedControl::ReadProperties(const PropertyBag& bag) {
    const QScopedValueRollback<bool> while_reading(reading_, true);
    for (const bool first : {true, false}) {
        for (const ControlProperty& property : properties_) {
            if (property.stored && property.loaded_first == first) {
                read_property(bag, property);
            }
        }
    }
}

void SkinnedControl::read_property(const PropertyBag& bag, const ControlProperty& property) {
    const QVariant fallback = property.fallback.isValid() ? property.fallback : ambient(property.name);
    property.set(*this, bag.ReadProperty(QString::fromLatin1(property.name), fallback));
}

// Font is read before its four parts, which default to their values in it.
QVariant SkinnedControl::ambient(const char* property) const {
    if (std::strcmp(property, "Font") != 0) {
        return this->property(property);
    }
    return is_font_set(parentWidget()) ? parentWidget()->font() : theme::design_font();
}

// Sizes.

void SkinnedControl::setGeometry(const QRect& geometry) {
    QWidget::setGeometry(geometry);
    follow_size();
}

void SkinnedControl::resize(const QSize& size) {
    QWidget::resize(size);
    follow_size();
}

// Called in addition to resizeEvent, which Qt delays for a hidden widget until it is shown.
void SkinnedControl::follow_size() {
    if (size() == laid_out_size_) {
        return;
    }
    laid_out_size_ = size();
    if (surface_) {
        surface_->SetWidth(width());
        surface_->SetHeight(height());
    }
    resized();
    update();
}

void SkinnedControl::fix_height(double twips) {
    fixed_height_ = twips;
    setFixedHeight(pixels_down(twips));
}

void SkinnedControl::set_minimum_width(double twips) {
    minimum_width_ = twips;
    setMinimumWidth(pixels_across(twips));
}

double SkinnedControl::Width() const {
    return std::max(width() * varnoth::screen().TwipsPerPixelX, minimum_width_);
}

double SkinnedControl::Height() const {
    return fixed_height_ > 0 ? fixed_height_ : height() * varnoth::screen().TwipsPerPixelY;
}

double SkinnedControl::width_in_pixels() const {
    return Width() / varnoth::screen().TwipsPerPixelX;
}

void SkinnedControl::SetWidth(double twips) {
    resize(pixels_across(twips), height());
}

void SkinnedControl::SetHeight(double twips) {
    resize(width(), pixels_down(twips));
}

// Pixels.

PictureSurface& SkinnedControl::surface() {
    if (!surface_) {
        surface_ = std::make_unique<PictureSurface>(PictureSurface::Design{.parent = &container_,
                                                                           .width = width(),
                                                                           .height = height(),
                                                                           .bits_per_pixel = 32,
                                                                           .border = 0,
                                                                           .back_colour = back_colour_});
    }
    return *surface_;
}

DrawingContext& SkinnedControl::get_the_hdc() {
    return surface().hDC();
}

void SkinnedControl::obtener_imagen_fondo(const DrawingContext& origen, std::int32_t x, std::int32_t y,
                                          std::int16_t cantidad) {
    surface().Cls();
    const BLENDFUNCTION blend{.SourceConstantAlpha = narrow<std::uint8_t>(cantidad)};
    blend_background(origen, x, y, blend);
}

void SkinnedControl::blend_background(const DrawingContext& origen, std::int32_t x, std::int32_t y,
                                      const BLENDFUNCTION& blend) {
    const std::int32_t edge = background_edge_;
    alpha_blend(surface().hDC(),
                {edge, edge, round_to_even<std::int32_t>(ScaleWidth()) - 2 * edge,
                 round_to_even<std::int32_t>(ScaleHeight()) - 2 * edge},
                origen, x, y, packed(blend));
    update();
}

// Parts.

void SkinnedControl::add_part(const QString& name, Part& part) {
    parts_.push_back(&part);
    name_part(name, part);
}

void SkinnedControl::name_part(const QString& name, Part& part) {
    names_.emplace_back(name, &part);
}

const Part& SkinnedControl::named_part(const QString& name) const {
    const auto found = std::ranges::find(names_, name, &std::pair<QString, Part*>::first);
    if (found == names_.end()) {
        fail(Failure::SubscriptOutOfRange);
    }
    return *found->second;
}

Part* SkinnedControl::part_at(const QPointF& point, QPointF& within) {
    for (auto part = parts_.rbegin(); part != parts_.rend(); ++part) {
        if (Part* found = (*part)->at(point, within)) {
            return found;
        }
    }
    within = point;
    return nullptr;
}

// Events.

void SkinnedControl::paintEvent(QPaintEvent* /*event*/) {
    guard_paint([this] {
        QPainter painter(this);
        painter.fillRect(rect(), theme::to_qcolor(back_colour_));
        if (surface_) {
            draw_surface(painter, *surface_);
        }
        for (const Part* part : parts_) {
            part->paint(painter);
        }
    });
}

void SkinnedControl::resizeEvent(QResizeEvent* /*event*/) {
    guard_event([this] { follow_size(); });
}

void SkinnedControl::mousePressEvent(QMouseEvent* event) {
    guard_event([&] {
        if (has_number(event->button())) {
            press(event);
        }
    });
}

void SkinnedControl::mouseDoubleClickEvent(QMouseEvent* event) {
    guard_event([&] {
        if (!has_number(event->button())) {
            return;
        }
        press(event);
        if (event->button() == Qt::LeftButton && part_double_clicked(held_part_)) {
            click_due_ = false;
        }
    });
}

void SkinnedControl::press(QMouseEvent* event) {
    if (button_number(event->buttons()) == button_number(event->button())) {
        abandon_press();
    }
    if (!held_) {
        QPointF within;
        held_part_ = part_at(event->position(), within);
        held_origin_ = event->position() - within;
        held_ = true;
    }
    click_due_ = click_due_ || event->button() == Qt::LeftButton;
    part_pressed(held_part_,
                 mouse_arguments(event->button(), event->modifiers(), event->position() - held_origin_));
}

void SkinnedControl::abandon_press() {
    click_due_ = false;
    if (std::exchange(held_, false)) {
        part_abandoned(held_part_);
    }
}

void SkinnedControl::mouseMoveEvent(QMouseEvent* event) {
    guard_event([&] {
        if (button_number(event->buttons()) == 0) {
            abandon_press();
        }
        QPointF within = event->position() - held_origin_;
        Part* const part = held_ ? held_part_ : part_at(event->position(), within);
        part_moved(part, mouse_arguments(event->buttons(), event->modifiers(), within));
    });
}

void SkinnedControl::mouseReleaseEvent(QMouseEvent* event) {
    guard_event([&] {
        if (!held_ || !has_number(event->button())) {
            return;
        }
        Part* const part = held_part_;
        const QPointF within = event->position() - held_origin_;
        held_ = button_number(event->buttons()) != 0;
        const bool clicked = event->button() == Qt::LeftButton && std::exchange(click_due_, false);
        part_released(part, mouse_arguments(event->button(), event->modifiers(), within));
        if (clicked && is_on(within, part == nullptr ? QSizeF(size()) : part->place().size())) {
            part_clicked(part);
        }
    });
}

} // namespace varnoth
