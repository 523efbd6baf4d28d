#include "core/codecs/BmpMod.h"

#include <cstddef>
#include <span>

#include "core/base/files.h"
#include "core/base/numbers.h"

namespace varnoth::BmpMod {

BITMAPFILEHEADER FileHeader;
BITMAPINFOHEADER InfoHeader;

namespace {

bool read_records(const std::string& fileName) {
    constexpr std::size_t size = BITMAPFILEHEADER::size + BITMAPINFOHEADER::size;
    const std::vector<std::uint8_t> head = read_head(fileName, size);
    if (head.size() < size) {
        return false;
    }
    const std::span<const std::uint8_t, size> bytes(head);
    FileHeader = BITMAPFILEHEADER::from_bytes(bytes.first<BITMAPFILEHEADER::size>());
    InfoHeader = BITMAPINFOHEADER::from_bytes(bytes.last<BITMAPINFOHEADER::size>());
    return true;
}

// Stricter than the format: rejects top-down bitmaps and the older 12-byte header.
bool is_usable() {
    return FileHeader.is_bmp() && FileHeader.bfOffBits >= 54 && InfoHeader.biSize == 40 &&
           InfoHeader.biHeight > 0 && InfoHeader.biWidth > 0 && InfoHeader.biPlanes == 1 &&
           InfoHeader.biSizeImage < FileHeader.bfSize;
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
