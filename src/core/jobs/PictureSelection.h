// Validates the selection of the Add Frame/s dialog and loads an entry onto a surface.
#pragma once

#include <cstdint>
#include <string>

#include "core/jobs/AddFramesForm.h"

namespace varnoth {

/// Probes the selected entries in order and opens the size question when the first one differs from the
/// sprite's size. At the first entry that is invalid, larger than 256 by 256 or of another size than the
/// first one, closes the question, shows a message, unselects that entry and stops. Always returns true.
bool ValidateSelection(AddFramesForm& form);

/// Loads the picture of an entry onto the surface, which takes its size. A TGA or PCX file with an invalid
/// header leaves the surface unchanged. Failures of the readers and of the picture loader propagate.
void LoadSelectedPicture(AddFramesForm& form, std::int16_t index, PictureSurface& target);

/// The full path of an entry.
std::string path_of_entry(const AddFramesForm& form, std::int32_t index);

} // namespace varnoth
