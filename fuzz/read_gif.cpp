// The bytes are a GIF file, read in colours and as indices.
#include "cli/gif_file.h"

#include "read_rgba.h"

namespace {

using namespace varnoth;

constexpr std::size_t most_frames = 100;

void require_same(const RgbaPicture& picture, const cli::IndexedGif& gif,
                  const std::vector<std::uint8_t>& indices) {
    fuzzing::require(picture.width == gif.width && picture.height == gif.height &&
                         picture.pixels.size() == indices.size(),
                     "frames of indices have the size of the picture");
    for (std::size_t i = 0; i < indices.size(); ++i) {
        const RGBQUAD& colour = gif.palette.at(indices[i]);
        const std::uint32_t opaque = 0xFF000000U | static_cast<std::uint32_t>(colour_of(colour));
        const std::uint32_t pixel = picture.pixels[i];
        const std::uint32_t swapped = (pixel & 0xFF00FF00U) | (pixel & 0xFF) << 16 | (pixel >> 16 & 0xFF);
        fuzzing::require(indices[i] == gif.transparent ? pixel == 0 : swapped == opaque,
                         "indices have the colours of the picture");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> file(data, size);
    fuzzing::succeeds([&] { cli::gif_colour_table(file); });
    std::size_t count = 0;
    fuzzing::succeeds([&] { count = cli::count_gif_frames(file); });
    std::vector<RgbaPicture> pictures;
    fuzzing::succeeds([&] {
        cli::GifReader reader(file, fuzzing::most_pixels);
        while (pictures.size() < most_frames) {
            pictures.push_back(reader.read());
        }
    });
    std::optional<cli::IndexedGif> gif;
    fuzzing::succeeds([&] { gif = cli::read_indexed_gif(file, fuzzing::most_pixels); });
    if (gif) {
        fuzzing::require(gif->frames.size() == count, "all frames are read");
        for (std::size_t i = 0; i < std::min(gif->frames.size(), pictures.size()); ++i) {
            require_same(pictures[i], *gif, gif->frames[i].indices);
        }
    }
    return 0;
}
