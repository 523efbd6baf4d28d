// Reads TGA files: a cheap look at the header, and a full decode into the program's one current bitmap, from
// where it is drawn. Decoded are 8, 16, 24 and 32 bits, plain or run-length encoded. The pixels are expected
// directly behind the header or the colour map; alpha is dropped. The format: "Truevision TGA File Format",
// version 2.0.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "core/base/ByteArray.h"
#include "core/base/Truth.h"
#include "core/base/files.h"
#include "core/codecs/TgaHeader.h"
#include "core/image/PictureSurface.h"

namespace varnoth {

class LoadTGA {
  public:
    /// Whether the header is one of a TGA file. The results are what the header holds, origin not subtracted,
    /// also of a file that is refused. False instead of any failure; results that were not reached stay as
    /// they were. Object state is not touched.
    Truth GetInfoTGA(const std::string& fileName, std::int32_t& width, std::int32_t& height,
                     std::int16_t& bpp) const;

    /// Decodes the file into CBitmap::CurrentBitmap. The depth of the pixels decides and nothing else; a
    /// depth that is not known decodes nothing and fails nothing: Width, Height and the current bitmap are
    /// then the ones before. Failures: the file's own; Overflow for a side outside 16 bits and, above 8 bits,
    /// for a row of 32768 bits and more; OutOfMemory, at 24 and 32 bits also for a picture of 2 GiB and more;
    /// SubscriptOutOfRange
    /// - at 8 bits, for a picture without pixels, a colour map of more than 256 or fewer than 1 entries, rows
    ///   that the file lacks, and any file on an object that has never read a colour map of 24 bits;
    /// - at 16 bits, for packets of fewer than 0 pixels;
    /// - at 24 and 32 bits, for a picture without pixels and fewer than 2 bytes of them in the file.
    /// Any other picture without pixels or of 2 GiB and more leaves no current bitmap.
    void Load(const std::string& fileName);

    /// Draws the current bitmap, whichever reader made it, as a picture of this object's size.
    void DrawTGA(PictureSurface& target) const;

    /// In the unit of ScaleMode; 0 when that is neither 0 nor 1. In pixels without the origin, in twips with
    /// it.
    std::int32_t TGAWidth() const;
    std::int32_t TGAHeight() const;

    /// For the types 9 and 10 only.
    Truth Compressed() const;

    /// Bits per pixel.
    std::int16_t Bpp() const { return header_.PixelDepth; }

    /// Whether the header of the last load is one of a TGA file.
    Truth IsTGA() const;

    /// Unit of the size properties: 0 pixels, 1 twips. A value above 1 is stored as 1.
    std::int16_t ScaleMode() const { return scale_mode_; }

    void SetScaleMode(std::int16_t mode) { scale_mode_ = mode > 1 ? std::int16_t{1} : mode; }

    /// -1 lets DrawTGA give its target the picture's size.
    std::int16_t Autoscale() const { return autoscale_; }

    void SetAutoscale(std::int16_t autoscale) { autoscale_ = autoscale; }

    std::int32_t Width() const { return width_; }

    std::int32_t Height() const { return height_; }

    std::int32_t TwipWidth() const { return twip_width_; }

    std::int32_t TwipHeight() const { return twip_height_; }

    /// The header of the last load.
    const TgaHeader& Header() const { return header_; }

    // The stages of a decode.

    /// An array of `length` bytes of which the first are held; the others, which nothing was written to, are
    /// zero. At least one is held unless the length is 0.
    struct Expansion {
        ByteArray held;
        std::int64_t length = 0;
    };

    /// The expansion of packets of `bits` / 8 bytes a pixel (8, 24 or 32 bits): as many bytes as the picture
    /// needs and one spare. What the packets do not reach is zero, what they hold beyond the end is dropped.
    /// No bytes at all when the picture's byte count is negative; one when it is beyond 32 bits. It takes
    /// memory for what the packets can fill, however large the picture is.
    static Expansion DecodeRle(std::span<const std::uint8_t> bytes, std::int32_t bits, std::int32_t height,
                               std::int32_t width);

    /// Lines in the order of the file, each padded to a multiple of 4 bytes. SubscriptOutOfRange when a line
    /// starts outside; one that ends outside gets zeros.
    static ByteArray PadRows(std::span<const std::uint8_t> bytes, std::int32_t height,
                             std::int32_t lineBytes);

  private:
    void LoadTga8(const std::string& fileName);
    void LoadTga16(const std::string& fileName);
    void LoadTga24(const std::string& fileName);
    void LoadTga32(const std::string& fileName);

    void read_palette(InputFile& file);
    void take_size();
    void take_direction();
    bool is_run_length() const;
    Expansion read_colour_bytes(const std::string& fileName, std::int32_t packet_bits);
    void make_from_whole_bytes(const Expansion& bytes, std::int32_t pixel_bytes);

    std::int16_t top_down_ = 0;
    ByteArray colors_; // 256 triples of red, green, blue
    ByteArray pixels_;
    TgaHeader header_;
    // The maps are never cleared: the length of later 8-bit pictures goes by the last map of 24 bits.
    ByteArray map24_;
    ByteArray map32_;
    ByteArray map16_;
    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
    std::int16_t scale_mode_ = 1;
    std::int16_t autoscale_ = True;
    std::int32_t twip_width_ = 0;
    std::int32_t twip_height_ = 0;
};

} // namespace varnoth
