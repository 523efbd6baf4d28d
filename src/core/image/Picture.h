// An immutable picture that the picture loader, surfaces and cDIB share.
#pragma once

#include <cstdint>
#include <memory>

#include "core/image/Bitmap.h"

namespace varnoth {

/// The kind of a picture; only bitmaps can be read.
enum class PictureKind : std::int32_t { None = 0, Bitmap = 7, Icon = 10, Metafile = 13 };

struct Picture {
    PictureKind kind = PictureKind::None;
    std::shared_ptr<const Bitmap> bitmap;

    bool empty() const { return kind == PictureKind::None; }
};

/// A picture that owns `bitmap`.
inline Picture make_picture(Bitmap bitmap) {
    return {PictureKind::Bitmap, std::make_shared<const Bitmap>(std::move(bitmap))};
}

} // namespace varnoth
