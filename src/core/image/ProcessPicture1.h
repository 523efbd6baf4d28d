// A toolbox of picture operations: reads the pixels of a surface into a buffer, analyses or filters them and
// writes the result back. It also has a list of up to 256 colours that its scans fill.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "core/image/PictureSurface.h"
#include "core/image/PixelBlock.h"

namespace varnoth {

/// Every operation on a picture returns false for one of fewer than 24 bits and leaves it unchanged. Buffers
/// are reused while pictures have the same size; only the size is compared. A picture of the size last
/// rejected, or last used before Destroy_TheBits, therefore meets a buffer of one element:
/// SubscriptOutOfRange. A picture of width 0 is a DivisionByZero, one of height 0 a SubscriptOutOfRange;
/// OutOfMemory when the buffers cannot be allocated. After these three failures the size counts as the last
/// one, but the buffers do not match it.
class ProcessPicture1 {
  public:
    ProcessPicture1();

    /// Whether the picture has more than 256 colours. Fills the list as Make_Pal_From_Pic does, then counts
    /// every pixel whose colour is not listed. Yields at each row.
    bool is_more_than_256(const PictureSurface& picture);

    // Interface: not used by the editor itself.

    /// Copies all 256 entries to `donde`. SubscriptOutOfRange when it is too short, after it has been filled.
    void get_palette(std::span<Colour> donde) const;

    /// Copies 256 entries from `donde`. SubscriptOutOfRange when it is too short, after it has been copied.
    void set_palette(std::span<const Colour> donde);

    /// Draws the list as 16 by 16 cells of 10 pixels, row by row, entry 0 at the top left.
    void DrawThePalette(PictureSurface& donde) const;

    /// Whether one of the entries 0 to `upto`, inclusive and at most 255, is the colour.
    bool existe_en_pal(Colour thecolor, std::int16_t upto) const;

    /// Sets all 256 entries to one colour.
    void init_pal(Colour thecolor);

    /// Copies the three colour channels of Picture1 to Picture2. False when their sizes differ.
    bool Copy_Picture(const PictureSurface& Picture1, PictureSurface& Picture2);

    /// Lists the picture's colours in order of first appearance, up to 256. Entries that the scan does not
    /// reach keep their contents, and the entry about to be filled counts as listed.
    bool Make_Pal_From_Pic(const PictureSurface& picture);

    /// Whether all pixels have three equal channels. Yields at each row.
    bool is_greyscale(const PictureSurface& picture);

    /// The same, but also accepts pure red and pure green. Yields at each row.
    bool is_greyscale_and_PRGB(const PictureSurface& picture);

    /// Releases the buffers. The object then cannot process pictures of the last size.
    void Destroy_TheBits();

    /// Flips the picture upside down.
    bool Flip_Picture_Vertical(PictureSurface& picture);

    /// Converts to grey with weights of 0.222 red, 0.707 green and 0.071 blue.
    bool Make_Picture_GreyScale(PictureSurface& picture);

    /// The same, but keeps pure red, green or blue pixels if the flag is set.
    bool Make_Picture_GreyScale_PureRGB(PictureSurface& picture, bool withRed, bool withGreen, bool withBlue);

    /// Replaces every channel value by 255 minus the value.
    bool Make_Picture_Negative(PictureSurface& picture);

    /// Exchanges left and right.
    bool Flip_Picture_Horizontal(PictureSurface& picture);

    /// Reorder the channels: the last three letters name the sources of red, green and blue.
    bool Change_RGB_to_BGR(PictureSurface& picture);
    bool Change_RGB_to_BRG(PictureSurface& picture);
    bool Change_RGB_to_GBR(PictureSurface& picture);
    bool Change_RGB_to_GRB(PictureSurface& picture);
    bool Change_RGB_to_RBG(PictureSurface& picture);

    /// Adds to each channel and clamps to 0 to 255. Overflow when a sum does not fit 16 bits; the picture is
    /// then unchanged.
    bool Make_ColorShift(PictureSurface& picture, std::int16_t Rval, std::int16_t Gval, std::int16_t Bval);

    /// Brightens all channels by 50, but sets blue to 0 in grey pixels.
    bool Make_BlaBla(PictureSurface& picture);

    /// Make_ColorShift, but pixels of colour `change_from` become `change_to`. Overflow when there is such a
    /// pixel and `change_to` is not a plain colour; the picture is then unchanged.
    bool Make_ColorShift_bypass(PictureSurface& picture, std::int16_t Rval, std::int16_t Gval,
                                std::int16_t Bval, Colour change_from, Colour change_to);

    /// The working state.
    const BITMAP& SrcInfo() const { return src_info_; }

    const BITMAP& DstInfo() const { return dst_info_; }

    const PixelBlock& SrcBits() const { return src_bits_; }

    const PixelBlock& DstBits() const { return dst_bits_; }

    std::span<const Colour, 256> ColorList() const { return color_list_; }

  private:
    bool PrepareBits(const PictureSurface& picture);
    void ReadBits(const PictureSurface& picture);
    void WriteBits(PictureSurface& picture) const;

    template <typename Rule>
    bool all_pixels(const PictureSurface& picture, Rule passes);

    enum class Mirror { None, Rows, Columns };

    template <typename Rule>
    bool filter(PictureSurface& picture, Mirror mirror, Rule rule);

    BITMAP src_info_;
    PixelBlock src_bits_;
    BITMAP dst_info_;
    PixelBlock dst_bits_;
    std::array<Colour, 256> color_list_{};
    /// Counts the changes of color_list_, so that a scan notices a change during a yield.
    std::uint64_t list_changes_ = 0;
};

} // namespace varnoth
