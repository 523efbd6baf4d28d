#include "desktop/forms/exit_picture/Form9.h"

#include <QCoreApplication>

#include "desktop/forms/exit_picture/Form9_picture.h"
#include "desktop/services/exception_barrier.h"
#include "desktop/theme/theme.h"

namespace varnoth {

Form9::Form9()
    : Form("Form9", application_title, Kind::Dialog, exit_picture_width, exit_picture_height),
      Picture1("Picture1", this,
               {.parent = nullptr,
                .width = exit_picture_width,
                .height = exit_picture_height,
                .bits_per_pixel = 24}) {
    draw_exit_picture(Picture1.surface());
    Picture1.setAccessibleName(application_title);
    Timer1.setObjectName("Timer1");
    Timer1.setInterval(5000);
    on_event(&Picture1, &PictureBox::Click, this, [] { QCoreApplication::exit(0); });
    on_event(&Timer1, &QTimer::timeout, this, [] { QCoreApplication::exit(0); });
}

} // namespace varnoth
