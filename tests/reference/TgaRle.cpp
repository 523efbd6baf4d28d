#include "reference/TgaRle.h"

#include <array>
#include <cstddef>

#include "core/base/numbers.h"

namespace varnoth::reference {

std::vector<std::uint8_t> encode_tga_rle(std::span<const std::uint8_t> bytes, std::int32_t width) {
    using Pixel = std::array<std::uint8_t, 3>;
    const auto byte_count = static_cast<std::int32_t>(bytes.size());
    const std::int32_t n = byte_count / 3;
    std::vector<Pixel> pixels(static_cast<std::size_t>(n) + 1, Pixel{0, 0, 0});
    for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i) {
        pixels[i] = {bytes[3 * i], bytes[3 * i + 1], bytes[3 * i + 2]};
    }
    const auto px = [&](std::int32_t i) { return pixels.at(static_cast<std::size_t>(i)); };
    std::vector<std::uint8_t> out;
    const auto put = [&](const Pixel& pixel) { out.insert(out.end(), pixel.begin(), pixel.end()); };

    std::int32_t row = 1;
    std::int32_t i = 0;
    while (i <= n) {
        std::int32_t run = 0;
        if (i < n) {
            while (true) {
                if (px(i) != px(i + 1)) {
                    break;
                }
                if (run == 127) {
                    break;
                }
                if (i + 1 == width * row) {
                    break;
                }
                i = i + 1;
                run = run + 1;
                if (i == n) {
                    break;
                }
            }
        }
        if (run > 0) {
            out.push_back(static_cast<std::uint8_t>(128 + run));
            put(px(i));
            if (i + 1 == width * row) {
                row = row + 1;
                if (divide(byte_count, width) < row) {
                    break;
                }
            }
            i = i + 1;
            continue;
        }
        const std::int32_t s = i;
        std::int32_t raw = 0;
        if (i < n) {
            while (true) {
                if (px(i) == px(i + 1)) {
                    break;
                }
                i = i + 1;
                raw = raw + 1;
                if (i + 1 == width * row) {
                    break;
                }
                if (i == n) {
                    break;
                }
            }
        }
        if (raw > 0) {
            out.push_back(narrow<std::uint8_t>(raw - 1));
            for (std::int32_t k = s; k < s + raw; ++k) {
                put(px(k));
            }
            i = s + raw - 1;
        } else {
            i = s;
        }
        if (i + 1 == width * row) {
            row = row + 1;
            if (divide(n + 1, width) < row) {
                break;
            }
        }
        i = i + 1;
    }
    return out;
}

} // namespace varnoth::reference
