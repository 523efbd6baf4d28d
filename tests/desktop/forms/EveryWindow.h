// A fixture that opens every window of the editor as a user does, in each state that has different controls.
#pragma once

#include <functional>
#include <string>

#include "desktop/AccessibleEvents.h"
#include "desktop/forms/EditorTest.h"
#include "desktop/forms/exit_picture/Form9.h"
#include "support/PictureFolder.h"

namespace varnoth::test {

class EveryWindowTest : public EditorTest {
  protected:
    using Look = std::function<void(const std::string& state, Form& window)>;

    EveryWindowTest() { switch_accessibility_on(); }

    /// Opens the windows one after the other, calls `look` with each window and the name of its state, and
    /// closes it.
    void in_every_window(const Look& look) {
        look("main window at the start", main());
        open_sprite(3);
        ui_driver::settle();
        look("main window with a sprite", main());
        in_new_sprite(look);
        in_preview(look);
        in_extract(look);
        in_add_frames(look);
        in_exit_picture(look);
    }

    void in_new_sprite(const Look& look) {
        ui_driver::click(main().elboton2);
        look("new sprite", *coordinator_->form2());
        ui_driver::click(coordinator_->form2()->elboton1);
    }

    void in_preview(const Look& look) {
        ui_driver::double_click(main().Picture1);
        look("preview, stopped", *coordinator_->form7());
        ui_driver::click(coordinator_->form7()->Label2);
        look("preview, playing", *coordinator_->form7());
        emit coordinator_->form7()->elpanel1.CloseClick();
        ui_driver::settle();
    }

    void in_extract(const Look& look) {
        ui_driver::click(main().elboton6);
        Form3& dialog = *coordinator_->form3();
        look("extract, BMP", dialog);
        ui_driver::click(dialog.elboton1);
        look("folder", *coordinator_->form5());
        ui_driver::click(coordinator_->form5()->elboton2);
        ui_driver::click(dialog.elradio1[1]);
        look("extract, TGA", dialog);
        ui_driver::click(dialog.elcheck1);
        look("extract, TGA compressed", dialog);
        ui_driver::type_into(dialog.eltexto1, QString::fromStdString(folder_.path()));
        services_.on_yield = [&] {
            if (coordinator_->form6() != nullptr && coordinator_->form6()->Progressbar1.Value() == 1) {
                services_.on_yield = nullptr;
                look("progress", *coordinator_->form6());
                ui_driver::click(coordinator_->form6()->elboton1);
                look("progress, aborting", *coordinator_->form6());
            }
        };
        main().List1.SetSelected(1, true);
        ui_driver::click(dialog.elboton2);
        ui_driver::settle();
    }

    void in_add_frames(const Look& look) {
        open_import(1);
        look("add frames", *coordinator_->form4());
        ui_driver::click(coordinator_->form4()->elboton3);
        open_import(3);
        Form4& dialog = *coordinator_->form4();
        pictures_.add_plain_bmp("a.bmp", 8, 6, make_colour(10, 20, 30));
        pictures_.add_plain_bmp("b.bmp", 8, 6);
        ASSERT_TRUE(ui_driver::walk_to(dialog.Dir1, QString::fromStdString(pictures_.path())));
        ui_driver::click_line(dialog.File1, 0);
        look("add frames, sizes differ", dialog);
        ui_driver::click(dialog.elboton1);
        look("add frames, picking", dialog);
        ui_driver::click(dialog.elboton3);
    }

    void in_exit_picture(const Look& look) {
        Form9 form;
        form.show_over(main());
        ui_driver::settle();
        look("exit picture", form);
    }

    /// Creates a sprite with a render mode and opens Import.
    void open_import(int render_mode) {
        ui_driver::click(main().elboton2);
        ui_driver::choose(coordinator_->form2()->elcombo2.Combo1(), render_mode);
        ui_driver::click(coordinator_->form2()->elboton2);
        ui_driver::click(main().elboton4);
    }

    PictureFolder pictures_{services_};
};

} // namespace varnoth::test
