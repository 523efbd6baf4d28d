// A device-independent bitmap with a memory drawing context: the buffer that colour reduction reads and
// writes directly, and the BMP writer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "core/image/Bitmap.h"
#include "core/image/BmpHeaders.h"
#include "core/image/DrawingContext.h"
#include "core/image/Picture.h"

namespace varnoth {

/// Either empty or holding a picture. Rows are stored bottom row first, each padded to 4 bytes; 32-bit pixels
/// are blue, green, red and an unused byte; pixels of 8 bits or fewer are indices into a colour table of
/// blue, green, red, 0. Coordinates start at the top left as displayed.
class cDIB {
  public:
    cDIB() = default;
    cDIB(const cDIB&) = delete;
    cDIB& operator=(const cDIB&) = delete;

    /// Empties the object and creates a black picture of 1, 4, 8, 16, 24 or 32 bits with a black colour
    /// table. False, and empty, for a size below 1, another depth or lack of memory. Overflow when a size
    /// field does not fit 32 bits or the depth does not fit 16; the object is then empty, but keeps the size
    /// fields already computed.
    bool Create(std::int32_t NewWidth, std::int32_t NewHeight, std::int32_t Newbpp);

    /// Copies the top left NewWidth by NewHeight pixels of a context at 32 bits; missing pixels are black.
    /// The object is emptied first, so copying from its own context gives a black picture.
    bool CreateFromHdc(DrawingContext& Image, std::int32_t NewWidth, std::int32_t NewHeight);

    /// Writes a BMP file, replacing an existing one; does nothing when empty. Overflow when the length of the
    /// file does not fit 32 bits; otherwise the failures of files. A read-only file is not replaced.
    void Save(const std::string& filename) const;

    /// Empties the object. The header keeps its last values.
    void Destroy();

    /// Copies a rectangle of this picture to a rectangle of a context by nearest neighbour. A source width or
    /// height below 1 means the whole; a negative destination size mirrors. Returns 1, or 0 when either has
    /// no picture or the operation is not SRCCOPY.
    std::int32_t Stretch(DrawingContext& hDstDC, std::int32_t x, std::int32_t y, std::int32_t nWidth,
                         std::int32_t nHeight, std::int32_t XSrc = 0, std::int32_t YSrc = 0,
                         std::int32_t nSrcWidth = 0, std::int32_t nSrcHeight = 0,
                         std::uint32_t lROP = SRCCOPY) const;

    /// Sets the first entries of the colour table, four bytes each; an incomplete last entry is dropped. Does
    /// nothing above 8 bits.
    void SetPalette(std::span<const std::uint8_t> Palette);

    /// Fits a picture of Width by Height, which must not be 0, into a box of DstW by DstH: centred, in its
    /// proportions, enlarged only with StretchFit. A side may round to 0. Overflow beyond 32 bits.
    static Rectangle BestFit(std::int32_t Width, std::int32_t Height, std::int32_t DstW, std::int32_t DstH,
                             bool StretchFit);

    /// The memory context with the picture selected; null when empty.
    DrawingContext* hDIBDC() { return section_ ? &context_ : nullptr; }

    /// The bitmap selected into the context; null when empty.
    const Bitmap* hDIB() const { return section_.get(); }

    /// The first of Size() bytes, valid until the next Create or Destroy; null when empty.
    std::uint8_t* lpBits() { return section_ ? section_->bytes().data() : nullptr; }

    const std::uint8_t* lpBits() const { return section_ ? section_->bytes().data() : nullptr; }

    std::int32_t Width() const { return width_; }

    std::int32_t Height() const { return height_; }

    std::int32_t Bpp() const { return bits_per_pixel_; }

    /// Bytes per row, including padding.
    std::int32_t BytesPerScanline() const { return bytes_per_scanline_; }

    // Interface: not used by the editor itself.

    /// Copies a rectangle of a context to the same position. A width or height below 1 means this object's
    /// own. Returns 1, or 0 when either has no picture.
    std::int32_t LoadBlt(const DrawingContext& hSrcDC, std::int32_t x = 0, std::int32_t y = 0,
                         std::int32_t nWidth = 0, std::int32_t nHeight = 0);

    /// Fills the picture with a colour, plain or a system-colour reference.
    void Cls(Colour BackColor);

    /// The number of bytes of all rows.
    std::int32_t Size() const { return size_; }

    /// Copies a picture, at 32 bits or at its own depth with its colour table, and returns the picture's
    /// depth. Returns 0 for an empty picture or one that is not a bitmap, which leave the object unchanged,
    /// and when Create fails.
    std::uint8_t CreateFromStdPicture(const Picture& Image, bool Force32bpp);

    /// CreateFromHdc at 8 bits, with the context's colour table.
    bool CreateFromHdc8bpp(DrawingContext& Image, std::int32_t NewWidth, std::int32_t NewHeight);

    /// Makes the other object a copy of this one. Cloning an object to itself makes it black.
    /// SubscriptOutOfRange when there is no memory for the copy; the other object is then empty.
    void CloneTo(cDIB& oDIB) const;

    /// Gets the whole colour table, four bytes per entry. Above 8 bits or empty, `Palette` is unchanged.
    void GetPalette(std::vector<std::uint8_t>& Palette) const;

    /// Changes the size; the picture is stretched or keeps its size in the top left corner as displayed. An
    /// invalid size empties the object.
    void Resize(std::int32_t NewWidth, std::int32_t NewHeight, bool StretchDIB);

    /// BestFit for this picture. Does nothing when empty.
    void GetBestFitInfo(std::int32_t DstW, std::int32_t DstH, std::int32_t& bfx, std::int32_t& bfy,
                        std::int32_t& bfW, std::int32_t& bfH, bool StretchFit) const;

    const BITMAPINFOHEADER& bmiHeader() const { return header_; }

    /// A 32-bit copy of the picture; an empty picture when empty.
    Picture Image() const;

  private:
    bool has_colour_table() const { return section_ && bits_per_pixel_ < 9; }

    std::size_t colour_table_bytes() const { return std::size_t{4} << bits_per_pixel_; }

    std::vector<std::uint8_t> file_head() const;

    std::unique_ptr<Bitmap> section_;
    DrawingContext context_; // section_ is selected if there is one
    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
    std::int32_t bits_per_pixel_ = 0;
    std::int32_t bytes_per_scanline_ = 0;
    std::int32_t size_ = 0;
    BITMAPINFOHEADER header_;
};

} // namespace varnoth
