#include "desktop/controls/elradio.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

#include <QPainter>

#include "core/base/numbers.h"
#include "core/image/alpha_blend.h"
#include "desktop/theme/edges.h"
#include "desktop/theme/theme.h"

namespace varnoth {

namespace {

constexpr double height_in_twips = 285;
constexpr std::int32_t surface_size = 18;

// The circle is centred at pixel (9, 9) and has a radius of 6 and a line of one pixel. The dot has a radius
// of 3.
constexpr double circle_place = 3;
constexpr double circle_size = 13;
constexpr double dot_inset = 3; ///< between the outline of the circle and that of the dot

// The dark arc in radians, counter-clockwise from three o'clock. The rest of the line is light.
constexpr double dark_start = 0.5;
constexpr double dark_end = 4;

struct CircleColours {
    Colour fill;
    Colour dark;
    Colour light;
    std::optional<Colour> dot;
};

int nearest(double length) {
    return round_to_even<int>(std::floor(length + 0.5));
}

/// The circle in screen pixels, relative to the top left of its bounding square. All measures are whole
/// pixels, so that the circle is symmetric and looks the same at every position.
class CircleRaster {
  public:
    CircleRaster(double scale, const CircleColours& colours)
        : size_(nearest(circle_size * scale)),
          line_(std::max(1, round_to_even<int>(std::floor(scale)))),
          inset_(nearest(dot_inset * scale)),
          colours_(colours) {}

    int size() const { return size_; }

    /// No colour outside the circle.
    std::optional<Colour> colour_at(int x, int y) const {
        if (!is_within(x, y, 0)) {
            return std::nullopt;
        }
        if (!is_within(x, y, line_)) {
            return is_dark(x, y) ? colours_.dark : colours_.light;
        }
        return colours_.dot && is_within(x, y, inset_) ? *colours_.dot : colours_.fill;
    }

  private:
    /// Whether the centre of a pixel is within the circle, shrunk by `inset` pixels on all sides. Calculates
    /// in half pixels.
    bool is_within(int x, int y, int inset) const {
        const int right = 2 * x + 1 - size_;
        const int down = 2 * y + 1 - size_;
        const int diameter = size_ - 2 * inset;
        return right * right + down * down <= diameter * diameter;
    }

    bool is_dark(int x, int y) const {
        const double angle = std::atan2(size_ - 2 * y - 1, 2 * x + 1 - size_);
        const double positive = angle < 0 ? angle + 2 * std::numbers::pi : angle;
        return positive >= dark_start && positive <= dark_end;
    }

    int size_;
    int line_;
    int inset_;
    CircleColours colours_;
};

// `corner` is the top left of the circle's bounding square.
void draw_circle(QPainter& painter, const QPointF& corner, const CircleColours& colours) {
    const QTransform to_screen = painter.deviceTransform();
    const QTransform from_screen = to_screen.inverted();
    const QPointF first = to_screen.map(nearest_on_screen(painter, corner));
    const CircleRaster raster(to_screen.m11(), colours);
    for (int y = 0; y < raster.size(); ++y) {
        for (int x = 0, end = 0; x < raster.size(); x = end) {
            const std::optional<Colour> colour = raster.colour_at(x, y);
            for (end = x + 1; end < raster.size() && raster.colour_at(end, y) == colour; ++end) {
            }
            if (colour) {
                const QRectF run(first.x() + x, first.y() + y, end - x, 1);
                painter.fillRect(from_screen.mapRect(run), theme::to_qcolor(*colour));
            }
        }
    }
}

} // namespace

elradio::elradio(const QString& name, QWidget* parent) : CheckableControl(name, parent, 28, 1) {
    picture1_.Width = surface_size;
    picture1_.Height = surface_size;
    add_part("Picture1", picture1_);
    add_part("shadow1", caption().shadow);
    add_part("Label1", caption().text);
    fix_height(height_in_twips);
    ReadProperties({});
}

void elradio::update_appearance() {
    constexpr BLENDFUNCTION opaque{.SourceConstantAlpha = 255};
    alpha_blend(picture1_.surface().hDC(), {0, 0, surface_size, surface_size}, surface().hDC(),
                round_to_even<std::int32_t>(picture1_.Left), round_to_even<std::int32_t>(picture1_.Top),
                packed(opaque));
    CheckableControl::update_appearance();
}

void elradio::Circle::paint(QPainter& painter) const {
    BoxPart::paint(painter);
    const std::optional<Colour> dot =
        control_.Value() ? std::optional(control_.CheckedColor()) : std::nullopt;
    draw_circle(painter, {Left + circle_place, Top + circle_place},
                {control_.BackColor2(), control_.Color3DDark(), control_.Color3DLight(), dot});
}

// Clicks on the caption and on the surface have the same effect.
void elradio::part_clicked(Part* /*part*/) {
    if (!value_) {
        SetValue(true);
    }
    emit Click();
}

} // namespace varnoth
