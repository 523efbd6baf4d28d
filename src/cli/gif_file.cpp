#include "cli/gif_file.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include <gif_lib.h>

#include "core/base/RunTimeFailure.h"

namespace varnoth::cli {

namespace {

using Bytes = std::span<const std::uint8_t>;

void require(bool holds) {
    if (!holds) {
        fail(Failure::InvalidPicture);
    }
}

struct Close {
    void operator()(GifFileType* file) const { DGifCloseFile(file, nullptr); }
};

std::vector<RGBQUAD> colours_of(const ColorMapObject* map) {
    std::vector<RGBQUAD> colours;
    if (map != nullptr) {
        for (int i = 0; i < map->ColorCount; ++i) {
            const GifColorType& colour = map->Colors[i];
            colours.push_back({colour.Blue, colour.Green, colour.Red, 0});
        }
    }
    return colours;
}

/// A frame as the file has it, which may be smaller than the canvas or reach beyond it.
struct FileFrame {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    std::vector<RGBQUAD> colours;
    std::vector<std::uint8_t> indices;
    std::optional<std::uint8_t> transparent;
    int disposal = DISPOSAL_UNSPECIFIED;
    int delay_milliseconds = 0;

    std::uint8_t index_at(int x, int y) const {
        return indices[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                       static_cast<std::size_t>(x)];
    }
};

/// The rows of an interlaced frame in the order of the file.
std::vector<int> interlaced_rows(int height) {
    struct Pass {
        int first;
        int step;
    };

    std::vector<int> rows;
    for (const Pass pass : {Pass{0, 8}, Pass{4, 8}, Pass{2, 4}, Pass{1, 2}}) {
        for (int row = pass.first; row < height; row += pass.step) {
            rows.push_back(row);
        }
    }
    return rows;
}

/// The records of a file, one after the other.
class GifStream {
  public:
    explicit GifStream(Bytes file) : rest_(file), file_(DGifOpen(this, &GifStream::read_bytes, nullptr)) {
        require(file_ != nullptr);
    }

    GifStream(const GifStream&) = delete;
    GifStream& operator=(const GifStream&) = delete;

    int canvas_width() const { return file_->SWidth; }

    int canvas_height() const { return file_->SHeight; }

    std::vector<RGBQUAD> global_colours() const { return colours_of(file_->SColorMap); }

    /// The next frame, with its indices unless it has more than `max_pixels` pixels (OutOfMemory). Empty
    /// after the last one.
    std::optional<FileFrame> next(std::int64_t max_pixels) {
        std::optional<FileFrame> frame = next_header();
        if (frame) {
            if (std::int64_t{frame->width} * frame->height > max_pixels) {
                fail(Failure::OutOfMemory);
            }
            read_indices(*frame);
        }
        return frame;
    }

    /// The next frame without its indices.
    std::optional<FileFrame> skip() {
        std::optional<FileFrame> frame = next_header();
        if (frame) {
            skip_codes();
        }
        return frame;
    }

  private:
    static int read_bytes(GifFileType* file, GifByteType* target, int count) {
        auto& rest = static_cast<GifStream*>(file->UserData)->rest_;
        const std::size_t present = std::min(rest.size(), static_cast<std::size_t>(std::max(count, 0)));
        if (present > 0) {
            std::memcpy(target, rest.data(), present);
        }
        rest = rest.subspan(present);
        return static_cast<int>(present);
    }

    std::optional<FileFrame> next_header() {
        FileFrame frame;
        while (true) {
            GifRecordType type = UNDEFINED_RECORD_TYPE;
            if (rest_.empty()) {
                return std::nullopt; // without the end mark
            }
            require(DGifGetRecordType(file_.get(), &type) == GIF_OK);
            if (type == TERMINATE_RECORD_TYPE) {
                rest_ = {};
                return std::nullopt;
            }
            if (type == IMAGE_DESC_RECORD_TYPE) {
                read_header(frame);
                return frame;
            }
            read_extension(frame);
        }
    }

    void read_extension(FileFrame& frame) {
        int code = 0;
        GifByteType* block = nullptr;
        require(DGifGetExtension(file_.get(), &code, &block) == GIF_OK);
        while (block != nullptr) {
            GraphicsControlBlock control{};
            if (code == GRAPHICS_EXT_FUNC_CODE &&
                DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK) {
                frame.disposal = control.DisposalMode;
                frame.delay_milliseconds = control.DelayTime * 10;
                frame.transparent.reset();
                if (control.TransparentColor != NO_TRANSPARENT_COLOR) {
                    frame.transparent = static_cast<std::uint8_t>(control.TransparentColor);
                }
            }
            require(DGifGetExtensionNext(file_.get(), &block) == GIF_OK);
        }
    }

