// A list box with multiple selection. The current line and the selected lines are independent: setting the
// current line raises Click like a mouse click, but does not change which lines are selected.
#pragma once

#include <cstdint>

#include <QListWidget>

namespace varnoth {

class ListBox : public QListWidget {
    Q_OBJECT

  public:
    ListBox(const QString& name, QWidget* parent);

    std::int32_t ListCount() const { return count(); }

    /// The text of a line. Raises SubscriptOutOfRange if the line does not exist.
    QString List(std::int32_t line) const;

    /// Appends a line that is not selected.
    void AddItem(const QString& text);

    /// Empties the list. The current line is then -1.
    void Clear();

    /// The current line, -1 when there is none.
    std::int32_t ListIndex() const { return currentRow(); }

    /// Makes a line current, scrolls to it and raises Click. Raises InvalidPropertyValue without such a line.
    void SetListIndex(std::int32_t line);

    /// Whether a line is selected. Raises SubscriptOutOfRange if the line does not exist.
    bool Selected(std::int32_t line) const;
    void SetSelected(std::int32_t line, bool selected);

    /// The number of selected lines.
    std::int32_t SelCount() const;

    /// Enables or disables the box and sets its palette accordingly.
    void SetEnabled(bool enabled);

  signals:
    /// The user clicked a line, or moved the current line or changed the selection by the keyboard, or
    /// SetListIndex was called. By then the selection is up to date and there is a current line.
    void Click();
    void DblClick();

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;

  private:
    /// Runs Qt's handler of an input event, then raises Click once if it is due.
    template <typename Work>
    void handle(Work&& work);

    void current_row_moved();
    void raise_due_click();

    int pressed_line_ = -1;          ///< under the last press of the left button
    bool quiet_ = false;             ///< the current line changes without input from the user
    bool in_event_ = false;          ///< an input event is being handled
    bool click_due_ = false;         ///< Click is raised at the end of the event
    bool selection_changed_ = false; ///< the event has changed the selection
};

} // namespace varnoth
