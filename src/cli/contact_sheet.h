// All frames of a sprite in one picture, each with its number.
#pragma once

#include <string>

#include "cli/frame_view.h"

namespace varnoth::cli {

/// Rows of frames on a dark ground, numbered from 0 below each frame; about as wide as it is high.
/// CommandError naming the file when the sheet would be too large.
RgbaPicture contact_sheet(const FrameView& view, const std::string& file);

} // namespace varnoth::cli
