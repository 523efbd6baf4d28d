// Properties and methods that change the appearance of a control take effect on the screen at once.
#include <functional>
#include <string>
#include <vector>

#include "desktop/controls/elboton.h"
#include "desktop/controls/elcheck.h"
#include "desktop/controls/elcombo.h"
#include "desktop/controls/elframe.h"
#include "desktop/controls/ellabel.h"
#include "desktop/controls/elline3d.h"
#include "desktop/controls/elpanel.h"
#include "desktop/controls/elprogress.h"
#include "desktop/controls/elradio.h"
#include "desktop/controls/eltexto.h"
#include "desktop/controls/on_screen.h"
#include "desktop/controls/shown.h"

namespace varnoth::test {
namespace {

struct Change {
    const char* property;
    QVariant value;
};

/// A control and changes of its properties, each of which is visible after those before it.
struct Changes {
    const char* name;
    std::function<std::unique_ptr<SkinnedControl>(QWidget*)> make;
    std::vector<std::vector<Change>> changes;
};

// GoogleTest would print the bytes of the changes.
void PrintTo(const Changes& changes, std::ostream* stream) {
    *stream << changes.name;
}

const std::vector<Change> edges{{"Color3DLight", 0xFFFF00}, {"Color3DDark", 0x00FFFF}};
const std::vector<Change> back{{"BackColor", 0x1000A0}};
const std::vector<Change> fore{{"ForeColor", 0x80FF20}};
const std::vector<Change> italic{{"FontItalic", true}};
const std::vector<Change> caption{{"Caption", "Words"},
                                  {"FontItalic", true},
                                  {"FontUnderline", true},
                                  {"FontSize", 7.0},
                                  {"FontName", "DejaVu Sans Mono"},
                                  {"DropShadow", true}};
const std::vector<Change> checkable{
    {"BackColor2", 0x301080}, {"Color3DDark", 0x00FFFF}, {"UncheckedColor", 0x80FF20}};
const std::vector<Change> value{{"Value", true}, {"CheckedColor", 0x20FF80}};

class PropertyRepaint : public testing::TestWithParam<Changes> {};

TEST_P(PropertyRepaint, IsImmediate) {
    QWidget window;
    window.resize(600, 300);
    const std::unique_ptr<SkinnedControl> control = GetParam().make(&window);
    control->setGeometry(20, 20, 120, 60);
    window.show();
    for (const std::vector<Change>& group : GetParam().changes) {
        for (const Change& change : group) {
            expect_shown_at_once(window, change.property,
                                 [&] { control->setProperty(change.property, change.value); });
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Of, PropertyRepaint,
    testing::Values(
        Changes{"elboton", make_control<elboton>, {back, edges, fore, caption}},
        Changes{"elcheck", make_control<elcheck>, {back, checkable, caption, value}},
        Changes{"elcombo", make_control<elcombo>, {back, edges, {{"SymbolColor", 0x0000FF}}}},
        Changes{"elframe", make_control<elframe>, {back, edges}},
        Changes{"ellabel", make_control<ellabel>, {back, fore, caption}},
        Changes{"elline3d", make_control<elline3d>, {edges}},
        Changes{"elpanel",
                make_control<elpanel>,
                {back,
                 edges,
                 fore,
                 {{"Title", "Words"}, {"CloseColor", 0x80FF20}, {"Cerrar", false}, {"Icon", false}}}},
        Changes{"elprogress", make_control<elprogress>, {back, edges, {{"Value", 5}}}},
        Changes{"elradio",
                make_control<elradio>,
                {back, checkable, caption, value, {{"Color3DLight", 0xFFFF00}}}},
        Changes{"eltexto", make_control<eltexto>, {back, edges, {{"Text", "Words"}}, fore, italic}}),
    [](const auto& each) { return std::string(each.param.name); });

template <typename Control>
void expect_over_shown_at_once(Shown<Control>& shown) {
    expect_shown_at_once(shown.window, "over", [&] { shown->set_over_state(); });
    expect_shown_at_once(shown.window, "normal", [&] { shown->set_normal_state(); });
}

TEST(ControlRepaint, HoverState) {
    Shown<elcheck> check(80);
    expect_over_shown_at_once(check);
    Shown<elradio> radio(80);
    expect_over_shown_at_once(radio);
    Shown<elcombo> combo(120);
    combo->SetSymbolOverColor(0x00FF00);
    expect_over_shown_at_once(combo);
}

template <typename Control>
void expect_press_shown_at_once(Shown<Control>& shown, const QPoint& point) {
    expect_shown_at_once(shown.window, "pressed", [&] { shown.press(point); });
    expect_shown_at_once(shown.window, "released", [&] { shown.release(point); });
}

TEST(ControlRepaint, PressedButtonAndCloseButton) {
    Shown<elboton> button(80);
    expect_press_shown_at_once(button, button->rect().center());
    Shown<elpanel> panel(200, 100);
    expect_press_shown_at_once(panel, {200 - 26 + 9, 8 + 9});
}

TEST(ControlRepaint, ListOfAComboBox) {
    Shown<elcombo> combo(120);
    combo->SetList(QString("one\ntwo"));
    expect_shown_at_once(combo.window, "ListIndex", [&] { combo->SetListIndex(1); });
    expect_shown_at_once(combo.window, "ForeColor", [&] { combo->SetForeColor(0x80FF20); });
    expect_shown_at_once(combo.window, "FontItalic", [&] { combo->SetFontItalic(true); });
    expect_shown_at_once(combo.window, "RemoveItem", [&] { combo->RemoveItem(1); });
}

TEST(ControlRepaint, PixelsOfAPanelAndOfAFrame) {
    PictureSurface source({.width = 300, .height = 300, .back_colour = 0x4080C0});
    Shown<elpanel> panel(200, 100);
    expect_shown_at_once(panel.window, "set_icon", [&] { panel->set_icon(source.hDC()); });
    expect_shown_at_once(panel.window, "set_the_hdc", [&] { panel->set_the_hdc(source.hDC()); });
    expect_shown_at_once(panel.window, "obtener_imagen_fondo",
                         [&] { panel->obtener_imagen_fondo(source.hDC(), 0, 0, 100); });
    Shown<elframe> frame(200);
    expect_shown_at_once(frame.window, "obtener_imagen_fondo",
                         [&] { frame->obtener_imagen_fondo(source.hDC(), 0, 0, 100); });
}

} // namespace
} // namespace varnoth::test
