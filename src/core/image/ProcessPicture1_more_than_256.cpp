// The colour statistics of the toolbox: lists a picture's colours, counts whether there are more than 256,
// and tests for grey.
#include <cstddef>

#include "core/image/ProcessPicture1.h"
#include "core/image/picture_pixels.h"
#include "core/services/Services.h"

namespace varnoth {

namespace {

constexpr std::size_t list_size = 256;

// The listed part of the colour list as a hash set, for one lookup per pixel.
class ListedColours {
  public:
    bool contains(Colour colour) const { return slots_[slot_of(colour)] == key_of(colour); }

    void insert(Colour colour) {
        // Pixels are plain colours; others are never looked up.
        if (colour >= 0 && colour <= 0xFFFFFF) {
            slots_[slot_of(colour)] = key_of(colour);
        }
    }

  private:
    static std::uint32_t key_of(Colour colour) { return static_cast<std::uint32_t>(colour) + 1; }

    // The colour's slot, or the free slot for it. At most 256 slots are ever taken.
    std::size_t slot_of(Colour colour) const {
        std::size_t slot = static_cast<std::uint32_t>(colour) * 0x9E3779B1U >> 22;
        while (slots_[slot] != 0 && slots_[slot] != key_of(colour)) {
            slot = (slot + 1) % slots_.size();
        }
        return slot;
    }

    std::array<std::uint32_t, 1024> slots_{};
};

// A scan that appends new colours to the list. It does not clear the list first, and the entry about to be
// filled counts as listed with its old contents.
class ColourListing {
  public:
    explicit ColourListing(std::array<Colour, list_size>& list) : list_(list) {}

    bool is_listed(Colour colour) const {
        // The bound is inclusive: black gets no entry in a new list, and a scan skips a colour that an
        // earlier scan left in the next entry.
        return (!is_full() && list_[count_] == colour) || listed_.contains(colour);
    }

    bool is_full() const { return count_ == list_size; }

    void append(Colour colour) {
        listed_.insert(colour);
        list_[count_] = colour;
        ++count_;
    }

    // Call after other code has changed the list.
    void reread() {
        listed_ = {};
        for (std::size_t i = 0; i < count_; ++i) {
            listed_.insert(list_[i]);
        }
    }

  private:
    std::array<Colour, list_size>& list_;
    ListedColours listed_;
    std::size_t count_ = 0;
};

} // namespace

void ProcessPicture1::get_palette(std::span<Colour> donde) const {
    for (std::size_t i = 0; i < list_size; ++i) {
        check_subscript(i, donde.size());
        donde[i] = color_list_[i];
    }
}

void ProcessPicture1::set_palette(std::span<const Colour> donde) {
    ++list_changes_;
    for (std::size_t i = 0; i < list_size; ++i) {
        check_subscript(i, donde.size());
        color_list_[i] = donde[i];
    }
}

void ProcessPicture1::DrawThePalette(PictureSurface& donde) const {
    for (std::int32_t row = 0; row < 16; ++row) {
        for (std::int32_t column = 0; column < 16; ++column) {
            const Colour colour = color_list_[static_cast<std::size_t>(row * 16 + column)];
            donde.Line(column * 10, row * 10, column * 10 + 9, row * 10 + 9, colour);
        }
    }
}

bool ProcessPicture1::existe_en_pal(Colour thecolor, std::int16_t upto) const {
    for (std::size_t i = 0; i < list_size && static_cast<std::int32_t>(i) <= upto; ++i) {
        if (color_list_[i] == thecolor) {
            return true;
        }
    }
    return false;
}

void ProcessPicture1::init_pal(Colour thecolor) {
    ++list_changes_;
    color_list_.fill(thecolor);
}

bool ProcessPicture1::Make_Pal_From_Pic(const PictureSurface& picture) {
    if (!PrepareBits(picture)) {
        return false;
    }
    ReadBits(picture);
    ++list_changes_;
    ColourListing listing(color_list_);
    for (std::int32_t y = 0; y < src_info_.bmHeight && !listing.is_full(); ++y) {
        const PixelRow row(SrcBits(), y, src_info_.bmWidth);
        for (std::int32_t x = 0; x < src_info_.bmWidth && !listing.is_full(); ++x) {
            const Colour colour = colour_of(row[x]);
            if (!listing.is_listed(colour)) {
                listing.append(colour);
            }
        }
    }
    return true;
}

bool ProcessPicture1::is_more_than_256(const PictureSurface& picture) {
    // The 257th colour decides, but the scan stops only at 260.
    constexpr int too_many = 257;
    constexpr int enough = 260;
    if (!PrepareBits(picture)) {
        return false;
    }
    ReadBits(picture);
    const std::int32_t width = src_info_.bmWidth;
    const std::int32_t height = src_info_.bmHeight;
    std::uint64_t own_change = ++list_changes_;
    ColourListing listing(color_list_);
    int misses = 0;
    for (std::int32_t y = 0; y < height && misses < enough; ++y) {
        yield_to_events(); // one yield for all pixels of the row
        if (list_changes_ != own_change) {
            own_change = list_changes_;
            listing.reread();
        }
        const PixelRow row(SrcBits(), y, width);
        Colour listed_before = no_colour;
        for (std::int32_t x = 0; x < width && misses < enough; ++x) {
            const Colour colour = colour_of(row[x]);
            if (colour == listed_before) {
                continue;
            }
            if (!listing.is_listed(colour)) {
                ++misses;
                if (listing.is_full()) {
                    continue; // counted per pixel, not per colour
                }
                listing.append(colour);
            }
            listed_before = colour;
        }
    }
    return misses >= too_many;
}

template <typename Rule>
bool ProcessPicture1::all_pixels(const PictureSurface& picture, Rule passes) {
    if (!PrepareBits(picture)) {
        return false;
    }
    ReadBits(picture);
    const std::int32_t width = src_info_.bmWidth;
    const std::int32_t height = src_info_.bmHeight;
    for (std::int32_t y = 0; y < height; ++y) {
        yield_to_events(); // one yield for all pixels of this row
        const PixelRow row(SrcBits(), y, width);
        for (std::int32_t x = 0; x < width; ++x) {
            if (!passes(row[x])) {
                return false;
            }
        }
    }
    return true;
}

bool ProcessPicture1::is_greyscale(const PictureSurface& picture) {
    return all_pixels(picture, is_grey);
}

bool ProcessPicture1::is_greyscale_and_PRGB(const PictureSurface& picture) {
    // Pure red and green pass; blue, despite the name, does not.
    return all_pixels(picture, [](const Pixel& pixel) {
        return is_grey(pixel) || pixel == pure_red || pixel == pure_green;
    });
}

} // namespace varnoth
