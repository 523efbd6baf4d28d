// The colours that are already on the sheet of collected colours: a set without removal of single elements.
#pragma once

#include <cstddef>
#include <vector>

#include "core/image/Colour.h"

namespace varnoth {

/// One bit for each of the 2^24 colours: takes 2 MiB from the first insertion until clear().
class WrittenColours {
  public:
    /// Whether the set contains a plain colour, 0 to 0xFFFFFF.
    bool contains(Colour colour) const { return !held_.empty() && held_[static_cast<std::size_t>(colour)]; }

    /// Inserts a plain colour.
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
