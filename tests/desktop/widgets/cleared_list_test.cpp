// A list that was cleared and filled again behaves like a new one.
#include <QTest>

#include <gtest/gtest.h>

#include "desktop/services/exception_barrier.h"
#include "desktop/widgets/ListBox.h"

namespace varnoth {
namespace {

TEST(ClearedList, KeyboardRaisesClickWithoutASelection) {
    ListBox list("List1", nullptr);
    list.show();
    list.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&list));
    list.setFocus();
    list.AddItem("gone");
    list.Clear();
    list.AddItem("one");
    list.AddItem("two");
    int clicks = 0;
    on_event(&list, &ListBox::Click, &list, [&] { ++clicks; });
    QTest::keyClick(&list, Qt::Key_Down, Qt::ControlModifier);
    QTest::keyClick(&list, Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(list.ListIndex(), 1);
    EXPECT_EQ(list.SelCount(), 0);
    EXPECT_EQ(clicks, 2);
}

} // namespace
} // namespace varnoth
