// Reduces a true-colour surface to at most 256 colours: makes an optimal palette from the picture and maps
// the pixels to it with an ordered 4 by 4 dither (Bayer matrix). The depth of the surface does not change.
// Also saves surfaces as BMP files.
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

/// Maps the colours of 16 levels per channel, 0, 17, 34 and so on to 255, to the nearest palette entries. A
/// picture uses only some hundreds of these 4096 colours, so each is searched for on its first use.
class LevelLookup {
  public:
    static constexpr std::size_t size = 4096;

    /// `palette` has red and blue exchanged.
    explicit LevelLookup(const LogicalPalette& palette) : palette_(palette) { known_.fill(unknown); }

    /// The index that GetNearestPaletteIndex finds for colour (blue level * 16 + green level) * 16 + red
    /// level.
    std::uint8_t operator[](std::size_t colour) {
        if (known_[colour] == unknown) {
            known_[colour] = find_nearest(colour);
        }
        return static_cast<std::uint8_t>(known_[colour]);
    }

  private:
    static constexpr std::int16_t unknown = -1;

    std::int16_t find_nearest(std::size_t colour) const;

    LogicalPalette palette_;
    std::array<std::int16_t, size> known_;
};

class mDither8bpp {
  public:
    static constexpr std::int32_t HalftoneMode = 0;
    static constexpr std::int32_t OptimalMode = 1;

    /// Dither matrices. Entry column + 4 * row; row 0 applies to the bottom row of the picture.
    using Matrix = std::array<std::int32_t, 16>;
    static constexpr Matrix Threshold256{16, 144, 48, 176, 208, 80,  240, 112,
                                         64, 192, 32, 160, 256, 128, 224, 96};
    static constexpr Matrix Offset16{1, 9, 3, 11, 13, 5, 15, 7, 4, 12, 2, 10, 16, 8, 14, 6};
    static constexpr Matrix Offset51{3, 29, 10, 35, 41, 16, 48, 22, 13, 38, 6, 32, 51, 26, 45, 19};

    mDither8bpp();

    /// Reduces the source to at most 256 colours and draws the result at the top left of the target, which
    /// may be the same surface. Reduces the source's outer size and draws the result in its inner size.
    /// False when the source cannot be copied, for example because it has no pixels. Overflow for a size
    /// beyond 32 bits and when there is no memory for the sample from which the palette is made; OutOfMemory
    /// or std::bad_alloc when there is none for the rest.
    bool transform_to_8bit(PictureSurface& source, PictureSurface& target);

    /// Writes a surface as a 32-bit BMP file. False when it cannot be copied; Overflow for a size beyond 32
    /// bits; otherwise fails as cDIB::Save does.
    bool save_bmp(const std::string& file_name, PictureSurface& surface);

    /// OptimalMode makes a palette from the picture; HalftoneMode uses the 6 by 6 by 6 colour cube.
    std::int32_t DitherMode = OptimalMode;

    /// Prepares the lookup of the nearest palette entry for colours of 16 levels per channel. Overflow when
    /// the palette has no platform palette.
    void BuildColorLookup(const cPal8bpp& palette);

    // Interface: not used by the editor itself.

    /// The whole lookup, in the order of LevelLookup. All zero before BuildColorLookup.
    std::array<std::uint8_t, LevelLookup::size> ColorLookup();

    /// Entry i + 8 is i / 17, rounded and clamped to 0 to 15, for i from -8 to 262.
    const std::array<std::int32_t, 271>& Level16() const { return level16_; }

    /// Entry i + 51 is i / 51, rounded and clamped to 0 to 5, for i from -51 to 280.
    const std::array<std::int32_t, 332>& Level6() const { return level6_; }

    /// Entry (blue level * 6 + green level) * 6 + red level is the index of that colour in the colour cube.
    const std::array<std::uint8_t, 216>& CubeIndex() const { return cube_index_; }

  private:
    void BuildTables();

    /// Reduces a 32-bit picture to a new 8-bit one of the same size.
    void ReduceToDIB(const Bitmap& source, cDIB& target);

    void DitherToCube(const Bitmap& source, cDIB& target) const;
    void DitherToLookup(const Bitmap& source, cDIB& target);

    std::optional<LevelLookup> color_lookup_;
    std::array<std::int32_t, 271> level16_{};
    std::array<std::uint8_t, 216> cube_index_{};
    std::array<std::int32_t, 332> level6_{};
};

} // namespace varnoth
