// Platform palettes: up to 256 colours with nearest-colour search.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "core/image/Colour.h"

namespace varnoth {

/// One colour of a platform palette, red first. The flags are ignored.
struct PALETTEENTRY {
    std::uint8_t peRed = 0;
    std::uint8_t peGreen = 0;
    std::uint8_t peBlue = 0;
    std::uint8_t peFlags = 0;
};

/// Version 768, the number of valid entries, and the entries.
struct LOGPALETTE {
    std::uint16_t palVersion = 0x300;
    std::uint16_t palNumEntries = 0;
    std::array<PALETTEENTRY, 256> palPalEntry{};
};

class LogicalPalette {
  public:
    /// InvalidPropertyValue when the version is not 768 or the number of entries not 1 to 256.
    explicit LogicalPalette(const LOGPALETTE& record);

    /// The index of the entry nearest to the colour by squared Euclidean distance over red, green and blue;
    /// the lowest of equally near ones.
    std::int32_t GetNearestPaletteIndex(Colour colour) const;

    // Interface: not used by the editor itself.

    /// The number of valid entries.
    std::int32_t size() const { return count_; }

  private:
    // One array per channel, so that the compiler can vectorise the search.
    std::array<std::int16_t, 256> red_{};
    std::array<std::int16_t, 256> green_{};
    std::array<std::int16_t, 256> blue_{};
    std::int32_t count_ = 0;
};

} // namespace varnoth
