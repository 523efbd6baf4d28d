// Results of the quantizer for many pictures: histogram, palette, blue-noise matrix and every dither.
#include <string>
#include <utility>
#include <vector>

#include "core/quantize/ColourHistogram.h"
#include "core/quantize/best_palette.h"
#include "core/quantize/blue_noise.h"
#include "core/quantize/map_to_palette.h"
#include "digests/Results.h"
#include "support/pictures.h"
#include "support/pixel_bytes.h"

namespace varnoth::digests {

namespace {

constexpr std::int32_t width = 150;
constexpr std::int32_t height = 90;

void add(Digest& digest, const std::vector<RGBQUAD>& palette) {
    digest.add(test::colours_of(palette));
}

ColourHistogram add_histogram(Results& results, const std::string& name,
                              const std::vector<std::uint8_t>& pixels) {
    ColourHistogram histogram;
    histogram.add(pixels);
    Digest& digest = results["histogram/" + name];
    for (const ColourSum& bin : histogram.bins()) {
        for (const std::uint64_t number : {bin.weight, bin.sums[0], bin.sums[1], bin.sums[2]}) {
            digest.add(static_cast<std::int64_t>(number));
        }
    }
    return histogram;
}

void add_mapped(Results& results, const std::string& name, const std::vector<std::uint8_t>& pixels,
                const std::vector<RGBQUAD>& palette) {
    const std::pair<const char*, Dither> methods[] = {{"none", Dither::None},
                                                      {"ordered", Dither::Ordered},
                                                      {"blue-noise", Dither::BlueNoise},
                                                      {"floyd-steinberg", Dither::FloydSteinberg}};
    const NearestEntry nearest(palette);
    for (const auto& [method, dither] : methods) {
        std::vector<std::uint8_t> indices(pixels.size() / 4);
        map_to_palette({pixels, {}, width, height}, nearest, {dither, 90}, indices);
        results["mapped/" + name + "/" + method].add(indices);
    }
}

} // namespace

void add_palettes(Results& results) {
    for (const auto& row : blue_noise()) {
        for (const std::uint16_t number : row) {
            results["blue-noise"].add(std::int64_t{number});
        }
    }
    for (const test::Character character : test::all_characters) {
        const std::vector<std::uint8_t> pixels =
            test::pixel_bytes(test::random_colours(width * height, width, character, 1));
        const std::string name = std::to_string(static_cast<int>(character));
        const ColourHistogram histogram = add_histogram(results, name, pixels);
        for (const std::size_t entries : {16U, 255U}) {
            const std::string sized = name + "/" + std::to_string(entries);
            add(results["palette/" + sized], best_palette(histogram, entries, PaletteUse::WithoutDither));
            const std::vector<RGBQUAD> palette = best_palette(histogram, entries, PaletteUse::WithDither);
            add(results["palette/" + sized + "/dither"], palette);
            add_mapped(results, sized, pixels, palette);
        }
    }
    // More colours than are counted one by one.
    const std::vector<Colour> noise = test::random_colours(200'000, 500, test::Character::Noise, 2);
    const ColourHistogram binned = add_histogram(results, "binned", test::pixel_bytes(noise));
    add(results["palette/binned"], best_palette(binned, 256, PaletteUse::WithoutDither));
    add(results["palette/binned/dither"], best_palette(binned, 256, PaletteUse::WithDither));
}

} // namespace varnoth::digests
