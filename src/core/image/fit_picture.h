// Reduces pictures for thumbnails.
#pragma once

#include <cstdint>

#include "core/image/IndexedPicture.h"
#include "core/image/RgbaPicture.h"

namespace varnoth {

/// The picture, reduced to fit into a square of `side` pixels if it is larger; never enlarged. Keeps the
/// aspect ratio, with at least one pixel each way. Each pixel is the average of the area that it covers,
/// weighted by alpha, in integers. The picture may have up to 2^31 pixels.
RgbaPicture fit_picture(const IndexedPicture& picture, std::int32_t side);

} // namespace varnoth
