// Loads a file with the picture loader, as the type that the decoders of foreign tools return.
#pragma once

#include <stdexcept>
#include <string>

#include "core/image/Picture.h"
#include "qt/QtPictureLoader.h"
#include "support/made_bmp.h"

namespace varnoth::test {

inline ForeignPicture load(const std::string& path) {
    QtPictureLoader loader;
    const Picture picture = loader.load(path);
    if (picture.kind != PictureKind::Bitmap) {
        throw std::runtime_error("the loader's picture is no bitmap");
    }
    return picture_of(*picture.bitmap);
}

} // namespace varnoth::test
