#include "cli/png_file.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace varnoth::cli {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::array<std::uint8_t, 8> signature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
constexpr std::array<std::uint8_t, 4> end_chunk{'I', 'E', 'N', 'D'};

// Around the data of a chunk: its length and type before, its checksum after.
constexpr std::size_t type_at = 4;
constexpr std::size_t data_at = 8;
constexpr std::size_t checksum_size = 4;

std::uint32_t get_big_endian(Bytes bytes) {
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 |
           bytes[3];
}

constexpr std::array<std::uint32_t, 256> make_crc_table() {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
        std::uint32_t value = i;
        for (int bit = 0; bit < 8; ++bit) {
            value = value >> 1 ^ (value % 2 == 0 ? 0 : 0xEDB88320);
        }
        table[i] = value;
    }
    return table;
}

/// CRC-32 as in the PNG specification.
std::uint32_t crc_of(Bytes bytes) {
    static constexpr std::array<std::uint32_t, 256> table = make_crc_table();
    std::uint32_t crc = 0xFFFFFFFF;
    for (const std::uint8_t byte : bytes) {
        crc = table[(crc ^ byte) & 0xFF] ^ crc >> 8;
    }
    return ~crc;
}

/// Critical chunks have an upper-case first letter.
bool is_critical(Bytes type) {
    return (type[0] & 0x20) == 0;
}

} // namespace

bool is_png(Bytes file) {
    return file.size() >= signature.size() && std::equal(signature.begin(), signature.end(), file.begin());
}

bool is_whole_png(Bytes file) {
    Bytes rest = file.subspan(signature.size());
    while (rest.size() >= data_at + checksum_size) {
        const std::size_t size = get_big_endian(rest);
        if (size > rest.size() - data_at - checksum_size) {
            return false;
        }
        const Bytes type = rest.subspan(type_at, 4);
        const std::uint32_t checksum = get_big_endian(rest.subspan(data_at + size));
        if (is_critical(type) && crc_of(rest.subspan(type_at, 4 + size)) != checksum) {
            return false;
        }
        if (std::ranges::equal(type, end_chunk)) {
            return true;
        }
        rest = rest.subspan(data_at + size + checksum_size);
    }
    return false;
}

} // namespace varnoth::cli
