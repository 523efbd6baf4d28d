// A device-independent bitmap together with a memory drawing context: the off-screen buffer whose bytes
// colour reduction reads and writes directly, and the writer of BMP files. It knows nothing of windows.
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

/// Either empty or holding a picture. Rows are stored lowest row first, each padded to 4 bytes; pixels of 32
/// bits are blue, green, red and a byte that is not used; pixels of 8 bits or fewer are indices into a colour
/// table of blue, green, red, 0. Coordinates of the copies count from the top left as seen.
class cDIB {
  public:
    cDIB() = default;
    cDIB(const cDIB&) = delete;
    cDIB& operator=(const cDIB&) = delete;

    /// Empties the object and makes a black picture of 1, 4, 8, 16, 24 or 32 bits with a black colour table.
    /// False, and empty, when there can be no such picture: a size below 1, another depth, no memory.
    /// Overflow when a size field leaves its 32 bits or the depth its 16; the object is then empty and the
    /// size fields computed before stand.
    bool Create(std::int32_t NewWidth, std::int32_t NewHeight, std::int32_t Newbpp);

    /// Takes over a picture, at 32 bits or at the picture's own depth with its colour table. Returns the
    /// depth of the picture, 0 when it is empty, not a bitmap (the object then stays as it was) or cannot be
    /// had.
    std::uint8_t CreateFromStdPicture(const Picture& Image, bool Force32bpp);

    /// Takes over the top left NewWidth by NewHeight pixels of a context at 32 bits; black where it has none.
    /// The object is emptied first, so from its own context it takes over nothing and is black.
    bool CreateFromHdc(DrawingContext& Image, std::int32_t NewWidth, std::int32_t NewHeight);

    /// The same at 8 bits with the context's colour table.
    bool CreateFromHdc8bpp(DrawingContext& Image, std::int32_t NewWidth, std::int32_t NewHeight);

    /// Makes the other object a copy of this one; onto itself, the object becomes black. SubscriptOutOfRange
    /// when there is no memory for the copy; the other object is empty then.
    void CloneTo(cDIB& oDIB) const;

    /// Writes a BMP file in place of any file of that name; nothing when empty. Overflow when the file would
    /// not fit its 32-bit length field, otherwise the failures of files: a read-only file stays.
    void Save(const std::string& filename) const;

    /// Empties the object. The header keeps its last values.
    void Destroy();

    /// Copies a rectangle of a context to the same place here. A width or height below 1 means this object's
    /// own. Returns 1, or 0 when nothing could be copied.
    std::int32_t LoadBlt(const DrawingContext& hSrcDC, std::int32_t x = 0, std::int32_t y = 0,
                         std::int32_t nWidth = 0, std::int32_t nHeight = 0);

    /// Copies a rectangle of this picture into a rectangle of a context by nearest neighbour. A source width
    /// or height below 1 means the whole; destination sizes are taken as they come, negative ones mirror.
    /// Returns 1, or 0 when nothing could be copied.
    std::int32_t Stretch(DrawingContext& hDstDC, std::int32_t x, std::int32_t y, std::int32_t nWidth,
                         std::int32_t nHeight, std::int32_t XSrc = 0, std::int32_t YSrc = 0,
                         std::int32_t nSrcWidth = 0, std::int32_t nSrcHeight = 0,
                         std::uint32_t lROP = SRCCOPY) const;

    /// Fills the picture with a plain colour or the colour that a system-colour reference stands for.
    void Cls(Colour BackColor);

    /// Sets the first entries of the colour table, four bytes each; a started entry at the end is dropped.
    /// Nothing above 8 bits.
    void SetPalette(std::span<const std::uint8_t> Palette);

    /// The whole colour table, four bytes an entry. Above 8 bits or empty, the array is left as it came.
    void GetPalette(std::vector<std::uint8_t>& Palette) const;

    /// Gives the picture a new size, stretched into it or at its old size in the top left corner as seen.
    /// With a size that cannot be the object ends empty.
    void Resize(std::int32_t NewWidth, std::int32_t NewHeight, bool StretchDIB);

    /// Where the picture goes in a box of DstW by DstH: with its proportions, centred, not enlarged unless
    /// StretchFit. A side may round to 0. Overflow when a number leaves its 32 bits. Empty: nothing.
    void GetBestFitInfo(std::int32_t DstW, std::int32_t DstH, std::int32_t& bfx, std::int32_t& bfy,
                        std::int32_t& bfW, std::int32_t& bfH, bool StretchFit) const;

    /// The same for a picture of Width by Height, which must not be 0.
    static Rectangle BestFit(std::int32_t Width, std::int32_t Height, std::int32_t DstW, std::int32_t DstH,
                             bool StretchFit);

    /// The memory context with the picture selected; null when empty.
    DrawingContext* hDIBDC() { return section_ ? &context_ : nullptr; }

    /// The picture behind the context; null when empty.
    const Bitmap* hDIB() const { return section_.get(); }

    /// The first of Size() bytes, valid until the object is created anew or destroyed; null when empty.
    std::uint8_t* lpBits() { return section_ ? section_->bytes().data() : nullptr; }

    const std::uint8_t* lpBits() const { return section_ ? section_->bytes().data() : nullptr; }

    std::int32_t Width() const { return width_; }

    std::int32_t Height() const { return height_; }

    std::int32_t Bpp() const { return bits_per_pixel_; }

    /// Bytes from one row to the next.
    std::int32_t BytesPerScanline() const { return bytes_per_scanline_; }

    /// Bytes of all rows.
    std::int32_t Size() const { return size_; }

    const BITMAPINFOHEADER& bmiHeader() const { return header_; }

    /// A new 32-bit picture with a copy of the pixels; an empty one from an empty object.
    Picture Image() const;

  private:
    bool has_colour_table() const { return section_ && bits_per_pixel_ < 9; }

    std::size_t colour_table_bytes() const { return std::size_t{4} << bits_per_pixel_; }

    std::vector<std::uint8_t> file_head() const;

    std::unique_ptr<Bitmap> section_;
    DrawingContext context_; // has section_ selected, nothing when there is none
    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
    std::int32_t bits_per_pixel_ = 0;
    std::int32_t bytes_per_scanline_ = 0;
    std::int32_t size_ = 0;
    BITMAPINFOHEADER header_;
};

} // namespace varnoth
