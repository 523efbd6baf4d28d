#include "reference/LoadPCX.h"

#include <cmath>

namespace varnoth::reference {

std::vector<std::uint8_t> decode_pcx_rle(const std::vector<std::uint8_t>& bytes) {
    std::vector<std::uint8_t> output;
    for (std::size_t i = 0; i < bytes.size() - 1; ++i) {
        int count = 1;
        std::uint8_t value = bytes[i];
        if (value >= 192) {
            count = value - 192;
            ++i;
            value = bytes[i];
        }
        for (int k = 0; k < count; ++k) {
            output.push_back(value);
        }
    }
    return output;
}

std::vector<std::uint8_t> merge_pcx_planes(const std::vector<std::uint8_t>& bytes,
                                           std::int32_t bytes_per_line, std::int32_t width,
                                           std::int32_t height) {
    const std::int32_t line = width / 2;
    std::vector<std::uint8_t> output;
    const auto bit = [&](std::int32_t at, int position) {
        if (at < 0 || at >= static_cast<std::int32_t>(bytes.size())) {
            return 0;
        }
        return (bytes[static_cast<std::size_t>(at)] & (128 >> (position - 1))) != 0 ? 1 : 0;
    };
    for (std::int32_t row = 0; row < height; ++row) {
        const std::int32_t groups =
            line % 4 == 0 ? line / 4 : static_cast<std::int32_t>(std::nearbyint(line / 4.0)) + 1;
        std::int32_t in_line = 0;
        for (std::int32_t group = 0; group < groups; ++group) {
            for (int k = 0; k < 4; ++k) {
                int byte = 0;
                for (int plane = 0; plane < 4; ++plane) {
                    const std::int32_t at = 4 * bytes_per_line * row + plane * bytes_per_line + group;
                    byte += (16 << plane) * bit(at, 2 * k + 1) + (1 << plane) * bit(at, 2 * k + 2);
                }
                if (in_line < line) {
                    output.push_back(static_cast<std::uint8_t>(byte));
                    ++in_line;
                }
            }
        }
    }
    return output;
}

} // namespace varnoth::reference
