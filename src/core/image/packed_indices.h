// Colour-table indices of 1, 4 or 8 bits in a row of bytes, most significant bits leftmost.
#pragma once

#include <cstddef>
#include <cstdint>

namespace varnoth {

/// The shift of the bits of pixel `x` in their byte.
inline unsigned packed_shift(std::size_t x, std::int32_t bits) {
    const auto per_byte = static_cast<std::size_t>(8 / bits);
    return static_cast<unsigned>((per_byte - 1 - x % per_byte) * static_cast<std::size_t>(bits));
}

/// The index of pixel `x`, which must be inside the row.
inline unsigned get_packed_index(const std::uint8_t* row, std::size_t x, std::int32_t bits) {
    const auto per_byte = static_cast<std::size_t>(8 / bits);
    return (static_cast<unsigned>(row[x / per_byte]) >> packed_shift(x, bits)) & ((1U << bits) - 1U);
}

/// Sets the index of pixel `x`. An index that does not fit the bits corrupts its neighbours.
inline void put_packed_index(std::uint8_t* row, std::size_t x, std::int32_t bits, unsigned index) {
    const auto per_byte = static_cast<std::size_t>(8 / bits);
    const unsigned shift = packed_shift(x, bits);
    const unsigned mask = ((1U << bits) - 1U) << shift;
    row[x / per_byte] = static_cast<std::uint8_t>((row[x / per_byte] & ~mask) | (index << shift));
}

} // namespace varnoth
