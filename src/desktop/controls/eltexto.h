// The text box: a borderless one-line edit field in a sunken field.
#pragma once

#include <QLineEdit>

#include "desktop/controls/parts/EdgeLines.h"
#include "desktop/controls/parts/ForwardingControl.h"

namespace varnoth {

/// Parts: the edit field `Text1`; `lineA(0)` top, `lineA(1)` left, `lineB(0)` right, `lineB(1)` bottom.
/// Always 300 twips high. `Text1` raises the mouse events.
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

    /// The maximum number of characters; 0 for no limit. Setting a negative number fails with
    /// InvalidPropertyValue.
    std::int16_t MaxChars() const { return max_chars_; }

    void SetMaxChars(std::int16_t count);

    QString Text() const { return text1_.text(); }

    void SetText(const QString& text);

    /// Names the edit field for screen readers. The control itself stays unnamed, so that the name is spoken
    /// once.
    void setAccessibleName(const QString& name);

    QLineEdit& Text1() { return text1_; }

  signals:
    /// `KeyCode` is the upper-case character for letters and the digit for digits, regardless of Shift. Other
    /// keys have numbers: punctuation by position on a US keyboard, keypad digits from 96, keypad signs from
    /// 106; 0 for any other key. Raised before the field handles the key. A held key repeats.
    void KeyDown(std::int16_t KeyCode, std::int16_t Shift);

    /// A key that types a character, with the character's code.
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
