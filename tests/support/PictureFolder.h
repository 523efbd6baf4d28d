// A folder of small picture files for import tests; the recorded loader returns the contents of its BMP
// files.
#pragma once

#include <cstdint>
#include <string>

#include "core/base/bytes.h"
#include "core/jobs/PictureFormat.h"
#include "support/RecordedServices.h"
#include "support/TemporaryFolder.h"
#include "support/pictures.h"

namespace varnoth::test {

/// A BMP header of that size and depth without pixels, enough for a probe.
inline Bytes bmp_header(std::int32_t width, std::int32_t height, std::int16_t bit_count,
                        std::int32_t compression = 0) {
    Bytes bytes(54);
    bytes[0] = 'B';
    bytes[1] = 'M';
    put_i32(bytes, 2, 54 + width * height * 4);
    put_i32(bytes, 10, 54);
    put_i32(bytes, 14, 40);
    put_i32(bytes, 18, width);
    put_i32(bytes, 22, height);
    put_i16(bytes, 26, 1);
    put_i16(bytes, 28, bit_count);
    put_i32(bytes, 30, compression);
    return bytes;
}

/// An uncompressed 24-bit TGA file, top row first.
inline Bytes tga_file(std::int16_t width, std::int16_t height, const Colours& colours) {
    Bytes bytes(18);
    bytes[2] = 2;
    put_i16(bytes, 12, width);
    put_i16(bytes, 14, height);
    bytes[16] = 24;
    bytes[17] = 32;
    for (const Colour colour : colours) {
        bytes.insert(bytes.end(), {blue_of(colour), green_of(colour), red_of(colour)});
    }
    return bytes;
}

/// An uncompressed PCX file of three planes.
inline Bytes pcx_file(std::int16_t width, std::int16_t height, const Colours& colours) {
    Bytes bytes(128);
    const std::int16_t line = static_cast<std::int16_t>(width + width % 2);
    bytes[0] = 10;
    bytes[1] = 5;
    bytes[3] = 8;
    put_i16(bytes, 8, static_cast<std::int16_t>(width - 1));
    put_i16(bytes, 10, static_cast<std::int16_t>(height - 1));
    bytes[65] = 3;
    put_i16(bytes, 66, line);
    for (std::size_t y = 0; y < static_cast<std::size_t>(height); ++y) {
        for (const auto channel : {red_of, green_of, blue_of}) {
            for (std::size_t x = 0; x < static_cast<std::size_t>(line); ++x) {
                const bool inside = x < static_cast<std::size_t>(width);
                bytes.push_back(inside ? channel(colours.at(y * static_cast<std::size_t>(width) + x)) : 0);
            }
        }
    }
    return bytes;
}

/// A picture file of that format; for formats that the loader reads, only the header of a BMP.
inline Bytes picture_file(PictureFormat format, std::int16_t width, std::int16_t height,
                          const Colours& colours) {
    return format == PictureFormat::Tga   ? tga_file(width, height, colours)
           : format == PictureFormat::Pcx ? pcx_file(width, height, colours)
                                          : bmp_header(width, height, 24);
}

class PictureFolder : public TemporaryFolder {
  public:
    explicit PictureFolder(RecordedServices& services) : services_(services) {}

    /// Adds a BMP file with that depth in its header; the loader returns these colours for it.
    void add_bmp(const std::string& name, std::int32_t width, std::int32_t height, const Colours& colours,
                 std::int16_t bit_count = 24) {
        const std::string path = write(name, bmp_header(width, height, bit_count));
        services_.pictures[path] = surface_of(width, height, colours)->Image();
    }

    /// Adds a picture of any format.
    void add(const std::string& name, PictureFormat format, std::int16_t width, std::int16_t height,
             const Colours& colours) {
        const std::string path = write(name, picture_file(format, width, height, colours));
        services_.pictures[path] = surface_of(width, height, colours)->Image();
    }

    /// Adds a BMP file of a single colour.
    void add_plain_bmp(const std::string& name, std::int32_t width, std::int32_t height,
                       Colour colour = 0x102030, std::int16_t bit_count = 24) {
        add_bmp(name, width, height, Colours(static_cast<std::size_t>(width * height), colour), bit_count);
    }

  private:
    RecordedServices& services_;
};

} // namespace varnoth::test
