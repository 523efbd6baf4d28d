// The base of the program's ten controls. A control consists of parts, which it lays out, and has properties
// that can be saved and loaded. A setter updates the part that shows the property and notifies the host.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include <QVariant>
#include <QWidget>

#include "core/image/DrawingContext.h"
#include "core/image/alpha_blend.h"
#include "desktop/controls/parts/ControlProperty.h"
#include "desktop/controls/parts/Part.h"
#include "desktop/controls/parts/PropertyBag.h"
#include "desktop/widgets/mouse.h"

namespace varnoth {

class SkinnedControl : public QWidget {
    Q_OBJECT

  public:
    // The common properties. Each control declares by Q_PROPERTY which of them it has. They are read-only for
    // Qt: it would wrap and round numbers before the setter sees them, and exceptions must not pass through
    // Qt.

    /// Sets a property by name. Numbers are rounded as by round_to_even. Fails with Overflow for a number out
    /// of range, with InvalidPropertyValue for a value of an unsuitable type, and as the setter fails. Names
    /// that the control does not know are passed to QObject.
    bool setProperty(const char* name, const QVariant& value);

    /// Whether the control itself is enabled, regardless of its window. Disabled controls are not drawn in
    /// grey.
    bool Enabled() const;
    void SetEnabled(bool enabled);

    Colour BackColor() const { return back_colour_; }

    void SetBackColor(Colour colour);

    Colour ForeColor() const { return fore_colour_; }

    void SetForeColor(Colour colour);

    Colour Color3DLight() const { return light_; }

    void SetColor3DLight(Colour colour);

    Colour Color3DDark() const { return dark_; }

    void SetColor3DDark(Colour colour);

    const QFont& Font() const { return font_; }

    void SetFont(const QFont& font);

    QString FontName() const { return font_.family(); }

    void SetFontName(const QString& name);

    /// In points, with four decimal places in 64 bits. Setting it fails with InvalidPropertyValue for a size
    /// of 0 or less and with Overflow for one that does not fit.
    double FontSize() const;
    void SetFontSize(double size);

    bool FontItalic() const { return font_.italic(); }

    void SetFontItalic(bool italic);

    bool FontUnderline() const { return font_.underline(); }

    void SetFontUnderline(bool underline);

    bool DropShadow() const { return drop_shadow_; }

    void SetDropShadow(bool shadow);

    // Storing.

    /// Loads the properties from a bag; missing ones get their fallback. Does not notify the host. Fails as
    /// setProperty does, and then keeps the properties loaded so far.
    void ReadProperties(const PropertyBag& bag);

    // Interface: not used by the editor itself.

    /// Writes the properties in the control's order of saving.
    void WriteProperties(PropertyBag& bag) const;

    // Geometry in pixels.

    /// The parts follow a new size at once, even while the control is hidden: QWidget sends a hidden widget
    /// its resize event only when it is shown.
    void setGeometry(const QRect& geometry);

    /// The same, in four numbers.
    void setGeometry(int left, int top, int width, int height) {
        setGeometry(QRect(left, top, width, height));
    }

    /// Like setGeometry, but keeps the position.
    void resize(const QSize& size);

    /// The same, in two numbers.
    void resize(int width, int height) { resize(QSize(width, height)); }

    // Sizes in twips, 1/1440 inch.

    double Width() const;
    double Height() const;
    void SetWidth(double twips);
    void SetHeight(double twips);

    /// The exact width in pixels, which a minimum width in twips can make fractional.
    double width_in_pixels() const;

    /// The inner size in pixels.
    double ScaleWidth() const { return width(); }

    double ScaleHeight() const { return height(); }

    /// Does what a click on the control does, for keys and screen readers.
    virtual void perform_click() { part_clicked(nullptr); }

    /// The control's drawing context. Drawings are above the background and below the parts.
    DrawingContext& get_the_hdc();

    /// Imitates transparency: clears the control and blends `origen`, from (x, y) on, into it with the
    /// constant alpha `cantidad`, 0 to 255. Fails with Overflow for any other alpha.
    virtual void obtener_imagen_fondo(const DrawingContext& origen, std::int32_t x, std::int32_t y,
                                      std::int16_t cantidad);

