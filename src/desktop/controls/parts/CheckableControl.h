// What the check box and the radio button share: a caption in the colour of the control's state beside a mark
// of its own, a hover look, and mouse events from everywhere on it.
#pragma once

#include "desktop/controls/parts/ShadowedText.h"
#include "desktop/controls/parts/SkinnedControl.h"

namespace varnoth {

/// At least 500 twips wide. The control adds its parts, of which the caption stands in front.
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
    /// The background of the mark.
    Colour BackColor2() const { return back_colour2_; }

    void SetBackColor2(Colour colour);

    /// Of the mark and the caption while checked.
    Colour CheckedColor() const { return checked_colour_; }

    void SetCheckedColor(Colour colour);

    /// Of the caption while unchecked.
    Colour UncheckedColor() const { return unchecked_colour_; }

    void SetUncheckedColor(Colour colour);

    /// Of the caption in the hover look.
    Colour OverColor() const { return over_colour_; }

    void SetOverColor(Colour colour);

    const QString& Caption() const { return caption_.text.Caption(); }

    void SetCaption(const QString& caption);

    /// Whether the control is checked.
    virtual bool Value() const = 0;
    void SetValue(bool value);

    /// The hover look; a checked control has none.
    void set_over_state();

    void set_normal_state() { update_look(); }

  signals:
    /// From the mark and the caption; each control says whether from its surface too.
    void Click();
    void MouseDown(std::int16_t Button, std::int16_t Shift, float x, float y);
    void MouseMove(std::int16_t Button, std::int16_t Shift, float x, float y);
    void MouseUp(std::int16_t Button, std::int16_t Shift, float x, float y);

  protected:
    /// The caption stands there until the control has a height.
    CheckableControl(const QString& name, QWidget* parent, double caption_left, double caption_top);

    ShadowedText& caption() { return caption_; }

    /// Stores the value.
    virtual void keep_value(bool value) = 0;

    /// Colours what shows the value.
    virtual void update_look();

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
