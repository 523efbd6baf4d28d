#include "reference/Mixpals.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "core/base/RunTimeFailure.h"

namespace varnoth::reference {

void Mixpals::InitColorTable() {
    ColorCount = 0;
    ColorTable = std::vector<RGBQUAD>(1001);
}

bool Mixpals::PrepareMixBits(const PictureSurface& surface) {
    if (surface.ScaleWidth() == info_.bmWidth && surface.ScaleHeight() == info_.bmHeight) {
        return true;
    }
    info_ = surface.description();
    if (info_.bmBitsPixel < 24) {
        channels_ = width_ = height_ = 1;
        bits_ = std::vector<std::uint8_t>(1);
        return false;
    }
    if (info_.bmWidth == 0) {
        fail(Failure::DivisionByZero);
    }
    if (info_.bmHeight == 0) {
        fail(Failure::SubscriptOutOfRange);
    }
    const double quotient = static_cast<double>(info_.bmWidthBytes) / info_.bmWidth;
    channels_ = static_cast<std::int32_t>(std::nearbyint(quotient - 1.0)) + 1;
    width_ = info_.bmWidth;
    height_ = info_.bmHeight;
    bits_ = std::vector<std::uint8_t>(static_cast<std::size_t>(channels_ * width_ * height_));
    return true;
}

void Mixpals::ReadMixBits(const PictureSurface& surface) {
    const auto bytes = surface.bitmap().bytes();
    for (std::size_t i = 0; i < bytes.size() && i < bits_.size(); ++i) {
        bits_[i] = bytes[i];
    }
}

std::uint8_t Mixpals::element(std::int32_t channel, std::int32_t x, std::int32_t y) const {
    if (channel >= channels_ || x >= width_ || y >= height_) {
        fail(Failure::SubscriptOutOfRange);
    }
    return bits_[static_cast<std::size_t>((y * width_ + x) * channels_ + channel)];
}

bool Mixpals::SeekColorInTable(std::uint8_t red, std::uint8_t green, std::uint8_t blue,
                               std::int32_t limit) const {
    const auto upper_bound = static_cast<std::int32_t>(ColorTable.size()) - 1;
    if (upper_bound < 0 || limit < 0) {
        return false;
    }
    for (std::int32_t position = 0; position <= limit && position <= upper_bound; ++position) {
        const RGBQUAD& entry = ColorTable[static_cast<std::size_t>(position)];
        if (entry.rgbRed == red && entry.rgbGreen == green && entry.rgbBlue == blue) {
            return true;
        }
    }
    return false;
}

bool Mixpals::AddPictureColors(const PictureSurface& surface) {
    if (!PrepareMixBits(surface)) {
        return false;
    }
    ReadMixBits(surface);
    for (std::int32_t y = 0; y <= surface.ScaleHeight() - 1; ++y) {
        for (std::int32_t x = 0; x <= surface.ScaleWidth() - 1; ++x) {
            const std::uint8_t red = element(2, x, y);
            const std::uint8_t green = element(1, x, y);
            const std::uint8_t blue = element(0, x, y);
            if (!SeekColorInTable(red, green, blue, ColorCount)) {
                ColorTable.at(static_cast<std::size_t>(ColorCount)) = {blue, green, red, 0};
                ColorCount += 1;
            }
            if (ColorCount > static_cast<std::int32_t>(ColorTable.size()) - 1) {
                ColorTable.resize(ColorTable.size() + 1000);
            }
        }
    }
    return true;
}

void Mixpals::DrawColorTable(PictureSurface& surface) const {
    surface.SetWidth(512);
    surface.SetHeight(512);
    const auto colour_at = [&](std::int32_t position) {
        const RGBQUAD& entry = ColorTable.at(static_cast<std::size_t>(position));
        return make_colour(entry.rgbRed, entry.rgbGreen, entry.rgbBlue);
    };
    surface.SetBackColor(colour_at(0));
    std::int32_t x = 0;
    std::int32_t y = 0;
    for (std::int32_t position = 0; position <= ColorCount; ++position) {
        surface.PSet(x, y, colour_at(position));
        if (!(x > surface.ScaleWidth())) {
            x += 1;
        } else {
            x = 0;
            y += 1;
        }
    }
    for (y = 0; y <= surface.ScaleHeight() - 1; ++y) {
        const Colour here = surface.Point(0, y);
        const Colour below = surface.Point(0, y + 1);
        if (here == surface.BackColor() && below == surface.BackColor()) {
            surface.SetHeight(y + 1);
            break;
        }
    }
}

bool Mixpals::SeekColorInPalette(std::uint8_t red, std::uint8_t green, std::uint8_t blue,
                                 std::int32_t limit) const {
    if (limit < 0) {
        return false;
    }
    for (std::int32_t position = 0; position <= 255 && position <= limit; ++position) {
        const RGBQUAD& entry = ImportPalette[static_cast<std::size_t>(position)];
        if (entry.rgbRed == red && entry.rgbGreen == green && entry.rgbBlue == blue) {
            return true;
        }
    }
    return false;
}

void Mixpals::FinalizePalette(const PictureSurface& surface) {
    InitColorTable();
    PrepareMixBits(surface);
    ReadMixBits(surface);
    for (std::int32_t y = 0; y <= surface.ScaleHeight() - 1; ++y) {
        for (std::int32_t x = 0; x <= surface.ScaleWidth() - 1; ++x) {
            const std::uint8_t red = element(2, x, y);
            const std::uint8_t green = element(1, x, y);
            const std::uint8_t blue = element(0, x, y);
            if (!SeekColorInPalette(red, green, blue, ColorCount)) {
                if (ColorCount > 255) {
                    fail(Failure::SubscriptOutOfRange);
                }
                ImportPalette[static_cast<std::size_t>(ColorCount)] = {blue, green, red, 0};
                ColorCount += 1;
            }
        }
    }
    MakeLookupPalette();
}

void Mixpals::SwapTransparent(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    bool moved = false;
    RGBQUAD remembered;
    for (std::size_t i = 0; i <= 255; ++i) {
        const RGBQUAD entry = ImportPalette[i];
        if (entry.rgbRed != red || entry.rgbGreen != green || entry.rgbBlue != blue) {
            continue;
        }
        if (!moved) {
            remembered = ImportPalette[255];
            ImportPalette[255] = {blue, green, red, 0};
            ImportPalette[i] = remembered;
            moved = true;
        } else {
            ImportPalette[255] = {blue, green, red, 0};
            ImportPalette[i] = remembered;
        }
    }
}

void Mixpals::MakeLookupPalette() {
    lookup_ = ImportPalette;
    has_lookup_ = true;
}

std::int16_t Mixpals::nearest_index(std::uint8_t red, std::uint8_t green, std::uint8_t blue) const {
    if (!has_lookup_) {
        fail(Failure::Overflow);
    }
    std::int16_t best = 0;
    std::int32_t best_distance = 4 * 256 * 256;
    for (std::int16_t i = 0; i < 256; ++i) {
        const RGBQUAD& entry = lookup_[static_cast<std::size_t>(i)];
        const std::int32_t to_red = entry.rgbRed - red;
        const std::int32_t to_green = entry.rgbGreen - green;
        const std::int32_t to_blue = entry.rgbBlue - blue;
        const std::int32_t distance = to_red * to_red + to_green * to_green + to_blue * to_blue;
        if (distance < best_distance) {
            best_distance = distance;
            best = i;
        }
    }
    return best;
}

} // namespace varnoth::reference
