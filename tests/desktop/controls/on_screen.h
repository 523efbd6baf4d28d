// What the screen shows. It differs from what a widget would paint if the widget was not repainted.
#pragma once

#include <QApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QWidget>

#include <gtest/gtest.h>

namespace varnoth::test {

/// A screenshot of a window.
inline QImage on_screen(QWidget& window) {
    QCoreApplication::processEvents();
    return window.screen()->grabWindow(window.winId()).toImage().convertToFormat(QImage::Format_RGB32);
}

/// Changes a visible window. The screen must then differ from before and match a fresh rendering of the
/// window.
template <typename Change>
void expect_shown_at_once(QWidget& window, const char* what, Change&& change) {
    const QImage before = on_screen(window);
    change();
    const QImage after = on_screen(window);
    EXPECT_NE(after, before) << what;
    EXPECT_EQ(after, window.grab().toImage().convertToFormat(QImage::Format_RGB32)) << what;
}

} // namespace varnoth::test
