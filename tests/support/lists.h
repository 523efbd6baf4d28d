// Lists of bytes, colours and texts, and short ways to write them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

#include "core/image/Colour.h"

namespace varnoth::test {

using Bytes = std::vector<std::uint8_t>;
using Colours = std::vector<Colour>;
using Texts = std::vector<std::string>;

inline Bytes joined(const std::vector<Bytes>& pieces) {
    Bytes all;
    for (const Bytes& piece : pieces) {
        all.insert(all.end(), piece.begin(), piece.end());
    }
    return all;
}

/// 1, 2, 3 and so on.
inline Bytes counting(std::size_t count) {
    Bytes bytes(count);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{1});
    return bytes;
}

/// `count` consecutive colours from `first` on; none of them is black by default.
inline Colours series(std::size_t count, Colour first = 1) {
    Colours colours(count);
    std::iota(colours.begin(), colours.end(), first);
    return colours;
}

} // namespace varnoth::test