    void read_header(FileFrame& frame) {
        require(DGifGetImageDesc(file_.get()) == GIF_OK);
        const GifImageDesc& image = file_->Image;
        frame.left = image.Left;
        frame.top = image.Top;
        frame.width = image.Width;
        frame.height = image.Height;
        frame.colours = colours_of(image.ColorMap != nullptr ? image.ColorMap : file_->SColorMap);
        require(!frame.colours.empty());
    }

    void read_indices(FileFrame& frame) {
        const auto width = static_cast<std::size_t>(frame.width);
        frame.indices.resize(width * static_cast<std::size_t>(frame.height));
        if (frame.indices.empty()) {
            return skip_codes();
        }
        const auto read_row = [&](int row) {
            GifPixelType* to = frame.indices.data() + width * static_cast<std::size_t>(row);
            require(DGifGetLine(file_.get(), to, frame.width) == GIF_OK);
        };
        if (file_->Image.Interlace) {
            std::ranges::for_each(interlaced_rows(frame.height), read_row);
        } else {
            for (int row = 0; row < frame.height; ++row) {
                read_row(row);
            }
        }
    }

    void skip_codes() {
        int code_size = 0;
        GifByteType* block = nullptr;
        require(DGifGetCode(file_.get(), &code_size, &block) == GIF_OK);
        while (block != nullptr) {
            require(DGifGetCodeNext(file_.get(), &block) == GIF_OK);
        }
    }

    Bytes rest_;
    std::unique_ptr<GifFileType, Close> file_;
};

/// The canvas, in colours or in indices. `blank` is a pixel on which nothing is drawn.
template <typename Pixel, Pixel blank>
class Canvas {
  public:
    /// Disposes of the frame drawn last and draws another one. The first frame gives the size if the file
    /// states none. `pixel_of` is called with every index that is not transparent.
    template <typename PixelOf>
    void draw(const GifStream& stream, const FileFrame& frame, std::int64_t max_pixels, PixelOf&& pixel_of) {
        if (pixels_.empty()) {
            create(stream, frame, max_pixels);
        }
        dispose();
        const int right = std::min(width_, frame.left + frame.width);
        const int bottom = std::min(height_, frame.top + frame.height);
        disposal_ = frame.disposal;
        area_ = {frame.left, frame.top, right, bottom};
        if (disposal_ == DISPOSE_PREVIOUS) {
            saved_ = pixels_;
        }
        for (int y = frame.top; y < bottom; ++y) {
            for (int x = frame.left; x < right; ++x) {
                const std::uint8_t index = frame.index_at(x - frame.left, y - frame.top);
                if (index != frame.transparent) {
                    pixels_[at(x, y)] = pixel_of(index);
                }
            }
        }
    }

    int width() const { return width_; }

    int height() const { return height_; }

    const std::vector<Pixel>& pixels() const { return pixels_; }

  private:
    struct Area {
        int left = 0;
        int top = 0;
        int right = 0;
        int bottom = 0;
    };

    void create(const GifStream& stream, const FileFrame& frame, std::int64_t max_pixels) {
        const bool has_size = stream.canvas_width() > 0 && stream.canvas_height() > 0;
        width_ = has_size ? stream.canvas_width() : frame.left + frame.width;
        height_ = has_size ? stream.canvas_height() : frame.top + frame.height;
        const std::int64_t count = std::int64_t{width_} * height_;
        require(count > 0);
        if (count > max_pixels) {
            fail(Failure::OutOfMemory);
        }
        pixels_.assign(static_cast<std::size_t>(count), blank);
    }

    void dispose() {
        if (disposal_ == DISPOSE_PREVIOUS) {
            pixels_ = std::move(saved_);
        } else if (disposal_ == DISPOSE_BACKGROUND) {
            for (int y = area_.top; y < area_.bottom; ++y) {
                for (int x = area_.left; x < area_.right; ++x) {
                    pixels_[at(x, y)] = blank;
                }
            }
        }
    }

    std::size_t at(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x);
    }

