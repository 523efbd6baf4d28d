#include "core/sprite/hlspr.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <new>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "core/base/numbers.h"
#include "core/image/IndexExpansion.h"
#include "core/quantize/mixpals.h"
#include "core/services/Services.h"
#include "core/sprite/sprite_file.h"

namespace varnoth::hlspr {

bool UnnamedSprite = false;
bool SpriteDirty = false;
std::string ExtractFolder;

namespace {

constexpr std::int32_t sprite_version = 2;

// A sprite without frames has one slot.
void make_empty_store() {
    document().replace_frames(1);
    document().FrameStore.front() = ByteArray(1);
}

std::array<RGBQUAD, 256> palette_as_pixels(const PaletteRecord& palette) {
    std::array<RGBQUAD, 256> pixels{};
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        pixels[i] = {palette.Colours[i].blue, palette.Colours[i].green, palette.Colours[i].red, 0};
    }
    return pixels;
}

// The indices of a stored frame; empty for an invalid number.
std::span<const std::uint8_t> indices_of(std::int16_t number) {
    const SpriteDocument& sprite = document();
    const auto slot = static_cast<std::size_t>(number);
    return number >= 0 && slot < sprite.FrameStore.size() ? sprite.FrameStore[slot].bytes()
                                                          : std::span<const std::uint8_t>();
}

bool holds_pixels(const Bitmap& bitmap, std::int32_t width, std::int32_t height) {
    return bitmap.bits_per_pixel() == 32 && bitmap.width() == width && bitmap.height() == height;
}

// Contiguous pixels of `pixel_bytes` bytes each, which begin with blue, green, red.
struct PixelSpan {
    std::span<const std::uint8_t> bytes;
    std::int32_t pixel_bytes;

    /// The number of pixels whose three colour bytes are inside the span.
    std::int64_t count() const {
        const std::int64_t size = std::ssize(bytes);
        return size < 3           ? 0
               : pixel_bytes == 0 ? std::numeric_limits<std::int64_t>::max()
                                  : (size - 3) / pixel_bytes + 1;
    }
};

// Finds the indices of the pixels from `first` on. SubscriptOutOfRange when there are too few pixels, after
// the indices of the existing ones have been stored.
void take_indices(const PixelSpan& pixels, std::int64_t first, std::span<std::uint8_t> indices) {
    const std::int64_t there = std::clamp<std::int64_t>(pixels.count() - first, 0, std::ssize(indices));
    if (there > 0) {
        mixpals::nearest_indices(pixels.bytes.subspan(static_cast<std::size_t>(first * pixels.pixel_bytes)),
                                 static_cast<std::size_t>(pixels.pixel_bytes),
                                 indices.first(static_cast<std::size_t>(there)));
    }
    if (there < std::ssize(indices)) {
        fail(Failure::SubscriptOutOfRange);
    }
}

} // namespace

SpriteDocument& document() {
    static SpriteDocument the_document;
    return the_document;
}

void new_sprite(std::int32_t width, std::int32_t height, std::int32_t sprite_type, std::int32_t render_mode) {
    SpriteDocument& sprite = document();
    const double half_width = width / 2.0;
    const double half_height = height / 2.0;
    sprite.SpriteHeader.Height = height;
    sprite.SpriteHeader.Width = width;
    sprite.SpriteHeader.Ident = SpriteHeaderRecord::sprite_ident;
    sprite.SpriteHeader.SyncType = 1;
    sprite.SpriteHeader.BeamLength = 0;
    sprite.SpriteHeader.FrameCount = 0;
    sprite.SpriteHeader.RenderMode = render_mode;
    sprite.SpriteHeader.SpriteType = sprite_type;
    sprite.SpriteHeader.Version = sprite_version;
    sprite.FrameHeader.FrameType = 0;
    sprite.FrameHeader.FrameHeight = height;
    sprite.FrameHeader.FrameWidth = width;
    sprite.FrameHeader.OriginX = round_to_even<std::int32_t>(-half_width);
    sprite.FrameHeader.OriginY = round_to_even<std::int32_t>(half_height);
    sprite.SpriteHeader.BoundingRadius =
        static_cast<float>(std::sqrt(half_width * half_width + half_height * half_height));
    sprite.Palette = {PaletteRecord::sprite_colours, {}};
    make_empty_store();
}

void clear_frames() {
    document().SpriteHeader.FrameCount = 0;
    document().Palette.ColourCount = PaletteRecord::sprite_colours;
    make_empty_store();
}

Truth load_sprite(const std::string& path) {
    try {
        const std::optional<SpriteReadError> error = read_sprite(path, document());
        if (error) {
            show_message(error->message);
        }
        return truth(!error);
    } catch (const std::bad_alloc&) { // not even the reader's error could be returned
        show_message("Unknown Error Loading Sprite.");
        return False;
    }
}

