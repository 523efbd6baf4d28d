// Properties and methods that change the appearance of a control take effect on the screen at once.
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

namespace varnoth {
namespace {

using test::expect_shown_at_once;
using test::Shown;

template <typename Control>
void expect_colours_shown_at_once(Shown<Control>& shown) {
    expect_shown_at_once(shown.window, "BackColor", [&] { shown->SetBackColor(0x1000A0); });
    expect_shown_at_once(shown.window, "Color3DLight", [&] { shown->SetColor3DLight(0xFFFF00); });
    expect_shown_at_once(shown.window, "Color3DDark", [&] { shown->SetColor3DDark(0x00FFFF); });
}

/// For controls with a caption.
template <typename Control>
void expect_text_shown_at_once(Shown<Control>& shown) {
    expect_shown_at_once(shown.window, "Caption", [&] { shown->SetCaption("Words"); });
    expect_shown_at_once(shown.window, "FontItalic", [&] { shown->SetFontItalic(true); });
    expect_shown_at_once(shown.window, "FontUnderline", [&] { shown->SetFontUnderline(true); });
    expect_shown_at_once(shown.window, "FontSize", [&] { shown->SetFontSize(7); });
    expect_shown_at_once(shown.window, "FontName", [&] { shown->SetFontName("DejaVu Sans Mono"); });
    const bool shadow = !shown->DropShadow();
    expect_shown_at_once(shown.window, "DropShadow", [&] { shown->SetDropShadow(shadow); });
}

template <typename Control>
void expect_over_shown_at_once(Shown<Control>& shown) {
    expect_shown_at_once(shown.window, "over", [&] { shown->set_over_state(); });
    expect_shown_at_once(shown.window, "normal", [&] { shown->set_normal_state(); });
}

template <typename Control>
void expect_mark_shown_at_once(Shown<Control>& shown) {
    expect_shown_at_once(shown.window, "BackColor", [&] { shown->SetBackColor(0x1000A0); });
    expect_shown_at_once(shown.window, "BackColor2", [&] { shown->SetBackColor2(0x301080); });
    expect_shown_at_once(shown.window, "Color3DDark", [&] { shown->SetColor3DDark(0x00FFFF); });
    expect_shown_at_once(shown.window, "UncheckedColor", [&] { shown->SetUncheckedColor(0x80FF20); });
    expect_text_shown_at_once(shown);
    expect_over_shown_at_once(shown);
    expect_shown_at_once(shown.window, "Value", [&] { shown->SetValue(true); });
    expect_shown_at_once(shown.window, "CheckedColor", [&] { shown->SetCheckedColor(0x20FF80); });
}

TEST(ControlRepaint, Button) {
    Shown<elboton> shown(80);
    expect_colours_shown_at_once(shown);
    expect_shown_at_once(shown.window, "ForeColor", [&] { shown->SetForeColor(0x80FF20); });
    expect_text_shown_at_once(shown);
    const QPoint middle = shown->rect().center();
    expect_shown_at_once(shown.window, "pressed",
                         [&] { QTest::mousePress(&shown.control, Qt::LeftButton, {}, middle); });
    expect_shown_at_once(shown.window, "released",
                         [&] { QTest::mouseRelease(&shown.control, Qt::LeftButton, {}, middle); });
}

TEST(ControlRepaint, Label) {
    Shown<ellabel> shown(80);
    expect_shown_at_once(shown.window, "BackColor", [&] { shown->SetBackColor(0x1000A0); });
    expect_shown_at_once(shown.window, "ForeColor", [&] { shown->SetForeColor(0x80FF20); });
    expect_text_shown_at_once(shown);
}

TEST(ControlRepaint, CheckBox) {
    Shown<elcheck> shown(80);
    expect_mark_shown_at_once(shown);
}

TEST(ControlRepaint, RadioButton) {
    Shown<elradio> shown(80);
    expect_mark_shown_at_once(shown);
    expect_shown_at_once(shown.window, "Color3DLight", [&] { shown->SetColor3DLight(0xFFFF00); });
}

TEST(ControlRepaint, ComboBox) {
    Shown<elcombo> shown(120);
    expect_colours_shown_at_once(shown);
    shown->SetList(QString("one\ntwo"));
    expect_shown_at_once(shown.window, "ListIndex", [&] { shown->SetListIndex(1); });
    expect_shown_at_once(shown.window, "ForeColor", [&] { shown->SetForeColor(0x80FF20); });
    expect_shown_at_once(shown.window, "FontItalic", [&] { shown->SetFontItalic(true); });
    expect_shown_at_once(shown.window, "SymbolColor", [&] { shown->SetSymbolColor(0x0000FF); });
    shown->SetSymbolOverColor(0x00FF00);
    expect_over_shown_at_once(shown);
    expect_shown_at_once(shown.window, "RemoveItem", [&] { shown->RemoveItem(1); });
}

TEST(ControlRepaint, TextBox) {
    Shown<eltexto> shown(120);
    expect_colours_shown_at_once(shown);
    expect_shown_at_once(shown.window, "Text", [&] { shown->SetText("Words"); });
    expect_shown_at_once(shown.window, "ForeColor", [&] { shown->SetForeColor(0x80FF20); });
    expect_shown_at_once(shown.window, "FontItalic", [&] { shown->SetFontItalic(true); });
}

TEST(ControlRepaint, Frame) {
    Shown<elframe> shown(80);
    expect_colours_shown_at_once(shown);
}

TEST(ControlRepaint, Line) {
    Shown<elline3d> shown(80);
    expect_shown_at_once(shown.window, "Color3DLight", [&] { shown->SetColor3DLight(0xFFFF00); });
    expect_shown_at_once(shown.window, "Color3DDark", [&] { shown->SetColor3DDark(0x00FFFF); });
}

TEST(ControlRepaint, ProgressBar) {
    Shown<elprogress> shown(120);
    expect_colours_shown_at_once(shown);
    expect_shown_at_once(shown.window, "Value", [&] { shown->SetValue(5); });
}

TEST(ControlRepaint, Panel) {
    Shown<elpanel> shown(200, 100);
    expect_colours_shown_at_once(shown);
    expect_shown_at_once(shown.window, "ForeColor", [&] { shown->SetForeColor(0x80FF20); });
    expect_shown_at_once(shown.window, "Title", [&] { shown->SetTitle("Words"); });
    expect_shown_at_once(shown.window, "CloseColor", [&] { shown->SetCloseColor(0x80FF20); });
    const QPoint close_button(200 - 26 + 9, 8 + 9);
    expect_shown_at_once(shown.window, "pressed",
                         [&] { QTest::mousePress(&shown.control, Qt::LeftButton, {}, close_button); });
    expect_shown_at_once(shown.window, "released",
                         [&] { QTest::mouseRelease(&shown.control, Qt::LeftButton, {}, close_button); });
    expect_shown_at_once(shown.window, "Cerrar", [&] { shown->SetCerrar(false); });
    expect_shown_at_once(shown.window, "Icon", [&] { shown->SetIcon(false); });
}

TEST(ControlRepaint, PixelsOfAPanel) {
    Shown<elpanel> shown(200, 100);
    PictureSurface source({.width = 300, .height = 300, .back_colour = 0x4080C0});
    expect_shown_at_once(shown.window, "set_icon", [&] { shown->set_icon(source.hDC()); });
    expect_shown_at_once(shown.window, "set_the_hdc", [&] { shown->set_the_hdc(source.hDC()); });
    expect_shown_at_once(shown.window, "obtener_imagen_fondo",
                         [&] { shown->obtener_imagen_fondo(source.hDC(), 0, 0, 100); });
}

TEST(ControlRepaint, PixelsOfAControl) {
    Shown<elframe> shown(200);
    PictureSurface source({.width = 300, .height = 300, .back_colour = 0x4080C0});
    expect_shown_at_once(shown.window, "obtener_imagen_fondo",
                         [&] { shown->obtener_imagen_fondo(source.hDC(), 0, 0, 100); });
}

} // namespace
} // namespace varnoth
