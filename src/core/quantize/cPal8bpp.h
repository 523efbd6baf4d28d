// A palette of up to 256 colours with a platform palette for nearest-colour search. Creates the standard
// palettes (greys, the 16 system colours, colour cubes, web-safe) and the optimal palette of a picture.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "core/image/Colour.h"
#include "core/image/LogicalPalette.h"
#include "core/image/cDIB.h"

namespace varnoth {

/// A new object has neither colours nor a platform palette. Until the first Initialize or Create..., reading
/// or writing colours fails with SubscriptOutOfRange. Changed entries reach the platform palette only through
/// BuildLogicalPalette.
class cPal8bpp {
  public:
    cPal8bpp() = default;
    cPal8bpp(const cPal8bpp&) = delete;
    cPal8bpp& operator=(const cPal8bpp&) = delete;

    /// Sets 256 black colours, of which `entries` are valid. The number is not checked.
    void Initialize(std::int16_t entries);

    /// Returns to the state of a new object.
    void Destroy();

    /// A colour cube of 2, 3, 4, 5 or 6 levels per channel for kind 0 to 4; red varies fastest, blue slowest.
    /// SubscriptOutOfRange for any other kind, without a change.
    void CreateHalftone(std::int32_t kind);

    /// The optimal palette of a 32-bit picture, found with an octree of `levels` levels that weights the
    /// channels. At most `maximum` colours, though up to eight may remain even if the maximum is lower. A
    /// picture of another depth changes nothing. Overflow when `levels` does not fit a byte or a leaf's sum
    /// does not fit 32 bits; SubscriptOutOfRange when the picture needs a level that Octree does not support,
    /// or when more than 256 colours remain.
    void CreateOptimal(const cDIB& Image, std::int32_t maximum, std::int32_t levels, float RWeight,
                       float GWeight, float BWeight);

    /// All 256 entries, valid or not.
    std::span<RGBQUAD, 256> lpPalette();
    std::span<const RGBQUAD, 256> lpPalette() const;

    /// The platform palette, whose entries have red and blue exchanged; null when there is none.
    const LogicalPalette* hPal() const { return logical_palette_ ? &*logical_palette_ : nullptr; }

    // Interface: not used by the editor itself.

    /// The index of the platform palette's entry nearest to the colour, the lowest of equally near ones.
    /// Overflow without a platform palette: the index that means "none" does not fit a byte.
    void ClosestIndex(std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::uint8_t& index) const;

    /// The number of valid entries.
    std::int16_t Entries() const { return entries_; }

    /// One channel of an entry, valid or not. Setting it does not change the platform palette.
    std::uint8_t rgbR(std::uint8_t index) const { return lpPalette()[index].rgbRed; }

    /// Likewise.
    std::uint8_t rgbG(std::uint8_t index) const { return lpPalette()[index].rgbGreen; }

    /// Likewise.
    std::uint8_t rgbB(std::uint8_t index) const { return lpPalette()[index].rgbBlue; }

    /// Creates the platform palette from the valid entries; none for fewer than 1 or more than 256 entries.
    void BuildLogicalPalette();

    /// The colour of the entry that ClosestIndex finds.
    void ClosestColor(std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::uint8_t& closest_red,
                      std::uint8_t& closest_green, std::uint8_t& closest_blue) const;

    /// Whether all valid entries are grey; false without any.
    bool IsGreyScale() const;

    /// 2, 16 or 256 greys from black to white for kind 0, 1 or 2. SubscriptOutOfRange for any other kind,
    /// without a change.
    void CreateGreyScale(std::int32_t kind);

    /// The 16 system colours, dark ones first.
    void CreateEGA();

    /// Dark system colours, the rest of the 6 by 6 by 6 cube, one black, 31 greys, bright system colours.
    void CreateWebsafe();

    void SetEntries(std::int16_t entries) { entries_ = entries; }

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
