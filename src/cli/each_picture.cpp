#include "cli/each_picture.h"

#include <exception>
#include <limits>
#include <mutex>
#include <utility>

#include "core/base/threads.h"

namespace varnoth::cli {

namespace {

using Use = std::function<void(std::size_t thread, std::size_t position, RgbaPicture picture)>;
using OnFailure = std::function<void(std::size_t position)>;

class Pass {
  public:
    Pass(const std::vector<PictureSource>& sources, Progress& progress, const Use& use,
         const OnFailure& on_failure)
        : sources_(sources), progress_(progress), use_(use), on_failure_(on_failure) {}

    void run(std::size_t threads);

  private:
    void work(std::size_t thread);
    bool take(std::size_t& position, RgbaPicture& animation_frame);
    bool is_animation_frame(std::size_t position) const;
    void set_failure(std::size_t position);

    const std::vector<PictureSource>& sources_;
    Progress& progress_;
    const Use& use_;
    const OnFailure& on_failure_;
    std::mutex mutex_; // for the members below and progress_
    std::size_t next_ = 0;
    PictureReader animations_;
    std::size_t failed_ = std::numeric_limits<std::size_t>::max();
    std::exception_ptr failure_;
};

void Pass::run(std::size_t threads) {
    run_in_threads(threads, [this](std::size_t thread) { work(thread); });
    if (failure_) {
        std::rethrow_exception(failure_);
    }
}

void Pass::work(std::size_t thread) {
    PictureReader files;
    std::size_t position = 0;
    RgbaPicture picture;
    while (take(position, picture)) {
        try {
            if (!is_animation_frame(position)) {
                picture = files.read(sources_[position]);
            }
            use_(thread, position, std::move(picture));
        } catch (...) {
            const std::scoped_lock lock(mutex_);
            set_failure(position);
            return;
        }
        const std::scoped_lock lock(mutex_);
        progress_.advance();
    }
}

// The next position; false when nothing is left. Frames of an animation depend on those before them, so that
// one reader decodes them in order, in turn with the other threads.
bool Pass::take(std::size_t& position, RgbaPicture& animation_frame) {
    const std::scoped_lock lock(mutex_);
    if (failure_ || next_ == sources_.size()) {
        return false;
    }
    position = next_++;
    if (is_animation_frame(position)) {
        try {
            animation_frame = animations_.read(sources_[position]);
        } catch (...) {
            set_failure(position);
            return false;
        }
    }
    return true;
}

bool Pass::is_animation_frame(std::size_t position) const {
    const auto continues = [&](std::size_t at) {
        return at < sources_.size() && sources_[at].index > 0 && sources_[at].path == sources_[position].path;
    };
    return continues(position) || continues(position + 1);
}

void Pass::set_failure(std::size_t position) {
    if (position < failed_) {
        failed_ = position;
        failure_ = std::current_exception();
    }
    if (on_failure_) {
        on_failure_(position);
    }
}

} // namespace

void for_each_picture(const std::vector<PictureSource>& sources, std::size_t threads, Progress& progress,
                      const Use& use, const OnFailure& on_failure) {
    Pass(sources, progress, use, on_failure).run(threads);
}

} // namespace varnoth::cli
