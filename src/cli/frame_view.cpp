#include "cli/frame_view.h"

#include <algorithm>
#include <limits>

#include "cli/command.h"
#include "cli/sprite_values.h"

namespace varnoth::cli {

namespace {

constexpr std::int32_t checker_side = 8;
constexpr std::uint32_t light_checker = 0xFF999999;
constexpr std::uint32_t dark_checker = 0xFF666666;
constexpr std::uint32_t opaque = 0xFF000000;
constexpr std::int64_t largest_side = 65535; // of a GIF file
constexpr std::int64_t most_pixels = std::int64_t{1} << 26;

struct Edges {
    std::int64_t left = std::numeric_limits<std::int64_t>::max();
    std::int64_t top = std::numeric_limits<std::int64_t>::max();
    std::int64_t right = std::numeric_limits<std::int64_t>::min();
    std::int64_t bottom = std::numeric_limits<std::int64_t>::min();
};

Edges edges_of(const std::vector<SpriteFrame>& frames) {
    Edges edges;
    for (const SpriteFrame& frame : frames) {
        const std::int64_t left = frame.header.OriginX;
        const std::int64_t top = -std::int64_t{frame.header.OriginY};
        edges.left = std::min(edges.left, left);
        edges.top = std::min(edges.top, top);
        edges.right = std::max(edges.right, left + frame.header.FrameWidth);
        edges.bottom = std::max(edges.bottom, top + frame.header.FrameHeight);
    }
    return edges;
}

// Without a background, ALPHATEST shows what is transparent; alpha of other modes would hide the frame.
IndexColours colours_without_background(const SpriteFile& sprite) {
    const RenderMode mode = sprite.mode();
    return mode_colours(sprite.palette, mode == RenderMode::AlphaTest ? mode : RenderMode::Normal);
}

} // namespace

Background Background::parse(const std::string& text) {
    if (text == "checkers") {
        return {{light_checker, dark_checker}};
    }
    const PaletteColour parsed = parse_colour(text);
    const std::uint32_t colour =
        opaque | std::uint32_t{parsed.red} << 16 | std::uint32_t{parsed.green} << 8 | parsed.blue;
    return {{colour, colour}};
}

bool Background::is_odd(std::int32_t x, std::int32_t y) const {
    return (x / checker_side + y / checker_side) % 2 != 0;
}

FrameView::FrameView(const SpriteFile& sprite, const std::optional<Background>& background,
                     std::int32_t scale, const std::string& file)
    : sprite_(sprite), background_(background), scale_(scale) {
    const Edges edges = edges_of(sprite.frames);
    const std::int64_t width = edges.right - edges.left;
    const std::int64_t height = edges.bottom - edges.top;
    if (std::max(width, height) * scale > largest_side || width * height * scale * scale > most_pixels) {
        throw CommandError(file, "the preview would have " + std::to_string(width * scale) + " x " +
                                     std::to_string(height * scale) + " pixels, which is too large");
    }
    left_ = edges.left;
    top_ = edges.top;
    width_ = static_cast<std::int32_t>(width);
    height_ = static_cast<std::int32_t>(height);
    for (const int i : {0, 1}) {
        colours_[i] = background ? colours_over(sprite.palette, sprite.mode(), background->colours[i])
                                 : colours_without_background(sprite);
    }
}

std::uint32_t FrameView::colour_behind(std::int32_t x, std::int32_t y) const {
    return background_ ? background_->at(x, y) : 0;
}

const IndexColours& FrameView::colours_at(std::int32_t x, std::int32_t y) const {
    return colours_[background_ && background_->is_odd(x, y) ? 1 : 0];
}

std::int32_t FrameView::left_of(std::size_t frame) const {
    return static_cast<std::int32_t>(sprite_.frames[frame].header.OriginX - left_) * scale_;
}

std::int32_t FrameView::top_of(std::size_t frame) const {
    return static_cast<std::int32_t>(-std::int64_t{sprite_.frames[frame].header.OriginY} - top_) * scale_;
}

RgbaPicture FrameView::draw(std::size_t frame) const {
    RgbaPicture picture{width(), height(), {}};
    picture.pixels.reserve(static_cast<std::size_t>(width()) * static_cast<std::size_t>(height()));
    const FrameHeaderRecord& header = sprite_.frames[frame].header;
    const ByteArray& indices = sprite_.frames[frame].indices;
    const std::int32_t left = left_of(frame);
    const std::int32_t top = top_of(frame);
    for (std::int32_t y = 0; y < height(); ++y) {
        const std::int32_t frame_y = y < top ? -1 : (y - top) / scale_;
        const bool has_row = frame_y >= 0 && frame_y < header.FrameHeight;
        for (std::int32_t x = 0; x < width(); ++x) {
            const std::int32_t frame_x = x < left ? -1 : (x - left) / scale_;
            if (has_row && frame_x >= 0 && frame_x < header.FrameWidth) {
                const std::uint8_t index =
                    indices[static_cast<std::size_t>(frame_y) * static_cast<std::size_t>(header.FrameWidth) +
                            static_cast<std::size_t>(frame_x)];
                picture.pixels.push_back(colours_at(x, y)[index]);
            } else {
                picture.pixels.push_back(colour_behind(x, y));
            }
        }
    }
    return picture;
}

std::vector<std::uint8_t> FrameView::magnified_indices(std::size_t frame) const {
    const FrameHeaderRecord& header = sprite_.frames[frame].header;
    const auto indices = sprite_.frames[frame].indices.bytes();
    const auto width = static_cast<std::size_t>(header.FrameWidth);
    const auto scale = static_cast<std::size_t>(scale_);
    std::vector<std::uint8_t> result;
    result.reserve(indices.size() * scale * scale);
    for (std::size_t at = 0; at < indices.size() * scale; at += width) {
        for (const std::uint8_t index : indices.subspan(at / width / scale * width, width)) {
            result.insert(result.end(), scale, index);
        }
    }
    return result;
}

} // namespace varnoth::cli
