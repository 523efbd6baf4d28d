// The parent window of message boxes and file dialogs.
#pragma once

#include <QApplication>

namespace varnoth {

/// The active modal widget, else the active window; null when there is neither.
inline QWidget* dialog_parent() {
    QWidget* modal = QApplication::activeModalWidget();
    return modal != nullptr ? modal : QApplication::activeWindow();
}

} // namespace varnoth
