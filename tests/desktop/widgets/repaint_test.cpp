// Changes of labels, lists and pictures appear on the screen at once.
#include "desktop/controls/on_screen.h"
#include "desktop/theme/theme.h"
#include "desktop/widgets/DropDownList.h"
#include "desktop/widgets/Label.h"
#include "desktop/widgets/ListBox.h"
#include "desktop/widgets/PictureBox.h"

namespace varnoth::test {
namespace {

TEST(WidgetRepaint, FormLabel) {
    QWidget window;
    window.resize(200, 100);
    Label label("Label1", &window, Label::Kind::Text, "one");
    window.show();
    expect_shown_at_once(window, "Caption", [&] { label.SetCaption("two"); });
    expect_shown_at_once(window, "ForeColor", [&] { label.SetForeColor(theme::highlight); });
}

TEST(WidgetRepaint, DropDownList) {
    QWidget window;
    window.resize(200, 100);
    DropDownList list("Combo1", &window);
    list.AddItem("one");
    list.AddItem("two");
    window.show();
    expect_shown_at_once(window, "ListIndex", [&] { list.SetListIndex(1); });
    expect_shown_at_once(window, "List", [&] { list.SetList(1, "three"); });
    expect_shown_at_once(window, "colours", [&] { list.SetColours(0x1000A0, 0x80FF20); });
}

TEST(WidgetRepaint, ListBox) {
    QWidget window;
    window.resize(200, 100);
    ListBox list("List1", &window);
    list.AddItem("one");
    window.show();
    expect_shown_at_once(window, "Selected", [&] { list.SetSelected(0, true); });
    expect_shown_at_once(window, "Enabled", [&] { list.SetEnabled(false); });
    list.SetEnabled(true);
    list.SetListIndex(0);
    expect_shown_at_once(window, "focus", [&] { list.setFocus(Qt::TabFocusReason); });
    expect_shown_at_once(window, "Clear", [&] { list.Clear(); });
}

TEST(WidgetRepaint, PictureBox) {
    QWidget window;
    window.resize(200, 100);
    PictureBox box("Picture1", &window, {.width = 8, .height = 6, .back_colour = 0x0000FF});
    window.show();
    expect_shown_at_once(window, "BackColor", [&] { box.SetBackColor(0x1000A0); });
    box.surface().PSet(2, 2, 0xFFFFFF);
    expect_shown_at_once(window, "Refresh", [&] { box.surface().Refresh(); });
    expect_shown_at_once(window, "Cls", [&] { box.Cls(); });
    expect_shown_at_once(window, "Width", [&] { box.surface().SetWidth(20); });
}

} // namespace
} // namespace varnoth::test
