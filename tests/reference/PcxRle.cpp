#include "reference/PcxRle.h"

#include <cstddef>

namespace varnoth::reference {

std::vector<std::uint8_t> encode_pcx_rle(std::span<const std::uint8_t> bytes) {
    std::vector<std::uint8_t> out;
    std::size_t i = 0;
    while (i < bytes.size()) {
        int run = 0;
        while (i != bytes.size() - 1 && bytes[i] == bytes[i + 1] && run != 62) {
            i = i + 1;
            run = run + 1;
        }
        if (run > 0) {
            out.push_back(static_cast<std::uint8_t>(193 + run));
            out.push_back(bytes[i]);
        } else if (bytes[i] >= 192) {
            out.push_back(193);
            out.push_back(bytes[i]);
        } else {
            out.push_back(bytes[i]);
        }
        i = i + 1;
    }
    return out;
}

} // namespace varnoth::reference
