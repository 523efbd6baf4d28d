// Lines that are too long for their list are clipped at its edge, without an ellipsis.
#include <QAbstractItemView>

#include <gtest/gtest.h>

#include "desktop/widgets/DropDownList.h"
#include "desktop/widgets/FolderListBox.h"
#include "desktop/widgets/ListBox.h"

namespace varnoth {
namespace {

TEST(LongLines, AreNotElided) {
    EXPECT_EQ(ListBox("List1", nullptr).textElideMode(), Qt::ElideNone);
    EXPECT_EQ(FolderListBox("Dir1", nullptr).textElideMode(), Qt::ElideNone);
    EXPECT_EQ(DropDownList("Combo1", nullptr).view()->textElideMode(), Qt::ElideNone);
}

} // namespace
} // namespace varnoth
