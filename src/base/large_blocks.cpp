#include "base/large_blocks.h"

#include <cstdlib> // tells which C library this is

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace varnoth {

void keep_large_blocks_apart() {
#ifdef __GLIBC__
    // The library starts with this threshold and raises it whenever a larger block is freed, unless it is
    // set.
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
#endif
}

} // namespace varnoth
