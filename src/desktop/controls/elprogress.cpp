#include "desktop/controls/elprogress.h"

#include <algorithm>
#include <cmath>

#include "core/base/numbers.h"
#include "desktop/theme/theme.h"
#include "desktop/widgets/accessible.h"

namespace varnoth {

namespace {

constexpr double height_in_twips = 360;
constexpr double least_width_in_twips = 360;

// In pixels. A block is right-aligned in its cell.
constexpr std::int32_t cell_width = 12;
constexpr std::int32_t block_left = 4;
constexpr std::int32_t block_top = 4;
constexpr std::int32_t block_width = 8;
constexpr std::int32_t block_height = 16;

const std::vector<ControlProperty>& persisted() {
    static const std::vector<ControlProperty> properties{
        {"ForeColor", sets<&SkinnedControl::SetForeColor>, theme::highlight},
        {"BackColor", sets<&SkinnedControl::SetBackColor>, theme::field_background},
        {"Enabled", sets<&SkinnedControl::SetEnabled>, true},
        {"Min", sets<&elprogress::SetMin>, 0},
        {"Max", sets<&elprogress::SetMax>, 10},
        {"Value", sets<&elprogress::SetValue>, 0},
        {"Color3DLight", sets<&SkinnedControl::SetColor3DLight>, theme::edge_light},
        {"Color3DDark", sets<&SkinnedControl::SetColor3DDark>, theme::window_text},
    };
    return properties;
}

// The lower bound has no influence. A job without steps has the upper bound 0 and fills nothing.
double filled_cells(std::int32_t value, std::int32_t cells, std::int32_t most) {
    const std::int32_t product = checked_multiply(value, cells);
    return most == 0 ? 0 : std::trunc(static_cast<double>(product) / most);
}

} // namespace

elprogress::elprogress(const QString& name, QWidget* parent) : ForwardingControl(name, parent, persisted()) {
    add_part("Line1(0)", edges_.top);
    add_part("Line1(3)", edges_.left);
    add_part("Line1(2)", edges_.right);
    add_part("Line1(1)", edges_.bottom);
    set_background_edge(1);
    fix_height(height_in_twips);
    set_minimum_width(least_width_in_twips);
    ReadProperties({});
}

void elprogress::SetMin(std::int32_t least) {
    min_ = least;
    changed("Min");
}

void elprogress::SetMax(std::int32_t most) {
    max_ = most;
    changed("Max");
}

void elprogress::SetValue(std::int32_t value) {
    const std::int32_t kept = std::min(std::max(value, min_), max_);
    filled_cells(kept, cells(), max_); // fails before anything changes
    value_ = kept;
    redraw();
    if (!reading()) {
        notify_value_changed(*this, value_);
    }
    changed("Value");
}

void elprogress::obtener_imagen_fondo(const DrawingContext& origen, std::int32_t x, std::int32_t y,
                                      std::int16_t cantidad) {
    background_ = {&origen, x, y, cantidad};
    SkinnedControl::obtener_imagen_fondo(origen, x, y, cantidad);
}

std::int32_t elprogress::cells() const {
    return round_to_even<std::int32_t>(std::trunc(ScaleWidth() / cell_width));
}

void elprogress::redraw() {
    const double filled = filled_cells(value_, cells(), max_);
    if (background_.origen != nullptr) {
        SkinnedControl::obtener_imagen_fondo(*background_.origen, background_.x, background_.y,
                                             background_.cantidad);
    } else {
        surface().Cls();
    }
    // After a change of Max alone there can be more blocks than fit; those beyond the edge are not drawn.
    const std::int32_t visible = cells() + 1;
    for (std::int32_t cell = 0; cell < visible && cell < filled; ++cell) {
        const std::int32_t left = cell * cell_width + block_left;
        surface().Line(left, block_top, left + block_width - 1, block_top + block_height - 1, ForeColor());
    }
    update();
}

void elprogress::resized() {
    edges_.set_width(width_in_pixels());
    redraw();
}

void elprogress::show_light() {
    edges_.colour_bottom_right(Color3DLight());
}

void elprogress::show_dark() {
    edges_.colour_top_left(Color3DDark());
}

} // namespace varnoth
