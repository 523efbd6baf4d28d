// A toolbox for one surface after the other: it pulls the pixels into a buffer, looks at them or computes new
// ones there, and pushes those back. It also keeps a list of up to 256 colours that its scans fill.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "core/image/PictureSurface.h"
#include "core/image/PixelBlock.h"

namespace varnoth {

/// Every operation with a picture answers false for one of fewer than 24 bits and leaves it as it was. The
/// buffers are kept while pictures have the same size, and only the size is compared: a picture of the size
/// that was last refused, or that stood there before Destroy_TheBits, meets a buffer of one element, which is
/// a SubscriptOutOfRange. A picture without width is DivisionByZero, one without height SubscriptOutOfRange;
/// OutOfMemory when the buffers cannot be had. After these three the buffers are not for that size, though
/// it counts as the last one.
class ProcessPicture1 {
  public:
    ProcessPicture1();

    /// Copies all 256 entries out. SubscriptOutOfRange at the first that `donde` has no place for; those
    /// before it are copied.
    void get_palette(std::span<Colour> donde) const;

    /// The reverse, with the same failure.
    void set_palette(std::span<const Colour> donde);

    /// Draws the list as 16 by 16 cells of 10 pixels, entry 0 at the top left, along rows.
    void DrawThePalette(PictureSurface& donde) const;

    /// Whether an entry from 0 to `upto`, both included, is the colour. Entries end at 255 whatever `upto`
    /// is.
    bool existe_en_pal(Colour thecolor, std::int16_t upto) const;

    /// Gives all 256 entries one colour.
    void init_pal(Colour thecolor);

    /// Copies the three colour channels of Picture1 to Picture2. False when their sizes differ.
    bool Copy_Picture(const PictureSurface& Picture1, PictureSurface& Picture2);

    /// Lists the picture's colours in order of first appearance, up to 256. Entries that the scan does not
    /// reach keep what they held, and the entry about to be filled counts as listed.
    bool Make_Pal_From_Pic(const PictureSurface& picture);

    /// Whether the picture has more than 256 colours, by a scan that fills the list as Make_Pal_From_Pic
    /// does, then counts every pixel outside it. Yields at each row.
    bool is_more_than_256(const PictureSurface& picture);

    /// Whether all pixels have three equal channels. Yields at each row.
    bool is_greyscale(const PictureSurface& picture);

    /// The same, with pure red and pure green allowed besides. Yields at each row.
    bool is_greyscale_and_PRGB(const PictureSurface& picture);

    /// Gives the buffers back. The object is not for pictures of the last size any more.
    void Destroy_TheBits();

    /// The picture upside down.
    bool Flip_Picture_Vertical(PictureSurface& picture);

    /// Weights of 0.222 red, 0.707 green, 0.071 blue.
    bool Make_Picture_GreyScale(PictureSurface& picture);

    /// The same, but keeps pixels of exactly full red, green or blue where the flag is set.
    bool Make_Picture_GreyScale_PureRGB(PictureSurface& picture, bool withRed, bool withGreen, bool withBlue);

    /// Every channel taken from 255.
    bool Make_Picture_Negative(PictureSurface& picture);

    /// Left and right exchanged.
    bool Flip_Picture_Horizontal(PictureSurface& picture);

    /// The three channels in another order: the letters name what red, green and blue become.
    bool Change_RGB_to_BGR(PictureSurface& picture);
    bool Change_RGB_to_BRG(PictureSurface& picture);
    bool Change_RGB_to_GBR(PictureSurface& picture);
    bool Change_RGB_to_GRB(PictureSurface& picture);
    bool Change_RGB_to_RBG(PictureSurface& picture);

    /// Adds to each channel and clamps to 0 to 255. Overflow when a sum leaves 16 bits; the picture then
    /// stays.
    bool Make_ColorShift(PictureSurface& picture, std::int16_t Rval, std::int16_t Gval, std::int16_t Bval);

    /// Brightens by 50; grey pixels lose their blue instead.
    bool Make_BlaBla(PictureSurface& picture);

    /// Make_ColorShift, but pixels of exactly `change_from` become `change_to`. Overflow when such a pixel is
    /// met and `change_to` is no plain colour; the picture then stays.
    bool Make_ColorShift_bypass(PictureSurface& picture, std::int16_t Rval, std::int16_t Gval,
                                std::int16_t Bval, Colour change_from, Colour change_to);

    /// The working state, for those who want to look at it.
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
    /// Counts the changes of color_list_, so that a scan notices one behind a yield.
    std::uint64_t list_changes_ = 0;
};

} // namespace varnoth
