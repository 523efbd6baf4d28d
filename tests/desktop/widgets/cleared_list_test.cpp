// A list that was emptied and filled again works as before.
#include <QTest>

#include <gtest/gtest.h>

#include "desktop/widgets/ListBox.h"
#include "desktop/services/exception_barrier.h"

namespace varnoth {
namespace {

TEST(ClearedList, TheKeyboardRaisesClickThereWithoutAMark) {
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
