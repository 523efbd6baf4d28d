// A drop-down list without text entry, drawn flat in the colours of a field.
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

    /// The text of a line. Raises SubscriptOutOfRange if the line does not exist.
    QString List(std::int32_t line) const;
    void SetList(std::int32_t line, const QString& text);

    /// Appends a line. Does not change the selection.
    void AddItem(const QString& text);

    /// The selected line, -1 when there is none.
    std::int32_t ListIndex() const { return currentIndex(); }

    /// Selects a line, or none for -1, and raises Click. Raises InvalidPropertyValue for any other number.
    void SetListIndex(std::int32_t line);

    void SetColours(Colour background, Colour text);

    /// Takes the focus and opens the list, as the mouse does.
    void perform_click();

    /// Opens the list, which gets the accessible name of the field.
    void showPopup() override;

  signals:
    /// The user chose a line, even the one already selected, or SetListIndex was called.
    void Click();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

  private:
    Colour background_;
    Colour text_;
};

} // namespace varnoth
