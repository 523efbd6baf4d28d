// What the programs of bench/palette_peers read and write. A picture is NAME.bmp, and perhaps NAME.alpha with
// one byte per pixel, rows from the top, 0 for transparent.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "core/base/files.h"
#include "core/codecs/read_bmp.h"
#include "core/image/Bitmap.h"

namespace varnoth::bench {

inline std::vector<std::uint8_t> read_whole(const std::string& path) {
    InputFile file(path);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(file.length()));
    file.read(bytes);
    return bytes;
}

inline void write_whole(const std::string& path, std::span<const std::uint8_t> bytes) {
    OutputFile file(path);
    file.write(bytes);
    file.close();
}

/// The names of the pictures in a folder, in order.
inline std::vector<std::string> pictures_in(const std::string& folder) {
    std::vector<std::string> names;
    for (const std::string& name : names_in(folder)) {
        if (name.ends_with(".bmp")) {
            names.push_back(name.substr(0, name.size() - 4));
        }
    }
    std::ranges::sort(names);
    return names;
}

inline bool has_alpha(const std::string& folder, const std::string& name) {
    return file_exists(join_path(folder, name + ".alpha"));
}

struct LoadedPicture {
    Bitmap bitmap;                    ///< 32 bits per pixel
    std::vector<std::uint8_t> opaque; ///< empty without alpha

    LoadedPicture(const std::string& folder, const std::string& name)
        : bitmap(read_bmp(read_whole(join_path(folder, name + ".bmp")),
                          std::numeric_limits<std::int32_t>::max())) {
        if (has_alpha(folder, name)) {
            opaque = read_whole(join_path(folder, name + ".alpha"));
        }
    }
};

/// Writes an 8-bit BMP file of a bitmap's size.
inline void write_indexed(const std::string& path, const Bitmap& size, std::span<const RGBQUAD> palette,
                          std::span<const std::uint8_t> indices) {
    const auto width = static_cast<std::uint32_t>(size.width());
    const auto height = static_cast<std::uint32_t>(size.height());
    const std::uint32_t row = (width + 3) / 4 * 4;
    std::vector<std::uint8_t> bytes{'B', 'M'};
    for (const std::uint32_t value :
         {1078 + row * height, 0U, 1078U, 40U, width, height, 1U | 8U << 16, 0U, 0U, 0U, 0U, 256U, 0U}) {
        for (int shift = 0; shift < 32; shift += 8) {
            bytes.push_back(static_cast<std::uint8_t>(value >> shift));
        }
    }
    for (const RGBQUAD& entry : palette) {
        bytes.insert(bytes.end(), {entry.rgbBlue, entry.rgbGreen, entry.rgbRed, 0});
    }
    bytes.resize(1078);
    for (std::size_t y = height; y-- > 0;) {
        const auto pixels = indices.subspan(y * width, width);
        bytes.insert(bytes.end(), pixels.begin(), pixels.end());
        bytes.resize(bytes.size() + row - width);
    }
    write_whole(path, bytes);
}

} // namespace varnoth::bench
