// The program's icon, sixteen pixels by sixteen: a flame on a frame of film.
#pragma once

#include <QImage>

#include "platform/PictureSurface.h"

namespace varnoth {

/// Width and height of the icon.
inline constexpr std::int32_t panel_icon_size = 16;

/// Draws the icon at the top left of a surface. What is transparent is left as it is.
void draw_panel_icon(PictureSurface& surface);

/// The icon with transparency, every pixel repeated `scale` times in both directions: 16, 32, 48, 64 ... by
/// as many pixels.
QImage panel_icon(int scale = 1);

} // namespace varnoth
