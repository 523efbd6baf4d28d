#include "cli/build_sprite.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "cli/gif_file.h"
#include "core/base/numbers.h"

namespace varnoth::cli {

namespace {

constexpr std::int32_t sprite_version = 2;

SpriteHeaderRecord header_of(const FrameSize& size, const SpriteOptions& options) {
    const double half_width = size.width / 2.0;
    const double half_height = size.height / 2.0;
    SpriteHeaderRecord header;
    header.Ident = SpriteHeaderRecord::sprite_ident;
    header.Version = sprite_version;
    header.SpriteType = options.type;
    header.RenderMode = static_cast<std::int32_t>(options.mode);
    header.BoundingRadius =
        static_cast<float>(std::sqrt(half_width * half_width + half_height * half_height));
    header.Width = size.width;
    header.Height = size.height;
    header.SyncType = options.sync;
    return header;
}

FrameSize size_of_first(const std::vector<PictureSource>& sources) {
    const RgbaPicture first = PictureReader().read(sources.front());
    return {first.width, first.height};
}

void add_frames(SpriteFile& sprite, const FrameHeaderRecord& header, std::vector<ByteArray> frames) {
    for (ByteArray& indices : frames) {
        sprite.frames.push_back({header, std::move(indices)});
    }
}

constexpr std::int64_t most_pixels = std::int64_t{64} << 20; // of a GIF frame, as for other pictures

bool uses(const IndexedGif& gif, std::uint8_t index) {
    return std::ranges::any_of(gif.frames, [index](const IndexedGif::Frame& frame) {
        return std::ranges::find(frame.indices, index) != frame.indices.end();
    });
}

// Whether the indices look in the sprite as the composed frames would: transparent pixels are those of index
// 255 in AlphaTest, and black in modes without transparency.
bool can_keep_indices(const IndexedGif& gif, RenderMode mode) {
    const bool transparent = gif.transparent && uses(gif, *gif.transparent);
    if (mode == RenderMode::AlphaTest) {
        return transparent ? *gif.transparent == transparent_index : !uses(gif, transparent_index);
    }
    return !transparent || colour_of(gif.palette[*gif.transparent]) == 0;
}

std::optional<IndexedGif> gif_to_keep(const std::vector<PictureSource>& sources,
                                      const SpriteOptions& options) {
    const bool one_file = std::ranges::all_of(
        sources, [&](const PictureSource& source) { return source.path == sources.front().path; });
    const bool asks_for_others = options.colours || !options.palette.empty() ||
                                 options.mode == RenderMode::IndexAlpha ||
                                 options.pictures.transparency.by != Transparency::By::Alpha;
    if (!one_file || asks_for_others) {
        return std::nullopt;
    }
    const auto bytes = read_picture_file(sources.front().path);
    constexpr std::string_view magic = "GIF8";
    if (bytes->size() < magic.size() || !std::equal(magic.begin(), magic.end(), bytes->begin())) {
        return std::nullopt;
    }
    std::optional<IndexedGif> gif = read_indexed_gif(*bytes, most_pixels);
    const bool usable = gif && gif->frames.size() == sources.size() && can_keep_indices(*gif, options.mode) &&
                        (!options.size || *options.size == FrameSize{gif->width, gif->height});
    return usable ? std::move(gif) : std::nullopt;
}

std::vector<ByteArray> take_frames(IndexedGif& gif) {
    std::vector<ByteArray> frames;
    for (IndexedGif::Frame& frame : gif.frames) {
        frames.push_back(ByteArray::for_overwrite(frame.indices.size()));
        std::ranges::copy(frame.indices, frames.back().data());
        frame.indices = {};
    }
    return frames;
}

} // namespace

FrameOrigin centre_origin(const FrameSize& size) {
    return {round_to_even<std::int32_t>(-size.width / 2.0), round_to_even<std::int32_t>(size.height / 2.0)};
}

SpriteFile build_sprite(const std::vector<PictureSource>& sources, const SpriteOptions& options) {
    std::optional<IndexedGif> gif = gif_to_keep(sources, options);
    const FrameSize size = options.size ? *options.size : size_of_first(sources);
    const FrameOrigin origin = options.origin ? *options.origin : centre_origin(size);
    const PictureFrames pictures(sources, std::vector<FrameSize>(sources.size(), size), options.mode,
                                 options.pictures);
    SpriteFile sprite{header_of(size, options), {}, {}};
    std::vector<ByteArray> frames;
    if (gif) {
        sprite.palette = palette_record(gif->palette, options.mode);
        frames = take_frames(*gif);
    } else if (options.mode == RenderMode::IndexAlpha) {
        const AlphaSummary summary = pictures.summarise_alpha();
        sprite.palette = alpha_palette(options.colour.value_or(summary.colour()));
        frames = pictures.map_alpha(summary.has_alpha);
    } else {
        const std::size_t usable = usable_entries(options.mode);
        const std::size_t reserved = 256 - usable;
        const std::vector<RGBQUAD> entries =
            options.palette.empty() ? best_entries(pictures.count_colours(),
                                                   options.colours.value_or(256) - reserved, options.pictures)
                                    : options.palette;
        sprite.palette = palette_record(entries, options.mode);
        frames = pictures.map(entries);
    }
    add_frames(sprite, {0, origin.x, origin.y, size.width, size.height}, std::move(frames));
    return sprite;
}

} // namespace varnoth::cli
