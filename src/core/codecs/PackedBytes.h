// The growing output of a run-length encoder, in room that is taken once.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "core/base/ByteArray.h"
#include "core/base/numbers.h"

namespace varnoth {

/// The bytes that the encoders reckon with for `count` bytes of lines of `line` units: DivisionByZero for a
/// line of 0, Overflow when the number leaves 32 bits, from about 1 GiB on.
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
    /// The caller appends no more than `room` bytes. OutOfMemory when they cannot be had.
    explicit PackedBytes(std::size_t room) : bytes_(room) {}

    /// Appends one byte; the room is not checked.
    void append(std::uint8_t byte) { bytes_[size_++] = byte; }

    /// Appends several; the room is not checked.
    void append(std::span<const std::uint8_t> bytes) {
        std::copy_n(bytes.data(), bytes.size(), bytes_.data() + size_);
        size_ += bytes.size();
    }

    /// What has been appended, cut to its length.
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
