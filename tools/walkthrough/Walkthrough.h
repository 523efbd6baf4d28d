// The scripted user: operates the editor's own windows through New or Open, Import, the arrows, Save, Open
// again and Export, in this order.
#pragma once

#include "core/services/Services.h"
#include "walkthrough/Options.h"
#include "walkthrough/Report.h"

namespace varnoth::walkthrough {

/// Runs the job that the options describe and reports every event. Needs a QApplication. Failures in event
/// handlers are handled as in the editor. Throws WrongOption before doing anything if a folder or picture
/// does not exist, and later if the list does not have a line to move. Lines to export that do not exist are
/// ignored.
void walk(const Options& options, const Report& report, PictureLoader& loader);

} // namespace varnoth::walkthrough
