// The window that a dialog of Qt's own stands above.
#pragma once

#include <QApplication>

namespace varnoth {

/// The window that the user works in; null when there is none.
inline QWidget* dialog_parent() {
    QWidget* modal = QApplication::activeModalWidget();
    return modal != nullptr ? modal : QApplication::activeWindow();
}

} // namespace varnoth
