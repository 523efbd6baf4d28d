// The first events that a new control gets.
#include "desktop/controls/elboton.h"
#include "desktop/controls/eltexto.h"
#include "desktop/controls/shown.h"

namespace varnoth {
namespace {

using test::Shown;

TEST(FirstEvents, ReleaseWithoutAPressIsNoClickOnAButton) {
    Shown<elboton> shown(80);
    int clicks = 0;
    on_event(&shown.control, &elboton::Click, &shown.control, [&] { ++clicks; });
    const QPoint middle = shown->rect().center();
    QTest::mousePress(&shown.control, Qt::RightButton, {}, middle);
    QTest::mouseRelease(&shown.control, Qt::LeftButton, {}, middle);
    QTest::mouseRelease(&shown.control, Qt::RightButton, {}, middle);
    EXPECT_EQ(clicks, 0);
}

TEST(FirstEvents, ReleaseWithoutAPressIsNoClickOnATextBox) {
    Shown<eltexto> shown(80);
    int clicks = 0;
    on_event(&shown.control, &eltexto::Click, &shown.control, [&] { ++clicks; });
    const QPoint middle = shown->Text1().rect().center();
    QTest::mousePress(&shown->Text1(), Qt::RightButton, {}, middle);
    QTest::mouseRelease(&shown->Text1(), Qt::LeftButton, {}, middle);
    QTest::mouseRelease(&shown->Text1(), Qt::RightButton, {}, middle);
    EXPECT_EQ(clicks, 0);
}

} // namespace
} // namespace varnoth
