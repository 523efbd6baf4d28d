// Reference implementation of the whole import, built from the other reference implementations: linear
// searches, no caching, a yield at every pixel. Tests and benchmarks compare the program's import with it.
#pragma once

#include "core/image/PictureSurface.h"
#include "core/jobs/AddFramesForm.h"
#include "core/jobs/ImportView.h"
#include "core/sprite/SpriteDocument.h"
#include "reference/Mixpals.h"

namespace varnoth::reference {

/// Stretches one surface onto another, pixel by pixel.
void stretch(const PictureSurface& from, PictureSurface& to);

/// Appends a frame to the document; yields at every pixel.
void add_frame(SpriteDocument& sprite, const PictureSurface& picture, const Mixpals& mixing);

/// Imports into hlspr::document(), with the palette mixing state of earlier imports. Fails like the program's
/// import.
void import_frames(AddFramesForm& form, ImportView& view, Mixpals& mixing);

} // namespace varnoth::reference
