// A byte array of fixed length. A zeroed array is allocated with calloc, so that the pages of a large one
// take no memory until they are written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace varnoth {

class ByteArray {
  public:
    ByteArray() = default;

    /// `size` zero bytes. OutOfMemory when they cannot be allocated.
    explicit ByteArray(std::size_t size);

    /// `size` uninitialised bytes; write every byte before reading. OutOfMemory when they cannot be
    /// allocated.
    static ByteArray for_overwrite(std::size_t size);

    ByteArray(const ByteArray& other);
    ByteArray(ByteArray&& other) noexcept;
    ByteArray& operator=(const ByteArray& other);
    ByteArray& operator=(ByteArray&& other) noexcept;
    ~ByteArray();

    std::size_t size() const { return size_; }

    std::uint8_t* data() { return bytes_; }

    const std::uint8_t* data() const { return bytes_; }

    /// The index is not checked.
    std::uint8_t& operator[](std::size_t index) { return bytes_[index]; }

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
