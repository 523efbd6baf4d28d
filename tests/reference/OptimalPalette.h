// The adaptive palette by plain recursion over plain node records, one step after the other, for the shipped
// octree to be held equal to.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "pictures/cDIB.h"
#include "platform/Colour.h"

namespace varnoth::reference {

struct OptimalPalette {
    std::vector<RGBQUAD> colors; ///< in the order of the node positions
    std::int32_t reductions = 0; ///< nodes reduced on the way
};

/// Nothing for a picture that is not of 32 bits. Fails as the shipped one does.
std::optional<OptimalPalette> optimal_palette(const cDIB& image, std::int32_t maximum, std::int32_t levels,
                                              float red_weight, float green_weight, float blue_weight);

} // namespace varnoth::reference
