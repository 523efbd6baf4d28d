// The import: the selected picture files become the frames of the sprite, all sharing one palette of 256
// colours. It runs in two passes over the files with the making of the palette between them.
#pragma once

#include "core/jobs/AddFramesForm.h"
#include "core/jobs/ImportView.h"

namespace varnoth {

/// Drops the sprite's frames and makes new ones of all selected entries. Says so in a message at the end, or
/// at once when nothing is selected. Memory does not grow with the number of pictures: every pass decodes
/// each picture anew into the form's surfaces. A picture that does not load is a failure that goes through.
void import_frames(AddFramesForm& form, ImportView& view);

} // namespace varnoth
