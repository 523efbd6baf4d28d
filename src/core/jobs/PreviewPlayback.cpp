#include "core/jobs/PreviewPlayback.h"

#include "core/base/numbers.h"
#include "core/sprite/hlspr.h"

namespace varnoth {

namespace {

constexpr std::int16_t fastest = 60;

} // namespace

std::int32_t PreviewPlayback::interval() const {
    if (FramesPerSecond == 0) {
        fail(Failure::DivisionByZero);
    }
    return 1000 / FramesPerSecond;
}

bool PreviewPlayback::faster() {
    if (FramesPerSecond >= fastest) {
        return false;
    }
    ++FramesPerSecond;
    return true;
}

bool PreviewPlayback::slower() {
    if (FramesPerSecond <= 0) {
        return false;
    }
    --FramesPerSecond;
    return true;
}

void PreviewPlayback::tick(PictureSurface& picture, std::int32_t line_count) {
    hlspr::draw_frame(CurrentFrame, picture);
    const std::int16_t next = checked_add(CurrentFrame, 1);
    CurrentFrame = next <= line_count - 1 ? next : std::int16_t{0};
}

} // namespace varnoth
