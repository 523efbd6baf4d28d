#include "reference/Dither.h"

#include <algorithm>
#include <vector>

#include "core/base/RunTimeFailure.h"
#include "core/base/numbers.h"
#include "core/image/cDIB.h"
#include "reference/OptimalPalette.h"

namespace varnoth::reference {

namespace {

constexpr std::int32_t threshold256[16] = {16, 144, 48, 176, 208, 80,  240, 112,
                                           64, 192, 32, 160, 256, 128, 224, 96};
constexpr std::int32_t offset16[16] = {1, 9, 3, 11, 13, 5, 15, 7, 4, 12, 2, 10, 16, 8, 14, 6};
constexpr std::int32_t offset51[16] = {3, 29, 10, 35, 41, 16, 48, 22, 13, 38, 6, 32, 51, 26, 45, 19};

std::int32_t level16(std::int32_t i) {
    return std::clamp(round_to_even<std::int32_t>(i / 17.0), 0, 15);
}

std::int32_t level6(std::int32_t i) {
    return std::clamp(round_to_even<std::int32_t>(i / 51.0), 0, 5);
}

std::vector<RGBQUAD> cube() {
    std::vector<RGBQUAD> colors;
    for (int blue = 0; blue < 6; ++blue) {
        for (int green = 0; green < 6; ++green) {
            for (int red = 0; red < 6; ++red) {
                colors.push_back({static_cast<std::uint8_t>(blue * 51), static_cast<std::uint8_t>(green * 51),
                                  static_cast<std::uint8_t>(red * 51), 0});
            }
        }
    }
    return colors;
}

std::vector<RGBQUAD> own_palette(const cDIB& picture) {
    cDIB sample;
    sample.CreateFromStdPicture(picture.Image(), true);
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    sample.GetBestFitInfo(150, 150, x, y, width, height, false);
    sample.Resize(std::max(width, 1), std::max(height, 1), true);
    return optimal_palette(sample, 256, 8, 1.0F, 1.0F, 1.0F).value().colors;
}

void reduce(std::int32_t dither_mode, const cDIB& source, cDIB& target) {
    const std::vector<RGBQUAD> palette = dither_mode == 1 ? own_palette(source) : cube();
    std::array<std::uint8_t, 4096> lookup{};
    if (dither_mode == 1) {
        lookup = color_lookup(palette);
    }
    std::vector<std::uint8_t> bytes;
    for (const RGBQUAD& entry : palette) {
        bytes.insert(bytes.end(), {entry.rgbBlue, entry.rgbGreen, entry.rgbRed, entry.rgbReserved});
    }
    bytes.resize(1024);
    target.Create(source.Width(), source.Height(), 8);
    target.SetPalette(bytes);
    for (std::int32_t y = 0; y < source.Height(); ++y) {
        for (std::int32_t x = 0; x < source.Width(); ++x) {
            const auto place = static_cast<std::size_t>(x % 4 + 4 * (y % 4));
            const std::uint8_t* pixel = source.lpBits() + y * source.BytesPerScanline() + 4 * x;
            std::uint8_t& index = target.lpBits()[y * target.BytesPerScanline() + x];
            if (dither_mode == 1) {
                const std::int32_t blue = lookup_level(pixel[0], place);
                const std::int32_t green = lookup_level(pixel[1], place);
                const std::int32_t red = lookup_level(pixel[2], place);
                index = lookup.at(static_cast<std::size_t>((blue * 16 + green) * 16 + red));
            } else {
                const std::int32_t blue = cube_level(pixel[0], place);
                const std::int32_t green = cube_level(pixel[1], place);
                const std::int32_t red = cube_level(pixel[2], place);
                index = static_cast<std::uint8_t>((blue * 6 + green) * 6 + red);
            }
        }
    }
}

} // namespace

std::int32_t lookup_level(std::int32_t channel, std::size_t place) {
    if (level16(channel) < threshold256[place]) {
        return level16(channel + 8 - offset16[place]);
    }
    return level16(channel - offset16[place]);
}

std::int32_t cube_level(std::int32_t channel, std::size_t place) {
    if (level6(channel) < threshold256[place]) {
        return level6(channel + 26 - offset51[place]);
    }
    return level6(channel - offset51[place]);
}

std::array<std::uint8_t, 4096> color_lookup(std::span<const RGBQUAD> entries) {
    std::array<std::uint8_t, 4096> lookup{};
    for (int blue = 0; blue < 16; ++blue) {
        for (int green = 0; green < 16; ++green) {
            for (int red = 0; red < 16; ++red) {
                std::size_t nearest = 0;
                std::int32_t nearest_distance = 1 << 30;
                for (std::size_t i = 0; i < entries.size(); ++i) {
                    const std::int32_t to_red = entries[i].rgbRed - red * 17;
                    const std::int32_t to_green = entries[i].rgbGreen - green * 17;
                    const std::int32_t to_blue = entries[i].rgbBlue - blue * 17;
                    const std::int32_t distance = to_red * to_red + to_green * to_green + to_blue * to_blue;
                    if (distance < nearest_distance) {
                        nearest_distance = distance;
                        nearest = i;
                    }
                }
                lookup.at(static_cast<std::size_t>((blue * 16 + green) * 16 + red)) =
                    static_cast<std::uint8_t>(nearest);
            }
        }
    }
    return lookup;
}

bool transform_to_8bit(std::int32_t dither_mode, PictureSurface& source, PictureSurface& target) {
    const auto width = round_to_even<std::int32_t>(source.Width());
    const auto height = round_to_even<std::int32_t>(source.Height());
    cDIB copy;
    if (!copy.CreateFromHdc(source.hDC(), width, height)) {
        return false;
    }
    const auto shown_width = round_to_even<std::int32_t>(source.ScaleWidth());
    const auto shown_height = round_to_even<std::int32_t>(source.ScaleHeight());
    copy.Stretch(source.hDC(), 0, 0, shown_width, shown_height, 0, 0, copy.Width(), copy.Height(), SRCCOPY);
    cDIB reduced;
    reduce(dither_mode, copy, reduced);
    reduced.Stretch(target.hDC(), 0, 0, shown_width, shown_height, 0, 0, reduced.Width(), reduced.Height(),
                    SRCCOPY);
    target.Refresh();
    return true;
}

} // namespace varnoth::reference
