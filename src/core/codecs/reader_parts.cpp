#include "core/codecs/reader_parts.h"

#include <algorithm>
#include <cstddef>

#include "core/base/RunTimeFailure.h"
#include "core/base/numbers.h"

namespace varnoth {

ByteArray read_rest(InputFile& file) {
    ByteArray bytes(static_cast<std::size_t>(std::max<std::int64_t>(file.remaining(), 0)) + 1);
    file.read(bytes.bytes().first(bytes.size() - 1));
    return bytes;
}

int TestBit(std::uint8_t value, std::int32_t position) {
    return position >= 1 && position <= 8 ? (value >> (8 - position)) & 1 : 0;
}

std::int32_t padded_length(std::int32_t line_bytes) {
    return checked_add(line_bytes, 3) & ~3;
}

void check_rows(std::int64_t length, std::int32_t height, std::int32_t line_bytes) {
    if (std::int64_t{height} * padded_length(line_bytes) <= 0) {
        fail(Failure::SubscriptOutOfRange);
    }
    // Of all lines, the last one starts at the highest offset.
    if (height > 0) {
        check_subscript((std::int64_t{height} - 1) * line_bytes, length);
    }
}

ByteArray pad_rows(std::span<const std::uint8_t> bytes, std::int32_t height, std::int32_t line_bytes,
                   RowOrder order) {
    // Check before allocating a size that a header claims.
    check_rows(static_cast<std::int64_t>(bytes.size()), height, line_bytes);
    const std::int32_t padded = padded_length(line_bytes);
    ByteArray rows(static_cast<std::size_t>(std::int64_t{height} * padded));
    for (std::int32_t line = 0; line < height; ++line) {
        const std::int32_t from = order == RowOrder::Kept ? line : height - 1 - line;
        const auto source =
            bytes.subspan(static_cast<std::size_t>(from) * static_cast<std::size_t>(line_bytes));
        const std::size_t count = std::min(source.size(), static_cast<std::size_t>(line_bytes));
        std::copy_n(source.begin(), count,
                    rows.data() + static_cast<std::size_t>(line) * static_cast<std::size_t>(padded));
    }
    return rows;
}

} // namespace varnoth
