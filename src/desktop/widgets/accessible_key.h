// The keyboard shortcut of a control, as reported to assistive technology.
#pragma once

#include <QAccessibleWidget>
#include <QString>

namespace varnoth {

/// Sets the shortcut that acts like a click on a control, such as "Ctrl+N". Further calls have no effect.
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

} // namespace varnoth
