#include "desktop/forms/new_sprite/Form2.h"

#include "core/base/number_text.h"
#include "core/base/numbers.h"
#include "core/sprite/hlspr.h"
#include "desktop/forms/FormParts.h"
#include "desktop/forms/main_window/Form1.h"
#include "desktop/services/exception_barrier.h"

namespace varnoth {

namespace {

double number_in(const eltexto& field) {
    return leading_number(field.Text().toStdString());
}

QString half_of(const eltexto& field) {
    return QString::fromStdString(number_text(number_in(field) / 2));
}

} // namespace

Form2::Form2(Form1& main_window)
    : Form("Form2", "New Sprite", Kind::Dialog, 235, 186), main_window_(main_window) {
    design();
    load();
    on_event(&elboton2, &elboton::Click, this, [this] { Ok(); });
    on_event(&elboton1, &elboton::Click, this, [this] { Cancel(); });
    add_keys(dialog_keys(elboton2, elboton1));
    add_keys(
        {shortcut(Qt::ALT | Qt::Key_T, elcombo1.Combo1()), shortcut(Qt::ALT | Qt::Key_R, elcombo2.Combo1())});
}

void Form2::design() {
    set_panel(elpanel1, "New Sprite");
    elpanel1.SetCerrar(false);
    constexpr int field_left = 55;
    constexpr int field_width = 235 - design::margin - field_left;
    constexpr int size_width = 79;
    constexpr std::array tops{35, 63, 91, 119};
    constexpr std::array captions{"Name:", "Size:", "Type:", "Render:"};
    const auto place_caption = [&](std::size_t row) {
        design::place_label(ellabel1[row],
                            {design::margin, tops[row], field_left - design::margin, design::text_height},
                            captions[row], theme::window_background);
    };
    place_caption(0);
    design::place_field(eltexto1, {field_left, tops[0], field_width, design::text_height}, "Untitled",
                        "Name");
    place_caption(1);
    design::place_field(eltexto2, {field_left, tops[1], size_width, design::text_height}, "32",
                        "Size, width");
    design::place_label(ellabel1[4], {field_left + size_width + 4, tops[1], 8, design::text_height}, "x",
                        theme::window_background);
    design::place_field(eltexto3,
                        {field_left + field_width - size_width, tops[1], size_width, design::text_height},
                        "32", "Size, height");
    place_caption(2);
    design::place_edged(elcombo1, {field_left, tops[2], field_width, design::text_height});
    elcombo1.setAccessibleName("Type");
    place_caption(3);
    design::place_edged(elcombo2, {field_left, tops[3], field_width, design::text_height});
    elcombo2.setAccessibleName("Render");
    constexpr int buttons_top = 186 - design::margin - design::button_height;
    constexpr int cancel_left = 235 - design::margin - design::button_width;
    design::place_button(elboton2, cancel_left - design::gap - design::button_width, buttons_top, "Ok");
    design::place_button(elboton1, cancel_left, buttons_top, "Cancel");
}

void Form2::load() {
    for (const char* type :
         {"VP_PARALLEL_UPRIGHT", "FACING_UPRIGHT", "VP_PARALLEL", "ORIENTED", "VP_PARALLEL_ORIENTED"}) {
        elcombo1.AddItem(type);
    }
    for (const char* mode : {"NORMAL", "ADDITIVE", "INDEXALPHA", "ALPHATEST"}) {
        elcombo2.AddItem(mode);
    }
    elcombo1.SetListIndex(2);
    elcombo2.SetListIndex(1);
}

void Form2::Ok() {
    hlspr::UnnamedSprite = true;
    main_window_.Picture1.Cls();
    disable_button(main_window_.elboton3);
    enable_button(main_window_.elboton4);
    for (elboton* button : {&main_window_.elboton5, &main_window_.elboton6, &main_window_.elboton7}) {
        disable_button(*button);
    }
    main_window_.enable_captions();
    main_window_.ellabel8.SetCaption(eltexto1.Text());
    main_window_.ellabel7.SetCaption(eltexto2.Text() + " x " + eltexto3.Text());
    // Shown unrounded; the sprite stores rounded values.
    main_window_.ellabel6.SetCaption("-" + half_of(eltexto2) + ", " + half_of(eltexto3));
    main_window_.ellabel9.SetCaption(elcombo1.GetList(elcombo1.GetListIndex()));
    main_window_.ellabel10.SetCaption(elcombo2.GetList(elcombo2.GetListIndex()));
    main_window_.List1.Clear();
    main_window_.SetEnabled(true);
    main_window_.eltexto1.SetText(eltexto1.Text());
    hlspr::new_sprite(round_to_even<std::int32_t>(number_in(eltexto2)),
                      round_to_even<std::int32_t>(number_in(eltexto3)), elcombo1.GetListIndex(),
                      elcombo2.GetListIndex());
    hlspr::SpriteDirty = false;
    emit unloadRequested();
}

void Form2::Cancel() {
    main_window_.SetEnabled(true);
    emit unloadRequested();
}

} // namespace varnoth
