#include "core/codecs/write_pcx.h"

#include <algorithm>

#include "core/base/numbers.h"
#include "core/codecs/PcxHeader.h"

namespace varnoth {

namespace {

constexpr std::uint8_t run_mark = 0xC0; // in the two highest bits of a byte: the others are a run's length
constexpr std::ptrdiff_t longest_run = 63;
constexpr std::uint8_t palette_mark = 12;
constexpr std::int16_t dots_per_inch = 96;

PcxHeader header_of(std::int32_t width, std::int32_t height) {
    PcxHeader header;
    header.Manufacturer = 10;
    header.Version = 5;
    header.Encoding = 1;
    header.BitsPerPixel = 8;
    header.XMax = narrow<std::int16_t>(width - 1);
    header.YMax = narrow<std::int16_t>(height - 1);
    header.HDpi = dots_per_inch;
    header.VDpi = dots_per_inch;
    header.NPlanes = 1;
    header.BytesPerLine = narrow<std::int16_t>(width + width % 2);
    return header;
}

void append_runs(std::vector<std::uint8_t>& bytes, std::span<const std::uint8_t> row) {
    for (auto at = row.begin(); at != row.end();) {
        const auto limit = at + std::min(longest_run, row.end() - at);
        const auto end = std::find_if(at, limit, [&](std::uint8_t index) { return index != *at; });
        if (end - at > 1 || *at >= run_mark) {
            bytes.push_back(static_cast<std::uint8_t>(run_mark | (end - at)));
        }
        bytes.push_back(*at);
        at = end;
    }
}

} // namespace

std::vector<std::uint8_t> write_pcx(const IndexedPicture& picture) {
    const auto header = header_of(picture.width, picture.height).to_bytes();
    std::vector<std::uint8_t> bytes(header.begin(), header.end());
    const auto width = static_cast<std::size_t>(picture.width);
    std::vector<std::uint8_t> row(width + width % 2);
    for (std::size_t at = 0; at < picture.indices.size(); at += width) {
        std::ranges::copy(picture.indices.subspan(at, width), row.begin());
        append_runs(bytes, row);
    }
    bytes.push_back(palette_mark);
    for (const std::uint32_t colour : picture.colours) {
        for (const int shift : {16, 8, 0}) {
            bytes.push_back(static_cast<std::uint8_t>(colour >> shift & 0xFF));
        }
    }
    return bytes;
}

} // namespace varnoth
