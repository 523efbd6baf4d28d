#include "desktop/widgets/accessible.h"

#include <QVariant>
#include <QWidget>

namespace varnoth {

namespace {

constexpr const char* key_property = "accessibleKey";

} // namespace

void set_accessible_key(QWidget& control, const QString& key) {
    if (accessible_key(control).isEmpty()) {
        control.setProperty(key_property, key);
    }
}

QString accessible_key(const QWidget& control) {
    return control.property(key_property).toString();
}

QString AccessibleWithKey::text(QAccessible::Text kind) const {
    return kind == QAccessible::Accelerator ? accessible_key(*widget()) : QAccessibleWidget::text(kind);
}

QStringList AccessibleWithKey::keyBindingsForAction(const QString& action) const {
    const QString key = accessible_key(*widget());
    return actionNames().contains(action) && !key.isEmpty() ? QStringList{key} : QStringList{};
}

void notify_checked_changed(QWidget& control) {
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(&control, changed);
    QAccessible::updateAccessibility(&event);
}

void notify_name_changed(QWidget& control) {
    QAccessibleEvent event(&control, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&event);
}

void notify_value_changed(QWidget& control, int value) {
    QAccessibleValueChangeEvent event(&control, value);
    QAccessible::updateAccessibility(&event);
}

} // namespace varnoth
