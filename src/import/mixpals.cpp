#include "import/mixpals.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "base/numbers.h"
#include "import/ColourSet.h"
#include "platform/Services.h"

namespace varnoth::mixpals {

std::array<RGBQUAD, 256> ImportPalette{};
std::vector<RGBQUAD> ColorTable;
std::int32_t ColorCount = 0;
std::unique_ptr<LogicalPalette> hLookupPalette;
BITMAP MixInfo;
PixelBlock MixBits;

namespace {

constexpr std::int32_t first_table_size = 1001;
constexpr std::int32_t table_growth = 1000;
constexpr std::int32_t sheet_side = 512;

// The colours that AddPictureColors wrote to the table, for quick search.
ColourSet written_colours;

// Answers of nearest_index for colours asked lately, by a hash of the colour.
struct RememberedIndex {
    Colour colour = no_colour;
    std::uint8_t index = 0;
};

std::array<RememberedIndex, 4096> remembered;

std::size_t remembered_slot(Colour colour) {
    return (static_cast<std::uint32_t>(colour) * 2654435761U) >> 20;
}

bool is_colour(const RGBQUAD& entry, std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    return entry.rgbRed == red && entry.rgbGreen == green && entry.rgbBlue == blue;
}

// The limit counts as met, so that the free entry behind the last colour takes part in every search.
template <typename Entries>
bool seek(const Entries& entries, std::uint8_t red, std::uint8_t green, std::uint8_t blue,
          std::int32_t limit) {
    const auto count = static_cast<std::int64_t>(entries.size());
    for (std::int64_t position = 0; position <= limit && position < count; ++position) {
        if (is_colour(entries[static_cast<std::size_t>(position)], red, green, blue)) {
            return true;
        }
    }
    return false;
}

// The same as a search up to the free position ColorCount: the colours written, or what that position holds.
bool is_in_table(const RGBQUAD& pixel) {
    check_subscript(ColorCount, ColorTable.size());
    return written_colours.contains(colour_of(pixel)) ||
           colour_of(ColorTable[static_cast<std::size_t>(ColorCount)]) == colour_of(pixel);
}

void add_to_table(const RGBQUAD& pixel) {
    ColorTable[static_cast<std::size_t>(ColorCount)] = pixel;
    written_colours.insert(colour_of(pixel));
    ColorCount = checked_add(ColorCount, 1);
    if (ColorCount > std::ssize(ColorTable) - 1) {
        ColorTable.resize(ColorTable.size() + table_growth);
    }
}

RGBQUAD pixel_at(std::int32_t x, std::int32_t y) {
    const auto channels = MixBits.pixel(x, y);
    check_subscript(2, channels.size());
    return {channels[0], channels[1], channels[2], 0};
}

template <typename Visit>
void visit_pixels(const PictureSurface& surface, Visit&& visit) {
    for (std::int32_t y = 0; y < surface.ScaleHeight(); ++y) {
        yield_to_events();
        for (std::int32_t x = 0; x < surface.ScaleWidth(); ++x) {
            visit(pixel_at(x, y));
        }
    }
}

// Whether the first pixels of row y and of the row below it are both background.
bool row_is_unused(const PictureSurface& surface, std::int32_t y) {
    return surface.Point(0, y) == surface.BackColor() && surface.Point(0, y + 1) == surface.BackColor();
}

} // namespace

void InitColorTable() {
    ColorCount = 0;
    ColorTable.assign(first_table_size, RGBQUAD{});
    written_colours.clear();
}

bool PrepareMixBits(const PictureSurface& surface) {
    // The size alone decides, neither the depth nor whose surface it is.
    if (surface.ScaleWidth() == MixInfo.bmWidth && surface.ScaleHeight() == MixInfo.bmHeight) {
        return true;
    }
    MixInfo = surface.description();
    if (MixInfo.bmBitsPixel < 24) {
        MixBits.shrink();
        return false;
    }
    MixBits.size_for(MixInfo);
    return true;
}

void ReadMixBits(const PictureSurface& surface) {
    MixBits.read(surface);
}

bool SeekColorInTable(std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::int32_t limit) {
    return seek(ColorTable, red, green, blue, limit);
}

// Black is never written here: the free entry behind the last colour is black and counts as met on every
// search, so black is always in the mix, whether a picture holds it or not.
bool AddPictureColors(PictureSurface& surface) {
    if (!PrepareMixBits(surface)) {
        return false;
    }
    ReadMixBits(surface);
    Colour last = no_colour;
    visit_pixels(surface, [&](const RGBQUAD& pixel) {
        if (colour_of(pixel) != std::exchange(last, colour_of(pixel)) && !is_in_table(pixel)) {
            add_to_table(pixel);
        }
    });
    return true;
}

void DrawColorTable(PictureSurface& surface) {
    surface.SetWidth(sheet_side);
    surface.SetHeight(sheet_side);
    check_subscript(0, ColorTable.size());
    surface.SetBackColor(colour_of(ColorTable.front()));
    std::int32_t x = 0;
    std::int32_t y = 0;
    for (std::int32_t position = 0; position <= ColorCount && y < sheet_side; ++position) {
        surface.PSet(x, y, colour_of(ColorTable[static_cast<std::size_t>(position)]));
        // A row takes 514 positions: the two beyond the right edge are lost, and so is all below the last
        // row.
        if (x <= surface.ScaleWidth()) {
            ++x;
        } else {
            x = 0;
            ++y;
        }
    }
    for (std::int32_t row = 0; row < surface.ScaleHeight(); ++row) {
        if (row_is_unused(surface, row)) {
            surface.SetHeight(row + 1);
            break;
        }
    }
}

bool SeekColorInPalette(std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::int32_t limit) {
    return seek(ImportPalette, red, green, blue, limit);
}

// The limit of the search includes the free entry here too. Whatever stands there, black on a first import,
// the colours of an earlier one later, counts as met and is then overwritten by the next new colour.
void FinalizePalette(PictureSurface& surface) {
    InitColorTable();
    PrepareMixBits(surface);
    ReadMixBits(surface);
    ColourSet written;
    const auto is_in_palette = [&](const RGBQUAD& pixel) {
        const auto free_entry = static_cast<std::size_t>(ColorCount);
        return written.contains(colour_of(pixel)) ||
               (free_entry < ImportPalette.size() &&
                colour_of(ImportPalette[free_entry]) == colour_of(pixel));
    };
    visit_pixels(surface, [&](const RGBQUAD& pixel) {
        if (!is_in_palette(pixel)) {
            check_subscript(ColorCount, ImportPalette.size());
            ImportPalette[static_cast<std::size_t>(ColorCount)] = pixel;
            written.insert(colour_of(pixel));
            ++ColorCount;
        }
    });
    MakeLookupPalette();
}

// A colour met below entry 255 is moved there and met again at entry 255, where the entry that it displaced
// is written over it: both entries then hold the old entry 255 and the transparent colour is gone. The lookup
// palette stays as it was made, so pixels of that colour keep their old index.
void SwapTransparent(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    const RGBQUAD given{blue, green, red, 0};
    RGBQUAD displaced;
    bool moved = false;
    for (RGBQUAD& entry : ImportPalette) {
        if (!is_colour(entry, red, green, blue)) {
            continue;
        }
        if (!moved) {
            displaced = ImportPalette.back();
            moved = true;
        }
        ImportPalette.back() = given;
        entry = displaced;
    }
}

// The bytes go over as they stand, so blue stands in the red place and red in the blue place; nearest_index
// crosses its question in the same way.
void MakeLookupPalette() {
    LOGPALETTE record;
    record.palNumEntries = 256;
    for (std::size_t i = 0; i < ImportPalette.size(); ++i) {
        const RGBQUAD& entry = ImportPalette[i];
        record.palPalEntry[i] = {entry.rgbBlue, entry.rgbGreen, entry.rgbRed, entry.rgbReserved};
    }
    hLookupPalette = std::make_unique<LogicalPalette>(record);
    remembered.fill({});
}

std::int16_t nearest_index(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    if (!hLookupPalette) {
        fail(Failure::Overflow);
    }
    const Colour crossed = make_colour(blue, green, red);
    RememberedIndex& slot = remembered[remembered_slot(crossed)];
    if (slot.colour != crossed) {
        slot = {crossed, static_cast<std::uint8_t>(hLookupPalette->GetNearestPaletteIndex(crossed))};
    }
    return slot.index;
}

} // namespace varnoth::mixpals
