// The Add Frame/s dialog: a browser for picture files with a preview, the choice of how to treat pictures
// whose size differs from the sprite's, and the picker of the transparent colour.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/jobs/AddFramesForm.h"
#include "desktop/controls/elboton.h"
#include "desktop/controls/elframe.h"
#include "desktop/controls/ellabel.h"
#include "desktop/controls/elpanel.h"
#include "desktop/controls/elradio.h"
#include "desktop/forms/Form.h"
#include "desktop/widgets/DriveList.h"
#include "desktop/widgets/DropDownList.h"
#include "desktop/widgets/FileListBox.h"
#include "desktop/widgets/FolderListBox.h"
#include "desktop/widgets/PictureBox.h"

namespace varnoth {

class Form1;

class Form4 : public Form {
    Q_OBJECT

  public:
    explicit Form4(Form1& main_window);
    ~Form4() override;

    elpanel elpanel1{"elpanel1", this};

    elframe elframe1{"elframe1", this}; ///< the browser
    DriveList Drive1{"Drive1", &elframe1};
    FolderListBox Dir1{"Dir1", &elframe1};
    DropDownList Combo1{"Combo1", &elframe1}; ///< the index is the format's number
    FileListBox File1{"File1", &elframe1};

    elframe elframe2{"elframe2", this}; ///< the preview
    elframe elframe3{"elframe3", &elframe2};
    QWidget Picture3{&elframe3}; ///< white, holds Picture1 at its top left
    PictureBox Picture1;

    elframe elframe4{"elframe4", this};      ///< sizes and colour
    ellabel ellabel4{"ellabel4", &elframe4}; ///< Sprite Size
    ellabel ellabel5{"ellabel5", &elframe4};
    ellabel ellabel2{"ellabel2", &elframe4}; ///< Pictures Size
    ellabel ellabel3{"ellabel3", &elframe4};
    ellabel ellabel6{"ellabel6", &elframe4}; ///< heading of the size question
    std::array<elradio, 2> elradio1{{{"elradio1(0)", &elframe4}, {"elradio1(1)", &elframe4}}};
    ellabel ellabel1{"ellabel1", &elframe4}; ///< Transparent Color
    PictureBox Picture2;                     ///< its background is the transparent colour
    elboton elboton1{"elboton1", &elframe4}; ///< Pick; its text colour says whether the picker is armed

    elboton elboton2{"elboton2", this}; ///< Ok
    elboton elboton3{"elboton3", this}; ///< Cancel

    // Hidden.
    SurfaceContainer container;
    PictureSurface Buffer1{{.parent = &container, .width = 1, .height = 1}};
    PictureSurface Buffer2{{.parent = &container, .width = 1, .height = 1}};
    PictureSurface jojoPalette{{.parent = &container, .width = 1, .height = 1}};

    /// The user clicked a colour in Picture1.
    bool TransparentPicked = false;

    /// The dialog's interface for the import.
    AddFramesForm& add_frames_form();

    /// Enables the picker, not yet armed. For render modes with a transparent colour.
    void enable_picker();

  signals:
    void importRequested();
    void unloadRequested();

  private:
    void design();
    void design_browser();
    void design_preview();
    void design_sizes();
    void connect_controls();
    void connect_browser();
    void connect_picker();
    bool armed() const;
    void set_armed(bool armed);
    void show_transparent(Colour colour);
    void click_file();
    void click_pick();
    void show_colour_under(const MouseArguments& mouse);
    void take_colour_under(const MouseArguments& mouse);
    void design_keys();
    std::vector<FormKey> picker_keys();
    void follow_pointer(const MouseArguments& mouse);
    void move_picker(const QPoint& step);
    QPoint place_in_picture(const QPoint& place) const;

    class ImportSide;

    Form1& main_window_;
    std::unique_ptr<ImportSide> import_side_;
    QPoint picker_place_;                  ///< position in Picture1 for the arrow keys and Return
    std::optional<QPoint> pointer_set_to_; ///< screen position last set by the arrow keys
};

} // namespace varnoth
