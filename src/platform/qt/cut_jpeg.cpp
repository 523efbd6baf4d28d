#include "platform/qt/cut_jpeg.h"

#include <algorithm>
#include <random>

namespace varnoth {

namespace {

constexpr std::uint8_t start_of_image = 0xD8;
constexpr std::uint8_t end_of_image = 0xD9;
constexpr std::uint8_t start_of_scan = 0xDA;
constexpr std::uint8_t define_restart_interval = 0xDD;
constexpr std::uint8_t first_restart = 0xD0;

bool is_restart(std::uint8_t marker) {
    return marker >= first_restart && marker <= 0xD7;
}

bool has_no_length(std::uint8_t marker) {
    return marker == 0x00 || marker == 0x01 || marker == start_of_image || is_restart(marker);
}

/// A walk over entropy-coded data to the marker that ends it.
struct ScanWalk {
    std::size_t end = 0; ///< where that marker begins, or where the file ends
    bool marker_found = false;
    unsigned next_restart = 0;
};

ScanWalk walk_scan(std::span<const std::uint8_t> file, std::size_t at) {
    unsigned next_restart = 0;
    while (at < file.size()) {
        if (file[at] != 0xFF) {
            ++at;
            continue;
        }
        const std::size_t marker_start = at;
        while (at < file.size() && file[at] == 0xFF) {
            ++at;
        }
        if (at == file.size()) {
            return {marker_start, false, next_restart};
        }
        if (is_restart(file[at])) {
            next_restart = (file[at] - first_restart + 1U) % 8;
        } else if (file[at] != 0x00) {
            return {marker_start, true, next_restart};
        }
        ++at;
    }
    return {file.size(), false, next_restart};
}

} // namespace

std::optional<JpegCut> find_jpeg_cut(std::span<const std::uint8_t> file) {
    bool restarts = false;
    bool first_scan = true;
    std::size_t at = 0;
    while (at + 2 <= file.size()) {
        if (file[at] != 0xFF || file[at + 1] == 0xFF) {
            ++at;
            continue;
        }
        const std::uint8_t marker = file[at + 1];
        if (marker == end_of_image) {
            return std::nullopt;
        }
        if (has_no_length(marker)) {
            at += 2;
            continue;
        }
        if (at + 4 > file.size()) {
            break;
        }
        const std::size_t next = at + 2 + file[at + 2] * std::size_t{256} + file[at + 3];
        if (next > file.size()) {
            break;
        }
        if (marker == define_restart_interval && next >= at + 6) {
            restarts = file[at + 4] != 0 || file[at + 5] != 0;
        }
        at = next;
        if (marker == start_of_scan) {
            const ScanWalk scan = walk_scan(file, at);
            if (!scan.marker_found) {
                return first_scan ? std::optional(JpegCut{scan.end, true, restarts, scan.next_restart})
                                  : std::nullopt;
            }
            first_scan = false;
            at = scan.end;
        }
    }
    return first_scan ? std::nullopt : std::optional(JpegCut{std::min(at, file.size()), false, restarts, 0});
}

std::vector<std::uint8_t> jpeg_filler(const JpegCut& cut, unsigned number) {
    constexpr std::size_t stretches = 64;
    constexpr std::size_t bytes_in_stretch = 64;
    std::minstd_rand random(number + 1);
    std::vector<std::uint8_t> filler;
    for (std::size_t stretch = 0; stretch < stretches; ++stretch) {
        for (std::size_t i = 0; i < bytes_in_stretch; ++i) {
            // The high bits of this generator are its good ones. 0xFF would begin a marker.
            filler.push_back(static_cast<std::uint8_t>((random() >> 16) % 0xFF));
        }
        if (cut.restarts) {
            filler.push_back(0xFF);
            filler.push_back(static_cast<std::uint8_t>(first_restart + (cut.next_restart + stretch) % 8));
        }
    }
    constexpr unsigned other_bits = 0x15;
    filler.front() = static_cast<std::uint8_t>(number << 6 | other_bits);
    return filler;
}

} // namespace varnoth
