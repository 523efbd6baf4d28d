#include "desktop/forms/FormKeys.h"

#include <algorithm>
#include <memory>

#include <QApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QShortcut>

#include "desktop/services/exception_barrier.h"
#include "desktop/widgets/accessible.h"

namespace varnoth {

namespace {

QKeyCombination combination_of(const QKeyEvent& event) {
    const auto key = static_cast<Qt::Key>(event.key() == Qt::Key_Enter ? Qt::Key_Return : event.key());
    return QKeyCombination{event.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier), key};
}

bool has_ctrl_or_alt(QKeyCombination combination) {
    return (combination.keyboardModifiers() & (Qt::ControlModifier | Qt::AltModifier)) != 0;
}

void click(const FormKey& key) {
    if (key.control->isVisible() && key.control->isEnabled() &&
        QApplication::activeModalWidget() == nullptr && QApplication::activePopupWidget() == nullptr) {
        key.click();
    }
}

} // namespace

void FormKeys::add(const std::vector<FormKey>& keys) {
    for (const FormKey& key : keys) {
        keys_.push_back(key);
        if (has_ctrl_or_alt(key.combination)) {
            add_shortcut(keys_.size() - 1);
        }
        if (!key.when) {
            set_accessible_key(*key.control,
                               QKeySequence(key.combination).toString(QKeySequence::NativeText));
        }
    }
    form_.installEventFilter(this);
    for (QWidget* control : form_.findChildren<QWidget*>()) {
        // An open drop-down list is a separate window and keeps its keys.
        if (control->focusPolicy() != Qt::NoFocus && control->window() == &form_) {
            control->installEventFilter(this);
        }
    }
}

bool FormKeys::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) {
        return false;
    }
    const auto& press = static_cast<const QKeyEvent&>(*event);
    const FormKey* key = nullptr;
    guard_event([&] {
        key = find(combination_of(press), watched == &form_);
        if (key != nullptr && (key->repeats || !press.isAutoRepeat())) {
            click(*key);
        }
    });
    return key != nullptr;
}

// QShortcut also matches letters on keyboard layouts without Latin letters. Combinations that a text box
// withholds from shortcuts, such as Ctrl+E, still arrive as key presses.
void FormKeys::add_shortcut(std::size_t index) {
    const FormKey& key = keys_[index];
    // The form owns it.
    auto* const made = std::make_unique<QShortcut>(QKeySequence(key.combination), &form_).release();
    made->setAutoRepeat(key.repeats);
    on_event(made, &QShortcut::activated, this, [this, index] { click(keys_[index]); });
}

const FormKey* FormKeys::find(QKeyCombination pressed, bool focused_control_had_it) const {
    const auto found = std::ranges::find_if(keys_, [&](const FormKey& key) {
        return key.combination == pressed && (key.first == FormKey::First::Form || focused_control_had_it) &&
               (!key.when || key.when());
    });
    return found == keys_.end() ? nullptr : &*found;
}

} // namespace varnoth
