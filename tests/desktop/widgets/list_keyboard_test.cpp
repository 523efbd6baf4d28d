// Key presses on a list whose lines or whose current line the program has set.
#include <QTest>

#include <gtest/gtest.h>

#include "desktop/services/exception_barrier.h"
#include "desktop/widgets/ListBox.h"

namespace varnoth {
namespace {

/// A list that has the focus, and the number of its clicks.
class ListWithKeyboard : public testing::Test {
  protected:
    void SetUp() override {
        list_.show();
        list_.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&list_));
        list_.setFocus();
        on_event(&list_, &ListBox::Click, &list_, [this] { ++clicks_; });
    }

    ListBox list_{"List1", nullptr};
    int clicks_ = 0;
};

TEST_F(ListWithKeyboard, RaisesClickWithoutASelectionAfterClear) {
    list_.AddItem("gone");
    list_.Clear();
    list_.AddItem("one");
    list_.AddItem("two");
    QTest::keyClick(&list_, Qt::Key_Down, Qt::ControlModifier);
    QTest::keyClick(&list_, Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(list_.ListIndex(), 1);
    EXPECT_EQ(list_.SelCount(), 0);
    EXPECT_EQ(clicks_, 2);
}

TEST_F(ListWithKeyboard, RaisesClickAfterTheProgramSetALine) {
    list_.AddItem("one");
    list_.AddItem("two");
    list_.SetListIndex(0);
    clicks_ = 0;
    QTest::keyClick(&list_, Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(list_.ListIndex(), 1);
    EXPECT_EQ(clicks_, 1);
}

} // namespace
} // namespace varnoth
