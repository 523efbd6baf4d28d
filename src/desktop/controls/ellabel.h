// The label: a caption on a plain background.
#pragma once

#include "desktop/controls/parts/ForwardingControl.h"
#include "desktop/controls/parts/ShadowedText.h"

namespace varnoth {

/// Parts: `Label2`, the caption, which raises all events, and `shadow1`. Always 300 twips high.
class ellabel final : public ForwardingControl {
    Q_OBJECT
    Q_PROPERTY(int BackColor READ BackColor)
    Q_PROPERTY(int ForeColor READ ForeColor)
    Q_PROPERTY(bool Enabled READ Enabled)
    Q_PROPERTY(QString Caption READ Caption)
    Q_PROPERTY(QFont Font READ Font)
    Q_PROPERTY(QString FontName READ FontName)
    Q_PROPERTY(double FontSize READ FontSize)
    Q_PROPERTY(bool FontItalic READ FontItalic)
    Q_PROPERTY(bool FontUnderline READ FontUnderline)
    Q_PROPERTY(bool DropShadow READ DropShadow)

  public:
    ellabel(const QString& name, QWidget* parent);

    const QString& Caption() const { return caption_.text.Caption(); }

    void SetCaption(const QString& caption);

  private:
    bool forwards(const Part* part) const override { return part == &caption_.text; }

    void resized() override;
    void layout_step() override;
    void show_fore_colour() override;
    void show_font() override;
    void show_shadow() override;

    ShadowedText caption_{0, 0};
};

} // namespace varnoth
