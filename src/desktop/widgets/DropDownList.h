// A drop-down list: one of some lines is chosen, none can be typed. It is drawn flat, in the colours of a
// field.
#pragma once

#include <cstdint>

#include <QComboBox>

#include "core/image/Colour.h"

namespace varnoth {

class DropDownList : public QComboBox {
    Q_OBJECT

  public:
    DropDownList(const QString& name, QWidget* parent);

    std::int32_t ListCount() const { return count(); }

    /// The text of a line; SubscriptOutOfRange without such a line.
    QString List(std::int32_t line) const;
    void SetList(std::int32_t line, const QString& text);

    /// Adds a line at the end. Nothing is chosen by that.
    void AddItem(const QString& text);

    /// The chosen line, -1 when there is none.
    std::int32_t ListIndex() const { return currentIndex(); }

    /// Chooses a line and raises Click; -1 chooses none. InvalidPropertyValue without such a line.
    void SetListIndex(std::int32_t line);

    void SetColours(Colour background, Colour text);

    /// Draws no edge and no arrow of its own: whoever holds it draws them over it.
    void set_bare(bool bare);

    /// Takes the focus and opens the list, as the mouse does.
    void act_as_clicked();

    /// Opens the list, under the name that the field has for a screen reader.
    void showPopup() override;

  signals:
    /// The user chose a line, also the one that was chosen already, or SetListIndex was called.
    void Click();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

  private:
    Colour background_;
    Colour text_;
    bool bare_ = false;
};

} // namespace varnoth
