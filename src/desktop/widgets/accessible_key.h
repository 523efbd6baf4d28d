// The key that does what a click on a control does, as assistive technology is told of it.
#pragma once

#include <QAccessibleWidget>
#include <QString>

namespace varnoth {

/// States the key of a control, "Ctrl+N". A control has one: the first that is set stays.
void set_accessible_key(QWidget& control, const QString& key);

/// The key of a control, empty when it has none.
QString accessible_key(const QWidget& control);

/// A widget whose description names its key.
class AccessibleWithKey : public QAccessibleWidget {
  public:
    using QAccessibleWidget::QAccessibleWidget;

    QString text(QAccessible::Text kind) const override;
    QStringList keyBindingsForAction(const QString& action) const override;
};

} // namespace varnoth
