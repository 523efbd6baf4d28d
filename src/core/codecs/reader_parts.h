// What the PCX and the TGA reader have in common: records and bytes out of a file, single bits, and rows
// brought to the length that the bitmap makers want.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "core/base/ByteArray.h"
#include "core/base/files.h"

namespace varnoth {

/// The record at the file's present position; what the file does not supply is zero.
template <typename Header>
Header read_header(InputFile& file) {
    std::array<std::uint8_t, Header::size> bytes{};
    file.read(bytes);
    return Header::from_bytes(bytes);
}

/// Everything from the present position to the end of the file, and one spare zero byte behind it.
ByteArray read_rest(InputFile& file);

/// 1 if the bit at `position` is set, counting the most significant bit as 1 and the least as 8. Any other
/// position gives 0.
int TestBit(std::uint8_t value, std::int32_t position);

/// The length itself when it is a multiple of 4, else the next multiple of 4.
std::int32_t padded_length(std::int32_t line_bytes);

/// Whether padded rows stand in the order of the lines they come from.
enum class RowOrder { Kept, Reversed };

/// SubscriptOutOfRange unless `height` lines that stand close together all start within `length` bytes and
/// have bytes when padded.
void check_rows(std::int64_t length, std::int32_t height, std::int32_t line_bytes);

/// `height` lines that stand close together, each padded with zeros to the padded length. A line that ends
/// outside `bytes` gets zeros there. The failures of check_rows.
ByteArray pad_rows(std::span<const std::uint8_t> bytes, std::int32_t height, std::int32_t line_bytes,
                   RowOrder order);

} // namespace varnoth
