// Memory for whole pictures: where it comes from, and what becomes of it.
#pragma once

#include <cstddef>

namespace varnoth {

/// For a program that imports many pictures, before its first one. From now on
/// - every block of 128 KiB and more has pages of its own, which go back to the system with it: decoded
///   pictures come and go while the frames made of them stay, and would leave holes among the frames that
///   nothing fits, a sixth of the memory of a long import (does nothing where the C library has no such
///   setting);
/// - the last few blocks given back, 1 MiB at most, are kept for who asks for that size next: each picture
///   of an import needs the same ones, and pages that the system has to clear first cost more than what is
///   done in them.
void keep_large_blocks_apart();

/// For the end of an import: what is kept, and every page that is free between other blocks, goes back to the
/// system (only the former where the C library cannot do the latter).
void give_back_spare_memory();

/// A block of `size` bytes, zero or of any value; null when it cannot be had and for a size of 0.
void* take_zeroed_block(std::size_t size);
void* take_block(std::size_t size);

/// Gives back a block, or null, with the size that it was taken with.
void give_back_block(void* block, std::size_t size);

} // namespace varnoth