    /// Finds a part by name, such as "label" or "lineA(0)".
    template <typename Kind>
    const Kind& part(const QString& name) const {
        return dynamic_cast<const Kind&>(named_part(name));
    }

  signals:
    /// A setter of a persisted property was called.
    void property_changed(const QString& name);

  protected:
    /// `properties` are in the order of saving. `name` becomes the object name.
    SkinnedControl(const QString& name, QWidget* parent, const std::vector<ControlProperty>& properties);

    // For the constructor of a control.

    /// Adds a part in front of those already added. Parts inside a box belong in the box's `contents` instead
    /// and are named with name_part.
    void add_part(const QString& name, Part& part);
    void name_part(const QString& name, Part& part);

    /// Sets the fixed height or the minimum width, in twips. They need not be a whole number of pixels.
    void fix_height(double twips);
    void set_minimum_width(double twips);

    /// Sets the width of the edge that obtener_imagen_fondo leaves out.
    void set_background_edge(std::int32_t pixels) { background_edge_ = pixels; }

    // Called by the base class.

    /// Moves the parts after a change of size.
    virtual void resized() {}

    /// Moves the caption after a change of caption, font or alignment.
    virtual void layout_step() {}

    // Update the parts that show a property. The control is repainted afterwards.

    virtual void show_back_colour() {}

    virtual void show_fore_colour() {}

    virtual void show_light() {}

    virtual void show_dark() {}

    virtual void show_font() {}

    virtual void show_shadow() {}

    // Mouse events, with positions relative to the part. A null part is the control's own surface.

    /// A press grabs the mouse: the following moves and the release go to the same part wherever they happen.
    virtual void part_pressed(Part* /*part*/, const MouseArguments& /*mouse*/) {}

    /// A move over a part, or any move while the part is held.
    virtual void part_moved(Part* /*part*/, const MouseArguments& /*mouse*/) {}

    /// The release of a held part.
    virtual void part_released(Part* /*part*/, const MouseArguments& /*mouse*/) {}

    /// The release of a held part was lost, because the control was disabled or the window system took over
    /// the pointer to move the window. Restores the normal appearance.
    virtual void part_abandoned(Part* /*part*/) {}

    /// The left button was released over the part on which it was pressed.
    virtual void part_clicked(Part* /*part*/) {}

    /// The second press of a double click. Returns true if the part handles double clicks; the second click
    /// is then suppressed.
    virtual bool part_double_clicked(Part* /*part*/) { return false; }

    /// Blends `origen`, from (x, y) on, into the control except for its edge.
    void blend_background(const DrawingContext& origen, std::int32_t x, std::int32_t y,
                          const BLENDFUNCTION& blend);

    /// The control's pixels, allocated on first use in its size and background colour.
    PictureSurface& surface();

    /// To be called at the end of every setter. Repaints and, except during ReadProperties, notifies the
    /// host.
    void changed(const char* property);

    /// To be called at the end of the setter of a caption instead. Also lays the caption out and notifies
    /// screen readers of the new name.
    void caption_changed();

    bool reading() const { return reading_; }

    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

  private:
    const Part& named_part(const QString& name) const;
    Part* part_at(const QPointF& point, QPointF& within);
    void press(QMouseEvent* event);
    void abandon_press();
    void read_property(const PropertyBag& bag, const ControlProperty& property);
    QVariant ambient(const char* property) const;
    void follow_size();

    const std::vector<ControlProperty>& properties_;
    Colour back_colour_ = 0;
    Colour fore_colour_ = 0;
    Colour light_ = 0;
    Colour dark_ = 0;
    QFont font_;
    bool drop_shadow_ = false;

    std::vector<Part*> parts_; ///< back to front
    std::vector<std::pair<QString, Part*>> names_;
    SurfaceContainer container_;
    std::unique_ptr<PictureSurface> surface_;
    std::int32_t background_edge_ = 0;
    QSize laid_out_size_;     ///< the size of the current layout
    double fixed_height_ = 0; ///< in twips; 0 for a control of any height
    double minimum_width_ = 0;

    Part* held_part_ = nullptr;
    QPointF held_origin_; ///< top left of the held part, in the control's coordinates
    bool held_ = false;
    bool click_due_ = false;
    bool reading_ = false;
};

} // namespace varnoth
