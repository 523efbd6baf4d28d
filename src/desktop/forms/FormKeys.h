// The keys of a form. Each does the same as a click on one of the form's controls, under the same conditions.
#pragma once

#include <functional>
#include <utility>
#include <vector>

#include <QObject>
#include <QWidget>

namespace varnoth {

/// A key combination and the control that it clicks.
struct FormKey {
    /// Which of the two gets the key first. The form gets what the focused control does not accept.
    enum class First { Form, FocusedControl };

    QKeyCombination combination; ///< Return includes the keypad's Enter
    QWidget* control;            ///< the key does nothing while it is disabled or hidden
    std::function<void()> click;
    First first = First::Form;
    std::function<bool()> when = nullptr; ///< while false, the form ignores the key
    bool repeats = false;                 ///< whether a held key acts repeatedly
};

/// A key that clicks the control, whatever has the focus.
template <typename Control>
FormKey shortcut(QKeyCombination combination, Control& control) {
    return {combination, &control, [&control] { control.perform_click(); }};
}

/// A key that clicks the control unless the focused control accepts the key.
template <typename Control>
FormKey plain_key(Qt::Key key, Control& control, std::function<bool()> when = nullptr) {
    return {key, &control, [&control] { control.perform_click(); }, FormKey::First::FocusedControl,
            std::move(when)};
}

/// The keys that close a dialog: Return for Ok, Ctrl+Return for Ok even if the focused control accepts
/// Return, and Escape for Cancel.
template <typename Button>
std::vector<FormKey> dialog_keys(Button& ok, Button& cancel) {
    return {plain_key(Qt::Key_Return, ok), shortcut(Qt::CTRL | Qt::Key_Return, ok),
            plain_key(Qt::Key_Escape, cancel)};
}

/// Filters the key presses of a form and its controls. If several keys have the same combination, the first
/// whose condition is true applies.
class FormKeys : public QObject {
  public:
    explicit FormKeys(QWidget& form) : form_(form) {}

    /// Adds keys. To be called when all controls exist. Keys without a condition are announced to assistive
    /// technology.
    void add(const std::vector<FormKey>& keys);

    const std::vector<FormKey>& keys() const { return keys_; }

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void add_shortcut(std::size_t index);
    const FormKey* find(QKeyCombination pressed, bool focused_control_had_it) const;

    QWidget& form_;
    std::vector<FormKey> keys_;
};

} // namespace varnoth
