// Reference implementation of palette mixing: linear scans, one pixel at a time, no caching. The program's
// routines must give the same tables, sheets, palettes and indices.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "core/image/Bitmap.h"
#include "core/image/PictureSurface.h"

namespace varnoth::reference {

class Mixpals {
  public:
    std::array<RGBQUAD, 256> ImportPalette{};
    std::vector<RGBQUAD> ColorTable;
    std::int32_t ColorCount = 0;

    void InitColorTable();
    bool AddPictureColors(const PictureSurface& surface);
    bool SeekColorInTable(std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::int32_t limit) const;
    void DrawColorTable(PictureSurface& surface) const;
    void FinalizePalette(const PictureSurface& surface);
    bool SeekColorInPalette(std::uint8_t red, std::uint8_t green, std::uint8_t blue,
                            std::int32_t limit) const;
    void SwapTransparent(std::uint8_t red, std::uint8_t green, std::uint8_t blue);
    void MakeLookupPalette();
    std::int16_t nearest_index(std::uint8_t red, std::uint8_t green, std::uint8_t blue) const;

  private:
    bool PrepareMixBits(const PictureSurface& surface);
    void ReadMixBits(const PictureSurface& surface);
    std::uint8_t element(std::int32_t channel, std::int32_t x, std::int32_t y) const;

    BITMAP info_;
    std::int32_t channels_ = 0;
    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
    std::vector<std::uint8_t> bits_; // channel varies fastest, then x
    std::array<RGBQUAD, 256> lookup_{};
    bool has_lookup_ = false;
};

} // namespace varnoth::reference
