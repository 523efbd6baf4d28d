// Little-endian numbers in byte arrays, for file records. Offsets are in bytes and must be in range.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

namespace varnoth {

/// Reads an unsigned 16-bit number at offset `at`.
constexpr std::uint16_t get_u16(std::span<const std::uint8_t> bytes, std::size_t at) {
    return static_cast<std::uint16_t>(bytes[at] | (bytes[at + 1] << 8));
}

/// Reads a signed 16-bit number at offset `at`.
constexpr std::int16_t get_i16(std::span<const std::uint8_t> bytes, std::size_t at) {
    return std::bit_cast<std::int16_t>(get_u16(bytes, at));
}

/// Reads an unsigned 32-bit number at offset `at`.
constexpr std::uint32_t get_u32(std::span<const std::uint8_t> bytes, std::size_t at) {
    return static_cast<std::uint32_t>(get_u16(bytes, at)) |
           (static_cast<std::uint32_t>(get_u16(bytes, at + 2)) << 16);
}

/// Reads a signed 32-bit number at offset `at`.
constexpr std::int32_t get_i32(std::span<const std::uint8_t> bytes, std::size_t at) {
    return std::bit_cast<std::int32_t>(get_u32(bytes, at));
}

/// Reads an IEEE 754 single at offset `at`.
constexpr float get_f32(std::span<const std::uint8_t> bytes, std::size_t at) {
    return std::bit_cast<float>(get_u32(bytes, at));
}

/// Writes an unsigned 16-bit number at offset `at`.
constexpr void put_u16(std::span<std::uint8_t> bytes, std::size_t at, std::uint16_t value) {
    bytes[at] = static_cast<std::uint8_t>(value & 0xFF);
    bytes[at + 1] = static_cast<std::uint8_t>(value >> 8);
}

/// Writes a signed 16-bit number at offset `at`.
constexpr void put_i16(std::span<std::uint8_t> bytes, std::size_t at, std::int16_t value) {
    put_u16(bytes, at, std::bit_cast<std::uint16_t>(value));
}

/// Writes an unsigned 32-bit number at offset `at`.
constexpr void put_u32(std::span<std::uint8_t> bytes, std::size_t at, std::uint32_t value) {
    put_u16(bytes, at, static_cast<std::uint16_t>(value & 0xFFFF));
    put_u16(bytes, at + 2, static_cast<std::uint16_t>(value >> 16));
}

/// Writes a signed 32-bit number at offset `at`.
constexpr void put_i32(std::span<std::uint8_t> bytes, std::size_t at, std::int32_t value) {
    put_u32(bytes, at, std::bit_cast<std::uint32_t>(value));
}

/// Writes an IEEE 754 single at offset `at`.
constexpr void put_f32(std::span<std::uint8_t> bytes, std::size_t at, float value) {
    put_u32(bytes, at, std::bit_cast<std::uint32_t>(value));
}

} // namespace varnoth
