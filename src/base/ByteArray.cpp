#include "base/ByteArray.h"

#include <algorithm>
#include <utility>

#include "base/RunTimeFailure.h"

namespace varnoth {

ByteArray::ByteArray(std::size_t size) : size_(size) {
    if (size == 0) {
        return;
    }
    bytes_.reset(static_cast<std::uint8_t*>(std::calloc(size, 1)));
    if (!bytes_) {
        fail(Failure::OutOfMemory);
    }
}

ByteArray::ByteArray(const ByteArray& other) : ByteArray(other.size_) {
    std::copy_n(other.data(), size_, data());
}

ByteArray::ByteArray(ByteArray&& other) noexcept
    : bytes_(std::move(other.bytes_)), size_(std::exchange(other.size_, 0)) {}

ByteArray& ByteArray::operator=(const ByteArray& other) {
    if (this != &other) {
        *this = ByteArray(other);
    }
    return *this;
}

ByteArray& ByteArray::operator=(ByteArray&& other) noexcept {
    bytes_ = std::move(other.bytes_);
    size_ = std::exchange(other.size_, 0);
    return *this;
}

bool operator==(const ByteArray& a, const ByteArray& b) {
    return std::ranges::equal(a.bytes(), b.bytes());
}

} // namespace varnoth
