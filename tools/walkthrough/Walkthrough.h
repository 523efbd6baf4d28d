// The scripted user: New or Open, Import, the arrows, Save, Open again, Export, in this order.
#pragma once

#include "walkthrough/Options.h"
#include "walkthrough/Report.h"
#include "platform/Services.h"

namespace varnoth::walkthrough {

/// Goes through the job that the options describe and reports every event. Failures of the program go through.
/// Throws WrongOption for a picture, line or folder of the options that is not there.
void walk(const Options& options, const Report& report, PictureLoader& loader);

} // namespace varnoth::walkthrough
