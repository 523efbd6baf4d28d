// The press action of assistive technology: disabled widgets do not offer it, and other actions do nothing.
#include <QAbstractItemView>
#include <QAccessible>
#include <QAccessibleActionInterface>

#include <gtest/gtest.h>

#include "desktop/services/exception_barrier.h"
#include "desktop/widgets/DropDownList.h"
#include "desktop/widgets/PictureBox.h"

namespace varnoth {
namespace {

QAccessibleActionInterface& actions_of(QWidget& widget) {
    return *QAccessible::queryAccessibleInterface(&widget)->actionInterface();
}

void press(QWidget& widget) {
    actions_of(widget).doAction(QAccessibleActionInterface::pressAction());
}

const QStringList only_press{QAccessibleActionInterface::pressAction()};

TEST(DropDownList, PressActionOpensAndCloses) {
    DropDownList list("Combo1", nullptr);
    list.AddItem("*.bmp");
    list.show();
    ASSERT_EQ(actions_of(list).actionNames(), only_press);
    press(list);
    EXPECT_TRUE(list.view()->isVisible());
    press(list);
    EXPECT_FALSE(list.view()->isVisible());
}

TEST(DropDownList, DisabledListHasNoPressAction) {
    DropDownList list("Combo1", nullptr);
    list.AddItem("*.bmp");
    list.show();
    actions_of(list).doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_FALSE(list.view()->isVisible()) << "another action";
    list.setEnabled(false);
    EXPECT_EQ(actions_of(list).actionNames(), QStringList());
    press(list);
    EXPECT_FALSE(list.view()->isVisible());
}

TEST(PictureBox, DisabledPictureHasNoPressAction) {
    PictureBox box("Picture1", nullptr, {.width = 8, .height = 6});
    int clicks = 0;
    on_event(&box, &PictureBox::Click, &box, [&] { ++clicks; });
    ASSERT_EQ(actions_of(box).actionNames(), only_press);
    press(box);
    EXPECT_EQ(clicks, 1);
    actions_of(box).doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(clicks, 1) << "another action";
    box.setEnabled(false);
    EXPECT_EQ(actions_of(box).actionNames(), QStringList());
    press(box);
    EXPECT_EQ(clicks, 1) << "disabled";
}

TEST(PictureBox, UnconnectedPictureHasNoPressAction) {
    PictureBox box("Picture1", nullptr, {.width = 8, .height = 6});
    EXPECT_EQ(actions_of(box).actionNames(), QStringList());
}

TEST(PictureBox, PressActionRaisesDblClickIfOnlyThatIsConnected) {
    PictureBox box("Picture1", nullptr, {.width = 8, .height = 6});
    int double_clicks = 0;
    on_event(&box, &PictureBox::DblClick, &box, [&] { ++double_clicks; });
    ASSERT_EQ(actions_of(box).actionNames(), only_press);
    press(box);
    EXPECT_EQ(double_clicks, 1);
}

} // namespace
} // namespace varnoth
