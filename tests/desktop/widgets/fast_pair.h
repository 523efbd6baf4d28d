// A double click as the window system delivers it: press, release, second press, release.
#pragma once

#include <QTest>

namespace varnoth::test {

inline void fast_pair(QWidget* widget, Qt::MouseButton button, Qt::KeyboardModifiers keys,
                      const QPoint& place) {
    QTest::mousePress(widget, button, keys, place);
    QTest::mouseRelease(widget, button, keys, place);
    QTest::mouseDClick(widget, button, keys, place);
    QTest::mouseRelease(widget, button, keys, place);
}

} // namespace varnoth::test
