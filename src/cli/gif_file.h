// Reads GIF files from memory. Frames are composed onto the canvas as browsers do it: the canvas is
// transparent at first, and where a frame is disposed of by the background. What lies outside of the canvas
// is cut off. Every frame must be complete; only the end mark of the file may be missing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "core/image/Colour.h"
#include "core/image/RgbaPicture.h"

namespace varnoth::cli {

/// The number of frames. Does not decode them; InvalidPicture when the file has none or is truncated.
std::size_t count_gif_frames(std::span<const std::uint8_t> file);

/// Decodes the frames in their order, one at a time.
class GifReader {
  public:
    /// The bytes must stay valid. InvalidPicture when they are no GIF file.
    GifReader(std::span<const std::uint8_t> file, std::int64_t max_pixels);
    ~GifReader();

    GifReader(const GifReader&) = delete;
    GifReader& operator=(const GifReader&) = delete;

    /// The next frame composed; its transparent pixels are 0. InvalidPicture when it is damaged or there is
    /// none, OutOfMemory for more than `max_pixels` pixels.
    RgbaPicture read();

    /// How long the frame read last is shown.
    int delay_milliseconds() const;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

/// An animation whose frames share one colour table.
struct IndexedGif {
    struct Frame {
        std::vector<std::uint8_t> indices; ///< of the whole canvas, top row first
        int delay_milliseconds = 0;
    };

    int width = 0;
    int height = 0;
    std::vector<RGBQUAD> palette; ///< 2 to 256 entries
    std::optional<std::uint8_t> transparent;
    std::vector<Frame> frames;
};

/// All frames composed, as indices into their common colour table, so that a sprite can keep palette and
/// indices. Empty when the frames differ in their colour tables or transparent indices, when a pixel is
/// beyond the colour table, or when nothing is drawn on a pixel and there is no transparent index for it.
/// Fails as GifReader does.
std::optional<IndexedGif> read_indexed_gif(std::span<const std::uint8_t> file, std::int64_t max_pixels);

/// The file's global colour table, else that of its first frame.
std::vector<RGBQUAD> gif_colour_table(std::span<const std::uint8_t> file);

} // namespace varnoth::cli
