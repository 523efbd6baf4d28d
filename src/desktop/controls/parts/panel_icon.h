// The 16 by 16 pixel icon of the panels: a flame on a frame of film, like the program's icon.
#pragma once

#include "core/image/PictureSurface.h"

namespace varnoth {

/// Width and height of the icon.
inline constexpr std::int32_t panel_icon_size = 16;

/// Draws the icon at the top left of a surface. Transparent pixels stay unchanged.
void draw_panel_icon(PictureSurface& surface);

} // namespace varnoth
