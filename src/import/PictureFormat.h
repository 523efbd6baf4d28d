// The picture formats of the Add Frame/s dialog, in the order of its filter list.
#pragma once

#include <cstdint>

namespace varnoth {

enum class PictureFormat : std::int32_t { Bmp = 0, Jpg = 1, Tga = 2, Pcx = 3 };

} // namespace varnoth
