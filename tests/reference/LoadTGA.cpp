#include "reference/LoadTGA.h"

namespace varnoth::reference {

std::vector<std::uint8_t> decode_tga_rle(const std::vector<std::uint8_t>& bytes, std::int32_t pixel_bytes,
                                         std::int32_t total) {
    std::vector<std::uint8_t> output(static_cast<std::size_t>(total) + 1);
    const auto copy_byte = [&](std::int32_t to, std::int32_t from) {
        const bool inside =
            to < static_cast<std::int32_t>(output.size()) && from < static_cast<std::int32_t>(bytes.size());
        if (inside) {
            output[static_cast<std::size_t>(to)] = bytes[static_cast<std::size_t>(from)];
        }
    };
    std::int32_t o = 0;
    std::int32_t s = 0;
    while (o < total && s <= static_cast<std::int32_t>(bytes.size()) - 1) {
        const int code = bytes[static_cast<std::size_t>(s)];
        if (code > 127) {
            for (int repeat = 0; repeat < code - 127; ++repeat) {
                for (std::int32_t k = 0; k < pixel_bytes; ++k) {
                    copy_byte(o + repeat * pixel_bytes + k, s + 1 + k);
                }
            }
            o += (code - 127) * pixel_bytes;
            s += pixel_bytes + 1;
        } else {
            for (std::int32_t k = 0; k < (code + 1) * pixel_bytes; ++k) {
                copy_byte(o + k, s + 1 + k);
            }
            o += (code + 1) * pixel_bytes;
            s += (code + 1) * pixel_bytes + 1;
        }
    }
    return output;
}

} // namespace varnoth::reference
