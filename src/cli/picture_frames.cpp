#include "cli/picture_frames.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "cli/FrameChain.h"
#include "cli/console.h"
#include "cli/each_picture.h"
#include "core/base/threads.h"
#include "core/quantize/best_palette.h"

namespace varnoth::cli {

namespace {

class Follower : public BandListener {
  public:
    Follower(FrameChain& chain, std::size_t frame, bool waits)
        : chain_(chain), frame_(frame), waits_(waits) {}

    void before_band(std::size_t band) override {
        if (waits_) {
            chain_.wait_for_band(frame_ - 1, band);
        }
    }

    void after_band(std::size_t /*band*/) override { chain_.add_band(frame_); }

  private:
    FrameChain& chain_;
    std::size_t frame_;
    bool waits_;
};

} // namespace

PictureFrames::PictureFrames(std::vector<PictureSource> sources, std::vector<FrameSize> sizes,
                             RenderMode mode, const PictureOptions& options)
    : sources_(std::move(sources)), sizes_(std::move(sizes)), mode_(mode), options_(options) {
    options_.threads =
        std::clamp<std::size_t>(options_.threads, 1, std::max<std::size_t>(sources_.size(), 1));
}

ColourHistogram PictureFrames::count_colours() const {
    std::vector<ColourHistogram> histograms(options_.threads);
    Progress progress("Counting colours", sources_.size(), options_.quiet);
    for_each_picture(sources_, options_.threads, progress,
                     [&](std::size_t thread, std::size_t position, RgbaPicture picture) {
                         add_colours(pixels(position, std::move(picture)), histograms[thread]);
                     });
    for (std::size_t thread = 1; thread < histograms.size(); ++thread) {
        histograms[0].add(histograms[thread], options_.threads);
    }
    return std::move(histograms[0]);
}

// Before scaling, which makes the edges of opaque pictures neither transparent nor lighter, but would give
// them a border.
AlphaSummary PictureFrames::summarise_alpha() const {
    std::vector<AlphaSummary> summaries(options_.threads);
    Progress progress("Reading pictures", sources_.size(), options_.quiet);
    for_each_picture(sources_, options_.threads, progress,
                     [&](std::size_t thread, std::size_t /*position*/, RgbaPicture picture) {
                         set_alpha(picture, options_.transparency);
                         summaries[thread].add(picture);
                     });
    for (std::size_t thread = 1; thread < summaries.size(); ++thread) {
        summaries[0].add(summaries[thread]);
    }
    return summaries[0];
}

std::vector<ByteArray> PictureFrames::map(std::span<const RGBQUAD> palette) const {
    const FrameMapper mapper(palette, mode_, options_.threads);
    std::vector<ByteArray> frames(sources_.size());
    Progress progress("Making frames", sources_.size(), options_.quiet);
    if (options_.dithering.diffuses_errors()) {
        map_in_chain(mapper, frames, progress);
    } else {
        for_each_picture(sources_, options_.threads, progress,
                         [&](std::size_t /*thread*/, std::size_t position, RgbaPicture picture) {
                             frames[position] =
                                 mapper.indices(pixels(position, std::move(picture)), options_.dithering);
                         });
    }
    return frames;
}

// A frame that has something in common with the one before follows it band by band.
void PictureFrames::map_in_chain(const FrameMapper& mapper, std::vector<ByteArray>& frames,
                                 Progress& progress) const {
    FrameChain chain(frames.size());
    for_each_picture(
        sources_, options_.threads, progress,
        [&](std::size_t /*thread*/, std::size_t position, RgbaPicture picture) {
            const auto frame = std::make_shared<const FramePixels>(pixels(position, std::move(picture)));
            frames[position] = ByteArray(frame->pixels.size() / 4);
            std::vector<std::uint8_t> kept;
            if (const auto before = chain.begin(position, frame)) {
                kept = unchanged_pixels(before->view(), frame->view());
            }
            const auto entries_before =
                kept.empty() ? std::span<const std::uint8_t>() : frames[position - 1].bytes();
            Follower follower(chain, position, !kept.empty());
            mapper.map(*frame, options_.dithering, kept, entries_before, frames[position].bytes(), &follower);
            chain.finish(position);
        },
        [&](std::size_t position) { chain.finish(position); });
    run_in_slices(frames.size(), options_.threads,
                  [&](std::size_t /*part*/, std::size_t first, std::size_t end) {
                      for (std::size_t frame = first; frame < end; ++frame) {
                          mapper.to_indices(frames[frame].bytes());
                      }
                  });
}

std::vector<ByteArray> PictureFrames::map_alpha(bool from_alpha) const {
    std::vector<ByteArray> frames(sources_.size());
    Progress progress("Making frames", sources_.size(), options_.quiet);
    for_each_picture(sources_, options_.threads, progress,
                     [&](std::size_t /*thread*/, std::size_t position, RgbaPicture picture) {
                         frames[position] = alpha_indices(fitted(position, std::move(picture)), from_alpha);
                     });
    return frames;
}

FramePixels PictureFrames::pixels(std::size_t position, RgbaPicture picture) const {
    return frame_pixels(fitted(position, std::move(picture)), mode_);
}

// Colour keys are compared before scaling mixes them with other colours.
RgbaPicture PictureFrames::fitted(std::size_t position, RgbaPicture picture) const {
    set_alpha(picture, options_.transparency);
    const FrameSize& size = sizes_[position];
    return resize_picture(std::move(picture), size.width, size.height, options_.fit);
}

void add_colours(const FramePixels& pixels, ColourHistogram& histogram) {
    if (pixels.opaque.empty()) {
        histogram.add(pixels.pixels);
    } else {
        histogram.add(pixels.pixels, pixels.opaque);
    }
}

std::vector<RGBQUAD> entries_of(const PaletteRecord& palette) {
    std::vector<RGBQUAD> entries(palette.Colours.size());
    std::ranges::transform(palette.Colours, entries.begin(), [](const PaletteColour& colour) {
        return RGBQUAD{colour.blue, colour.green, colour.red, 0};
    });
    return entries;
}

std::vector<RGBQUAD> best_entries(const ColourHistogram& histogram, std::size_t colours,
                                  const PictureOptions& options) {
    const PaletteUse use = options.dithering.dithers() ? PaletteUse::WithDither : PaletteUse::WithoutDither;
    std::vector<RGBQUAD> entries = best_palette(histogram, colours, use, {}, options.threads);
    if (entries.empty()) { // all pixels are transparent
        entries.emplace_back();
    }
    return entries;
}

} // namespace varnoth::cli
