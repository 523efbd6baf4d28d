// Reference implementation of the adaptive palette: an octree with plain recursion over plain nodes.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "core/image/Colour.h"
#include "core/image/cDIB.h"

namespace varnoth::reference {

struct OptimalPalette {
    std::vector<RGBQUAD> colors; ///< in the order of the node positions
    std::int32_t reductions = 0; ///< number of nodes that were reduced
};

/// Returns nothing for a picture that is not 32-bit. Fails like the program's octree.
std::optional<OptimalPalette> optimal_palette(const cDIB& image, std::int32_t maximum, std::int32_t levels,
                                              float red_weight, float green_weight, float blue_weight);

} // namespace varnoth::reference
