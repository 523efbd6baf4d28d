// Generates small picture files of every layout that the readers support.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/codecs/PcxHeader.h"
#include "core/codecs/TgaHeader.h"

namespace varnoth::test {

struct MadeFile {
    std::string name;
    Bytes bytes;
};

/// 16 by 6 pixels. The packed form contains a single run, in the middle.
inline MadeFile made_pcx(std::uint8_t bits, std::uint8_t planes, bool packed) {
    constexpr std::int16_t width = 16;
    constexpr std::int16_t height = 6;
    PcxHeader header;
    header.Manufacturer = 10;
    header.Version = 5;
    header.Encoding = packed ? 1 : 0;
    header.BitsPerPixel = bits;
    header.XMax = width - 1;
    header.YMax = height - 1;
    header.NPlanes = planes;
    header.BytesPerLine = static_cast<std::int16_t>(width * bits / 8);
    for (std::size_t i = 0; i < header.ColorMap.size(); ++i) {
        header.ColorMap[i] = static_cast<std::uint8_t>(5 * i);
    }
    const auto head = header.to_bytes();
    MadeFile file{std::to_string(bits) + " bits " + std::to_string(planes) + " planes " +
                      (packed ? "packed" : "plain") + ".pcx",
                  {head.begin(), head.end()}};
    for (int i = 0; i < header.BytesPerLine * planes * height; ++i) {
        file.bytes.push_back(static_cast<std::uint8_t>(i * 11 % 192));
    }
    if (packed) {
        file.bytes.insert(file.bytes.begin() + 140, {195, 77});
    }
    file.bytes.push_back(12); // the marker before the palette
    for (int i = 0; i < 768; ++i) {
        file.bytes.push_back(static_cast<std::uint8_t>(i * 3 % 192));
    }
    return file;
}

/// 9 by 7 pixels.
inline MadeFile made_tga(std::uint8_t depth, bool packed) {
    constexpr std::int16_t width = 9;
    constexpr std::int16_t height = 7;
    TgaHeader header;
    header.ImageType = depth == 8 ? 1 : 2;
    if (packed) {
        header.ImageType = static_cast<std::uint8_t>(header.ImageType + 8);
    }
    header.ImageWidth = width;
    header.ImageHeight = height;
    header.PixelDepth = depth;
    header.ImageDescriptor = depth == 24 ? 32 : 0;
    if (depth == 8) {
        header.ColorMapType = 1;
        header.ColorMapLength = 256;
        header.ColorMapDepth = 24;
    }
    const auto head = header.to_bytes();
    MadeFile file{std::to_string(depth) + " bits " + (packed ? "packed" : "plain") + ".tga",
                  {head.begin(), head.end()}};
    for (int i = 0; i < (depth == 8 ? 768 : 0); ++i) {
        file.bytes.push_back(static_cast<std::uint8_t>(i * 5));
    }
    const int pixel_bytes = depth / 8;
    for (int pixel = 0; pixel < width * height; ++pixel) {
        if (packed) {
            file.bytes.push_back(pixel % 2 == 0 ? 0 : 129); // a raw packet of one pixel, or a run of two
        }
        for (int i = 0; i < pixel_bytes; ++i) {
            file.bytes.push_back(static_cast<std::uint8_t>(pixel * 13 + i * 50));
        }
    }
    return file;
}

inline std::vector<MadeFile> all_made_pcx() {
    std::vector<MadeFile> files;
    for (const bool packed : {false, true}) {
        files.push_back(made_pcx(1, 1, packed));
        files.push_back(made_pcx(1, 4, packed));
        files.push_back(made_pcx(4, 1, packed));
        files.push_back(made_pcx(8, 1, packed));
        files.push_back(made_pcx(8, 3, packed));
    }
    return files;
}

inline std::vector<MadeFile> all_made_tga() {
    std::vector<MadeFile> files;
    for (const bool packed : {false, true}) {
        for (const int depth : {8, 16, 24, 32}) {
            files.push_back(made_tga(static_cast<std::uint8_t>(depth), packed));
        }
    }
    return files;
}

} // namespace varnoth::test
