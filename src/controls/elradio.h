// The radio button: a drawn circle and a caption. It does not know its neighbours: that only one of a group
// is chosen is the window's affair.
#pragma once

#include "controls/parts/SkinnedControl.h"

namespace varnoth {

/// Parts: `Picture1`, the circle's surface; `Label1`, the caption; `shadow1`. Always 285 twips high and at
/// least 500 wide.
class elradio final : public SkinnedControl {
    Q_OBJECT
    Q_PROPERTY(int BackColor READ BackColor WRITE SetBackColor)
    Q_PROPERTY(int BackColor2 READ BackColor2 WRITE SetBackColor2)
    Q_PROPERTY(int CheckedColor READ CheckedColor WRITE SetCheckedColor)
    Q_PROPERTY(int UncheckedColor READ UncheckedColor WRITE SetUncheckedColor)
    Q_PROPERTY(int OverColor READ OverColor WRITE SetOverColor)
    Q_PROPERTY(bool Enabled READ Enabled WRITE SetEnabled)
    Q_PROPERTY(QString Caption READ Caption WRITE SetCaption)
    Q_PROPERTY(bool Value READ Value WRITE SetValue)
    Q_PROPERTY(int Color3DLight READ Color3DLight WRITE SetColor3DLight)
    Q_PROPERTY(int Color3DDark READ Color3DDark WRITE SetColor3DDark)
    Q_PROPERTY(QFont Font READ Font WRITE SetFont)
    Q_PROPERTY(QString FontName READ FontName WRITE SetFontName)
    Q_PROPERTY(double FontSize READ FontSize WRITE SetFontSize)
    Q_PROPERTY(bool FontItalic READ FontItalic WRITE SetFontItalic)
    Q_PROPERTY(bool FontUnderline READ FontUnderline WRITE SetFontUnderline)
    Q_PROPERTY(bool DropShadow READ DropShadow WRITE SetDropShadow)

  public:
    elradio(const QString& name, QWidget* parent);

    /// The inside of the circle.
    Colour BackColor2() const { return back_colour2_; }

    void SetBackColor2(Colour colour);

    /// Of the dot and the caption while chosen.
    Colour CheckedColor() const { return checked_colour_; }

    void SetCheckedColor(Colour colour);

    /// Of the caption while not chosen.
    Colour UncheckedColor() const { return unchecked_colour_; }

    void SetUncheckedColor(Colour colour);

    /// Of the caption in the hover look.
    Colour OverColor() const { return over_colour_; }

    void SetOverColor(Colour colour);

    const QString& Caption() const { return label1_.Caption(); }

    void SetCaption(const QString& caption);

    bool Value() const { return value_; }

    void SetValue(bool value);

    /// The hover look; a chosen control has none.
    void set_over_state();
    void set_normal_state();

  signals:
    /// Also from a control that is chosen already.
    void Click();
    void MouseDown(std::int16_t Button, std::int16_t Shift, float x, float y);
    void MouseMove(std::int16_t Button, std::int16_t Shift, float x, float y);
    void MouseUp(std::int16_t Button, std::int16_t Shift, float x, float y);

  private:
    /// The circle, drawn anew in the control's present colours whenever it is painted. Where it is not drawn
    /// upon, the control's own background shows.
    class Circle final : public Part {
      public:
        explicit Circle(const elradio& control) : control_(control) {}

        void paint(QPainter& painter) const override;

      private:
        const elradio& control_;
    };

    void redraw();
    void resized() override;
    void layout_step() override;
    void show_font() override;
    void show_shadow() override;
    void part_pressed(Part* part, const MouseArguments& mouse) override;
    void part_moved(Part* part, const MouseArguments& mouse) override;
    void part_released(Part* part, const MouseArguments& mouse) override;
    void part_clicked(Part* part) override;

    Circle picture1_{*this};
    TextPart label1_;
    TextPart shadow1_;
    bool value_ = false;
    Colour back_colour2_ = 0;
    Colour checked_colour_ = 0;
    Colour unchecked_colour_ = 0;
    Colour over_colour_ = 0;
};

} // namespace varnoth
