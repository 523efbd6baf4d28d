// BMP files that end before their last pixel, as an interrupted copy leaves them. A decoder shows one thing
// or another in place of what is missing; what is here helps to tell it from what the file brings. Nothing is
// decoded.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace varnoth {

/// Where a cut file ends and how it may be continued.
struct BmpCut {
    std::size_t end = 0;     ///< bytes of the file that count: half a run-length command does not
    std::size_t width = 0;   ///< in pixels
    std::size_t rows = 0;    ///< of the whole picture
    std::size_t missing = 0; ///< bytes of plain pixels that the file lacks
    bool run_length_encoded = false;
};

/// The cut of a file that ends within its pixels; nothing for a file that is whole or ends in its headers.
/// Headers and run-length commands as documented for BITMAPINFOHEADER, BITMAPCOREHEADER, BI_RLE8 and BI_RLE4.
std::optional<BmpCut> find_bmp_cut(std::span<const std::uint8_t> file);

/// Bytes to put behind the cut: pixels whose bytes all have that value, at least to the end of the picture.
std::vector<std::uint8_t> bmp_filler(const BmpCut& cut, std::uint8_t value);

} // namespace varnoth
