#include "desktop/forms/extract/Form3.h"

#include "core/base/files.h"
#include "core/services/Services.h"
#include "desktop/forms/FormParts.h"
#include "desktop/forms/main_window/Form1.h"
#include "desktop/services/exception_barrier.h"
#include "qt/path_text.h"

namespace varnoth {

namespace {

constexpr QRect choices_place{153, 106, 127, 61};

// The form keeps its groups exclusive; radio buttons do not know their group.
template <typename Group>
void unset_others(Group& group, std::size_t chosen) {
    for (std::size_t i = 0; i < group.size(); ++i) {
        if (i != chosen) {
            group[i].SetValue(false);
        }
    }
}

} // namespace

Form3::Form3(Form1& main_window)
    : Form("Form3", "Extract Frame/s", Kind::Dialog, 287, 260), main_window_(main_window) {
    design();
    connect_controls();
    design_keys();
}

void Form3::design() {
    set_panel(elpanel1, "Extract Frame/s");
    elpanel1.SetCerrar(false);
    design_folder();
    design_format();
    design_existing_files();
    constexpr int buttons_top = 260 - design::margin - design::button_height;
    constexpr int cancel_left = 287 - design::margin - design::button_width;
    design::place_button(elboton2, cancel_left - design::gap - design::button_width, buttons_top, "Ok");
    design::place_button(elboton3, cancel_left, buttons_top, "Cancel");
}

void Form3::design_folder() {
    design::place_label(ellabel1, {design::margin, design::below_title, 200, design::text_height},
                        "Output Folder:", theme::window_background);
    design::place_field(eltexto1, {design::margin, 57, 213, design::text_height}, QString(), "Output Folder");
    design::place_button(elboton1, 224, 55, "...");
    elboton1.setAccessibleName("Choose the output folder");
}

void Form3::design_format() {
    design::place_label(ellabel2, {design::margin, 85, 100, design::text_height},
                        "Format:", theme::window_background);
    constexpr std::array formats{"Bmp", "Tga", "Pcx"};
    for (std::size_t i = 0; i < formats.size(); ++i) {
        design::place_checkable(elradio1[i],
                                {design::margin, 106 + static_cast<int>(i) * design::row, 100, 19},
                                formats[i], theme::window_background, "Format");
    }
    elradio1[0].SetValue(true);
    design::place_edged(elframe1, choices_place);
    constexpr std::array depths{"8 bpp", "24 bpp"};
    for (std::size_t i = 0; i < depths.size(); ++i) {
        design::place_checkable(elradio2[i], {8, 10 + static_cast<int>(i) * design::row, 110, 19}, depths[i],
                                theme::field_background, "Depth");
    }
    elradio2[0].SetEnabled(false);
    elradio2[0].SetUncheckedColor(theme::disabled_text);
    elradio2[1].SetValue(true);
    design::place_edged(elframe2, choices_place);
    design::place_checkable(elcheck1, {10, 21, 110, 18}, "Compressed", theme::field_background);
    elframe2.SetEnabled(false);
    elframe2.hide();
}

void Form3::design_existing_files() {
    design::place_label(ellabel3, {design::margin, 176, 260, design::text_height},
                        "If File Exists Then:", theme::window_background);
    constexpr std::array choices{"Skip", "Ask", "Overwrite"};
    constexpr std::array lefts{design::margin, 93, 179};
    for (std::size_t i = 0; i < choices.size(); ++i) {
        design::place_checkable(elradio3[i], {lefts[i], 197, i == 2 ? 101 : 80, 19}, choices[i],
                                theme::window_background, "If File Exists Then");
    }
    elradio3[1].SetValue(true);
}

void Form3::connect_controls() {
    on_event(&elboton1, &elboton::Click, this, [this] { emit folderRequested(); });
    on_event(&elboton2, &elboton::Click, this, [this] { Ok(); });
    on_event(&elboton3, &elboton::Click, this, [this] { Cancel(); });
    for (std::size_t i = 0; i < elradio1.size(); ++i) {
        on_event(&elradio1[i], &elradio::Click, this, [this, i] { click_format(i); });
    }
    for (std::size_t i = 0; i < elradio2.size(); ++i) {
        on_event(&elradio2[i], &elradio::Click, this, [this, i] { unset_others(elradio2, i); });
    }
    for (std::size_t i = 0; i < elradio3.size(); ++i) {
        on_event(&elradio3[i], &elradio::Click, this, [this, i] { unset_others(elradio3, i); });
    }
}

void Form3::design_keys() {
    add_keys(dialog_keys(elboton2, elboton3));
    add_keys({shortcut(Qt::ALT | Qt::Key_D, elboton1), shortcut(Qt::ALT | Qt::Key_B, elradio1[0]),
              shortcut(Qt::ALT | Qt::Key_T, elradio1[1]), shortcut(Qt::ALT | Qt::Key_P, elradio1[2]),
              shortcut(Qt::ALT | Qt::Key_E, elradio2[0]), shortcut(Qt::ALT | Qt::Key_F, elradio2[1]),
              shortcut(Qt::ALT | Qt::Key_C, elcheck1), shortcut(Qt::ALT | Qt::Key_S, elradio3[0]),
              shortcut(Qt::ALT | Qt::Key_A, elradio3[1]), shortcut(Qt::ALT | Qt::Key_O, elradio3[2])});
}

void Form3::click_format(std::size_t index) {
    unset_others(elradio1, index);
    const bool depth = index == 0;
    elframe1.setVisible(depth);
    elframe1.SetEnabled(depth);
    elframe2.SetEnabled(!depth);
    elframe2.setVisible(!depth);
    if (depth) {
        elradio2[0].SetValue(false);
        elradio2[1].SetValue(true);
    } else {
        elcheck1.SetValue(false);
    }
}

void Form3::Ok() {
    if (eltexto1.Text().isEmpty()) {
        show_message("Select Output Folder First.");
        emit folderRequested();
        return;
    }
    if (!folder_exists(path_of_text(eltexto1.Text()))) {
        show_message("Output Folder Doesnt Exist.");
        emit folderRequested();
        return;
    }
    emit extractionRequested(options());
}

void Form3::Cancel() {
    main_window_.SetEnabled(true);
    emit unloadRequested();
}

ExtractionOptions Form3::options() const {
    ExtractionOptions options;
    options.folder = path_of_text(eltexto1.Text());
    options.sprite_path = path_of_text(main_window_.eltexto1.Text());
    options.format = elradio1[0].Value()   ? ExtractionFormat::Bmp
                     : elradio1[1].Value() ? ExtractionFormat::Tga
                                           : ExtractionFormat::Pcx;
    options.eight_bits = elradio2[0].Value();
    options.compressed = elcheck1.Value();
    options.if_file_exists = elradio3[1].Value()   ? IfFileExists::Ask
                             : elradio3[0].Value() ? IfFileExists::Skip
                                                   : IfFileExists::Overwrite;
    return options;
}

} // namespace varnoth
