// Colours that a property gives to all that they belong to.
#include "desktop/controls/elcombo.h"
#include "desktop/controls/shown.h"

namespace varnoth {
namespace {

using test::picture_of;
using test::Shown;

TEST(Elcombo, ItsBackgroundFillsTheListAndThePlaceOfTheArrow) {
    Shown<elcombo> shown(120);
    shown->SetBackColor(0x1000A0);
    shown->SetSymbolColor(0x1000A0); // the arrow is not to be seen
    const QRect inside(1, 1, 118, 18);
    EXPECT_EQ(test::count_of(picture_of(shown.control), 0x1000A0, inside), inside.width() * inside.height());
}

} // namespace
} // namespace varnoth
