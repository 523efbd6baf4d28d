// The frames of a sprite as they are viewed: placed by their origins, magnified, over a background.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/image/RgbaPicture.h"
#include "core/sprite/SpriteFile.h"
#include "core/sprite/mode_colours.h"

namespace varnoth::cli {

/// What is behind the frames. With a background, they are drawn over it as their render mode means it.
/// Without one, they have their palette colours, and only index 255 in ALPHATEST is transparent.
struct Background {
    /// "#RRGGBB" or "checkers". CLI::ValidationError for other texts.
    static Background parse(const std::string& text);

    /// The opaque colour of a pixel of the view.
    std::uint32_t at(std::int32_t x, std::int32_t y) const { return colours[is_odd(x, y) ? 1 : 0]; }

    /// Which of the two colours of checkers a pixel has.
    bool is_odd(std::int32_t x, std::int32_t y) const;

    std::uint32_t colours[2] = {}; ///< equal unless they are checkers
};

class FrameView {
  public:
    /// CommandError naming the file when the frames, placed by their origins, do not fit into a picture of
    /// reasonable size. Keeps a reference to the sprite.
    FrameView(const SpriteFile& sprite, const std::optional<Background>& background, std::int32_t scale,
              const std::string& file);

    std::int32_t width() const { return width_ * scale_; }

    std::int32_t height() const { return height_ * scale_; }

    std::int32_t scale() const { return scale_; }

    std::size_t frame_count() const { return sprite_.frames.size(); }

    /// The whole view with one frame.
    RgbaPicture draw(std::size_t frame) const;

    /// Where a frame is in the view, in magnified pixels.
    std::int32_t left_of(std::size_t frame) const;
    std::int32_t top_of(std::size_t frame) const;

    /// The magnified indices of a frame alone.
    std::vector<std::uint8_t> magnified_indices(std::size_t frame) const;

  private:
    std::uint32_t colour_behind(std::int32_t x, std::int32_t y) const;
    const IndexColours& colours_at(std::int32_t x, std::int32_t y) const;

    const SpriteFile& sprite_;
    std::optional<Background> background_;
    std::int32_t scale_;
    std::int64_t left_ = 0; ///< of the view, relative to the sprite's centre; not magnified
    std::int64_t top_ = 0;  ///< likewise, downwards
    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
    IndexColours colours_[2]; ///< over the two colours of the background
};

} // namespace varnoth::cli
