#include "core/quantize/mixpals.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <utility>

#include "core/base/numbers.h"
#include "core/quantize/WrittenColours.h"
#include "core/services/Services.h"

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

// The colours that AddPictureColors has written to the table, for fast lookup.
WrittenColours written_colours;

// A colour as one number: blue in the low byte, then green and red.
using Key = std::uint32_t;

constexpr Key no_key = 0xFFFFFFFF;
constexpr std::size_t cache_slots = 4096;

// The cache slot of a key: multiplicative hashing with 2^32 divided by the golden ratio.
std::size_t slot_of(Key key) {
    return (key * 2654435761U) >> 20;
}

// A cache of colours that are in the table. Colours stay in the table until InitColorTable.
std::array<Key, cache_slots> colours_in_table;

// A cache of the results of nearest_index.
struct CachedIndex {
    Key key = no_key;
    std::uint8_t index = 0;
};

std::array<CachedIndex, cache_slots> cached_indices;

std::uint8_t find_nearest(Key key) {
    // A key used as a colour has red and blue exchanged, like the lookup palette.
    const auto index = hLookupPalette->GetNearestPaletteIndex(static_cast<Colour>(key));
    cached_indices[slot_of(key)] = {key, static_cast<std::uint8_t>(index)};
    return static_cast<std::uint8_t>(index);
}

std::uint8_t index_of(Key key) {
    const CachedIndex& slot = cached_indices[slot_of(key)];
    return slot.key == key ? slot.index : find_nearest(key);
}

void check_lookup_palette() {
    if (!hLookupPalette) {
        fail(Failure::Overflow);
    }
}

// The key of a pixel of 4 bytes, with one load instead of three.
Key key_of_quad(const std::uint8_t* pixel) {
    Key key = 0;
    std::memcpy(&key, pixel, sizeof key);
    if constexpr (std::endian::native == std::endian::big) {
        key = __builtin_bswap32(key);
    }
    return key & 0xFFFFFF;
}

// Calls visit(i, key) for the first `count` pixels of `pixel_bytes` bytes each.
template <typename Visit>
void visit_keys(std::span<const std::uint8_t> pixels, std::size_t pixel_bytes, std::size_t count,
                Visit&& visit) {
    if (pixel_bytes == 4) {
        for (std::size_t i = 0; i < count; ++i) {
            visit(i, key_of_quad(&pixels[4 * i]));
        }
        return;
    }
    for (std::size_t i = 0, at = 0; i < count; ++i, at += pixel_bytes) {
        visit(i, pixels[at] | Key{pixels[at + 1]} << 8 | Key{pixels[at + 2]} << 16);
    }
}

RGBQUAD quad_of_key(Key key) {
    return {static_cast<std::uint8_t>(key), static_cast<std::uint8_t>(key >> 8),
            static_cast<std::uint8_t>(key >> 16), 0};
}

bool is_colour(const RGBQUAD& entry, std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    return entry.rgbRed == red && entry.rgbGreen == green && entry.rgbBlue == blue;
}

// The limit is inclusive, so a search up to ColorCount also tests the free entry.
template <typename Entries>
bool contains(const Entries& entries, std::uint8_t red, std::uint8_t green, std::uint8_t blue,
              std::int32_t limit) {
    const auto count = static_cast<std::int64_t>(entries.size());
    for (std::int64_t position = 0; position <= limit && position < count; ++position) {
        if (is_colour(entries[static_cast<std::size_t>(position)], red, green, blue)) {
            return true;
        }
    }
    return false;
}

// Whether the free entry has this colour. The search includes that entry.
bool is_in_free_entry(const RGBQUAD& pixel) {
    return colour_of(ColorTable[static_cast<std::size_t>(ColorCount)]) == colour_of(pixel);
}

void add_to_table(const RGBQUAD& pixel) {
    ColorTable[static_cast<std::size_t>(ColorCount)] = pixel;
    written_colours.insert(colour_of(pixel));
    ColorCount = checked_add(ColorCount, 1);
    if (ColorCount > std::ssize(ColorTable) - 1) {
        ColorTable.resize(ColorTable.size() + table_growth);
    }
}

// Adds a colour unless it is in the table or in the free entry.
void add_if_new(Key key) {
    check_subscript(ColorCount, ColorTable.size());
    const RGBQUAD pixel = quad_of_key(key);
    if (!written_colours.contains(colour_of(pixel))) {
        if (is_in_free_entry(pixel)) {
            return; // not to be cached: the next new colour overwrites that entry
        }
        add_to_table(pixel);
    }
    colours_in_table[slot_of(key)] = key;
}

