// Shared by the PCX and TGA readers: reading headers and the rest of a file, testing bits, and padding rows
// for CBitmap.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "core/base/ByteArray.h"
#include "core/base/files.h"

namespace varnoth {

/// Reads a record at the current position; missing bytes are 0.
template <typename Header>
Header read_header(InputFile& file) {
    std::array<std::uint8_t, Header::size> bytes{};
    file.read(bytes);
    return Header::from_bytes(bytes);
}

/// Reads from the current position to the end of the file and appends one spare zero byte.
ByteArray read_rest(InputFile& file);

/// The bit at `position`, counted from 1 (most significant) to 8 (least significant); 0 at any other
/// position.
int TestBit(std::uint8_t value, std::int32_t position);

/// The length rounded up to a multiple of 4.
std::int32_t padded_length(std::int32_t line_bytes);

/// The order of padded rows relative to the lines they come from.
enum class RowOrder { Kept, Reversed };

/// SubscriptOutOfRange unless `height` contiguous lines all start within `length` bytes and their padded rows
/// are not empty.
void check_rows(std::int64_t length, std::int32_t height, std::int32_t line_bytes);

/// Pads each of `height` contiguous lines with zeros to the padded length. Bytes missing from a partial line
/// are 0. Fails as check_rows() does.
ByteArray pad_rows(std::span<const std::uint8_t> bytes, std::int32_t height, std::int32_t line_bytes,
                   RowOrder order);

} // namespace varnoth
