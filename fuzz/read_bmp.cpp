// The input is a BMP file, which is decoded as it is and without its last byte.
#include "core/codecs/read_bmp.h"

#include <optional>

#include "fuzzing.h"

namespace {

using namespace varnoth;

constexpr std::int64_t most_pixels = 1 << 14;

std::optional<Bitmap> read(std::span<const std::uint8_t> file) {
    std::optional<Bitmap> picture;
    fuzzing::succeeds([&] { picture = read_bmp(file, most_pixels); });
    return picture;
}

void require_picture(const Bitmap& picture) {
    fuzzing::require(picture.width() > 0 && picture.height() > 0 && picture.bits_per_pixel() == 32 &&
                         std::int64_t{picture.width()} * picture.height() <= most_pixels,
                     "a picture has pixels, and no more than the limit");
    for (std::size_t at = 3; at < picture.bytes().size(); at += 4) {
        fuzzing::require(picture.bytes()[at] == 0, "the fourth byte of every pixel is 0");
    }
}

void require_truncated(const Bitmap& whole, const Bitmap& truncated) {
    fuzzing::require(whole.width() == truncated.width() && whole.height() == truncated.height(),
                     "a truncated file has the size of the whole one");
    for (std::int32_t y = 0; y < whole.height(); ++y) {
        for (std::int32_t x = 0; x < whole.width(); ++x) {
            const Colour colour = truncated.pixel(x, y);
            fuzzing::require(colour == whole.pixel(x, y) || colour == 0,
                             "a truncated file has the pixels of the whole one, or black");
        }
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> file(data, size);
    const std::optional<Bitmap> whole = read(file);
    if (whole) {
        require_picture(*whole);
        const std::optional<Bitmap> truncated = read(file.first(size - 1));
        if (truncated) {
            require_truncated(*whole, *truncated);
        }
    }
    return 0;
}
