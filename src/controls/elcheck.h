// The check box: a box with a mark, and a caption. The mark's visibility is all there is of its value.
#pragma once

#include "controls/parts/EdgeLines.h"
#include "controls/parts/SkinnedControl.h"

namespace varnoth {

/// Parts: `Picture2`, the box, with its edges `Line1` left, `Line2` top, `Line3` bottom and `Line4` right and
/// the mark `Label1`; `Label2`, the caption; `shadow1`. Always 270 twips high and at least 500 wide.
class elcheck final : public SkinnedControl {
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
    elcheck(const QString& name, QWidget* parent);

    /// The background of the box.
    Colour BackColor2() const { return picture2_.BackColor; }

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

    const QString& Caption() const { return label2_.Caption(); }

    void SetCaption(const QString& caption);

    bool Value() const { return label1_.Visible; }

    void SetValue(bool value);

    /// The hover look; a checked control has none.
    void set_over_state();
    void set_normal_state();

    void act_as_clicked() override { part_clicked(&label2_); }

  signals:
    /// From the box, its mark and the caption.
    void Click();
    void MouseDown(std::int16_t Button, std::int16_t Shift, float x, float y);
    void MouseMove(std::int16_t Button, std::int16_t Shift, float x, float y);
    void MouseUp(std::int16_t Button, std::int16_t Shift, float x, float y);

  private:
    void update_look();
    void resized() override;
    void layout_step() override;
    void show_dark() override;
    void show_font() override;
    void show_shadow() override;
    void part_pressed(Part* part, const MouseArguments& mouse) override;
    void part_moved(Part* part, const MouseArguments& mouse) override;
    void part_released(Part* part, const MouseArguments& mouse) override;
    void part_clicked(Part* part) override;

    BoxPart picture2_;
    EdgeLines box_edges_;
    TextPart label1_;
    TextPart label2_;
    TextPart shadow1_;
    Colour checked_colour_ = 0;
    Colour unchecked_colour_ = 0;
    Colour over_colour_ = 0;
};

} // namespace varnoth
