// The position of a drop-down list's text, and the window position that a press on the list corrects.
#include <QAbstractItemView>
#include <QCoreApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <QWindow>

#include <gtest/gtest.h>

#include "desktop/theme/theme.h"
#include "desktop/widgets/DropDownList.h"

namespace varnoth {
namespace {

constexpr int arrow_width = 18;

TEST(DropDownList, TextIsFourPixelsFromTheLeftAndCentred) {
    DropDownList list("Combo1", nullptr);
    list.resize(120, 20);
    list.AddItem("HHH");
    list.SetListIndex(0);
    QImage expected(list.size(), QImage::Format_RGB32);
    expected.fill(theme::to_qcolor(theme::field_background));
    QPainter painter(&expected);
    painter.setFont(theme::display_font(theme::design_font()));
    painter.setPen(theme::to_qcolor(theme::light_text));
    painter.drawText(QRect(4, 0, 100, 20), Qt::AlignLeft | Qt::AlignVCenter, "HHH");
    painter.end();
    const QRect inside = list.rect().adjusted(1, 1, -arrow_width, -1);
    EXPECT_EQ(list.grab().toImage().convertToFormat(QImage::Format_RGB32).copy(inside),
              expected.copy(inside));
}

/// How far a press on the list moves its window when the pointer's global position is off by `offset`.
QPoint moved_by_press(const QPoint& offset) {
    QWidget window;
    window.resize(200, 100);
    DropDownList list("Combo1", &window);
    list.AddItem("one");
    window.move(100, 100);
    window.show();
    QCoreApplication::processEvents();
    const QPoint before = window.windowHandle()->position();
    const QPointF place(5, 5);
    QMouseEvent event(QEvent::MouseButtonPress, place, place, QPointF(before + offset) + place,
                      Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&list, &event);
    list.hidePopup();
    return window.windowHandle()->position() - before;
}

TEST(DropDownList, PressCorrectsTheWindowPosition) {
    EXPECT_EQ(moved_by_press({3, 2}), QPoint(3, 2));
    EXPECT_EQ(moved_by_press({-3, -2}), QPoint(-3, -2));
    EXPECT_EQ(moved_by_press({50, 0}), QPoint(50, 0));
}

TEST(DropDownList, PressIgnoresRoundingDifferences) {
    EXPECT_EQ(moved_by_press({2, 2}), QPoint(0, 0));
    EXPECT_EQ(moved_by_press({-4, 0}), QPoint(0, 0));
}

} // namespace
} // namespace varnoth
