// The palette that represents the colours of many pictures best.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "core/image/Colour.h"
#include "core/quantize/ColourHistogram.h"

namespace varnoth {

enum class PaletteUse {
    WithoutDither, ///< every pixel gets the nearest entry
    WithDither,    ///< entries are mixed
};

/// A palette of at most `most_entries` entries (InvalidProcedureCall for more than 256, or for 0 threads):
/// the fixed ones first, unchanged, then others in ascending order. If there is an entry for every colour of
/// the histogram, the others are exactly those colours. The same histogram gives the same palette on every
/// machine and with every number of threads.
///
/// The colours are divided into groups as in Wu, "Efficient statistical computations for optimal color
/// quantization", 1992: always by the cut that reduces the squared error most. Weighted k-means refines the
/// means of the groups. Without a dither, a colour's weight grows with the density of the colours around it,
/// because errors show most in smooth areas, which have few, frequent colours. For a dither, it shrinks, and
/// some of the entries are extreme colours, because no mixture reaches a colour that is not between entries.
std::vector<RGBQUAD> best_palette(const ColourHistogram& histogram, std::size_t most_entries, PaletteUse use,
                                  std::span<const RGBQUAD> fixed = {}, std::size_t threads = 1);

} // namespace varnoth
