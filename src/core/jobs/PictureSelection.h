// The two routines of the Add Frame/s dialog that look at picture files: judging the selection and loading an
// entry onto a surface.
#pragma once

#include <cstdint>
#include <string>

#include "core/jobs/AddFramesForm.h"

namespace varnoth {

/// Probes the selected entries in order and opens the size question when the first of them differs from the
/// sprite's size. At the first entry that is no good picture, larger than 256 by 256 or of another size than
/// the first: closes the question, says so in a message, unselects that entry and looks at no further one.
/// Always true.
bool ValidateSelection(AddFramesForm& form);

/// Puts the picture of an entry on the surface, which takes its size. A TGA or PCX file whose header is
/// refused leaves the surface as it was; failures of the readers and of the picture loader go through.
void LoadSelectedPicture(AddFramesForm& form, std::int16_t index, PictureSurface& target);

/// Folder and name of an entry.
std::string path_of_entry(const AddFramesForm& form, std::int32_t index);

} // namespace varnoth
