// The folder dialog of the extraction. Knows no other window; reports the choice by signals.
#pragma once

#include "desktop/controls/elboton.h"
#include "desktop/controls/ellabel.h"
#include "desktop/forms/Form.h"
#include "desktop/widgets/FolderListBox.h"

namespace varnoth {

class Form5 : public Form {
    Q_OBJECT

  public:
    Form5();

    ellabel ellabel1{"ellabel1", this}; ///< the title line
    FolderListBox Dir1{"Dir1", this};
    elboton elboton1{"elboton1", this}; ///< Ok
    elboton elboton2{"elboton2", this}; ///< Cancel

  signals:
    /// Ok was clicked with this folder shown.
    void chosen(const std::string& folder);
    void cancelled();
};

} // namespace varnoth
