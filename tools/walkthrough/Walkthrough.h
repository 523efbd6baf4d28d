// The scripted user: New or Open, Import, the arrows, Save, Open again, Export, in this order, in the
// editor's own windows.
#pragma once

#include "platform/Services.h"
#include "walkthrough/Options.h"
#include "walkthrough/Report.h"

namespace varnoth::walkthrough {

/// Goes through the job that the options describe and reports every event. Needs a QApplication. Failures of
/// the program end as an event's failures do. Throws WrongOption for a folder or picture of the options that
/// is not there, before anything is done, and for an arrow on a line that the list turns out not to have.
/// Lines to extract that it does not have are left out.
void walk(const Options& options, const Report& report, PictureLoader& loader);

} // namespace varnoth::walkthrough
