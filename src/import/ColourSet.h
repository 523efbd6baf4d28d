// A set of plain colours with constant-time search. It grows and is emptied, nothing is ever taken out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/Colour.h"

namespace varnoth {

/// Open addressing with linear probing, at most half full; no_colour marks a free slot.
class ColourSet {
  public:
    /// Whether the colour has been put in.
    bool contains(Colour colour) const {
        return !slots_.empty() && slots_[slot_of(slots_, colour)] == colour;
    }

    /// Puts the colour in unless it is there already.
    void insert(Colour colour) {
        if (2 * (count_ + 1) > slots_.size()) {
            grow();
        }
        Colour& slot = slots_[slot_of(slots_, colour)];
        if (slot == no_colour) {
            slot = colour;
            ++count_;
        }
    }

    void clear() {
        slots_.clear();
        count_ = 0;
    }

  private:
    // Where the colour stands or would stand. The number of slots is a power of two.
    static std::size_t slot_of(const std::vector<Colour>& slots, Colour colour) {
        const std::size_t mask = slots.size() - 1;
        std::size_t slot = (static_cast<std::uint32_t>(colour) * 2654435761U >> 8) & mask;
        while (slots[slot] != no_colour && slots[slot] != colour) {
            slot = (slot + 1) & mask;
        }
        return slot;
    }

    void grow() {
        std::vector<Colour> larger(slots_.empty() ? 1024 : slots_.size() * 2, no_colour);
        for (const Colour colour : slots_) {
            if (colour != no_colour) {
                larger[slot_of(larger, colour)] = colour;
            }
        }
        slots_.swap(larger);
    }

    std::vector<Colour> slots_;
    std::size_t count_ = 0;
};

} // namespace varnoth
