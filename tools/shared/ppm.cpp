#include "shared/ppm.h"

#include "core/base/files.h"

namespace varnoth {

std::vector<std::uint8_t> rgb_bytes(const Bitmap& bitmap) {
    std::vector<std::uint8_t> bytes;
    std::vector<RGBQUAD> row(static_cast<std::size_t>(bitmap.width()));
    for (std::int32_t y = 0; y < bitmap.height(); ++y) {
        read_pixels(bitmap, 0, y, row);
        for (const RGBQUAD& pixel : row) {
            bytes.insert(bytes.end(), {pixel.rgbRed, pixel.rgbGreen, pixel.rgbBlue});
        }
    }
    return bytes;
}

void write_ppm(const std::string& path, const Bitmap& bitmap) {
    const std::string header =
        "P6\n" + std::to_string(bitmap.width()) + " " + std::to_string(bitmap.height()) + "\n255\n";
    OutputFile file(path);
    file.write(std::vector<std::uint8_t>(header.begin(), header.end()));
    file.write(rgb_bytes(bitmap));
    file.close();
}

} // namespace varnoth
