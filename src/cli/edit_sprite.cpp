#include "cli/edit_sprite.h"

#include <algorithm>
#include <utility>

#include "cli/command.h"

namespace varnoth::cli {

namespace {

class Edit {
  public:
    Edit(SpriteFile& sprite, const SpriteEdits& edits, const std::string& file)
        : sprite_(sprite), edits_(edits), file_(file), old_mode_(mode()) {}

    void run() {
        change_header();
        replace();
        remove();
        append();
        make_new_frames();
        move();
        reorder();
        if (edits_.reverse) {
            std::ranges::reverse(sprite_.frames);
        }
        set_origins();
    }

  private:
    RenderMode mode() const { return sprite_.mode(); }

    void change_header();
    void replace();
    void remove();
    void append();
    void make_new_frames();
    void repalette(const PictureFrames& pictures);
    void move();
    void reorder();
    void set_origins();

    FrameHeaderRecord header_of_appended() const;
    std::vector<ByteArray> map(const PictureFrames& pictures) const;
    void check_frame(std::size_t frame, const char* option) const;

    bool is_new(const SpriteFrame& frame) const { return frame.indices.size() == 0; }

    SpriteFile& sprite_;
    const SpriteEdits& edits_;
    const std::string& file_;
    RenderMode old_mode_;
    // The pictures of the frames without indices, in the order of these frames.
    std::vector<PictureSource> new_pictures_;
};

void Edit::change_header() {
    SpriteHeaderRecord& header = sprite_.header;
    header.SpriteType = edits_.type.value_or(header.SpriteType);
    header.SyncType = edits_.sync.value_or(header.SyncType);
    if (edits_.mode) {
        header.RenderMode = static_cast<std::int32_t>(*edits_.mode);
    }
}

void Edit::replace() {
    std::vector<const PictureSource*> pictures(sprite_.frames.size());
    for (const FrameReplacement& replacement : edits_.replace) {
        check_frame(replacement.frame, "--replace");
        pictures[replacement.frame] = &replacement.picture;
        sprite_.frames[replacement.frame].indices = {};
    }
    for (std::size_t frame = 0; frame < pictures.size(); ++frame) {
        const bool removed = std::ranges::find(edits_.remove, frame) != edits_.remove.end();
        if (pictures[frame] != nullptr && !removed) {
            new_pictures_.push_back(*pictures[frame]);
        }
    }
}

void Edit::remove() {
    std::vector<bool> removed(sprite_.frames.size());
    for (const std::size_t frame : edits_.remove) {
        check_frame(frame, "--remove");
        removed[frame] = true;
    }
    std::size_t number = 0;
    std::erase_if(sprite_.frames, [&](const SpriteFrame&) { return removed[number++]; });
}

void Edit::append() {
    const FrameHeaderRecord header = header_of_appended();
    for (const PictureSource& picture : edits_.append) {
        sprite_.frames.push_back({header, {}});
        new_pictures_.push_back(picture);
    }
    if (sprite_.frames.empty()) {
        throw CommandError(file_, "no frame would be left");
    }
}

// Appended frames have the origin of the first frame if that has the sprite's size.
FrameHeaderRecord Edit::header_of_appended() const {
    const FrameSize size{sprite_.header.Width, sprite_.header.Height};
    FrameOrigin origin{};
    if (edits_.append.empty()) {
        return {};
    }
    if (size.width < 1 || size.height < 1) {
        throw CommandError(file_, "the sprite's size is not positive: no frame can be appended");
    }
    origin = centre_origin(size);
    if (!sprite_.frames.empty()) {
        const FrameHeaderRecord& first = sprite_.frames.front().header;
        if (size == FrameSize{first.FrameWidth, first.FrameHeight}) {
            origin = {first.OriginX, first.OriginY};
        }
    }
    return {0, origin.x, origin.y, size.width, size.height};
}

void Edit::make_new_frames() {
    std::vector<FrameSize> sizes;
    for (const SpriteFrame& frame : sprite_.frames) {
        if (is_new(frame)) {
            sizes.push_back({frame.header.FrameWidth, frame.header.FrameHeight});
        }
    }
    const PictureFrames pictures(new_pictures_, std::move(sizes), mode(), edits_.pictures);
    if (edits_.repalette) {
        repalette(pictures);
        return;
    }
    std::vector<ByteArray> made = map(pictures);
    auto next = made.begin();
    for (SpriteFrame& frame : sprite_.frames) {
        if (is_new(frame)) {
            frame.indices = std::move(*next++);
        }
    }
}

// The indices of the new frames in the palette that is there.
std::vector<ByteArray> Edit::map(const PictureFrames& pictures) const {
    if (mode() == RenderMode::IndexAlpha) {
        return pictures.map_alpha(pictures.summarise_alpha().has_alpha);
    }
    return pictures.map(entries_of(sprite_.palette));
}

void Edit::repalette(const PictureFrames& pictures) {
    if (mode() == RenderMode::IndexAlpha) {
        throw CommandError(file_, "--repalette: an INDEXALPHA sprite has one colour");
    }
    const PaletteRecord old_palette = sprite_.palette;
    const auto pixels_of = [&](const SpriteFrame& frame) {
        return frame_pixels(picture_of_frame(frame.indices.bytes(), frame.header.FrameWidth,
                                             frame.header.FrameHeight, old_palette, old_mode_),
                            mode());
    };
    ColourHistogram histogram = pictures.count_colours();
    for (const SpriteFrame& frame : sprite_.frames) {
        if (!is_new(frame)) {
            add_colours(pixels_of(frame), histogram);
        }
    }
    const std::vector<RGBQUAD> entries = best_entries(histogram, usable_entries(mode()), edits_.pictures);
    sprite_.palette = palette_record(entries, mode());
    if (mode() == RenderMode::AlphaTest) { // never drawn, but perhaps chosen
        sprite_.palette.Colours[transparent_index] = old_palette.Colours[transparent_index];
    }
    const FrameMapper mapper(entries, mode());
    std::vector<ByteArray> made = pictures.map(entries);
    auto next = made.begin();
    FramePixels before;
    ByteArray mapped_before; // entries of the mapper
    for (SpriteFrame& frame : sprite_.frames) {
        if (is_new(frame)) {
            frame.indices = std::move(*next++);
        } else {
            FramePixels pixels = pixels_of(frame);
            ByteArray mapped(frame.indices.size());
            mapper.map(pixels, edits_.pictures.dithering, unchanged_pixels(before.view(), pixels.view()),
                       mapped_before.bytes(), mapped.bytes());
            frame.indices = mapped;
            mapper.to_indices(frame.indices.bytes());
            before = std::move(pixels);
            mapped_before = std::move(mapped);
        }
    }
}

void Edit::move() {
    for (const FrameMove& move : edits_.moves) {
        check_frame(move.from, "--move");
        check_frame(move.to, "--move");
        const auto from = sprite_.frames.begin() + static_cast<std::ptrdiff_t>(move.from);
        const auto to = sprite_.frames.begin() + static_cast<std::ptrdiff_t>(move.to);
        if (from < to) {
            std::rotate(from, from + 1, to + 1);
        } else {
            std::rotate(to, from, from + 1);
        }
    }
}

void Edit::reorder() {
    if (!edits_.order) {
        return;
    }
    std::vector<SpriteFrame> ordered;
    std::vector<bool> taken(sprite_.frames.size());
    for (const std::size_t frame : *edits_.order) {
        check_frame(frame, "--order");
        if (taken[frame]) {
            throw CommandError(file_, "--order: frame " + std::to_string(frame) + " occurs twice");
        }
        taken[frame] = true;
        ordered.push_back(std::move(sprite_.frames[frame]));
    }
    if (const auto missing = std::ranges::find(taken, false); missing != taken.end()) {
        throw CommandError(file_,
                           "--order: frame " + std::to_string(missing - taken.begin()) + " is missing");
    }
    sprite_.frames = std::move(ordered);
}

void Edit::set_origins() {
    if (!edits_.origin && !edits_.centre) {
        return;
    }
    for (SpriteFrame& frame : sprite_.frames) {
        FrameHeaderRecord& header = frame.header;
        const FrameOrigin origin =
            edits_.origin ? *edits_.origin : centre_origin({header.FrameWidth, header.FrameHeight});
        header.OriginX = origin.x;
        header.OriginY = origin.y;
    }
}

void Edit::check_frame(std::size_t frame, const char* option) const {
    if (frame >= sprite_.frames.size()) {
        throw CommandError(file_, std::string(option) + ": there is no frame " + std::to_string(frame) +
                                      " of " + std::to_string(sprite_.frames.size()));
    }
}

} // namespace

void edit_sprite(SpriteFile& sprite, const SpriteEdits& edits, const std::string& file) {
    Edit(sprite, edits, file).run();
}

} // namespace varnoth::cli
