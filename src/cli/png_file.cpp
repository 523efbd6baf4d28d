#include "cli/png_file.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace varnoth::cli {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::array<std::uint8_t, 8> signature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
using Type = std::array<std::uint8_t, 4>;
constexpr Type end_chunk{'I', 'E', 'N', 'D'};
constexpr std::array<Type, 4> critical_chunks{
    {{'I', 'H', 'D', 'R'}, {'P', 'L', 'T', 'E'}, {'I', 'D', 'A', 'T'}, end_chunk}};

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

/// The checksum of a chunk: CRC-32.
std::uint32_t crc_of(Bytes bytes) {
    static constexpr std::array<std::uint32_t, 256> table = make_crc_table();
    std::uint32_t crc = 0xFFFFFFFF;
    for (const std::uint8_t byte : bytes) {
        crc = table[(crc ^ byte) & 0xFF] ^ crc >> 8;
    }
    return ~crc;
}

bool is_letter(std::uint8_t byte) {
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

/// The first letter of a critical chunk is in upper case.
bool is_critical(const Type& type) {
    return type[0] < 'a';
}

bool is_known_or_ignored(const Type& type) {
    return std::ranges::all_of(type, is_letter) &&
           (!is_critical(type) || std::ranges::find(critical_chunks, type) != critical_chunks.end());
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
        Type type{};
        std::copy_n(rest.begin() + type_at, type.size(), type.begin());
        const std::uint32_t checksum = get_big_endian(rest.subspan(data_at + size));
        const bool is_intact = crc_of(rest.subspan(type_at, type.size() + size)) == checksum;
        if (!is_known_or_ignored(type) || (is_critical(type) && !is_intact)) {
            return false;
        }
        if (type == end_chunk) {
            return true;
        }
        rest = rest.subspan(data_at + size + checksum_size);
    }
    return false;
}

} // namespace varnoth::cli
