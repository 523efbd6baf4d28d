// Lists of colours for tests.
#pragma once

#include <cstddef>
#include <vector>

#include "core/image/Colour.h"

namespace varnoth::test {

/// `count` consecutive colours from `first` on; none of them is black by default.
inline std::vector<Colour> series(std::size_t count, Colour first = 1) {
    std::vector<Colour> colours(count);
    for (std::size_t i = 0; i < count; ++i) {
        colours[i] = first + static_cast<Colour>(i);
    }
    return colours;
}

} // namespace varnoth::test
