// Reads PCX files: a cheap look at the header, and a full decode into the program's one current bitmap, from
// where it is drawn. Decoded are 1, 4 and 8 bits on one plane, 1 bit on four planes and 8 bits on three,
// plain or run-length encoded. The format: "PCX Technical Reference Manual", revision 5.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "core/base/ByteArray.h"
#include "core/base/Truth.h"
#include "core/base/files.h"
#include "core/codecs/PcxHeader.h"
#include "core/image/PictureSurface.h"

namespace varnoth {

class LoadPCX {
  public:
    /// Whether the header is one of a PCX file. The results are what the header holds, also of a file that is
    /// refused; `bpp` is bits per pixel and plane, and plays no part in the answer. False instead of any
    /// failure; results that were not reached stay as they were. Object state is not touched.
    Truth GetInfoPCX(const std::string& fileName, std::int32_t& width, std::int32_t& height,
                     std::int16_t& bpp) const;

    /// Decodes the file into CBitmap::CurrentBitmap. A depth that is not known decodes nothing and fails
    /// nothing; the sizes are then the new file's, the current bitmap the one before. Failures: the file's
    /// own; Overflow for a side outside 16 bits and for lines of more than 32767 bytes in all planes;
    /// SubscriptOutOfRange for a picture without pixels, for lines of no bytes at 1 or 8 bits on one plane,
    /// and for fewer lines in the file than in the header unless the planes are four; DeviceIo for an 8-bit
    /// file too short for a palette; OutOfMemory, on three planes also for a picture of 2 GiB and more. On
    /// one or four planes such a picture leaves no current bitmap.
    void Load(const std::string& fileName);

    /// Unit of the size properties: 0 pixels, 1 twips. A value above 1 is stored as 1.
    std::int16_t ScaleMode() const { return scale_mode_; }

    void SetScaleMode(std::int16_t mode) { scale_mode_ = mode > 1 ? std::int16_t{1} : mode; }

    /// In the unit of ScaleMode; 0 when that is neither 0 nor 1.
    std::int32_t PCXWidth() const;
    std::int32_t PCXHeight() const;

    Truth Compressed() const { return truth(header_.Encoding == 1); }

    /// Bits per pixel and plane: 8 for a 24-bit picture.
    std::int16_t Bpp() const { return header_.BitsPerPixel; }

    /// Whether the header of the last load is one of a PCX file.
    Truth IsPCX() const;

    /// -1 lets DrawPCX give its target the picture's size.
    std::int16_t Autoscale() const { return autoscale_; }

    void SetAutoscale(std::int16_t autoscale) { autoscale_ = autoscale; }

    /// Draws the current bitmap, whichever reader made it, as a picture of this object's size.
    void DrawPCX(PictureSurface& target) const;

    std::int32_t Width() const { return width_; }

    std::int32_t Height() const { return height_; }

    std::int32_t TwipWidth() const { return twip_width_; }

    std::int32_t TwipHeight() const { return twip_height_; }

    /// The header of the last load.
    const PcxHeader& Header() const { return header_; }

    // The stages of a decode.

    /// The expansion of all bytes but the last, which only serves as the value of a run byte standing before
    /// it. Lines play no part.
    static ByteArray DecodeRle(std::span<const std::uint8_t> bytes);

    /// Top-down lines as bottom-up rows, each padded to a multiple of 4 bytes. SubscriptOutOfRange when a
    /// line starts outside; one that ends outside gets zeros.
    static ByteArray FlipRows(std::span<const std::uint8_t> bytes, std::int32_t height,
                              std::int32_t lineBytes);

    /// The next multiple of 4.
    static std::int32_t RoundWidth(std::int32_t width);

    /// Lines of four bit planes, each plane's line `bytesPerLine` bytes, as lines of width / 2 bytes of
    /// nibbles. Plane bytes that the array lacks are 0. SubscriptOutOfRange when the result would have no
    /// bytes.
    static ByteArray MergePlanes(std::span<const std::uint8_t> bytes, std::int32_t bytesPerLine,
                                 std::int32_t width, std::int32_t height);

    /// 8 pixels of four planes as 4 bytes of nibbles, plane 0 giving the lowest bit.
    static std::array<std::uint8_t, 4> MergeBytes(std::uint8_t plane0, std::uint8_t plane1,
                                                  std::uint8_t plane2, std::uint8_t plane3);

  private:
    void LoadPcx8(const std::string& fileName);
    void LoadPcx1(const std::string& fileName);
    void LoadPcx4(const std::string& fileName);
    void LoadPcx24(const std::string& fileName);

    void read_header_and_bytes(InputFile& file);
    void expand();

    std::int32_t line_bytes_ = 0;
    ByteArray pixels_;
    std::int16_t top_down_ = 0; // never set: rows are turned over by hand
    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
    std::int16_t scale_mode_ = 1;
    std::int16_t autoscale_ = True;
    std::int32_t twip_width_ = 0;
    std::int32_t twip_height_ = 0;
    PcxHeader header_;
};

} // namespace varnoth
