// Turns a true-colour surface into one of at most 256 colours: the picture's own optimal palette, and an
// ordered 4 by 4 dither into it (Bayer's matrix). The surface stays a true-colour surface. It also saves
// surfaces as BMP files.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "core/image/LogicalPalette.h"
#include "core/image/PictureSurface.h"
#include "core/image/cDIB.h"
#include "core/quantize/cPal8bpp.h"

namespace varnoth {

/// Nearest palette entries for the 16 by 16 by 16 evenly spaced colours. A picture asks for some hundreds of
/// them only, so each is sought when it is first asked for.
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

class mDither8bpp {
  public:
    static constexpr std::int32_t HalftoneMode = 0;
    static constexpr std::int32_t OptimalMode = 1;

    /// Dither matrices, entry column phase + 4 * row phase. Row phase 0 is the picture's lowest row.
    using Matrix = std::array<std::int32_t, 16>;
    static constexpr Matrix Threshold256{16, 144, 48, 176, 208, 80,  240, 112,
                                         64, 192, 32, 160, 256, 128, 224, 96};
    static constexpr Matrix Offset16{1, 9, 3, 11, 13, 5, 15, 7, 4, 12, 2, 10, 16, 8, 14, 6};
    static constexpr Matrix Offset51{3, 29, 10, 35, 41, 16, 48, 22, 13, 38, 6, 32, 51, 26, 45, 19};

    mDither8bpp();

    /// Reduces the source to at most 256 colours and draws the result at the top left of the target, which
    /// may be the same surface. The size is the source's outer size; it is drawn at the source's inner size.
    /// False when a copy of the source cannot be made, as of a surface without pixels. Overflow for a size
    /// beyond 32 bits and when there is no memory for the sample that the palette is made of; OutOfMemory or
    /// std::bad_alloc when there is none for the rest.
    bool transform_to_8bit(PictureSurface& source, PictureSurface& target);

    /// Writes a surface as a 32-bit BMP file. False when a copy cannot be made; Overflow for a size beyond 32
    /// bits; failures of files as in cDIB::Save.
    bool save_bmp(const std::string& file_name, PictureSurface& surface);

    /// Optimal unless set otherwise: the picture's own palette. Halftone takes the 6 by 6 by 6 colour cube.
    std::int32_t DitherMode = OptimalMode;

    /// Index in the palette for a colour of 16 levels a channel: entry (blue * 16 + green) * 16 + red.
    /// Overflow when the palette has no platform palette.
    void BuildColorLookup(const cPal8bpp& palette);

    /// All zero before the first lookup is built.
    std::array<std::uint8_t, LevelLookup::places> ColorLookup();

    /// Entry i + 8: i / 17 rounded, 0 to 15, for i from -8 to 262.
    const std::array<std::int32_t, 271>& Level16() const { return level16_; }

    /// Entry i + 51: i / 51 rounded, 0 to 5, for i from -51 to 280.
    const std::array<std::int32_t, 332>& Level6() const { return level6_; }

    /// Index in the colour cube: entry (blue level * 6 + green level) * 6 + red level.
    const std::array<std::uint8_t, 216>& CubeIndex() const { return cube_index_; }

  private:
    void BuildTables();

    /// From a 32-bit picture into a new 8-bit one of the same size.
    void ReduceToDIB(const Bitmap& source, cDIB& target);

    void DitherToCube(const Bitmap& source, cDIB& target) const;
    void DitherToLookup(const Bitmap& source, cDIB& target);

    std::optional<LevelLookup> color_lookup_;
    std::array<std::int32_t, 271> level16_{};
    std::array<std::uint8_t, 216> cube_index_{};
    std::array<std::int32_t, 332> level6_{};
};

} // namespace varnoth