    int width_ = 0;
    int height_ = 0;
    std::vector<Pixel> pixels_;
    std::vector<Pixel> saved_;
    int disposal_ = DISPOSAL_UNSPECIFIED;
    Area area_;
};

std::uint32_t opaque(const RGBQUAD& colour) {
    return 0xFF000000U | static_cast<std::uint32_t>(colour.rgbRed) << 16 |
           static_cast<std::uint32_t>(colour.rgbGreen) << 8 | colour.rgbBlue;
}

constexpr std::int16_t no_index = -1;

/// Composes frames as indices as long as they have one meaning in all frames.
class IndexedFrames {
  public:
    /// Whether the frame could be added.
    bool add(const GifStream& stream, const FileFrame& frame, std::int64_t max_pixels) {
        if (gif_.frames.empty()) {
            gif_.palette = frame.colours;
        }
        if (frame.colours != gif_.palette || !takes_transparent(frame)) {
            return false;
        }
        canvas_.draw(stream, frame, max_pixels, [this](std::uint8_t index) {
            drawn_[index] = true;
            return std::int16_t{index};
        });
        const bool is_within_palette =
            std::find(drawn_.begin() + palette_size(), drawn_.end(), true) == drawn_.end();
        const bool is_also_opaque = gif_.transparent && drawn_[*gif_.transparent];
        return is_within_palette && !is_also_opaque && add_canvas(frame.delay_milliseconds);
    }

    IndexedGif take() {
        gif_.width = canvas_.width();
        gif_.height = canvas_.height();
        return std::move(gif_);
    }

  private:
    std::ptrdiff_t palette_size() const { return static_cast<std::ptrdiff_t>(gif_.palette.size()); }

    bool takes_transparent(const FileFrame& frame) {
        if (!gif_.transparent) {
            gif_.transparent = frame.transparent;
        }
        return !frame.transparent || frame.transparent == gif_.transparent;
    }

    bool add_canvas(int delay_milliseconds) {
        IndexedGif::Frame frame;
        frame.delay_milliseconds = delay_milliseconds;
        for (const std::int16_t index : canvas_.pixels()) {
            if (index == no_index && (!gif_.transparent || *gif_.transparent >= palette_size())) {
                return false;
            }
            frame.indices.push_back(index == no_index ? *gif_.transparent : static_cast<std::uint8_t>(index));
        }
        gif_.frames.push_back(std::move(frame));
        return true;
    }

    IndexedGif gif_;
    Canvas<std::int16_t, no_index> canvas_;
    std::vector<bool> drawn_ = std::vector<bool>(256);
};

} // namespace

std::size_t count_gif_frames(Bytes file) {
    GifStream stream(file);
    std::size_t count = 0;
    while (stream.skip()) {
        ++count;
    }
    require(count > 0);
    return count;
}

struct GifReader::State {
    State(Bytes file, std::int64_t most_pixels) : stream(file), max_pixels(most_pixels) {}

    GifStream stream;
    std::int64_t max_pixels;
    Canvas<std::uint32_t, 0> canvas;
    int delay_milliseconds = 0;
};

GifReader::GifReader(Bytes file, std::int64_t max_pixels)
    : state_(std::make_unique<State>(file, max_pixels)) {}

GifReader::~GifReader() = default;

RgbaPicture GifReader::read() {
    const std::optional<FileFrame> frame = state_->stream.next(state_->max_pixels);
    require(frame.has_value());
    Canvas<std::uint32_t, 0>& canvas = state_->canvas;
    canvas.draw(state_->stream, *frame, state_->max_pixels, [&frame](std::uint8_t index) {
        return opaque(index < frame->colours.size() ? frame->colours[index] : RGBQUAD{});
    });
    state_->delay_milliseconds = frame->delay_milliseconds;
    return {canvas.width(), canvas.height(), canvas.pixels()};
}

int GifReader::delay_milliseconds() const {
    return state_->delay_milliseconds;
}

std::optional<IndexedGif> read_indexed_gif(Bytes file, std::int64_t max_pixels) {
    GifStream stream(file);
    IndexedFrames frames;
    std::size_t count = 0;
    while (const std::optional<FileFrame> frame = stream.next(max_pixels)) {
        if (!frames.add(stream, *frame, max_pixels)) {
            return std::nullopt;
        }
        ++count;
    }
    require(count > 0);
    return frames.take();
}

std::vector<RGBQUAD> gif_colour_table(Bytes file) {
    GifStream stream(file);
    std::vector<RGBQUAD> colours = stream.global_colours();
    if (colours.empty()) {
        const std::optional<FileFrame> frame = stream.skip();
        require(frame.has_value());
        colours = frame->colours;
    }
    return colours;
}

} // namespace varnoth::cli
