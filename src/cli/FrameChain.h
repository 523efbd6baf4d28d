// Hands frames from the thread that makes one to the thread that makes the next.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <vector>

#include "core/sprite/frame_pixels.h"

namespace varnoth::cli {

/// Each frame is passed once to begin(), if it gets that far, and then once to finish(). Frames are made on
/// several threads at the same time; each thread takes the first frame that no thread has taken.
class FrameChain {
  public:
    explicit FrameChain(std::size_t frames) : links_(frames) {}

    /// Waits for the beginning of the frame before, and returns its pixels; null for the first frame and if
    /// the frame before has failed.
    std::shared_ptr<const FramePixels> begin(std::size_t frame, std::shared_ptr<const FramePixels> pixels);

    /// The next band of the frame is mapped.
    void add_band(std::size_t frame);

    /// Waits until a band of a frame is mapped or the frame is finished.
    void wait_for_band(std::size_t frame, std::size_t band);

    /// The frame is mapped or has failed.
    void finish(std::size_t frame);

  private:
    struct Link {
        bool known = false;                        // has begun or failed
        std::shared_ptr<const FramePixels> pixels; // until the next frame takes them
        std::size_t bands = 0;
    };

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Link> links_;
};

} // namespace varnoth::cli
