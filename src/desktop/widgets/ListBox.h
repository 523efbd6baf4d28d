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

    /// Appends a line, which is not selected.
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
    /// The user clicked a line, moved the current line or changed marks by the keyboard, or SetListIndex was
    /// called. The marks are set before, and there is a current line.
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
    /// Runs what Qt makes of an event of the user, then raises Click once if it is due.
    template <typename Work>
    void handle(Work&& work);

    void current_row_moved();
    void raise_due_click();

    int pressed_line_ = -1;      ///< under the last press of the left button
    bool quiet_ = false;         ///< the current line is set or lost without the user
    bool in_event_ = false;      ///< of the user
    bool click_due_ = false;     ///< Click is raised at the end of the event
    bool marks_changed_ = false; ///< by the event that is being handled
};

} // namespace varnoth
