#include "desktop/forms/progress/Form6.h"

#include "core/services/Services.h"
#include "desktop/forms/FormParts.h"
#include "desktop/services/exception_barrier.h"

namespace varnoth {

Form6::Form6() : Form("Form6", application_title, Kind::Dialog, 351, 110) {
    constexpr int width = 351 - 2 * design::margin;
    design::place_label(Label1, {design::margin, design::margin, width, design::text_height}, QString(),
                        theme::window_background);
    design::place_label(Label2, {design::margin, design::margin + design::row, width, design::text_height},
                        QString(), theme::window_background);
    design::place_edged(Progressbar1, {design::margin, 52, width, design::button_height});
    Progressbar1.setAccessibleName("Progress");
    design::place_button(elboton1, 351 - design::margin - design::button_width, 79, "Cancel");
    Label3.hide();
    setCursor(Qt::BusyCursor);
    elboton1.setCursor(Qt::ArrowCursor);
    on_event(&elboton1, &elboton::Click, this, [this] { Cancel(); });
    add_keys({plain_key(Qt::Key_Escape, elboton1)});
}

void Form6::refresh() {
    repaint();
    yield_to_events();
}

void Form6::Cancel() {
    Label1.SetCaption("Aborting Process...");
    Label2.SetCaption(QString());
    Label3.SetCaption("1");
    disable_button(elboton1);
}

} // namespace varnoth