Truth save_sprite(const std::string& path) {
    constexpr std::string_view unknown_error = "Unknown Error Saving Sprite.";
    try {
        write_sprite(path, document());
        return True;
    } catch (const RunTimeFailure&) {
        show_message(unknown_error);
    } catch (const std::bad_alloc&) {
        show_message(unknown_error);
    }
    return False;
}

std::string_view render_mode_name(std::int32_t render_mode) {
    switch (render_mode) {
    case 0:
        return "NORMAL";
    case 1:
        return "ADDITIVE";
    case 2:
        return "INDEXALPHA";
    case 3:
        return "ALPHATEST";
    default:
        return "-1";
    }
}

std::string_view sprite_type_name(std::int32_t sprite_type) {
    switch (sprite_type) {
    case 0:
        return "VP_PARALLEL_UPRIGHT";
    case 1:
        return "FACING_UPRIGHT";
    case 2:
        return "VP_PARALLEL";
    case 3:
        return "ORIENTED";
    case 4:
        return "VP_PARALLEL_ORIENTED";
    default:
        return "-1";
    }
}

void draw_frame(std::int16_t& frame_number, PictureSurface& picture) {
    const SpriteDocument& sprite = document();
    check_subscript(frame_number, sprite.FrameOrder.size());
    // Written back on purpose: extraction names its files after the stored number and continues from it, and
    // so does the animation.
    frame_number = sprite.FrameOrder[static_cast<std::size_t>(frame_number)];

    const std::int32_t width = sprite.SpriteHeader.Width;
    const std::int32_t height = sprite.SpriteHeader.Height;
    if (picture.Width() != width || picture.Height() != height) {
        picture.Cls();
        picture.SetWidth(width);
        picture.SetHeight(height);
    }
    const std::int32_t byte_count = checked_multiply(checked_multiply(width, 4), height);
    const auto pixel_count = static_cast<std::size_t>(std::max(byte_count, 0)) / 4;
    const std::span<const std::uint8_t> indices = indices_of(frame_number);
    if (pixel_count == 0 || indices.size() < pixel_count) {
        picture.Cls();
        fail(Failure::SubscriptOutOfRange);
    }
    const IndexExpansion expansion(palette_as_pixels(sprite.Palette));
    // No clearing needed: every pixel is written.
    if (holds_pixels(picture.bitmap(), width, height)) {
        expansion.expand(indices.first(pixel_count), picture.bitmap().bytes().data());
    } else {
        // Copies 32-bit pixels even if the picture has another depth.
        picture.Cls();
        ByteArray pixels = ByteArray::for_overwrite(4 * pixel_count);
        expansion.expand(indices.first(pixel_count), pixels.data());
        picture.SetBitmapBits(pixels.bytes());
    }
    picture.Refresh();
}

void add_frame(PictureSurface& picture) {
    SpriteDocument& sprite = document();
    sprite.SpriteHeader.FrameCount = checked_add(sprite.SpriteHeader.FrameCount, 1);
    const auto number = narrow<std::int16_t>(sprite.SpriteHeader.FrameCount - 1);
    if (number < 0) {
        fail(Failure::SubscriptOutOfRange); // a rejected file may have left a negative count
    }
    const auto slot = static_cast<std::size_t>(number);
    sprite.FrameOrder.resize(slot + 1);
    sprite.FrameOrder[slot] = number;
    sprite.FrameStore.resize(slot + 1);

    const auto width = round_to_even<std::int32_t>(picture.ScaleWidth());
    const auto height = round_to_even<std::int32_t>(picture.ScaleHeight());
    const auto size = round_to_even<std::int32_t>(picture.ScaleWidth() * picture.ScaleHeight());
    if (size <= 0) {
        fail(Failure::SubscriptOutOfRange);
    }
    sprite.FrameStore[slot] = ByteArray(static_cast<std::size_t>(size));

    const BITMAP info = picture.description();
    const std::int32_t pixel_bytes = round_to_even<std::int32_t>(divide(info.bmWidthBytes, info.bmWidth));
    const Bitmap bits = picture.bitmap(); // a yield may change the picture
    if (number == 0) {
        take_frame_palette();
    }
    const PixelSpan pixels{bits.bytes(), pixel_bytes};
    // One yield per row keeps the Cancel button responsive: a row takes microseconds.
    for (std::int32_t y = 0; y < height; ++y) {
        yield_to_events();
        const std::span<std::uint8_t> row = sprite.FrameStore[slot].bytes().subspan(
            static_cast<std::size_t>(y) * static_cast<std::size_t>(width), static_cast<std::size_t>(width));
        take_indices(pixels, std::int64_t{y} * info.bmWidth, row);
    }
}

void take_frame_palette() {
    for (std::size_t i = 0; i < mixpals::ImportPalette.size(); ++i) {
        const RGBQUAD& entry = mixpals::ImportPalette[i];
        document().Palette.Colours[i] = {entry.rgbRed, entry.rgbGreen, entry.rgbBlue};
    }
}

} // namespace varnoth::hlspr
