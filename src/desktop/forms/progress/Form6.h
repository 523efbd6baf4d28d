// The progress dialog of a long job, with a Cancel button. Knows no other window: the job updates the dialog
// and checks the abort flag before each step.
#pragma once

#include "desktop/controls/elboton.h"
#include "desktop/controls/ellabel.h"
#include "desktop/controls/elprogress.h"
#include "desktop/forms/Form.h"
#include "desktop/widgets/Label.h"

namespace varnoth {

class Form6 : public Form {
    Q_OBJECT

  public:
    Form6();

    ellabel Label1{"Label1", this}; ///< the current phase
    ellabel Label2{"Label2", this}; ///< the current item
    elprogress Progressbar1{"Progressbar1", this};
    elboton elboton1{"elboton1", this};                   ///< Cancel
    Label Label3{"Label3", this, Label::Kind::Text, "0"}; ///< hidden; the abort flag: "0" or "1"

    bool aborted() const { return Label3.Caption() != "0"; }

    /// Repaints the dialog and processes pending events, so that Cancel works in a job that does not process
    /// events itself. Events are processed only if some milliseconds have passed since the last time.
    void refresh();

  private:
    void Cancel();
};

} // namespace varnoth
