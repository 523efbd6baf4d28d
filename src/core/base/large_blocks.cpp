#include "core/base/large_blocks.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <utility>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace varnoth {

namespace {

constexpr std::size_t least_large = std::size_t{128} << 10;
constexpr std::size_t most_kept = std::size_t{1} << 20;

struct Spare {
    void* block = nullptr;
    std::size_t size = 0;
};

// As many as one step of an import has at once.
std::array<Spare, 4> spares;
std::size_t next_to_replace = 0;
bool keeps_spares = false;

// A spare of this size, or null.
void* take_spare(std::size_t size) {
    if (size < least_large) {
        return nullptr;
    }
    for (Spare& spare : spares) {
        if (spare.size == size) {
            return std::exchange(spare, {}).block;
        }
    }
    return nullptr;
}

} // namespace

void keep_large_blocks_apart() {
    keeps_spares = true;
#ifdef __GLIBC__
    // The library starts with this threshold and raises it whenever a larger block is freed, unless it is
    // set.
    mallopt(M_MMAP_THRESHOLD, static_cast<int>(least_large));
#endif
}

void give_back_spare_memory() {
    for (Spare& spare : spares) {
        std::free(std::exchange(spare, {}).block);
    }
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

void* take_zeroed_block(std::size_t size) {
    if (void* const spare = take_spare(size)) {
        return std::memset(spare, 0, size);
    }
    return size == 0 ? nullptr : std::calloc(size, 1);
}

void* take_block(std::size_t size) {
    if (void* const spare = take_spare(size)) {
        return spare;
    }
    return size == 0 ? nullptr : std::malloc(size);
}

void give_back_block(void* block, std::size_t size) {
    if (keeps_spares && block != nullptr && size >= least_large && size <= most_kept) {
        Spare& place = spares[next_to_replace];
        next_to_replace = (next_to_replace + 1) % spares.size();
        block = std::exchange(place, {block, size}).block;
    }
    std::free(block);
}

} // namespace varnoth
