// Decodes pictures on several threads.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "cli/console.h"
#include "cli/pictures.h"
#include "core/image/RgbaPicture.h"

namespace varnoth::cli {

/// Calls `use` for every picture with the number of the calling thread, from 0 to `threads` - 1, and the
/// picture's position. Threads run at the same time and take the pictures in order; each advances the
/// progress. Fewer threads run if no more can be started. Afterwards throws the failure of the first picture
/// that failed, which does not depend on the number of threads. Calls `on_failure` with the position of a
/// picture as soon as it fails.
void for_each_picture(
    const std::vector<PictureSource>& sources, std::size_t threads, Progress& progress,
    const std::function<void(std::size_t thread, std::size_t position, RgbaPicture picture)>& use,
    const std::function<void(std::size_t position)>& on_failure = {});

} // namespace varnoth::cli
