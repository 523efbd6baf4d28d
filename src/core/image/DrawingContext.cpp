#include "core/image/DrawingContext.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

#include "core/image/IndexExpansion.h"
#include "core/image/packed_indices.h"

namespace varnoth {

namespace {

// For one axis of a stretch: the source coordinate of each visible destination coordinate.
struct AxisMap {
    std::int32_t first = 0;            // first destination coordinate that is drawn
    std::vector<std::int32_t> sources; // source coordinate for it and those after it
};

// A stretch is monotonic, so the coordinates inside both bitmaps are contiguous.
AxisMap map_axis(std::int32_t to, std::int32_t to_size, std::int32_t to_limit, std::int32_t from,
                 std::int32_t from_size, std::int32_t from_limit) {
    AxisMap map;
    if (to_size == 0 || from_size == 0) {
        return map;
    }
    const std::int64_t to_count = std::abs(std::int64_t{to_size});
    const std::int64_t from_count = std::abs(std::int64_t{from_size});
    const std::int64_t to_start = to_size > 0 ? to : std::int64_t{to} - to_count + 1;
    const std::int64_t from_start = from_size > 0 ? from : std::int64_t{from} - from_count + 1;
    const bool mirrored = (to_size < 0) != (from_size < 0);
    const std::int64_t begin = std::max<std::int64_t>(to_start, 0);
    const std::int64_t end = std::min<std::int64_t>(to_start + to_count, to_limit);
    for (std::int64_t at = begin; at < end; ++at) {
        std::int64_t index = ((2 * (at - to_start) + 1) * from_count - 1) / (2 * to_count);
        if (mirrored) {
            index = from_count - 1 - index;
        }
        const std::int64_t source = from_start + index;
        if (source < 0 || source >= from_limit) {
            continue;
        }
        if (map.sources.empty()) {
            map.first = static_cast<std::int32_t>(at);
        }
        map.sources.push_back(static_cast<std::int32_t>(source));
    }
    return map;
}

bool is_run(const std::vector<std::int32_t>& sources) {
    return std::ranges::adjacent_find(sources, [](std::int32_t a, std::int32_t b) { return b != a + 1; }) ==
           sources.end();
}

bool same_pixel_format(const Bitmap& a, const Bitmap& b) {
    return a.bits_per_pixel() == b.bits_per_pixel() && std::ranges::equal(a.colour_table(), b.colour_table());
}

template <typename Pixel>
void gather(const std::uint8_t* from, std::uint8_t* to, const std::vector<std::int32_t>& sources) {
    for (std::size_t i = 0; i < sources.size(); ++i) {
        std::memcpy(to + i * sizeof(Pixel), from + static_cast<std::size_t>(sources[i]) * sizeof(Pixel),
                    sizeof(Pixel));
    }
}

// Copies pixels of one format and of at least 8 bits.
void copy_raw(const Bitmap& source, Bitmap& target, const AxisMap& columns, const AxisMap& rows) {
    const std::size_t pixel_bytes = static_cast<std::size_t>(source.bits_per_pixel()) / 8;
    const bool contiguous = is_run(columns.sources);
    for (std::size_t i = 0; i < rows.sources.size(); ++i) {
        const std::uint8_t* from = source.row(rows.sources[i]);
        std::uint8_t* to = target.row(rows.first + static_cast<std::int32_t>(i)) +
                           static_cast<std::size_t>(columns.first) * pixel_bytes;
        if (contiguous) {
            std::memmove(to, from + static_cast<std::size_t>(columns.sources.front()) * pixel_bytes,
                         columns.sources.size() * pixel_bytes);
        } else if (pixel_bytes == 4) {
            gather<RGBQUAD>(from, to, columns.sources);
        } else if (pixel_bytes == 1) {
            gather<std::uint8_t>(from, to, columns.sources);
        } else if (pixel_bytes == 2) {
            gather<std::uint16_t>(from, to, columns.sources);
        } else {
            gather<std::array<std::uint8_t, 3>>(from, to, columns.sources);
        }
    }
}

// Copies the indices of pixels of one format and of fewer than 8 bits.
void copy_packed(const Bitmap& source, Bitmap& target, const AxisMap& columns, const AxisMap& rows) {
    const std::int32_t bits = source.bits_per_pixel();
    for (std::size_t i = 0; i < rows.sources.size(); ++i) {
        const std::uint8_t* from = source.row(rows.sources[i]);
        std::uint8_t* to = target.row(rows.first + static_cast<std::int32_t>(i));
        for (std::size_t k = 0; k < columns.sources.size(); ++k) {
            const unsigned index = get_packed_index(from, static_cast<std::size_t>(columns.sources[k]), bits);
            put_packed_index(to, static_cast<std::size_t>(columns.first) + k, bits, index);
        }
    }
}

// Expands 8-bit indices to 32-bit pixels.
void copy_expanded(const Bitmap& source, Bitmap& target, const AxisMap& columns, const AxisMap& rows) {
    const IndexExpansion expansion(source.colour_table().first<256>());
    for (std::size_t i = 0; i < rows.sources.size(); ++i) {
        const std::uint8_t* from = source.row(rows.sources[i]) + columns.sources.front();
        std::uint8_t* to = target.row(rows.first + static_cast<std::int32_t>(i)) +
                           4 * static_cast<std::size_t>(columns.first);
        expansion.expand({from, columns.sources.size()}, to);
    }
}

void copy_colours(const Bitmap& source, Bitmap& target, const AxisMap& columns, const AxisMap& rows) {
    const auto [lowest, highest] = std::ranges::minmax(columns.sources);
    std::vector<RGBQUAD> source_row(static_cast<std::size_t>(highest - lowest) + 1);
    std::vector<RGBQUAD> target_row(columns.sources.size());
    const bool contiguous = is_run(columns.sources);
    for (std::size_t i = 0; i < rows.sources.size(); ++i) {
        read_pixels(source, lowest, rows.sources[i], source_row);
        const std::int32_t y = rows.first + static_cast<std::int32_t>(i);
        if (contiguous) {
            write_pixels(target, columns.first, y, source_row);
            continue;
        }
        for (std::size_t k = 0; k < target_row.size(); ++k) {
            target_row[k] = source_row[static_cast<std::size_t>(columns.sources[k] - lowest)];
        }
        write_pixels(target, columns.first, y, target_row);
    }
}

} // namespace

Bitmap* DrawingContext::select(Bitmap* bitmap) {
    return std::exchange(bitmap_, bitmap);
}

std::int32_t DrawingContext::set_stretch_mode(std::int32_t mode) {
    return std::exchange(stretch_mode_, mode);
}

std::int32_t bit_blt(DrawingContext& destination, std::int32_t x, std::int32_t y, std::int32_t width,
                     std::int32_t height, const DrawingContext& source, std::int32_t source_x,
                     std::int32_t source_y, std::uint32_t operation) {
    return stretch_blt(destination, {x, y, width, height}, source, {source_x, source_y, width, height},
                       operation);
}

std::int32_t stretch_blt(DrawingContext& destination, const Rectangle& to, const DrawingContext& source,
                         const Rectangle& from, std::uint32_t operation) {
    if (destination.bitmap() == nullptr || source.bitmap() == nullptr || operation != SRCCOPY) {
        return 0;
    }
    stretch_pixels(*destination.bitmap(), to, *source.bitmap(), from);
    return 1;
}

void stretch_pixels(Bitmap& target, const Rectangle& to, const Bitmap& picture, const Rectangle& from) {
    if (&target == &picture) {
        const Bitmap copy = picture;
        stretch_pixels(target, to, copy, from);
        return;
    }
    const AxisMap columns = map_axis(to.x, to.width, target.width(), from.x, from.width, picture.width());
    const AxisMap rows = map_axis(to.y, to.height, target.height(), from.y, from.height, picture.height());
    if (columns.sources.empty() || rows.sources.empty()) {
        return;
    }
    if (picture.bits_per_pixel() == 8 && target.bits_per_pixel() == 32 && is_run(columns.sources)) {
        copy_expanded(picture, target, columns, rows);
    } else if (!same_pixel_format(picture, target)) {
        copy_colours(picture, target, columns, rows);
    } else if (picture.bits_per_pixel() < 8) {
        copy_packed(picture, target, columns, rows);
    } else {
        copy_raw(picture, target, columns, rows);
    }
}

std::int32_t get_colour_table(const DrawingContext& context, std::int32_t first, std::span<RGBQUAD> entries) {
    if (context.bitmap() == nullptr || first < 0) {
        return 0;
    }
    const auto table = context.bitmap()->colour_table();
    const std::size_t begin = std::min<std::size_t>(static_cast<std::size_t>(first), table.size());
    const std::size_t count = std::min(entries.size(), table.size() - begin);
    std::copy_n(table.begin() + static_cast<std::ptrdiff_t>(begin), count, entries.begin());
    return static_cast<std::int32_t>(count);
}

std::int32_t set_colour_table(DrawingContext& context, std::int32_t first, std::span<const RGBQUAD> entries) {
    if (context.bitmap() == nullptr || first < 0) {
        return 0;
    }
    const auto table = context.bitmap()->colour_table();
    const std::size_t begin = std::min<std::size_t>(static_cast<std::size_t>(first), table.size());
    const std::size_t count = std::min(entries.size(), table.size() - begin);
    std::copy_n(entries.begin(), count, table.begin() + static_cast<std::ptrdiff_t>(begin));
    return static_cast<std::int32_t>(count);
}

} // namespace varnoth
