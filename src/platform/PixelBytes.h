// The bytes behind a bitmap. All copies share them until one of them is written to: pictures pass from hand
// to hand, and most of them are only read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>

#include "base/ByteArray.h"

namespace varnoth {

class Bitmap;

class PixelBytes {
  public:
    PixelBytes() = default;

    /// std::bad_alloc when there is no memory to keep count of the copies.
    explicit PixelBytes(ByteArray bytes)
        : block_(std::make_shared<Block>(Block{std::move(bytes), nullptr})) {}

    std::size_t size() const { return block_ ? block_->bytes.size() : 0; }

    const std::uint8_t* data() const { return block_ ? std::as_const(block_->bytes).data() : nullptr; }

    std::span<const std::uint8_t> bytes() const { return {data(), size()}; }

    /// The same to write, in this copy alone: what others share is copied first. OutOfMemory or
    /// std::bad_alloc when that cannot be had.
    std::uint8_t* own() {
        if (block_.use_count() > 1) {
            block_ = std::make_shared<Block>(Block{block_->bytes, nullptr});
        } else if (block_) {
            block_->origin.reset();
        }
        return block_ ? block_->bytes.data() : nullptr;
    }

    /// Leaves bytes of any value that are this copy's alone, for whoever writes every one of them before it
    /// is read. Fails as own does, and then nothing has changed.
    void forget() {
        if (block_.use_count() > 1) {
            block_ = std::make_shared<Block>(Block{ByteArray::for_overwrite(size()), nullptr});
        } else if (block_) {
            block_->origin.reset();
        }
    }

    /// The picture of 8-bit indices, of the same width and height, whose colours these 32-bit pixels are, as
    /// far as that is known: it is forgotten at the next write.
    std::shared_ptr<const Bitmap> origin() const { return block_ ? block_->origin : nullptr; }

    /// There must be bytes.
    void set_origin(std::shared_ptr<const Bitmap> origin) { block_->origin = std::move(origin); }

  private:
    struct Block {
        ByteArray bytes;
        std::shared_ptr<const Bitmap> origin;
    };

    std::shared_ptr<Block> block_;
};

} // namespace varnoth
