#include "codecs/BmpMod.h"

#include <cstddef>
#include <span>

#include "base/bytes.h"
#include "base/files.h"
#include "base/numbers.h"

namespace varnoth::BmpMod {

BITMAPFILEHEADER FileHeader;
BITMAPINFOHEADER InfoHeader;

namespace {

constexpr std::size_t file_header_size = 14;
constexpr std::size_t info_header_size = 40;

BITMAPFILEHEADER file_header_from(std::span<const std::uint8_t> bytes) {
    return {
        {bytes[0], bytes[1]}, get_i32(bytes, 2), get_i16(bytes, 6), get_i16(bytes, 8), get_i32(bytes, 10)};
}

BITMAPINFOHEADER info_header_from(std::span<const std::uint8_t> bytes) {
    return {get_i32(bytes, 0),  get_i32(bytes, 4),  get_i32(bytes, 8),  get_i16(bytes, 12),
            get_i16(bytes, 14), get_u32(bytes, 16), get_i32(bytes, 20), get_i32(bytes, 24),
            get_i32(bytes, 28), get_i32(bytes, 32), get_i32(bytes, 36)};
}

bool read_records(const std::string& fileName) {
    const std::vector<std::uint8_t> head = read_head(fileName, file_header_size + info_header_size);
    if (head.size() < file_header_size + info_header_size) {
        return false;
    }
    const std::span<const std::uint8_t> bytes = head;
    FileHeader = file_header_from(bytes.first(file_header_size));
    InfoHeader = info_header_from(bytes.subspan(file_header_size));
    return true;
}

// Stricter than the format: a top-down bitmap and the older 12-byte header are refused.
bool is_usable() {
    return FileHeader.bfType[0] == 'B' && FileHeader.bfType[1] == 'M' && FileHeader.bfOffBits >= 54 &&
           InfoHeader.biSize == 40 && InfoHeader.biHeight > 0 && InfoHeader.biWidth > 0 &&
           InfoHeader.biPlanes == 1 && InfoHeader.biSizeImage < FileHeader.bfSize;
}

} // namespace

Truth ProbeBmp(const std::string& fileName, std::int32_t& width, std::int32_t& height, std::int16_t& bitCount,
               std::int16_t& compression) {
    width = -1;
    height = -1;
    bitCount = -1;
    compression = -1;
    if (!read_records(fileName) || !is_usable()) {
        return False;
    }
    width = InfoHeader.biWidth;
    height = InfoHeader.biHeight;
    bitCount = InfoHeader.biBitCount;
    compression = narrow<std::int16_t>(InfoHeader.biCompression);
    return True;
}

} // namespace varnoth::BmpMod
