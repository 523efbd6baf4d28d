// Mouse events for tests of widgets.
#pragma once

#include <QListWidget>
#include <QTest>

namespace varnoth::test {

/// A double click as the window system delivers it: press, release, second press, release.
inline void fast_pair(QWidget* widget, Qt::MouseButton button, Qt::KeyboardModifiers keys,
                      const QPoint& place) {
    QTest::mousePress(widget, button, keys, place);
    QTest::mouseRelease(widget, button, keys, place);
    QTest::mouseDClick(widget, button, keys, place);
    QTest::mouseRelease(widget, button, keys, place);
}

inline QPoint middle_of(const QListWidget& list, int line) {
    return list.visualItemRect(list.item(line)).center();
}

inline void click(QListWidget& list, int line, Qt::KeyboardModifiers keys = {}) {
    QTest::mouseClick(list.viewport(), Qt::LeftButton, keys, middle_of(list, line));
}

} // namespace varnoth::test
