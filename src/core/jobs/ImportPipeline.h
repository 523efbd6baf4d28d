// The import: turns the selected picture files into frames that share one palette of 256 colours. A first
// pass over the files collects the colours, the palette is made, a second pass adds the frames.
#pragma once

#include "core/jobs/AddFramesForm.h"
#include "core/jobs/ImportView.h"

namespace varnoth {

/// Replaces the sprite's frames by the selected pictures and shows a message at the end; when nothing is
/// selected, only shows a message. Memory use does not grow with the number of pictures: both passes decode
/// each picture into the form's surfaces. Load errors propagate.
void import_frames(AddFramesForm& form, ImportView& view);

} // namespace varnoth
