// A colour property applies to every part that it colours.
#include "desktop/controls/elcombo.h"
#include "desktop/controls/shown.h"

namespace varnoth {
namespace {

using test::picture_of;
using test::Shown;

TEST(Elcombo, BackColorFillsTheListAndTheArrowButton) {
    Shown<elcombo> shown(120);
    shown->SetBackColor(0x1000A0);
    shown->SetSymbolColor(0x1000A0); // hides the arrow
    const QRect inside(1, 1, 118, 18);
    EXPECT_EQ(test::count_of(picture_of(shown.control), 0x1000A0, inside), inside.width() * inside.height());
}

} // namespace
} // namespace varnoth
