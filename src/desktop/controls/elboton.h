// The button: a caption on a raised surface of fixed height. It looks sunken while the left mouse button is
// held down on it.
#pragma once

#include "desktop/controls/parts/EdgeLines.h"
#include "desktop/controls/parts/ShadowedText.h"
#include "desktop/controls/parts/SkinnedControl.h"

namespace varnoth {

/// Parts: `label`, `shadow1`, `lineA(0)` top, `lineA(1)` left, `lineB(0)` right, `lineB(1)` bottom. The
/// button is always 360 twips high and at least 500 wide. It handles no keys and has no hover state.
class elboton final : public SkinnedControl {
    Q_OBJECT
    Q_PROPERTY(int ForeColor READ ForeColor)
    Q_PROPERTY(int BackColor READ BackColor)
    Q_PROPERTY(bool Enabled READ Enabled)
    Q_PROPERTY(QString Caption READ Caption)
    Q_PROPERTY(int Color3DLight READ Color3DLight)
    Q_PROPERTY(int Color3DDark READ Color3DDark)
    Q_PROPERTY(QFont Font READ Font)
    Q_PROPERTY(QString FontName READ FontName)
    Q_PROPERTY(double FontSize READ FontSize)
    Q_PROPERTY(bool FontItalic READ FontItalic)
    Q_PROPERTY(bool FontUnderline READ FontUnderline)
    Q_PROPERTY(bool DropShadow READ DropShadow)
    Q_PROPERTY(bool CenterCaption READ CenterCaption)

  public:
    elboton(const QString& name, QWidget* parent);

    const QString& Caption() const { return caption_.text.Caption(); }

    void SetCaption(const QString& caption);

    /// Whether the caption is centred instead of left-aligned.
    bool CenterCaption() const { return center_caption_; }

    void SetCenterCaption(bool center);

  signals:
    /// The left mouse button was pressed and released on the control.
    void Click();

    /// Raised by the surface and the caption.
    void MouseDown(std::int16_t Button, std::int16_t Shift, float x, float y);

    /// Raised by the caption only.
    void MouseMove(std::int16_t Button, std::int16_t Shift, float x, float y);

    /// Raised by the surface and the caption.
    void MouseUp(std::int16_t Button, std::int16_t Shift, float x, float y);

  private:
    void sink();
    void raise_again();
    void resized() override;
    void layout_step() override;
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

    ShadowedText caption_;
    EdgeLines edges_{24};
    bool center_caption_ = false;
};

} // namespace varnoth
