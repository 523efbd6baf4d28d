// The panel: background, edge, icon, title and close button of a window. It only reports
// events; the window moves and closes itself.
#pragma once

#include "desktop/controls/parts/EdgeLines.h"
#include "desktop/controls/parts/ShadowedText.h"
#include "desktop/controls/parts/SkinnedControl.h"

namespace varnoth {

/// Parts: `Picture1`, the icon; `Picture2`, the close button, with its edges `Line1A(0)` left, `Line1A(1)`
/// top, `Line1B(0)` bottom and `Line1B(1)` right and the glyph `Label2`; `LineA(0)` top, `LineA(1)` left,
/// `LineB(0)` right, `LineB(1)` bottom; the title `Label1` and `shadow1`.
class elpanel final : public SkinnedControl {
    Q_OBJECT
    Q_PROPERTY(int BackColor READ BackColor)
    Q_PROPERTY(int ForeColor READ ForeColor)
    Q_PROPERTY(int CloseColor READ CloseColor)
    Q_PROPERTY(bool Enabled READ Enabled)
    Q_PROPERTY(QString Title READ Title)
    Q_PROPERTY(bool Icon READ Icon)
    Q_PROPERTY(bool Cerrar READ Cerrar)
    Q_PROPERTY(int Color3DLight READ Color3DLight)
    Q_PROPERTY(int Color3DDark READ Color3DDark)
    Q_PROPERTY(QFont Font READ Font)
    Q_PROPERTY(QString FontName READ FontName)
    Q_PROPERTY(double FontSize READ FontSize)
    Q_PROPERTY(bool FontItalic READ FontItalic)
    Q_PROPERTY(bool FontUnderline READ FontUnderline)
    Q_PROPERTY(bool DropShadow READ DropShadow)

  public:
    elpanel(const QString& name, QWidget* parent);

    /// The colour of the close glyph.
    Colour CloseColor() const { return label2_.ForeColor; }

    void SetCloseColor(Colour colour);

    const QString& Title() const { return title_.text.Caption(); }

    void SetTitle(const QString& title);

    /// Whether the icon is visible.
    bool Icon() const { return icon_; }

    void SetIcon(bool visible);

    /// Whether the close button is visible.
    bool Cerrar() const { return cerrar_; }

    void SetCerrar(bool visible);

    /// Also blends the background into the close button, which, unlike the panel, is not cleared first.
    void obtener_imagen_fondo(const DrawingContext& origen, std::int32_t x, std::int32_t y,
                              std::int16_t cantidad) override;

    /// Clicks the close button.
    void perform_click() override;

    // Interface: not used by the editor itself.

    /// Copies the icon from the 16 by 16 pixels at the top left of the context.
    void set_icon(const DrawingContext& context);

    DrawingContext& get_icon_hdc();

    /// Fills the panel with a copy of the context, starting at its top left. Always returns 0.
    std::int32_t set_the_hdc(const DrawingContext& context);

  signals:
    /// Raised by the surface and the title.
    void Click();

    /// Replaces the second Click of a double click.
    void DblClick();

    /// Raised by the surface.
    void MouseDown(std::int16_t Button, std::int16_t Shift, float x, float y);
    void MouseMove(std::int16_t Button, std::int16_t Shift, float x, float y);
    void MouseUp(std::int16_t Button, std::int16_t Shift, float x, float y);

    /// Raised by the title.
    void TitleMouseDown(std::int16_t Button, std::int16_t Shift, float x, float y);
    void TitleMouseMove(std::int16_t Button, std::int16_t Shift, float x, float y);
    void TitleMouseUp(std::int16_t Button, std::int16_t Shift, float x, float y);

    /// Raised by the icon.
    void IconMouseDown(std::int16_t Button, std::int16_t Shift, float x, float y);
    void IconMouseMove(std::int16_t Button, std::int16_t Shift, float x, float y);
    void IconMouseUp(std::int16_t Button, std::int16_t Shift, float x, float y);

    /// The close button or its glyph was clicked.
    void CloseClick();

  private:
    bool is_close_button(const Part* part) const { return part == &picture2_ || part == &label2_; }

    void sink_close_button();
    void raise_close_button();
    void resized() override;
    void show_back_colour() override;
    void show_fore_colour() override;
    void show_light() override;
    void show_dark() override;
    void show_font() override;
    void show_shadow() override;
    void part_pressed(Part* part, const MouseArguments& mouse) override;
    void part_moved(Part* part, const MouseArguments& mouse) override;
    void part_released(Part* part, const MouseArguments& mouse) override;
    void part_abandoned(Part* part) override;
    void part_clicked(Part* part) override;
    bool part_double_clicked(Part* part) override;

    BoxPart picture1_;
    BoxPart picture2_;
    EdgeLines close_edges_{18};
    TextPart label2_;
    EdgeLines edges_{0};
    ShadowedText title_{30, 9};
    bool icon_ = false;
    bool cerrar_ = false;
};

} // namespace varnoth
