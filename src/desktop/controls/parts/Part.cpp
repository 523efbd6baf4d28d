#include "desktop/controls/parts/Part.h"

#include <cmath>
#include <utility>

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>

#include "core/base/numbers.h"
#include "desktop/theme/symbols.h"
#include "desktop/theme/theme.h"

namespace varnoth {

bool is_on(const QPointF& point, const QSizeF& size) {
    return point.x() >= 0 && point.x() < size.width() && point.y() >= 0 && point.y() < size.height();
}

Part* Part::at(const QPointF& point, QPointF& within) {
    const QPointF inside = point - place().topLeft();
    if (!Visible || !Enabled || passes_mouse || !is_on(inside, place().size())) {
        return nullptr;
    }
    within = inside;
    return this;
}

void TextPart::SetCaption(const QString& caption) {
    if (std::exchange(caption_, caption) != caption) {
        take_size();
    }
}

// Loading a control sets its font once for each font property, mostly to the same font.
void TextPart::SetFont(const QFont& font) {
    if (std::exchange(font_, font) != font) {
        take_size();
    }
}

void TextPart::set_auto_size() {
    auto_size_ = true;
    take_size();
}

void TextPart::set_shadow_of(const TextPart& text) {
    ForeColor = theme::black;
    passes_mouse = true;
    shadowed_ = &text;
}

void TextPart::take_size() {
    if (!auto_size_) {
        return;
    }
    if (shadowed_ != nullptr) {
        Width = shadowed_->Width;
        Height = shadowed_->Height;
        return;
    }
    Width = text_width(font_, caption_);
    Height = text_height(font_);
}

void TextPart::paint(QPainter& painter) const {
    const bool blends_in =
        shadowed_ != nullptr && translate_colour(shadowed_->ForeColor) == translate_colour(ForeColor);
    if (!Visible || blends_in) {
        return;
    }
    const QRectF box(nearest_on_screen(painter, {Left, Top}), QSizeF(Width, Height));
    if (symbol_) {
        draw_symbol(painter, caption_.isEmpty() ? QChar() : caption_.front(), box,
                    theme::to_qcolor(ForeColor));
        return;
    }
    painter.setFont(theme::display_font(font_));
    painter.setPen(theme::to_qcolor(ForeColor));
    painter.drawText(box, Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, caption_);
}

void LinePart::set_ends(double x1, double y1, double x2, double y2) {
    X1 = x1;
    Y1 = y1;
    X2 = x2;
    Y2 = y2;
}

void LinePart::paint(QPainter& painter) const {
    if (!Visible) {
        return;
    }
    const double left = std::nearbyint(X1);
    const double top = std::nearbyint(Y1);
    draw_edge(painter, {left, top, std::nearbyint(X2) - left + 1, std::nearbyint(Y2) - top + 1}, side_,
              BorderColor);
}

PictureSurface& BoxPart::surface() {
    if (!surface_) {
        surface_ = std::make_unique<PictureSurface>(
            PictureSurface::Design{.parent = &container_,
                                   .width = round_to_even<std::int32_t>(Width),
                                   .height = round_to_even<std::int32_t>(Height),
                                   .bits_per_pixel = bits_per_pixel,
                                   .border = 0,
                                   .back_colour = BackColor});
    }
    return *surface_;
}

void BoxPart::set_back_colour(Colour colour) {
    BackColor = colour;
    if (surface_) {
        surface_->SetBackColor(colour);
    }
}

void BoxPart::paint(QPainter& painter) const {
    if (!Visible) {
        return;
    }
    painter.save();
    painter.translate(nearest_on_screen(painter, {Left, Top}));
    painter.setClipRect(QRectF(0, 0, Width, Height), Qt::IntersectClip);
    painter.fillRect(QRectF(0, 0, Width, Height), theme::to_qcolor(BackColor));
    if (surface_) {
        draw_surface(painter, *surface_);
    }
    for (const Part* part : contents) {
        part->paint(painter);
    }
    painter.restore();
}

Part* BoxPart::at(const QPointF& point, QPointF& within) {
    if (Part::at(point, within) == nullptr) {
        return nullptr;
    }
    const QPointF inside = within;
    for (auto part = contents.rbegin(); part != contents.rend(); ++part) {
        if (Part* found = (*part)->at(inside, within)) {
            return found;
        }
    }
    within = inside;
    return this;
}

void draw_surface(QPainter& painter, const PictureSurface& surface) {
    const Bitmap& bitmap = surface.bitmap();
    if (bitmap.width() == 0 || bitmap.height() == 0) {
        return;
    }
    const QImage image(bitmap.row(0), bitmap.width(), bitmap.height(), bitmap.row_bytes(),
                       bitmap.bits_per_pixel() == 24 ? QImage::Format_BGR888 : QImage::Format_RGB32);
    painter.drawImage(QPointF(0, 0), image);
}

double text_height(const QFont& font) {
    return std::ceil(QFontMetricsF(theme::display_font(font)).height());
}

double text_width(const QFont& font, const QString& text) {
    return std::ceil(QFontMetricsF(theme::display_font(font)).horizontalAdvance(text));
}

} // namespace varnoth
