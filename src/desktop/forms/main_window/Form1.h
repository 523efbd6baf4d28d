// The main window: shows the sprite's fields, lists its frames, draws the chosen frame and executes the
// commands. It opens no dialogs; it requests them by signals.
#pragma once

#include <QWidget>

#include "desktop/controls/elboton.h"
#include "desktop/controls/elframe.h"
#include "desktop/controls/ellabel.h"
#include "desktop/controls/elpanel.h"
#include "desktop/controls/eltexto.h"
#include "desktop/forms/Form.h"
#include "desktop/widgets/Label.h"
#include "desktop/widgets/ListBox.h"
#include "desktop/widgets/PictureBox.h"

namespace varnoth {

class Form1 : public Form {
    Q_OBJECT

  public:
    /// Resets the program's global variables to their initial values.
    Form1();

    // The controls are the form's interface to the dialogs.

    elpanel elpanel1{"elpanel1", this};

    elframe elframe1{"elframe1", this};
    eltexto eltexto1{"eltexto1", &elframe1}; ///< path of the sprite, or the name typed for a new one
    elboton elboton1{"elboton1", &elframe1}; ///< Open
    elboton elboton2{"elboton2", &elframe1}; ///< New
    elboton elboton3{"elboton3", &elframe1}; ///< Save

    elframe elframe2{"elframe2", this};
    ListBox List1{"List1", &elframe2}; ///< the frames, one line per display position
    Label Label1{"Label1", &elframe2, Label::Kind::Symbol, "5", "Move frame up"};
    Label Label2{"Label2", &elframe2, Label::Kind::Symbol, "6", "Move frame down"};
    elboton elboton7{"elboton7", &elframe2}; ///< Clear
    elboton elboton6{"elboton6", &elframe2}; ///< Export
    elboton elboton5{"elboton5", &elframe2}; ///< Remove
    elboton elboton4{"elboton4", &elframe2}; ///< Import

    elframe elframe3{"elframe3", this};
    elframe elframe5{"elframe5", &elframe3};
    QWidget picture_clip{&elframe5}; ///< clips a large sprite so that it does not cover the frame
    PictureBox Picture1;             ///< the chosen frame

    elframe elframe4{"elframe4", this};
    ellabel ellabel1{"ellabel1", &elframe4}; ///< captions: Name, Size, Origin, Type, Render
    ellabel ellabel2{"ellabel2", &elframe4};
    ellabel ellabel3{"ellabel3", &elframe4};
    ellabel ellabel4{"ellabel4", &elframe4};
    ellabel ellabel5{"ellabel5", &elframe4};
    ellabel ellabel8{"ellabel8", &elframe4}; ///< their values, in the same order
    ellabel ellabel7{"ellabel7", &elframe4};
    ellabel ellabel6{"ellabel6", &elframe4};
    ellabel ellabel9{"ellabel9", &elframe4};
    ellabel ellabel10{"ellabel10", &elframe4};

    // For the dialogs.

    /// Gives the five captions the colour of enabled captions.
    void enable_captions();

    /// Enables the frame list, Save, Remove, Export and Clear, and makes the last line current and selected.
    /// Draws its frame if the sprite has one: after a second import the list is longer than the sprite.
    void release_frames();

    /// Appends a line to the frame list.
    void add_frame_line(const QString& text) { List1.AddItem(text); }

  signals:
    void newRequested();
    void importRequested();
    void exportRequested();
    void previewRequested();
    void endRequested();

  private:
    void design();
    void design_files();
    void design_frames();
    void design_picture();
    void design_fields();
    void connect_controls();
    void design_keys();

    void Open();
    void show_sprite(const QString& path);
    void Save();
    void Clear();
    void draw_current();
    void move_frame(int step);

    bool current_has_frame_ = true; ///< whether the current line is to be drawn
};

} // namespace varnoth
