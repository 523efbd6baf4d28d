// JPEG files that end in the middle, as an interrupted copy leaves them. A decoder makes
// up the missing rows; what is here helps to tell them from the rows that the file brings. Nothing is decoded
// here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace varnoth {

/// Where a cut file ends.
struct JpegCut {
    std::size_t end = 0;       ///< bytes of the file that count: half a marker or half a segment does not
    bool in_first_scan = true; ///< whether rows are missing, and not only the detail of later scans
    bool restarts = false;     ///< whether the scan is divided by restart markers
    unsigned next_restart = 0; ///< number, 0 to 7, of the restart marker that would follow
};

/// The cut of a file that ends in the data of its first scan, or between two scans. Nothing for every other
/// file, also for one that ends before its first scan or in the data of a later one. Markers as in ITU-T
/// T.81, annex B.
std::optional<JpegCut> find_jpeg_cut(std::span<const std::uint8_t> file);

/// How many fillers there are.
inline constexpr unsigned jpeg_fillers = 4;

/// Harmless bytes to put behind the cut: entropy-coded data of no meaning, with restart markers where the
/// scan has them. The fillers differ from their first two bits on, so that no two mean the same in the block
/// that the file leaves unfinished.
std::vector<std::uint8_t> jpeg_filler(const JpegCut& cut, unsigned number);

} // namespace varnoth
