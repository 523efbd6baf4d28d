#include "desktop/forms/preview/Form7.h"

#include "desktop/forms/FormParts.h"
#include "desktop/forms/main_window/Form1.h"
#include "desktop/services/exception_barrier.h"
#include "desktop/widgets/checked_state.h"

namespace varnoth {

Form7::Form7(Form1& main_window)
    : Form("Form7", "Animation Preview", Kind::Dialog, 281, 327),
      Picture1("Picture1", &picture_clip,
               {.parent = nullptr, .width = 256, .height = 256, .back_colour = theme::field_background}),
      main_window_(main_window) {
    design();
    Timer1.setObjectName("Timer1");
    Timer1.setTimerType(Qt::PreciseTimer);
    Timer1.setInterval(playback_.interval());
    on_event(&Label1, &Label::Click, this, [this] { Stop(); });
    on_event(&Label2, &Label::Click, this, [this] { Play(); });
    on_event(&Label3, &Label::Click, this, [this] {
        if (playback_.faster()) {
            show_speed();
        }
    });
    on_event(&Label4, &Label::Click, this, [this] {
        if (playback_.slower()) {
            show_speed();
        }
    });
    on_event(&Timer1, &QTimer::timeout, this, [this] { Tick(); });
    on_event(&elpanel1, &elpanel::CloseClick, this, [this] { Close(); });
    on_event(this, &Form::closeRequested, this, [this] { Close(); });
    add_keys({plain_key(Qt::Key_Space, Label2, [this] { return !Timer1.isActive(); }),
              plain_key(Qt::Key_Space, Label1, [this] { return Timer1.isActive(); }),
              plain_key(Qt::Key_Left, Label4), plain_key(Qt::Key_Right, Label3),
              plain_key(Qt::Key_Escape, elpanel1)});
}

void Form7::design() {
    set_panel(elpanel1, "Animation Preview");
    picture_clip.setGeometry(13, 37, 256, 256);
    Picture1.move(0, 0);
    Picture1.setAccessibleName("Animation");
    constexpr int top = 300;
    constexpr int side = 20;
    Label1.setGeometry(13, top, side, side);
    Label2.setGeometry(37, top, side, side);
    Label4.setGeometry(161, top, side, side);
    Label3.setGeometry(185, top, side, side);
    Label5.setGeometry(213, top, 56, side);
    show_checked(Label1, Label2);
    Label3.SetForeColor(theme::light_text);
    Label4.SetForeColor(theme::light_text);
}

void Form7::show_checked(Label& one, Label& other) {
    other.SetForeColor(theme::black);
    one.SetForeColor(theme::highlight);
    set_checked_state(other, false);
    set_checked_state(one, true);
}

void Form7::Stop() {
    show_checked(Label1, Label2);
    Timer1.stop();
}

void Form7::Play() {
    show_checked(Label2, Label1);
    if (!Timer1.isActive()) { // restarting it would delay the next tick
        Timer1.start();
    }
}

// A speed of 0 is not prevented: the division by zero in interval() ends the program.
void Form7::show_speed() {
    Timer1.setInterval(playback_.interval());
    Label5.SetCaption(QString("%1 fps").arg(playback_.FramesPerSecond));
}

void Form7::Tick() {
    playback_.tick(Picture1.surface(), main_window_.List1.ListCount());
}

void Form7::Close() {
    Timer1.stop();
    main_window_.SetEnabled(true);
    emit unloadRequested();
}

} // namespace varnoth
