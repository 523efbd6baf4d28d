// The parts that a skinned control is composed of: texts, one-pixel lines and small surfaces. They are no
// widgets: the control paints them in its own order and hands them the mouse.
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

/// Whether a point lies on a thing of that size at the origin. The pixel behind its right or bottom edge does
/// not.
bool is_on(const QPointF& point, const QSizeF& size);

/// Places and sizes are in pixels from the top left of what holds the part, and need not be whole numbers.
class Part {
  public:
    virtual ~Part() = default;

    double Left = 0;
    double Top = 0;
    double Width = 0;
    double Height = 0;
    bool Visible = true;
    bool Enabled = true;       ///< a part that is not lets the mouse pass to what lies behind
    bool passes_mouse = false; ///< lets it pass in any case: the shadow of a caption

    QRectF place() const { return {Left, Top, Width, Height}; }

    /// Draws the part in the coordinates of what holds it.
    virtual void paint(QPainter& painter) const = 0;

    /// The part that takes the mouse at a point: this one, one within it, or none. `within` is the point's
    /// place in that part.
    virtual Part* at(const QPointF& point, QPointF& within);
};

/// One line of text, or one character of the symbol font. The text is cut at the part's edge unless the part
/// takes the size of its text.
class TextPart : public Part {
  public:
    /// The background is transparent.
    Colour ForeColor = 0;

    const QString& Caption() const { return caption_; }

    void SetCaption(const QString& caption);

    const QFont& Font() const { return font_; }

    void SetFont(const QFont& font);

    /// Makes the part take the size of its text from now on.
    void set_auto_size();

    /// The caption is a character of the symbol font and stands in the middle of the part.
    void set_symbol() { symbol_ = true; }

    /// The part is the black shadow of that text, which takes the mouse for both. A shadow that has the
    /// text's own colour is not to be seen. Its caption and font are set behind those of the text, whose size
    /// it takes.
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

/// A horizontal or vertical line of one pixel, both ends included. The mouse does not see it.
class LinePart : public Part {
  public:
    explicit LinePart(LineSide side = LineSide::None) : side_(side) {}

    double X1 = 0;
    double Y1 = 0;
    double X2 = 0;
    double Y2 = 0;
    Colour BorderColor = 0;

    /// Both ends in the coordinates of what holds the line.
    void set_ends(double x1, double y1, double x2, double y2);

    void paint(QPainter& painter) const override;

    Part* at(const QPointF& /*point*/, QPointF& /*within*/) override { return nullptr; }

  private:
    LineSide side_;
};

/// A small surface with a background of its own, parts upon it and, where it has been drawn on, pixels.
class BoxPart : public Part {
  public:
    Colour BackColor = 0;
    std::int32_t bits_per_pixel = 32; ///< of the surface: 32 or 24

    /// Back to front. The parts belong to the control.
    std::vector<Part*> contents;

    /// The pixels; made in the part's size and background when they are first asked for.
    PictureSurface& surface();

    /// Another background; what was drawn is erased.
    void set_back_colour(Colour colour);

    void paint(QPainter& painter) const override;
    Part* at(const QPointF& point, QPointF& within) override;

  private:
    SurfaceContainer container_;
    std::unique_ptr<PictureSurface> surface_;
};

/// Draws a surface's pixels with its top left at the origin, one pixel of the surface for each unit.
void draw_surface(QPainter& painter, const PictureSurface& surface);

/// The height of a line of text in that font, and the width of the text, in whole pixels.
double text_height(const QFont& font);
double text_width(const QFont& font, const QString& text);

} // namespace varnoth
