// A byte array of fixed length that starts all zero unless it is asked for otherwise. Its pages come from the
// system untouched, so a large array costs memory only where something is written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace varnoth {

class ByteArray {
  public:
    ByteArray() = default;

    /// `size` zero bytes; OutOfMemory when they cannot be had.
    explicit ByteArray(std::size_t size);

    /// `size` bytes of any value, for whoever writes every one of them before it is read; OutOfMemory
    /// likewise.
    static ByteArray for_overwrite(std::size_t size);

    ByteArray(const ByteArray& other);
    ByteArray(ByteArray&& other) noexcept;
    ByteArray& operator=(const ByteArray& other);
    ByteArray& operator=(ByteArray&& other) noexcept;
    ~ByteArray();

    std::size_t size() const { return size_; }

    std::uint8_t* data() { return bytes_; }

    const std::uint8_t* data() const { return bytes_; }

    /// The byte at `index`, which is not checked.
    std::uint8_t& operator[](std::size_t index) { return bytes_[index]; }

    /// The same, to read only.
    std::uint8_t operator[](std::size_t index) const { return bytes_[index]; }

    std::span<std::uint8_t> bytes() { return {bytes_, size_}; }

    std::span<const std::uint8_t> bytes() const { return {bytes_, size_}; }

    friend bool operator==(const ByteArray& a, const ByteArray& b);

  private:
    ByteArray(void* bytes, std::size_t size);

    std::uint8_t* bytes_ = nullptr;
    std::size_t size_ = 0;
};

} // namespace varnoth
