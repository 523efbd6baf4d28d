// What the screen really shows, which is what a widget would paint only if it was told to paint again.
#pragma once

#include <QApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QWidget>

#include <gtest/gtest.h>

namespace varnoth::test {

/// The picture of a window as it stands on the screen.
inline QImage on_screen(QWidget& window) {
    QCoreApplication::processEvents();
    return window.screen()->grabWindow(window.winId()).toImage().convertToFormat(QImage::Format_RGB32);
}

/// Makes a change to a window that is shown: the screen must show another picture than before, and the one
/// that the window has now.
template <typename Change>
void expect_shown_at_once(QWidget& window, const char* what, Change&& change) {
    const QImage before = on_screen(window);
    change();
    const QImage after = on_screen(window);
    EXPECT_NE(after, before) << what;
    EXPECT_EQ(after, window.grab().toImage().convertToFormat(QImage::Format_RGB32)) << what;
}

} // namespace varnoth::test
