#include "core/base/ByteArray.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "core/base/RunTimeFailure.h"

namespace varnoth {

ByteArray::ByteArray(void* bytes, std::size_t size) : bytes_(static_cast<std::uint8_t*>(bytes)), size_(size) {
    if (bytes_ == nullptr && size != 0) {
        fail(Failure::OutOfMemory);
    }
}

ByteArray::ByteArray(std::size_t size) : ByteArray(size == 0 ? nullptr : std::calloc(size, 1), size) {}

ByteArray ByteArray::for_overwrite(std::size_t size) {
    return {size == 0 ? nullptr : std::malloc(size), size};
}

ByteArray::ByteArray(const ByteArray& other) : ByteArray(for_overwrite(other.size_)) {
    std::copy_n(other.data(), size_, data());
}

ByteArray::ByteArray(ByteArray&& other) noexcept
    : bytes_(std::exchange(other.bytes_, nullptr)), size_(std::exchange(other.size_, 0)) {}

ByteArray& ByteArray::operator=(const ByteArray& other) {
    if (this != &other) {
        *this = ByteArray(other);
    }
    return *this;
}

ByteArray& ByteArray::operator=(ByteArray&& other) noexcept {
    if (this != &other) {
        std::free(bytes_);
        bytes_ = std::exchange(other.bytes_, nullptr);
        size_ = std::exchange(other.size_, 0);
    }
    return *this;
}

ByteArray::~ByteArray() {
    std::free(bytes_);
}

bool operator==(const ByteArray& a, const ByteArray& b) {
    return std::ranges::equal(a.bytes(), b.bytes());
}

} // namespace varnoth
