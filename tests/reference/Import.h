// The whole import as plain steps, one after the other, built of the plain parts beside it: every search is a scan,
// every pixel is worked out anew, every pixel yields. For the shipped import to be held equal to and measured against.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "import/AddFramesForm.h"
#include "import/ImportView.h"
#include "platform/Bitmap.h"
#include "platform/PictureSurface.h"
#include "platform/PixelBlock.h"
#include "sprite/SpriteDocument.h"

namespace varnoth::reference {

/// What an import keeps for the next one, all zero at first, and the routines that work on it.
struct PaletteMixing {
    std::array<RGBQUAD, 256> ImportPalette{};
    std::array<RGBQUAD, 256> LookupPalette{}; ///< ImportPalette as it stood when it was finalized
    bool has_lookup = false;
    std::vector<RGBQUAD> ColorTable;
    std::int32_t ColorCount = 0;
    BITMAP MixInfo;
    PixelBlock MixBits;

    void InitColorTable();
    bool AddPictureColors(const PictureSurface& surface);
    bool SeekColorInTable(const RGBQUAD& colour, std::int32_t limit) const;
    void DrawColorTable(PictureSurface& surface) const;
    void FinalizePalette(const PictureSurface& surface);
    bool SeekColorInPalette(const RGBQUAD& colour, std::int32_t limit) const;
    void SwapTransparent(const RGBQUAD& colour);
    std::int16_t nearest_index(const RGBQUAD& colour) const;

  private:
    bool PrepareMixBits(const PictureSurface& surface);
    RGBQUAD pixel_at(std::int32_t x, std::int32_t y) const;
};

/// Stretches one surface over the other, pixel by pixel.
void stretch(const PictureSurface& from, PictureSurface& to);

/// Appends a frame to the document, with a yield at every pixel.
void add_frame(SpriteDocument& sprite, const PictureSurface& picture, const PaletteMixing& mixing);

/// The import into hlspr::document(). It fails as the shipped one does.
void import_frames(AddFramesForm& form, ImportView& view, PaletteMixing& mixing);

} // namespace varnoth::reference
