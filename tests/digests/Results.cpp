#include "digests/Results.h"

namespace varnoth::digests {

void Digest::add(std::span<const std::uint8_t> bytes) {
    for (const std::uint8_t byte : bytes) {
        state_ = (state_ ^ byte) * 0x100000001B3;
    }
}

void Digest::add(std::string_view text) {
    add(static_cast<std::int64_t>(text.size()));
    for (const char character : text) {
        state_ = (state_ ^ static_cast<std::uint8_t>(character)) * 0x100000001B3;
    }
}

void Digest::add(std::int64_t number) {
    for (int shift = 0; shift < 64; shift += 8) {
        state_ = (state_ ^ (static_cast<std::uint64_t>(number) >> shift & 0xFF)) * 0x100000001B3;
    }
}

void Digest::add(const std::vector<Colour>& colours) {
    for (const Colour colour : colours) {
        add(std::int64_t{colour});
    }
}

void Digest::add(const Bitmap& bitmap) {
    add(std::int64_t{bitmap.width()});
    add(std::int64_t{bitmap.height()});
    add(std::int64_t{bitmap.bits_per_pixel()});
    for (const RGBQUAD& entry : bitmap.colour_table()) {
        add(std::int64_t{colour_of(entry)});
    }
    add(bitmap.bytes());
}

std::string Digest::text() const {
    std::string digits;
    for (int shift = 60; shift >= 0; shift -= 4) {
        digits += "0123456789abcdef"[state_ >> shift & 0xF];
    }
    return digits;
}

} // namespace varnoth::digests
