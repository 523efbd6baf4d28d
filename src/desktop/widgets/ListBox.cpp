#include "desktop/widgets/ListBox.h"

#include <utility>

#include <QKeyEvent>
#include <QMouseEvent>

#include "core/base/RunTimeFailure.h"
#include "desktop/services/exception_barrier.h"
#include "desktop/theme/theme.h"

namespace varnoth {

namespace {

/// Selects the lines from the one last pressed without shift.
constexpr auto clear_and_select_range = QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Current;

} // namespace

ListBox::ListBox(const QString& name, QWidget* parent) : QListWidget(parent) {
    setObjectName(name);
    setFont(theme::display_font(theme::design_font()));
    theme::apply_palette(*this, true);
    setFrameStyle(QFrame::Panel | QFrame::Sunken);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTextElideMode(Qt::ElideNone);
    setUniformItemSizes(true);
    connect(this, &QListWidget::currentRowChanged, this, &ListBox::current_row_moved);
}

QString ListBox::List(std::int32_t line) const {
    check_subscript(line, count());
    return item(line)->text();
}

void ListBox::AddItem(const QString& text) {
    addItem(text);
}

void ListBox::Clear() {
    quiet_ = true;
    clear();
    quiet_ = false;
}

void ListBox::SetListIndex(std::int32_t line) {
    if (line < 0 || line >= count()) {
        fail(Failure::InvalidPropertyValue);
    }
    quiet_ = true;
    setCurrentRow(line, QItemSelectionModel::NoUpdate);
    scrollToItem(item(line));
    quiet_ = false;
    emit Click();
}

bool ListBox::Selected(std::int32_t line) const {
    check_subscript(line, count());
    return item(line)->isSelected();
}

void ListBox::SetSelected(std::int32_t line, bool selected) {
    check_subscript(line, count());
    item(line)->setSelected(selected);
}

std::int32_t ListBox::SelCount() const {
    std::int32_t lines = 0;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        lines += range.height();
    }
    return lines;
}

void ListBox::SetEnabled(bool enabled) {
    setEnabled(enabled);
    theme::apply_palette(*this, enabled);
}

// User input.

void ListBox::current_row_moved() {
    if (quiet_) {
        return;
    }
    click_due_ = true;
    if (!in_event_) {
        raise_due_click();
    }
}

void ListBox::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QListWidget::selectionChanged(selected, deselected);
    selection_changed_ = true;
}

void ListBox::raise_due_click() {
    if (std::exchange(click_due_, false)) {
        emit Click();
    }
}

template <typename Work>
void ListBox::handle(Work&& work) {
    guard_event([&] {
        // Qt moves the current line before it updates the selection; Click is raised after both.
        in_event_ = true;
        click_due_ = false;
        selection_changed_ = false;
        work();
        in_event_ = false;
        raise_due_click();
    });
}

void ListBox::mousePressEvent(QMouseEvent* event) {
    pressed_line_ = row(itemAt(event->position().toPoint()));
    if (pressed_line_ < 0 || event->button() != Qt::LeftButton) {
        pressed_line_ = -1; // presses outside the lines and of other buttons change nothing
        return;
    }
    handle([&] {
        QListWidget::mousePressEvent(event);
        click_due_ = true;
    });
}

void ListBox::mouseDoubleClickEvent(QMouseEvent* event) {
    const int line = row(itemAt(event->position().toPoint()));
    const bool same_line = event->button() == Qt::LeftButton && line >= 0 && line == pressed_line_;
    if (!same_line || (event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier)) != 0) {
        mousePressEvent(event);
    }
    if (same_line) {
        guard_event([&] { emit DblClick(); });
    }
}

void ListBox::mouseMoveEvent(QMouseEvent* event) {
    if (pressed_line_ >= 0 || event->buttons() == Qt::NoButton) {
        handle([&] { QListWidget::mouseMoveEvent(event); });
    }
}

void ListBox::keyPressEvent(QKeyEvent* event) {
    handle([&] {
        QListWidget::keyPressEvent(event);
        click_due_ = click_due_ || selection_changed_;
        if (click_due_ && ListIndex() < 0) {
            // Select All without a current line: Click requires one.
            selectionModel()->setCurrentIndex(model()->index(0, 0), QItemSelectionModel::NoUpdate);
        }
    });
}

void ListBox::focusInEvent(QFocusEvent* event) {
    guard_event([&] {
        const bool had_current = currentIndex().isValid();
        quiet_ = true;
        QListWidget::focusInEvent(event);
        if (!had_current) {
            // Qt has made the first line current.
            selectionModel()->setCurrentIndex(QModelIndex(), QItemSelectionModel::NoUpdate);
        }
        quiet_ = false;
    });
}

QItemSelectionModel::SelectionFlags ListBox::selectionCommand(const QModelIndex& index,
                                                              const QEvent* event) const {
    if (event != nullptr && event->type() == QEvent::MouseButtonPress && index.isValid()) {
        // By default a press on a selected line takes effect only on release, and shift keeps lines selected
        // that are outside the range.
        const auto modifiers = static_cast<const QMouseEvent*>(event)->modifiers();
        if (!modifiers.testFlag(Qt::ControlModifier)) {
            return modifiers.testFlag(Qt::ShiftModifier) ? clear_and_select_range
                                                         : QItemSelectionModel::ClearAndSelect;
        }
    }
    return QListWidget::selectionCommand(index, event);
}

} // namespace varnoth
