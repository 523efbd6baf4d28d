// The panels' icon, sixteen pixels by sixteen: a flame on a frame of film, as on the program's own.
#pragma once

#include "core/image/PictureSurface.h"

namespace varnoth {

/// Width and height of the icon.
inline constexpr std::int32_t panel_icon_size = 16;

/// Draws the icon at the top left of a surface. What is transparent is left as it is.
void draw_panel_icon(PictureSurface& surface);

} // namespace varnoth
