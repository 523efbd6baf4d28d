// Pictures on their way to becoming frames: scaled, their colours counted in a first pass and mapped to a
// palette in a second one. Neither pass keeps more pictures in memory than it has threads, and one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "cli/pictures.h"
#include "core/image/resize_picture.h"
#include "core/quantize/ColourHistogram.h"
#include "core/sprite/frame_pixels.h"

namespace varnoth::cli {

class Progress;

struct FrameSize {
    std::int32_t width = 0;
    std::int32_t height = 0;

    friend bool operator==(const FrameSize&, const FrameSize&) = default;
};

/// How pictures are treated.
struct PictureOptions {
    Fit fit = Fit::Stretch;
    Transparency transparency;
    Dithering dithering;
    std::size_t threads = 1; ///< does not affect the result
    bool quiet = false;      ///< no progress bar
};

class PictureFrames {
  public:
    /// The pictures as frames of these sizes, one for each picture. Reads nothing yet.
    PictureFrames(std::vector<PictureSource> sources, std::vector<FrameSize> sizes, RenderMode mode,
                  const PictureOptions& options);

    /// Counts the colours of the opaque pixels. Not for IndexAlpha.
    ColourHistogram count_colours() const;

    /// What IndexAlpha must know of all pictures.
    AlphaSummary summarise_alpha() const;

    /// The indices of each frame in a palette; see FrameMapper. With an error-diffusing dither, pixels that
    /// do not change from one picture to the next keep their index. Not for IndexAlpha.
    std::vector<ByteArray> map(std::span<const RGBQUAD> palette) const;

    /// The indices of each frame for IndexAlpha; see alpha_indices().
    std::vector<ByteArray> map_alpha(bool from_alpha) const;

  private:
    void map_in_chain(const FrameMapper& mapper, std::vector<ByteArray>& frames, Progress& progress) const;
    FramePixels pixels(std::size_t position, RgbaPicture picture) const;
    RgbaPicture fitted(std::size_t position, RgbaPicture picture) const;

    std::vector<PictureSource> sources_;
    std::vector<FrameSize> sizes_;
    RenderMode mode_;
    PictureOptions options_;
};

/// Counts the colours of the opaque pixels.
void add_colours(const FramePixels& pixels, ColourHistogram& histogram);

/// The palette as the quantizer takes it.
std::vector<RGBQUAD> entries_of(const PaletteRecord& palette);

/// A palette for these colours, of at least one entry.
std::vector<RGBQUAD> best_entries(const ColourHistogram& histogram, std::size_t colours,
                                  const PictureOptions& options);

} // namespace varnoth::cli
