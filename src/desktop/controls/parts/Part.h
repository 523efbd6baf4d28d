// The parts of a skinned control: texts, one-pixel lines and small surfaces. They are not widgets: the
// control paints them in its own order and dispatches mouse events to them.
#pragma once

#include <memory>
#include <vector>

#include <QFont>
#include <QRectF>
#include <QString>

#include "core/image/Colour.h"
#include "core/image/PictureSurface.h"
#include "desktop/theme/edges.h"

class QPainter;

namespace varnoth {

/// Whether a point is inside a rectangle of this size at the origin. The right and bottom edges are
/// exclusive.
bool is_on(const QPointF& point, const QSizeF& size);

/// Positions and sizes are in pixels relative to the top left of the containing part or control, and may be
/// fractional.
class Part {
  public:
    virtual ~Part() = default;

    double Left = 0;
    double Top = 0;
    double Width = 0;
    double Height = 0;
    bool Visible = true;
    bool Enabled = true;       ///< disabled parts let mouse events through to the part behind
    bool passes_mouse = false; ///< lets mouse events through even while enabled, as shadows do

    QRectF place() const { return {Left, Top, Width, Height}; }

    /// Draws the part in the coordinates of its container.
    virtual void paint(QPainter& painter) const = 0;

    /// The part that receives mouse events at a point: this part, a part inside it, or null. Sets `within` to
    /// the point in the coordinates of that part.
    virtual Part* at(const QPointF& point, QPointF& within);
};

/// One line of text, or one character of the symbol font. The text is clipped at the part's edge unless the
/// part adapts its size to the text.
class TextPart : public Part {
  public:
    /// The text colour; the background is transparent.
    Colour ForeColor = 0;

    const QString& Caption() const { return caption_; }

    void SetCaption(const QString& caption);

    const QFont& Font() const { return font_; }

    void SetFont(const QFont& font);

    /// Adapts the part's size to its text from now on.
    void set_auto_size();

    /// Draws the caption as a character of the symbol font, centred in the part.
    void set_symbol() { symbol_ = true; }

    /// Makes the part the black shadow of a text, which receives the mouse events of both. The shadow is not
    /// drawn if it has the text's own colour. Set the text's caption and font before those of the shadow,
    /// which takes over the text's size.
    void set_shadow_of(const TextPart& text);

    void paint(QPainter& painter) const override;

  private:
    void take_size();

    QString caption_;
    QFont font_;
    bool auto_size_ = false;
    bool symbol_ = false;
    const TextPart* shadowed_ = nullptr;
};

/// A horizontal or vertical line of one pixel, both ends inclusive. It receives no mouse events.
class LinePart : public Part {
  public:
    explicit LinePart(LineSide side = LineSide::None) : side_(side) {}

    double X1 = 0;
    double Y1 = 0;
    double X2 = 0;
    double Y2 = 0;
    Colour BorderColor = 0;

    /// Sets both ends, in the coordinates of the container.
    void set_ends(double x1, double y1, double x2, double y2);

    void paint(QPainter& painter) const override;

    Part* at(const QPointF& /*point*/, QPointF& /*within*/) override { return nullptr; }

  private:
    LineSide side_;
};

/// A small surface with its own background, contained parts and, once drawn on, pixels.
class BoxPart : public Part {
  public:
    Colour BackColor = 0;
    std::int32_t bits_per_pixel = 32; ///< of the surface: 32 or 24

    /// Back to front; not owned.
    std::vector<Part*> contents;

    /// The pixels, allocated on first use in the part's size and background colour.
    PictureSurface& surface();

    /// Changes the background and erases what was drawn.
    void set_back_colour(Colour colour);

    void paint(QPainter& painter) const override;
    Part* at(const QPointF& point, QPointF& within) override;

  private:
    SurfaceContainer container_;
    std::unique_ptr<PictureSurface> surface_;
};

/// Draws a surface with its top left at the origin, one surface pixel per unit.
void draw_surface(QPainter& painter, const PictureSurface& surface);

/// The height of a line in a font and the width of a text, in whole pixels.
double text_height(const QFont& font);
double text_width(const QFont& font, const QString& text);

} // namespace varnoth
