// The output buffer of a run-length encoder, allocated once.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "core/base/ByteArray.h"
#include "core/base/numbers.h"

namespace varnoth {

/// The buffer size that the encoders reserve for `count` bytes in lines of `line` units. DivisionByZero for a
/// line of 0, Overflow when the size does not fit 32 bits, from about 1 GiB on.
inline std::size_t encoder_room(std::size_t count, std::int32_t line) {
    if (line == 0) {
        fail(Failure::DivisionByZero);
    }
    const auto highest = narrow<std::int32_t>(static_cast<std::int64_t>(count) - 1);
    const std::int32_t room = checked_add(checked_add(highest / line * 2, checked_multiply(highest, 2)), 1);
    return room < 0 ? 0 : static_cast<std::size_t>(room);
}

class PackedBytes {
  public:
    /// Callers append at most `room` bytes, which is not checked. OutOfMemory when they cannot be allocated.
    explicit PackedBytes(std::size_t room) : bytes_(room) {}

    /// Appends one byte.
    void append(std::uint8_t byte) { bytes_[size_++] = byte; }

    /// Appends several bytes.
    void append(std::span<const std::uint8_t> bytes) {
        std::copy_n(bytes.data(), bytes.size(), bytes_.data() + size_);
        size_ += bytes.size();
    }

    /// A copy of the bytes appended so far.
    ByteArray take() const {
        ByteArray cut(size_);
        std::copy_n(bytes_.data(), size_, cut.data());
        return cut;
    }

  private:
    ByteArray bytes_;
    std::size_t size_ = 0;
};

} // namespace varnoth
