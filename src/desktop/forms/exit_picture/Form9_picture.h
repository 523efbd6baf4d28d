// The exit picture's drawing: a strip of film with an explosion that grows from frame to frame.
#pragma once

#include "core/image/PictureSurface.h"

namespace varnoth {

inline constexpr std::int32_t exit_picture_width = 597;
inline constexpr std::int32_t exit_picture_height = 255;

/// Draws the picture on a surface of the exit picture's size.
void draw_exit_picture(PictureSurface& surface);

} // namespace varnoth