// Calls visit_row(y, count) for every row of the surface; the first `count` pixels of the row are in MixBits.
template <typename VisitRow>
void visit_rows(const PictureSurface& surface, VisitRow&& visit_row) {
    for (std::int32_t y = 0; y < surface.ScaleHeight(); ++y) {
        yield_to_events();
        const auto width = static_cast<std::int64_t>(std::ceil(surface.ScaleWidth()));
        if (width == 0) {
            continue;
        }
        check_subscript(2, MixBits.channels());
        check_subscript(y, MixBits.height());
        visit_row(y, static_cast<std::size_t>(std::min<std::int64_t>(width, MixBits.width())));
        check_subscript(width - 1, MixBits.width());
    }
}

// Calls visit(i, key) for the first `count` pixels of a row of MixBits.
template <typename Visit>
void visit_row_keys(std::int32_t y, std::size_t count, Visit&& visit) {
    visit_keys(std::as_const(MixBits).row(y), static_cast<std::size_t>(MixBits.channels()), count, visit);
}

// Whether row y and the row below it both begin with a background pixel.
bool row_is_unused(const PictureSurface& surface, std::int32_t y) {
    return surface.Point(0, y) == surface.BackColor() && surface.Point(0, y + 1) == surface.BackColor();
}

} // namespace

void InitColorTable() {
    ColorCount = 0;
    ColorTable.assign(first_table_size, RGBQUAD{});
    ColorTable.shrink_to_fit(); // releases the memory of a large table
    written_colours.clear();
    colours_in_table.fill(no_key);
}

bool PrepareMixBits(const PictureSurface& surface) {
    // Only the size is compared, not the depth.
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
    return contains(ColorTable, red, green, blue, limit);
}

// Never writes black: the search finds it in the free entry, which is black. DrawColorTable also draws the
// free entry, so black is on every sheet, whether a picture contains it or not.
bool AddPictureColors(PictureSurface& surface) {
    if (!PrepareMixBits(surface)) {
        return false;
    }
    ReadMixBits(surface);
    visit_rows(surface, [](std::int32_t y, std::size_t count) {
        visit_row_keys(y, count, [](std::size_t, Key key) {
            if (colours_in_table[slot_of(key)] != key) {
                add_if_new(key);
            }
        });
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
    for (std::int32_t position = 0; position <= ColorCount; ++position) {
        surface.PSet(x, y, colour_of(ColorTable[static_cast<std::size_t>(position)]));
        // A row takes 514 entries: the two beyond the right edge are lost, and so is everything below the
        // last row.
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
    return contains(ImportPalette, red, green, blue, limit);
}

// Here too, the search includes the free entry: black on the first import, a colour of an earlier import
// later. That colour is skipped, and the next new colour overwrites the entry.
void FinalizePalette(PictureSurface& surface) {
    InitColorTable();
    PrepareMixBits(surface);
    ReadMixBits(surface);
    WrittenColours written;
    const auto is_in_palette = [&](const RGBQUAD& pixel) {
        const auto free_entry = static_cast<std::size_t>(ColorCount);
        return written.contains(colour_of(pixel)) ||
               (free_entry < ImportPalette.size() &&
                colour_of(ImportPalette[free_entry]) == colour_of(pixel));
    };
    const auto take = [&](std::size_t, Key key) {
        const RGBQUAD pixel = quad_of_key(key);
        if (!is_in_palette(pixel)) {
            check_subscript(ColorCount, ImportPalette.size());
            ImportPalette[static_cast<std::size_t>(ColorCount)] = pixel;
            written.insert(colour_of(pixel));
            ++ColorCount;
        }
    };
    visit_rows(surface, [&](std::int32_t y, std::size_t count) { visit_row_keys(y, count, take); });
    MakeLookupPalette();
}

// If the colour is in an entry below 255, the loop exchanges the two entries, but then finds the colour again
// in entry 255 and overwrites it with the old entry 255: both entries end with that colour and the
// transparent colour is lost. The lookup palette does not change, so pixels of that colour keep their old
// index.
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

// Copies the entries with red and blue exchanged; nearest_index exchanges them too.
void MakeLookupPalette() {
    LOGPALETTE record;
    record.palNumEntries = 256;
    for (std::size_t i = 0; i < ImportPalette.size(); ++i) {
        const RGBQUAD& entry = ImportPalette[i];
        record.palPalEntry[i] = {entry.rgbBlue, entry.rgbGreen, entry.rgbRed, entry.rgbReserved};
    }
    hLookupPalette = std::make_unique<LogicalPalette>(record);
    cached_indices.fill({});
}

std::int16_t nearest_index(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    check_lookup_palette();
    return index_of(blue | Key{green} << 8 | Key{red} << 16);
}

void nearest_indices(std::span<const std::uint8_t> pixels, std::size_t pixel_bytes,
                     std::span<std::uint8_t> indices) {
    if (indices.empty()) {
        return;
    }
    check_lookup_palette();
    visit_keys(pixels, pixel_bytes, indices.size(),
               [&](std::size_t i, Key key) { indices[i] = index_of(key); });
}

} // namespace varnoth::mixpals
