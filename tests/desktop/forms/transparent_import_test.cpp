// The import uses the transparent colour that the dialog shows.
#include "desktop/forms/EditorTest.h"
#include "support/PictureFolder.h"

namespace varnoth {
namespace {

using ui_driver::choose;
using ui_driver::click;

constexpr Colour red = 0x0000FA;
constexpr Colour green = 0x00F000;

class TransparentImport : public test::EditorTest {
  protected:
    /// Imports a picture of a red (left) and a green pixel into a new sprite of this render mode.
    void import(int render_mode) {
        pictures_.add_bmp("a.bmp", 2, 1, {red, green});
        click(main().elboton2);
        Form2& form = *coordinator_->form2();
        ui_driver::type_into(form.eltexto2, "2");
        ui_driver::type_into(form.eltexto3, "1");
        choose(*form.elcombo2.findChild<DropDownList*>("Combo1"), render_mode);
        click(form.elboton2);
        click(main().elboton4);
        Form4& dialog = *coordinator_->form4();
        ASSERT_TRUE(ui_driver::walk_to(dialog.Dir1, QString::fromStdString(pictures_.path())));
        ui_driver::click_line(dialog.File1, 0);
        click(dialog.elboton2);
        ui_driver::settle();
    }

    Colour pixel(int x) { return main().Picture1.surface().Point(x, 0); }

    test::PictureFolder pictures_{services_};
};

TEST_F(TransparentImport, PickedColourLosesItsPaletteEntry) {
    import(3);
    EXPECT_NE(pixel(0), red);
    EXPECT_EQ(pixel(1), green);
}

TEST_F(TransparentImport, ModeWithoutTransparencyKeepsEveryColour) {
    import(1);
    EXPECT_EQ(pixel(0), red);
    EXPECT_EQ(pixel(1), green);
}

} // namespace
} // namespace varnoth
