#include "core/sprite/hlspr.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <new>
#include <span>
#include <utility>
#include <vector>

#include "core/base/files.h"
#include "core/base/numbers.h"
#include "core/image/IndexExpansion.h"
#include "core/quantize/mixpals.h"
#include "core/services/Services.h"

namespace varnoth::hlspr {

bool UnnamedSprite = false;
bool SpriteDirty = false;
std::string ExtractFolder;

namespace {

constexpr std::array<char, 4> sprite_ident{'I', 'D', 'S', 'P'};
constexpr std::int32_t sprite_version = 2;
constexpr std::int16_t sprite_colours = 256;

// Replaces both arrays, which frees the memory of the previous sprite. Keeps them when allocation fails.
void make_store(std::size_t slots) {
    std::vector<ByteArray> store(slots);
    document().FrameOrder = std::vector<std::int16_t>(slots);
    document().FrameStore = std::move(store);
}

// A sprite without frames has one slot.
void make_empty_store() {
    make_store(1);
    document().FrameStore.front() = ByteArray(1);
}

// Frame numbers are signed 16-bit, so no more slots than this can be used. A file that claims more gets this
// many; reading it fails at the first frame number that overflows, if not before.
constexpr std::int32_t most_frame_slots = 32768;

template <std::size_t Size>
std::array<std::uint8_t, Size> read_record(InputFile& file) {
    std::array<std::uint8_t, Size> bytes{}; // bytes missing from a truncated file stay 0
    file.read(bytes);
    return bytes;
}

// Bytes missing from a truncated file are 0. Because a header may claim any size, memory beyond the end of
// the file is not touched.
void read_indices(InputFile& file, ByteArray& indices, std::size_t size) {
    if (file.remaining() < static_cast<std::int64_t>(size)) {
        indices = ByteArray(size);
        file.read(indices.bytes());
        return;
    }
    indices = ByteArray::for_overwrite(size);
    const auto clear_from = [&](std::size_t first) {
        std::ranges::fill(indices.bytes().subspan(first), std::uint8_t{0});
    };
    try {
        clear_from(file.read(indices.bytes())); // the file may have shrunk meanwhile
    } catch (const RunTimeFailure&) {
        clear_from(0);
        throw;
    }
}

void read_frame(InputFile& file, std::int16_t number) {
    std::array<std::uint8_t, FrameHeaderRecord::file_size> bytes{};
    if (file.read(bytes) != bytes.size()) {
        fail(Failure::DeviceIo);
    }
    SpriteDocument& sprite = document();
    sprite.FrameHeader = frame_header_from_bytes(bytes);
    const std::int32_t size = checked_multiply(sprite.FrameHeader.FrameWidth, sprite.FrameHeader.FrameHeight);
    if (size <= 0) {
        fail(Failure::SubscriptOutOfRange);
    }
    const auto slot = static_cast<std::size_t>(number);
    read_indices(file, sprite.FrameStore[slot], static_cast<std::size_t>(size));
    sprite.FrameOrder[slot] = number;
}

// Stores each record before validating it: a rejected file leaves its header in the document.
Truth read_sprite(const std::string& path) {
    SpriteDocument& sprite = document();
    InputFile file(path);
    sprite.SpriteHeader = sprite_header_from_bytes(read_record<SpriteHeaderRecord::file_size>(file));
    if (sprite.SpriteHeader.Ident != sprite_ident) {
        show_message("Not A Half-Life Sprite " + path);
        return False;
    }
    if (sprite.SpriteHeader.FrameCount < 1) {
        show_message("No Sprites In File");
        return False;
    }
    sprite.Palette = palette_from_bytes(read_record<PaletteRecord::file_size>(file));
    if (sprite.Palette.ColourCount != sprite_colours) {
        show_message("Not 8bpp sprite");
        return False;
    }
    const auto slots = static_cast<std::size_t>(std::min(sprite.SpriteHeader.FrameCount, most_frame_slots));
    make_store(slots);
    for (std::int32_t i = 0; i < sprite.SpriteHeader.FrameCount; ++i) {
        read_frame(file, narrow<std::int16_t>(i));
    }
    return True;
}

Truth write_sprite(const std::string& path) {
    const SpriteDocument& sprite = document();
    if (file_exists(path)) {
        delete_file(path);
    }
    const auto frame_header = to_bytes(sprite.FrameHeader);
    OutputFile file(path);
    file.write(to_bytes(sprite.SpriteHeader));
    file.write(to_bytes(sprite.Palette));
    for (std::int32_t i = 0; i < sprite.SpriteHeader.FrameCount; ++i) {
        check_subscript(i, sprite.FrameOrder.size());
        const std::int16_t number = sprite.FrameOrder[static_cast<std::size_t>(i)];
        check_subscript(number, sprite.FrameStore.size());
        file.write(frame_header);
        file.write(sprite.FrameStore[static_cast<std::size_t>(number)].bytes());
    }
    file.close();
    return True;
}

// Runs a load or save; any failure becomes one message and the result False.
template <typename Action>
Truth trapped(Action&& action, std::string_view message) {
    try {
        return action();
    } catch (const RunTimeFailure&) {
        show_message(message);
    } catch (const std::bad_alloc&) {
        show_message(message);
    }
    return False;
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
    sprite.SpriteHeader.Ident = sprite_ident;
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
    sprite.Palette = {sprite_colours, {}};
    make_empty_store();
}

void clear_frames() {
    document().SpriteHeader.FrameCount = 0;
    document().Palette.ColourCount = sprite_colours;
    make_empty_store();
}

Truth load_sprite(const std::string& path) {
    return trapped([&] { return read_sprite(path); }, "Unknown Error Loading Sprite.");
}

Truth save_sprite(const std::string& path) {
    return trapped([&] { return write_sprite(path); }, "Unknown Error Saving Sprite.");
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
