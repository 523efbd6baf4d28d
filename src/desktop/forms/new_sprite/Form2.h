// The New Sprite dialog: asks for name, size, type and render mode, and on Ok replaces the sprite with an
// empty one. The input is not validated, and unsaved changes are discarded without a question.
#pragma once

#include <array>

#include "desktop/controls/elboton.h"
#include "desktop/controls/elcombo.h"
#include "desktop/controls/ellabel.h"
#include "desktop/controls/elpanel.h"
#include "desktop/controls/eltexto.h"
#include "desktop/forms/Form.h"

namespace varnoth {

class Form1;

class Form2 : public Form {
    Q_OBJECT

  public:
    explicit Form2(Form1& main_window);

    elpanel elpanel1{"elpanel1", this};
    std::array<ellabel, 5> ellabel1{{{"ellabel1(0)", this},
                                     {"ellabel1(1)", this},
                                     {"ellabel1(2)", this},
                                     {"ellabel1(3)", this},
                                     {"ellabel1(4)", this}}};
    eltexto eltexto1{"eltexto1", this}; ///< name
    eltexto eltexto2{"eltexto2", this}; ///< width
    eltexto eltexto3{"eltexto3", this}; ///< height
    elcombo elcombo1{"elcombo1", this}; ///< type
    elcombo elcombo2{"elcombo2", this}; ///< render mode
    elboton elboton2{"elboton2", this}; ///< Ok
    elboton elboton1{"elboton1", this}; ///< Cancel

  signals:
    void unloadRequested();

  private:
    void design();
    void load();
    void Ok();
    void Cancel();

    Form1& main_window_;
};

} // namespace varnoth
