#include "desktop/forms/folder/Form5.h"

#include "desktop/forms/FormParts.h"
#include "desktop/services/exception_barrier.h"

namespace varnoth {

Form5::Form5() : Form("Form5", "Select Extracting Folder:", Kind::Dialog, 224, 325) {
    design::place_label(ellabel1, {design::margin, design::margin, 210, design::text_height},
                        "Select Extracting Folder:", theme::window_background);
    design::place_next(Dir1, {design::margin, 31, 210, 256});
    Dir1.setAccessibleName("Select Extracting Folder");
    constexpr int buttons_top = 325 - design::margin - design::button_height;
    constexpr int cancel_left = 224 - design::margin - design::button_width;
    design::place_button(elboton1, cancel_left - design::gap - design::button_width, buttons_top, "Ok");
    design::place_button(elboton2, cancel_left, buttons_top, "Cancel");
    on_event(&elboton1, &elboton::Click, this, [this] { emit chosen(Dir1.Path()); });
    on_event(&elboton2, &elboton::Click, this, [this] { emit cancelled(); });
    add_keys(dialog_keys(elboton1, elboton2));
}

} // namespace varnoth
