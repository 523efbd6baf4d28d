// What the ten controls of the program share. A control is a small composition of parts, kept in place by a
// layout step, with properties that a designer stores with it. A setter changes the part that shows the
// property and tells the host.
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
    // The family's properties. Each control tells by Q_PROPERTY which of them it has. Qt itself can only read
    // them: it would wrap and round numbers before a setter sees them, and no failure may pass through it.

    /// Sets a property by its name. A number is rounded as by round_to_even. Overflow for one that does not
    /// fit, InvalidPropertyValue for a value of another kind, and the failures of the setter. Any other name
    /// is left to QObject.
    bool setProperty(const char* name, const QVariant& value);

    /// Whether the control is enabled of its own account, whatever its window is. No grey look goes with it.
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

    /// In points, a number of 64 bits with four decimal places. InvalidPropertyValue for a size of 0 or less,
    /// Overflow for one that does not fit.
    double FontSize() const;
    void SetFontSize(double size);

    bool FontItalic() const { return font_.italic(); }

    void SetFontItalic(bool italic);

    bool FontUnderline() const { return font_.underline(); }

    void SetFontUnderline(bool underline);

    bool DropShadow() const { return drop_shadow_; }

    void SetDropShadow(bool shadow);

    // Storing.

    /// Writes the properties in the control's order of saving.
    void WriteProperties(PropertyBag& bag) const;

    /// Takes the properties from a bag; what is missing there takes its fallback. The host is not told. Fails
    /// as setProperty does; the properties loaded before are kept then.
    void ReadProperties(const PropertyBag& bag);

    // Geometry in pixels.

    /// The parts follow a new size at once, even while the control is hidden: QWidget sends a hidden widget
    /// its resize event only when it is shown.
    void setGeometry(const QRect& geometry);

    void setGeometry(int left, int top, int width, int height) {
        setGeometry(QRect(left, top, width, height));
    }

    /// Like setGeometry, but keeps the position.
    void resize(const QSize& size);

    void resize(int width, int height) { resize(QSize(width, height)); }

    // Sizes in twips, 1/1440 inch.

    double Width() const;
    double Height() const;
    void SetWidth(double twips);
    void SetHeight(double twips);

    /// The width in pixels as a real number: a minimum in twips need not be a whole one.
    double width_in_pixels() const;

    /// The inner size in pixels.
    double ScaleWidth() const { return width(); }

    double ScaleHeight() const { return height(); }

    /// What a click on the control does, for those who have no mouse.
    virtual void act_as_clicked() { part_clicked(nullptr); }

    /// The control's drawing context. What is drawn there lies above the background and below the parts.
    DrawingContext& get_the_hdc();

    /// Seems transparent: clears the control and blends into it what `origen` shows from (x, y) on, with the
    /// constant alpha `cantidad`, 0 to 255; Overflow for any other.
    virtual void obtener_imagen_fondo(const DrawingContext& origen, std::int32_t x, std::int32_t y,
                                      std::int16_t cantidad);

    /// A part by its given name, "label" or "lineA(0)".
    template <typename Kind>
    const Kind& part(const QString& name) const {
        return dynamic_cast<const Kind&>(named_part(name));
    }

  signals:
    /// A setter of a persisted property tells its host.
    void property_changed(const QString& name);

  protected:
    /// `properties` in the order of saving; the object name and the parent's child name are the same.
    SkinnedControl(const QString& name, QWidget* parent, const std::vector<ControlProperty>& properties);

    // For the constructor of a control.

    /// Adds a part in front of those added before. Parts within a box are added by the box's contents and
    /// named with name_part.
    void add_part(const QString& name, Part& part);
    void name_part(const QString& name, Part& part);

    /// The control is always that high and at least that wide, both in twips, even where that is not a whole
    /// number of pixels.
    void fix_height(double twips);
    void set_minimum_width(double twips);

    /// The obtained background leaves out an edge of that many pixels.
    void set_background_edge(std::int32_t pixels) { background_edge_ = pixels; }

    // What a control answers to.

    /// Moves the parts after a change of size.
    virtual void resized() {}

    /// Moves the caption after a change of caption, font or alignment.
    virtual void layout_step() {}

    // Sets the parts that show the property; the control is painted anew afterwards.

    virtual void show_back_colour() {}

    virtual void show_fore_colour() {}

    virtual void show_light() {}

    virtual void show_dark() {}

    virtual void show_font() {}

    virtual void show_shadow() {}

    // The mouse, with places in the part; a null part is the control's own surface.

    /// A press holds the mouse: the moves and the release that follow go to the same part wherever they
    /// happen.
    virtual void part_pressed(Part* /*part*/, const MouseArguments& /*mouse*/) {}

    /// A move over a part, or of a held one.
    virtual void part_moved(Part* /*part*/, const MouseArguments& /*mouse*/) {}

    /// The release of a held part.
    virtual void part_released(Part* /*part*/, const MouseArguments& /*mouse*/) {}

    /// The release of a held part never came: the control was disabled meanwhile, or the window system moved
    /// the window. Takes back the pressed look.
    virtual void part_abandoned(Part* /*part*/) {}

    /// A release of the left button over the part that was pressed.
    virtual void part_clicked(Part* /*part*/) {}

    /// The second press of a fast pair. True when the part has a double click, which then takes the place of
    /// the second click.
    virtual bool part_double_clicked(Part* /*part*/) { return false; }

    /// Blends into the control what `origen` shows from (x, y) on, but for the edge that is left out.
    void blend_background(const DrawingContext& origen, std::int32_t x, std::int32_t y,
                          const BLENDFUNCTION& blend);

    /// The control's pixels; made in its size and background when they are first asked for.
    PictureSurface& surface();

    /// Ends every setter: paints anew and, except while properties are read, tells the host.
    void changed(const char* property);

    /// Ends the setter of a caption: also moves it, and tells a screen reader what the control is called now.
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
    QSize laid_out_size_;     ///< what the parts and the pixels are laid out for
    double fixed_height_ = 0; ///< in twips; 0 for a control of any height
    double minimum_width_ = 0;

    Part* held_part_ = nullptr;
    QPointF held_origin_; ///< of the held part, in the control
    bool held_ = false;
    bool click_due_ = false;
    bool reading_ = false;
};

} // namespace varnoth
