// Scales pictures to the size of a frame.
#pragma once

#include "core/image/RgbaPicture.h"

namespace varnoth {

enum class Fit {
    Stretch, ///< fills the frame, whatever the proportions
    Contain, ///< the whole picture in its proportions, centred, with a transparent border
    Crop,    ///< fills the frame with the centre of the picture in its proportions
};

/// The picture at another size. Scales with the Catmull-Rom cubic, widened when it shrinks the picture, in
/// integer arithmetic. Colours are weighted by their alpha, so that those of transparent pixels do not show.
/// A picture of that size already is returned unchanged. InvalidProcedureCall unless both sizes are positive
/// and at most 65535.
RgbaPicture resize_picture(RgbaPicture picture, int width, int height, Fit fit);

} // namespace varnoth
