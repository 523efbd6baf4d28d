// The progress dialog of a long job, with its Cancel button. It knows nobody: the job writes what it does and
// looks at the abort mark before each step.
#pragma once

#include "desktop/controls/elboton.h"
#include "desktop/controls/ellabel.h"
#include "desktop/controls/elprogress.h"
#include "desktop/widgets/Label.h"
#include "desktop/forms/Form.h"

namespace varnoth {

class Form6 : public Form {
    Q_OBJECT

  public:
    Form6();

    ellabel Label1{"Label1", this}; ///< what is being done
    ellabel Label2{"Label2", this}; ///< the current item
    elprogress Progressbar1{"Progressbar1", this};
    elboton elboton1{"elboton1", this};                   ///< Cancel
    Label Label3{"Label3", this, Label::Kind::Text, "0"}; ///< hidden, the abort mark: "0" goes on, "1" aborts

    bool aborted() const { return Label3.Caption() != "0"; }

    /// Paints the dialog at once and yields, so that Cancel is heard in a job that does not yield by itself.
    /// A yield lets events run only when some milliseconds have passed since the last one.
    void refresh();

  private:
    void Cancel();
};

} // namespace varnoth
