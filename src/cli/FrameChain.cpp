#include "cli/FrameChain.h"

#include <limits>
#include <utility>

namespace varnoth::cli {

std::shared_ptr<const FramePixels> FrameChain::begin(std::size_t frame,
                                                     std::shared_ptr<const FramePixels> pixels) {
    std::unique_lock lock(mutex_);
    links_[frame] = {true, std::move(pixels), 0};
    changed_.notify_all();
    if (frame == 0) {
        return nullptr;
    }
    Link& before = links_[frame - 1];
    changed_.wait(lock, [&] { return before.known; });
    return std::move(before.pixels);
}

void FrameChain::add_band(std::size_t frame) {
    const std::scoped_lock lock(mutex_);
    ++links_[frame].bands;
    changed_.notify_all();
}

void FrameChain::wait_for_band(std::size_t frame, std::size_t band) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return links_[frame].bands > band; });
}

void FrameChain::finish(std::size_t frame) {
    const std::scoped_lock lock(mutex_);
    links_[frame].known = true;
    links_[frame].bands = std::numeric_limits<std::size_t>::max();
    changed_.notify_all();
}

} // namespace varnoth::cli
