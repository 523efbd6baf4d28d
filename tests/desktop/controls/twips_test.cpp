// The inherent sizes of the controls, exact to the twip: on a screen with one twip per pixel nothing is
// rounded.
#include "desktop/controls/elboton.h"
#include "desktop/controls/elcheck.h"
#include "desktop/controls/elcombo.h"
#include "desktop/controls/ellabel.h"
#include "desktop/controls/elline3d.h"
#include "desktop/controls/elprogress.h"
#include "desktop/controls/elradio.h"
#include "desktop/controls/eltexto.h"
#include "desktop/controls/shown.h"

namespace varnoth {
namespace {

template <typename Control>
void expect_fixed_height(int twips) {
    const Control control("control", nullptr);
    EXPECT_EQ(control.minimumHeight(), twips);
    EXPECT_EQ(control.maximumHeight(), twips);
}

TEST(Twips, FixedHeights) {
    const test::OtherScreen fine(1);
    expect_fixed_height<elboton>(360);
    expect_fixed_height<elcheck>(270);
    expect_fixed_height<elcombo>(300);
    expect_fixed_height<ellabel>(300);
    expect_fixed_height<elline3d>(30);
    expect_fixed_height<elprogress>(360);
    expect_fixed_height<elradio>(285);
    expect_fixed_height<eltexto>(300);
}

TEST(Twips, MinimumWidths) {
    const test::OtherScreen fine(1);
    EXPECT_EQ(elboton("control", nullptr).minimumWidth(), 500);
    EXPECT_EQ(elcheck("control", nullptr).minimumWidth(), 500);
    EXPECT_EQ(elcombo("control", nullptr).minimumWidth(), 1425);
    EXPECT_EQ(elline3d("control", nullptr).minimumWidth(), 30);
    EXPECT_EQ(elprogress("control", nullptr).minimumWidth(), 360);
    EXPECT_EQ(elradio("control", nullptr).minimumWidth(), 500);
}

TEST(Twips, ArrowOfAComboBoxKeepsItsDistanceFromTheRight) {
    const test::OtherScreen fine(1);
    test::Shown<elcombo> shown(2000);
    const PartSurface* const arrow = shown->findChild<PartSurface*>("Picture1");
    ASSERT_NE(arrow, nullptr);
    EXPECT_EQ(arrow->x(), 2000 - 280 - 2);
}

} // namespace
} // namespace varnoth
