// One palette of up to 256 colours with a platform palette for nearest-colour search. It makes the standard
// palettes (greys, the 16 system colours, colour cubes, a web-safe table) and the palette that suits a
// picture best.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "core/image/cDIB.h"
#include "core/image/Colour.h"
#include "core/image/LogicalPalette.h"

namespace varnoth {

/// A new object has neither colours nor a platform palette. Until the first Initialize or Create..., whatever
/// reads or writes colours fails with SubscriptOutOfRange. Changed entries reach the platform palette only by
/// BuildLogicalPalette.
class cPal8bpp {
  public:
    cPal8bpp() = default;
    cPal8bpp(const cPal8bpp&) = delete;
    cPal8bpp& operator=(const cPal8bpp&) = delete;

    /// 256 black colours of which `entries` count as valid; the number is taken as it comes.
    void Initialize(std::int16_t entries);

    /// Makes the platform palette of the valid entries. With fewer than 1 or more than 256 of them there is
    /// none.
    void BuildLogicalPalette();

    /// Back to the state of a new object.
    void Destroy();

    /// The colour of the entry that ClosestIndex gives.
    void ClosestColor(std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::uint8_t& closest_red,
                      std::uint8_t& closest_green, std::uint8_t& closest_blue) const;

    /// Index of the entry of the platform palette nearest to the colour, the lowest among equals. Overflow
    /// without a platform palette: the index that means "none" does not fit a byte.
    void ClosestIndex(std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::uint8_t& index) const;

    /// Whether all valid entries are grey; false without any.
    bool IsGreyScale() const;

    /// 2, 16 or 256 greys from black to white for kind 0, 1, 2. Another kind is the caller's error:
    /// SubscriptOutOfRange, and nothing changes.
    void CreateGreyScale(std::int32_t kind);

    /// The 16 system colours, dark ones first.
    void CreateEGA();

    /// A colour cube of 2, 3, 4, 5 or 6 levels a channel for kind 0 to 4, red varying fastest, blue slowest.
    /// Another kind is the caller's error: SubscriptOutOfRange, and nothing changes.
    void CreateHalftone(std::int32_t kind);

    /// Dark system colours, the rest of the 6 by 6 by 6 cube, one black, 31 greys, bright system colours.
    void CreateWebsafe();

    /// The colours that suit a 32-bit picture best, at most `maximum` (eight may stay however low it is), by
    /// an octree of `levels` levels whose splits see each channel multiplied by its weight. A picture of
    /// another depth changes nothing. Overflow when levels is no byte or a leaf's sums leave 32 bits;
    /// SubscriptOutOfRange when the levels are too few or too many for the picture (see Octree) or more than
    /// 256 colours are left.
    void CreateOptimal(const cDIB& Image, std::int32_t maximum, std::int32_t levels, float RWeight,
                       float GWeight, float BWeight);

    /// All 256 entries, valid or not.
    std::span<RGBQUAD, 256> lpPalette();
    std::span<const RGBQUAD, 256> lpPalette() const;

    /// Null when there is no platform palette. Its entries hold red and blue crossed.
    const LogicalPalette* hPal() const { return logical_palette_ ? &*logical_palette_ : nullptr; }

    /// How many entries are valid.
    std::int16_t Entries() const { return entries_; }

    void SetEntries(std::int16_t entries) { entries_ = entries; }

    /// One channel of an entry, valid or not. The platform palette does not follow a change.
    std::uint8_t rgbR(std::uint8_t index) const { return lpPalette()[index].rgbRed; }

    /// Likewise.
    std::uint8_t rgbG(std::uint8_t index) const { return lpPalette()[index].rgbGreen; }

    /// Likewise.
    std::uint8_t rgbB(std::uint8_t index) const { return lpPalette()[index].rgbBlue; }

    void SetrgbR(std::uint8_t index, std::uint8_t value) { lpPalette()[index].rgbRed = value; }

    void SetrgbG(std::uint8_t index, std::uint8_t value) { lpPalette()[index].rgbGreen = value; }

    void SetrgbB(std::uint8_t index, std::uint8_t value) { lpPalette()[index].rgbBlue = value; }

  private:
    void MakePaletteHandle();
    void FillDarkColors(std::size_t first);
    void FillBrightColors(std::size_t first);

    std::int16_t entries_ = 0;
    std::optional<LogicalPalette> logical_palette_;
    std::optional<std::array<RGBQUAD, 256>> colors_;
};

} // namespace varnoth
