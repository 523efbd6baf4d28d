// The picture formats of the Add Frame/s dialog, in the order of its filter list.
#pragma once

#include <cstdint>
#include <string_view>

namespace varnoth {

/// The value is the index in that list.
enum class PictureFormat : std::int32_t { Bmp = 0, Jpg = 1, Tga = 2, Pcx = 3 };

/// ".bmp", ".jpg", ".tga" or ".pcx".
constexpr std::string_view extension_of(PictureFormat format) {
    switch (format) {
    case PictureFormat::Bmp:
        return ".bmp";
    case PictureFormat::Jpg:
        return ".jpg";
    case PictureFormat::Tga:
        return ".tga";
    default:
        return ".pcx";
    }
}

} // namespace varnoth
