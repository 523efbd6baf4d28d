#include "core/codecs/write_tga.h"

#include "core/base/numbers.h"
#include "core/codecs/TgaHeader.h"

namespace varnoth {

namespace {

constexpr std::uint8_t top_row_first = 0x20;
constexpr std::uint8_t alpha_bits = 8;

TgaHeader header_of(std::int32_t width, std::int32_t height) {
    TgaHeader header;
    header.ImageWidth = narrow<std::int16_t>(width);
    header.ImageHeight = narrow<std::int16_t>(height);
    header.ImageDescriptor = top_row_first;
    return header;
}

std::vector<std::uint8_t> bytes_of(const TgaHeader& header) {
    const auto bytes = header.to_bytes();
    return {bytes.begin(), bytes.end()};
}

void append_blue_green_red(std::vector<std::uint8_t>& bytes, std::uint32_t colour) {
    for (const int shift : {0, 8, 16}) {
        bytes.push_back(static_cast<std::uint8_t>(colour >> shift & 0xFF));
    }
}

} // namespace

std::vector<std::uint8_t> write_tga(const IndexedPicture& picture) {
    TgaHeader header = header_of(picture.width, picture.height);
    header.ImageType = 1;
    header.ColorMapType = 1;
    header.ColorMapLength = static_cast<std::int16_t>(picture.colours.size());
    header.ColorMapDepth = 24;
    header.PixelDepth = 8;
    std::vector<std::uint8_t> bytes = bytes_of(header);
    for (const std::uint32_t colour : picture.colours) {
        append_blue_green_red(bytes, colour);
    }
    bytes.insert(bytes.end(), picture.indices.begin(), picture.indices.end());
    return bytes;
}

std::vector<std::uint8_t> write_tga(const RgbaPicture& picture) {
    TgaHeader header = header_of(picture.width, picture.height);
    header.ImageType = 2;
    header.PixelDepth = 32;
    header.ImageDescriptor |= alpha_bits;
    std::vector<std::uint8_t> bytes = bytes_of(header);
    bytes.reserve(bytes.size() + 4 * picture.pixels.size());
    for (const std::uint32_t pixel : picture.pixels) {
        append_blue_green_red(bytes, pixel);
        bytes.push_back(static_cast<std::uint8_t>(pixel >> 24));
    }
    return bytes;
}

} // namespace varnoth
