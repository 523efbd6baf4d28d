// A set of plain colours. It grows and is emptied, nothing is ever taken out.
#pragma once

#include <cstddef>
#include <vector>

#include "core/image/Colour.h"

namespace varnoth {

/// One bit for every colour there is, 2 MiB from the first insertion until it is emptied: as much for a few
/// colours as for all of them.
class ColourSet {
  public:
    /// Whether the colour has been put in; a plain one, 0 to 0xFFFFFF.
    bool contains(Colour colour) const { return !held_.empty() && held_[static_cast<std::size_t>(colour)]; }

    /// Puts a plain colour in.
    void insert(Colour colour) {
        if (held_.empty()) {
            held_.resize(colours);
        }
        held_[static_cast<std::size_t>(colour)] = true;
    }

    void clear() { std::vector<bool>().swap(held_); }

  private:
    static constexpr std::size_t colours = 0x1000000;

    std::vector<bool> held_;
};

} // namespace varnoth
