// How the memory of this process is laid out.
#pragma once

namespace varnoth {

/// From now on, every block of 128 KiB and more has pages of its own, which go back to the system with it.
/// Decoded pictures come and go while the frames made of them stay; among the frames they would leave holes
/// that nothing fits, a sixth of the memory of a long import. Does nothing where the C library has no such
/// setting.
void keep_large_blocks_apart();

} // namespace varnoth
