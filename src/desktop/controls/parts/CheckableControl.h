// The base of the check box and the radio button: an indicator, a caption in the colour of the control's
// state, a hover state, and mouse events from every part.
#pragma once

#include "desktop/controls/parts/ShadowedText.h"
#include "desktop/controls/parts/SkinnedControl.h"

namespace varnoth {

/// At least 500 twips wide. Derived classes add the parts; the caption must be the last, in front.
class CheckableControl : public SkinnedControl {
    Q_OBJECT
    Q_PROPERTY(int BackColor READ BackColor)
    Q_PROPERTY(int BackColor2 READ BackColor2)
    Q_PROPERTY(int CheckedColor READ CheckedColor)
    Q_PROPERTY(int UncheckedColor READ UncheckedColor)
    Q_PROPERTY(int OverColor READ OverColor)
    Q_PROPERTY(bool Enabled READ Enabled)
    Q_PROPERTY(QString Caption READ Caption)
    Q_PROPERTY(bool Value READ Value)
    Q_PROPERTY(int Color3DLight READ Color3DLight)
    Q_PROPERTY(int Color3DDark READ Color3DDark)
    Q_PROPERTY(QFont Font READ Font)
    Q_PROPERTY(QString FontName READ FontName)
    Q_PROPERTY(double FontSize READ FontSize)
    Q_PROPERTY(bool FontItalic READ FontItalic)
    Q_PROPERTY(bool FontUnderline READ FontUnderline)
    Q_PROPERTY(bool DropShadow READ DropShadow)

  public:
    /// The background of the indicator.
    Colour BackColor2() const { return back_colour2_; }

    void SetBackColor2(Colour colour);

    /// The colour of the indicator and the caption while checked.
    Colour CheckedColor() const { return checked_colour_; }

    void SetCheckedColor(Colour colour);

    /// The colour of the caption while unchecked.
    Colour UncheckedColor() const { return unchecked_colour_; }

    void SetUncheckedColor(Colour colour);

    /// The colour of the caption in the hover state.
    Colour OverColor() const { return over_colour_; }

    void SetOverColor(Colour colour);

    const QString& Caption() const { return caption_.text.Caption(); }

    void SetCaption(const QString& caption);

    /// Whether the control is checked.
    virtual bool Value() const = 0;
    void SetValue(bool value);

    // Interface: not used by the editor itself.

    /// Enters the hover state. Has no effect on a checked control.
    void set_over_state();

    void set_normal_state() { update_appearance(); }

  signals:
    /// Raised by the indicator and the caption; derived classes decide whether by the surface too.
    void Click();
    void MouseDown(std::int16_t Button, std::int16_t Shift, float x, float y);
    void MouseMove(std::int16_t Button, std::int16_t Shift, float x, float y);
    void MouseUp(std::int16_t Button, std::int16_t Shift, float x, float y);

  protected:
    /// `caption_top` applies until the control has a height.
    CheckableControl(const QString& name, QWidget* parent, double caption_left, double caption_top);

    ShadowedText& caption() { return caption_; }

    /// Stores the value.
    virtual void store_value(bool value) = 0;

    /// Updates the colours that depend on the value.
    virtual void update_appearance();

    virtual void show_back_colour2() {}

  private:
    void resized() override { layout_step(); }

    void layout_step() override { caption_.centre_in(ScaleHeight()); }

    void show_font() override { caption_.SetFont(Font()); }

    void show_shadow() override { caption_.set_shadow(DropShadow()); }

    void part_pressed(Part* part, const MouseArguments& mouse) override;
    void part_moved(Part* part, const MouseArguments& mouse) override;
    void part_released(Part* part, const MouseArguments& mouse) override;

    ShadowedText caption_;
    Colour back_colour2_ = 0;
    Colour checked_colour_ = 0;
    Colour unchecked_colour_ = 0;
    Colour over_colour_ = 0;
};

} // namespace varnoth
