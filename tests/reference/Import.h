// The whole import as plain steps, one after the other, built of the plain parts beside it: every search is a
// scan, every pixel is worked out anew, every pixel yields. For the shipped import to be held equal to and
// measured against.
#pragma once

#include "import/AddFramesForm.h"
#include "import/ImportView.h"
#include "platform/PictureSurface.h"
#include "reference/Mixpals.h"
#include "sprite/SpriteDocument.h"

namespace varnoth::reference {

/// Stretches one surface over the other, pixel by pixel.
void stretch(const PictureSurface& from, PictureSurface& to);

/// Appends a frame to the document, with a yield at every pixel.
void add_frame(SpriteDocument& sprite, const PictureSurface& picture, const Mixpals& mixing);

/// The import into hlspr::document(), with the palette mixing that earlier imports left. It fails as the
/// shipped one does.
void import_frames(AddFramesForm& form, ImportView& view, Mixpals& mixing);

} // namespace varnoth::reference
