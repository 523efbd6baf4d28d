// The Extract Frame/s dialog: output folder and file format for the selected frames, and how to treat
// existing files. It only requests the extraction, which runs behind the progress dialog.
#pragma once

#include <array>

#include "core/image/PictureSurface.h"
#include "core/jobs/FrameExtraction.h"
#include "desktop/controls/elboton.h"
#include "desktop/controls/elcheck.h"
#include "desktop/controls/elframe.h"
#include "desktop/controls/ellabel.h"
#include "desktop/controls/elpanel.h"
#include "desktop/controls/elradio.h"
#include "desktop/controls/eltexto.h"
#include "desktop/forms/Form.h"

namespace varnoth {

class Form1;

class Form3 : public Form {
    Q_OBJECT

  public:
    explicit Form3(Form1& main_window);

    elpanel elpanel1{"elpanel1", this};
    ellabel ellabel1{"ellabel1", this};
    eltexto eltexto1{"eltexto1", this}; ///< output folder
    elboton elboton1{"elboton1", this}; ///< ...
    ellabel ellabel2{"ellabel2", this};
    std::array<elradio, 3> elradio1{
        {{"elradio1(0)", this}, {"elradio1(1)", this}, {"elradio1(2)", this}}}; ///< Bmp, Tga, Pcx
    elframe elframe2{"elframe2", this};                                         ///< for Tga and Pcx
    elcheck elcheck1{"elcheck1", &elframe2};                                    ///< Compressed
    elframe elframe1{"elframe1", this}; ///< for Bmp, at the same place
    std::array<elradio, 2> elradio2{{{"elradio2(0)", &elframe1}, {"elradio2(1)", &elframe1}}}; ///< depth
    ellabel ellabel3{"ellabel3", this};
    std::array<elradio, 3> elradio3{
        {{"elradio3(0)", this}, {"elradio3(1)", this}, {"elradio3(2)", this}}}; ///< Skip, Ask, Overwrite
    elboton elboton2{"elboton2", this};                                         ///< Ok
    elboton elboton3{"elboton3", this};                                         ///< Cancel

    /// Picture1: the surface on which each frame is drawn before it is written.
    PictureSurface& scratch() { return picture1_; }

  signals:
    void folderRequested();
    /// Ok was clicked, and the output folder exists.
    void extractionRequested(const varnoth::ExtractionOptions& options);
    void unloadRequested();

  private:
    void design();
    void design_folder();
    void design_format();
    void design_existing_files();
    void connect_controls();
    void design_keys();
    void click_format(std::size_t index);
    void Ok();
    void Cancel();
    ExtractionOptions options() const;

    Form1& main_window_;
    SurfaceContainer container_;
    PictureSurface picture1_{{.parent = &container_, .width = 1, .height = 1}};
};

} // namespace varnoth
