// The folder dialog of the extraction. It knows nobody: it tells which way it ended.
#pragma once

#include "desktop/controls/elboton.h"
#include "desktop/controls/ellabel.h"
#include "desktop/widgets/FolderListBox.h"
#include "desktop/forms/Form.h"

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
    /// Ok was clicked; the folder is the one shown.
    void chosen(const std::string& folder);
    void cancelled();
};

} // namespace varnoth
