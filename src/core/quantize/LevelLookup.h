// Nearest palette entries for the 16 by 16 by 16 evenly spaced colours. A picture asks for some hundreds of
// them only, so each is sought when it is first asked for.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "core/image/LogicalPalette.h"

namespace varnoth {

/// Place (blue * 16 + green) * 16 + red stands for the colour of these levels, 0 to 15, of value level * 17.
class LevelLookup {
  public:
    static constexpr std::size_t places = 4096;

    /// Of a platform palette that holds red and blue crossed.
    explicit LevelLookup(const LogicalPalette& palette) : palette_(palette) { known_.fill(unknown); }

    /// Index of the entry nearest to the colour of the place, as GetNearestPaletteIndex has it.
    std::uint8_t operator[](std::size_t place) {
        if (known_[place] == unknown) {
            known_[place] = sought(place);
        }
        return static_cast<std::uint8_t>(known_[place]);
    }

  private:
    static constexpr std::int16_t unknown = -1;

    std::int16_t sought(std::size_t place) const;

    LogicalPalette palette_;
    std::array<std::int16_t, places> known_;
};

} // namespace varnoth
