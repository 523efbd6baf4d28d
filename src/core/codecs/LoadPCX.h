// The PCX reader: a probe of the header, and a full decode into CBitmap::CurrentBitmap. Supported are 1, 4
// and 8 bits on one plane, 1 bit on four planes and 8 bits on three planes, plain or run-length encoded.
// Format: "PCX Technical Reference Manual", revision 5.
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
    /// Whether the file has a PCX header. Sets the results from the header even when the answer is False;
    /// `bpp`, the bits per pixel and plane, does not affect the answer. Returns False instead of failing;
    /// results not yet read are then unchanged. Does not change the object.
    Truth GetInfoPCX(const std::string& fileName, std::int32_t& width, std::int32_t& height,
                     std::int16_t& bpp) const;

    /// Decodes the file into CBitmap::CurrentBitmap. An unsupported depth is not a failure: the sizes are
    /// then those of the new file, the current bitmap is unchanged. Fails with
    /// - the failures of files;
    /// - Overflow for a side beyond 16 bits and for lines of more than 32767 bytes over all planes;
    /// - SubscriptOutOfRange for a picture without pixels, for lines of 0 bytes at 1 or 8 bits on one plane,
    ///   and, except on four planes, for fewer lines in the file than the header states;
    /// - DeviceIo for an 8-bit file too short to hold a palette;
    /// - OutOfMemory, on three planes also for a picture of 2 GiB and more. On one or four planes such a
    ///   picture sets the current bitmap to null.
    void Load(const std::string& fileName);

    /// Unit of the size properties: 0 pixels, 1 twips. A value above 1 is stored as 1.
    std::int16_t ScaleMode() const { return scale_mode_; }

    void SetScaleMode(std::int16_t mode) { scale_mode_ = mode > 1 ? std::int16_t{1} : mode; }

    /// In the unit of ScaleMode; 0 when ScaleMode is neither 0 nor 1.
    std::int32_t PCXWidth() const;
    std::int32_t PCXHeight() const;

    Truth Compressed() const { return truth(header_.Encoding == 1); }

    /// Bits per pixel and plane: 8 for a 24-bit picture.
    std::int16_t Bpp() const { return header_.BitsPerPixel; }

    /// Whether the file loaded last has a PCX header.
    Truth IsPCX() const;

    /// With -1, DrawPCX resizes its target to the picture's size.
    std::int16_t Autoscale() const { return autoscale_; }

    void SetAutoscale(std::int16_t autoscale) { autoscale_ = autoscale; }

    /// Draws the current bitmap, whichever reader created it, at this object's size.
    void DrawPCX(PictureSurface& target) const;

    std::int32_t Width() const { return width_; }

    std::int32_t Height() const { return height_; }

    std::int32_t TwipWidth() const { return twip_width_; }

    std::int32_t TwipHeight() const { return twip_height_; }

    /// The header of the file loaded last.
    const PcxHeader& Header() const { return header_; }

    // The stages of a decode.

    /// Expands all bytes except the last, which is only read as the value of a preceding run byte. Runs may
    /// cross line ends.
    static ByteArray DecodeRle(std::span<const std::uint8_t> bytes);

    /// Converts top-down lines to bottom-up rows, each padded to a multiple of 4 bytes. SubscriptOutOfRange
    /// when a line starts beyond the array; missing bytes of a partial line are 0.
    static ByteArray FlipRows(std::span<const std::uint8_t> bytes, std::int32_t height,
                              std::int32_t lineBytes);

    /// Rounds up to a multiple of 4.
    static std::int32_t RoundWidth(std::int32_t width);

    /// Converts lines of four bit planes, `bytesPerLine` bytes per plane, to lines of width / 2 bytes of
    /// nibbles. Missing plane bytes are 0. SubscriptOutOfRange when the result would be empty.
    static ByteArray MergePlanes(std::span<const std::uint8_t> bytes, std::int32_t bytesPerLine,
                                 std::int32_t width, std::int32_t height);

    /// Combines 8 pixels of four planes into 4 bytes of nibbles; plane 0 gives the lowest bit.
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
    std::int16_t top_down_ = 0; // never set: FlipRows reverses the rows instead
    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
    std::int16_t scale_mode_ = 1;
    std::int16_t autoscale_ = True;
    std::int32_t twip_width_ = 0;
    std::int32_t twip_height_ = 0;
    PcxHeader header_;
};

} // namespace varnoth
