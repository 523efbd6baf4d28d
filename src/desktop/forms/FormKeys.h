// The keys of a form: each does what a click on one of the form's controls does, under the same conditions.
#pragma once

#include <functional>
#include <utility>
#include <vector>

#include <QObject>
#include <QWidget>

namespace varnoth {

/// A key combination and the control that it clicks.
struct FormKey {
    /// Who gets the key first. What the focused control does not take comes to the form.
    enum class First { Form, FocusedControl };

    QKeyCombination combination; ///< Return stands for the keypad's Enter too
    QWidget* control;            ///< while it is disabled or hidden, the key does nothing
    std::function<void()> click;
    First first = First::Form;
    std::function<bool()> when = nullptr; ///< the key is not the form's while this is false
    bool repeats = false;                 ///< acts again and again while it is held
};

/// A click on the control by that key, whatever has the focus.
template <typename Control>
FormKey shortcut(QKeyCombination combination, Control& control) {
    return {combination, &control, [&control] { control.act_as_clicked(); }};
}

/// A click on the control by a key that the focused control may take for itself.
template <typename Control>
FormKey plain_key(Qt::Key key, Control& control, std::function<bool()> when = nullptr) {
    return {key, &control, [&control] { control.act_as_clicked(); }, FormKey::First::FocusedControl,
            std::move(when)};
}

/// The keys that end a dialog: Return is Ok, with Ctrl also where the focused control takes Return, and
/// Escape is Cancel.
template <typename Button>
std::vector<FormKey> dialog_keys(Button& ok, Button& cancel) {
    return {plain_key(Qt::Key_Return, ok), shortcut(Qt::CTRL | Qt::Key_Return, ok),
            plain_key(Qt::Key_Escape, cancel)};
}

/// Hears the key presses that a form and its controls get. Of several keys alike, the first counts whose
/// condition holds.
class FormKeys : public QObject {
  public:
    explicit FormKeys(QWidget& form) : form_(form) {}

    /// To be called when the form has all its controls. Keys without a condition are told to assistive
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
