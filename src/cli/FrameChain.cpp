#include "cli/FrameChain.h"

#include <utility>

namespace varnoth::cli {

std::shared_ptr<const FramePixels> FrameChain::begin(std::size_t frame,
                                                     std::shared_ptr<const FramePixels> pixels) {
    std::unique_lock lock(mutex_);
    links_[frame] = {State::Begun, std::move(pixels)};
    changed_.notify_all();
    if (frame == 0) {
        return nullptr;
    }
    Link& before = links_[frame - 1];
    changed_.wait(lock, [&] { return before.state != State::Waiting; });
    return std::move(before.pixels);
}

void FrameChain::finish(std::size_t frame, bool done) {
    const std::scoped_lock lock(mutex_);
    links_[frame].state = done ? State::Done : State::Failed;
    changed_.notify_all();
}

bool FrameChain::wait_for(std::size_t frame) {
    std::unique_lock lock(mutex_);
    const State& state = links_[frame].state;
    changed_.wait(lock, [&] { return state == State::Done || state == State::Failed; });
    return state == State::Done;
}

} // namespace varnoth::cli
