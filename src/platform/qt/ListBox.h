// A list box with several selected lines. The current line and the selected marks are two things: setting the
// current line is a selection that acts like a click, and leaves the marks as they are.
#pragma once

#include <cstdint>

#include <QListWidget>

namespace varnoth {

class ListBox : public QListWidget {
    Q_OBJECT

  public:
    ListBox(const QString& name, QWidget* parent);

    std::int32_t ListCount() const { return count(); }

    /// The text of a line; SubscriptOutOfRange without such a line.
    QString List(std::int32_t line) const;

    void AddItem(const QString& text);

    /// Empties the list. The current line is then -1.
    void Clear();

    /// The current line, -1 when there is none.
    std::int32_t ListIndex() const { return currentRow(); }

    /// Makes a line the current one, scrolls to it and raises Click. InvalidPropertyValue without such a
    /// line.
    void SetListIndex(std::int32_t line);

    /// Whether a line is selected; SubscriptOutOfRange without such a line.
    bool Selected(std::int32_t line) const;
    void SetSelected(std::int32_t line, bool selected);

    /// How many lines are selected.
    std::int32_t SelCount() const;

    /// Enables or disables the box and its look.
    void SetEnabled(bool enabled);

  signals:
    /// The user clicked a line, moved the current line by the keyboard, or SetListIndex was called.
    void Click();
    void DblClick();

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

  private:
    void current_row_moved();

    bool quiet_ = false;        ///< the current line is set or lost without the user
    bool click_raised_ = false; ///< by the press that is being handled
};

} // namespace varnoth
