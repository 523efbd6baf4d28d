// The text box: a one-line edit field without an edge of its own, in a sunken well.
#pragma once

#include <QLineEdit>

#include "desktop/controls/parts/EdgeLines.h"
#include "desktop/controls/parts/ForwardingControl.h"

namespace varnoth {

/// Parts: the edit field `Text1`; `lineA(0)` top, `lineA(1)` left, `lineB(0)` right, `lineB(1)` bottom.
/// Always 300 twips high. The mouse events are those of `Text1`.
class eltexto final : public ForwardingControl {
    Q_OBJECT
    Q_PROPERTY(short MaxChars READ MaxChars)
    Q_PROPERTY(int BackColor READ BackColor)
    Q_PROPERTY(int ForeColor READ ForeColor)
    Q_PROPERTY(bool Enabled READ Enabled)
    Q_PROPERTY(QString Text READ Text)
    Q_PROPERTY(int Color3DLight READ Color3DLight)
    Q_PROPERTY(int Color3DDark READ Color3DDark)
    Q_PROPERTY(QFont Font READ Font)
    Q_PROPERTY(QString FontName READ FontName)
    Q_PROPERTY(double FontSize READ FontSize)
    Q_PROPERTY(bool FontItalic READ FontItalic)
    Q_PROPERTY(bool FontUnderline READ FontUnderline)

  public:
    eltexto(const QString& name, QWidget* parent);

    /// The most characters that fit in; 0 for no limit. InvalidPropertyValue for less.
    std::int16_t MaxChars() const { return max_chars_; }

    void SetMaxChars(std::int16_t count);

    QString Text() const { return text1_.text(); }

    void SetText(const QString& text);

    /// What a screen reader says: the edit field speaks for the control, which is not named twice.
    void setAccessibleName(const QString& name);

    QLineEdit& Text1() { return text1_; }

  signals:
    /// A key of the keyboard by its number: letters and digits by their character, in capitals and whatever
    /// Shift makes of them; punctuation by its place on a US keyboard; the keypad's digits from 96 on and its
    /// signs from 106 on. 0 for a key that has none. Raised before the field takes the key; held keys repeat.
    void KeyDown(std::int16_t KeyCode, std::int16_t Shift);

    /// A key that stands for a character, by the character.
    void KeyPress(std::int16_t KeyAscii);
    void KeyUp(std::int16_t KeyCode, std::int16_t Shift);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void forward(QEvent& event);
    void forward_press(const QMouseEvent& mouse);
    void forward_release(const QMouseEvent& mouse);

    bool forwards(const Part* /*part*/) const override { return false; }

    void resized() override;
    void show_back_colour() override;
    void show_fore_colour() override;
    void show_light() override;
    void show_dark() override;
    void show_font() override;

    QLineEdit text1_;
    EdgeLines edges_{20};
    std::int16_t max_chars_ = 0;
    bool click_due_ = false;
};

} // namespace varnoth
