// The animation preview: plays the sprite's frames in a loop.
#pragma once

#include <QTimer>

#include "core/jobs/PreviewPlayback.h"
#include "desktop/controls/elpanel.h"
#include "desktop/forms/Form.h"
#include "desktop/widgets/Label.h"
#include "desktop/widgets/PictureBox.h"

namespace varnoth {

class Form1;

class Form7 : public Form {
    Q_OBJECT

  public:
    explicit Form7(Form1& main_window);

    elpanel elpanel1{"elpanel1", this};
    QWidget picture_clip{this};
    PictureBox Picture1;
    Label Label1{"Label1", this, Label::Kind::Symbol, "g", "Stop"};
    Label Label2{"Label2", this, Label::Kind::Symbol, "4", "Play"};
    Label Label4{"Label4", this, Label::Kind::Symbol, "3", "Slower"};
    Label Label3{"Label3", this, Label::Kind::Symbol, "4", "Faster"};
    Label Label5{"Label5", this, Label::Kind::Text, "15 fps"}; ///< the speed
    QTimer Timer1{this};

  signals:
    void unloadRequested();

  private:
    void design();
    static void show_checked(Label& one, Label& other);
    void Stop();
    void Play();
    void show_speed();
    void Tick();
    void Close();

    Form1& main_window_;
    PreviewPlayback playback_;
};

} // namespace varnoth
