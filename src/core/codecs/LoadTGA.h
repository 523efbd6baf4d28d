// The TGA reader: a probe of the header, and a full decode into CBitmap::CurrentBitmap. Supported are 8, 16,
// 24 and 32 bits, plain or run-length encoded. The pixels must directly follow the header or the colour map;
// alpha is dropped. Format: "Truevision TGA File Format", version 2.0.
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
    /// Whether the file has a TGA header. Sets the results from the header, without subtracting the origin,
    /// even when the answer is False. Returns False instead of failing; results not yet read are then
    /// unchanged. Does not change the object.
    Truth GetInfoTGA(const std::string& fileName, std::int32_t& width, std::int32_t& height,
                     std::int16_t& bpp) const;

    /// Decodes the file into CBitmap::CurrentBitmap. Only the pixel depth selects the decoder; an unsupported
    /// depth is not a failure and leaves Width, Height and the current bitmap unchanged. Fails with
    /// - the failures of files;
    /// - Overflow for a side beyond 16 bits and, above 8 bits, for a row of 32768 bits and more;
    /// - OutOfMemory, at 24 and 32 bits also for a picture of 2 GiB and more;
    /// - SubscriptOutOfRange at 8 bits for a picture without pixels, a colour map of more than 256 or fewer
    ///   than 1 entries, rows missing from the file, and any file on an object that has never read a 24-bit
    ///   colour map; at 16 bits for run-length packets of a negative pixel count; at 24 and 32 bits for a
    ///   picture without pixels or with fewer than 2 bytes of pixels in the file.
    /// Any other picture without pixels or of 2 GiB and more sets the current bitmap to null.
    void Load(const std::string& fileName);

    /// Draws the current bitmap, whichever reader created it, at this object's size.
    void DrawTGA(PictureSurface& target) const;

    /// In the unit of ScaleMode; 0 when ScaleMode is neither 0 nor 1. The origin is subtracted in pixels, but
    /// not in twips.
    std::int32_t TGAWidth() const;
    std::int32_t TGAHeight() const;

    /// True for image types 9 and 10 only.
    Truth Compressed() const;

    /// Bits per pixel.
    std::int16_t Bpp() const { return header_.PixelDepth; }

    /// Whether the file loaded last has a TGA header.
    Truth IsTGA() const;

    /// Unit of the size properties: 0 pixels, 1 twips. A value above 1 is stored as 1.
    std::int16_t ScaleMode() const { return scale_mode_; }

    void SetScaleMode(std::int16_t mode) { scale_mode_ = mode > 1 ? std::int16_t{1} : mode; }

    /// With -1, DrawTGA resizes its target to the picture's size.
    std::int16_t Autoscale() const { return autoscale_; }

    void SetAutoscale(std::int16_t autoscale) { autoscale_ = autoscale; }

    std::int32_t Width() const { return width_; }

    std::int32_t Height() const { return height_; }

    std::int32_t TwipWidth() const { return twip_width_; }

    std::int32_t TwipHeight() const { return twip_height_; }

    /// The header of the file loaded last.
    const TgaHeader& Header() const { return header_; }

    // The stages of a decode.

    /// An array of `length` bytes whose zero tail is not stored: `held` has its first bytes, at least one
    /// unless `length` is 0.
    struct Expansion {
        ByteArray held;
        std::int64_t length = 0;
    };

    /// Expands packets of `bits` / 8 bytes per pixel (8, 24 or 32 bits) to the picture's byte count plus one
    /// spare byte. Missing bytes are 0, excess bytes are dropped. The length is 0 when the byte count is
    /// negative, and 1 when it does not fit 32 bits. Memory use depends on the packets, not on the picture's
    /// size.
    static Expansion DecodeRle(std::span<const std::uint8_t> bytes, std::int32_t bits, std::int32_t height,
                               std::int32_t width);

    /// Pads each line to a multiple of 4 bytes, in file order. SubscriptOutOfRange when a line starts beyond
    /// the array; missing bytes of a partial line are 0.
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
    // Never cleared: the length of later 8-bit pictures depends on the last 24-bit map.
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
