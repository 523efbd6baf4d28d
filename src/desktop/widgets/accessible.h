// Accessibility for assistive technology such as screen readers: interfaces of widget classes, keyboard
// shortcuts and notifications. The interfaces of the skinned controls are in controls/parts/accessible.h,
// because they need the controls.
#pragma once

#include <memory>

#include <QAccessible>
#include <QAccessibleWidget>
#include <QString>

namespace varnoth {

/// Makes `Interface` the accessible interface of every `Widget`; it is constructed from a pointer to the
/// widget. Further calls have no effect.
template <typename Widget, typename Interface>
void install_accessible() {
    [[maybe_unused]] static const bool installed = [] {
        QAccessible::installFactory([](const QString&, QObject* object) -> QAccessibleInterface* {
            auto* const widget = qobject_cast<Widget*>(object);
            return widget == nullptr ? nullptr : std::make_unique<Interface>(widget).release(); // Qt owns it
        });
        return true;
    }();
}

/// Sets the shortcut that clicks a control, such as "Ctrl+N". Further calls have no effect.
void set_accessible_key(QWidget& control, const QString& key);

/// The shortcut of a control, empty when it has none.
QString accessible_key(const QWidget& control);

/// An accessible interface that reports the widget's shortcut.
class AccessibleWithKey : public QAccessibleWidget {
  public:
    using QAccessibleWidget::QAccessibleWidget;

    QString text(QAccessible::Text kind) const override;
    QStringList keyBindingsForAction(const QString& action) const override;
};

/// Notify assistive technology that a control was checked or unchecked, or has a new name or value.
void notify_checked_changed(QWidget& control);
void notify_name_changed(QWidget& control);
void notify_value_changed(QWidget& control, int value);

} // namespace varnoth
