// Reduces all pictures of a folder to one palette and writes them as 8-bit BMP files, for
// bench/palette_peers. Transparent pixels get index 255, which is then left out of the palette.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <map>
#include <string_view>
#include <thread>

#include "core/quantize/ColourHistogram.h"
#include "core/quantize/best_palette.h"
#include "core/quantize/map_to_palette.h"
#include "palette_files.h"

namespace {

using namespace varnoth;

struct Options {
    std::string folder;
    std::string out;
    Dithering dithering;
    std::size_t jobs = 1;
};

const std::map<std::string_view, Dither> methods{{"none", Dither::None},
                                                 {"ordered", Dither::Ordered},
                                                 {"blue-noise", Dither::BlueNoise},
                                                 {"floyd-steinberg", Dither::FloydSteinberg}};

constexpr std::uint8_t transparent_index = 255;

// Calls work(job, number) for the numbers below `count`, each in one of the jobs.
void in_parallel(std::size_t jobs, std::size_t count,
                 const std::function<void(std::size_t, std::size_t)>& work) {
    std::vector<std::thread> threads;
    for (std::size_t job = 0; job < jobs; ++job) {
        threads.emplace_back([&, job] {
            for (std::size_t i = job; i < count; i += jobs) {
                work(job, i);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

void reduce(const Options& options) {
    const std::vector<std::string> names = bench::pictures_in(options.folder);
    std::vector<ColourHistogram> histograms(options.jobs);
    in_parallel(options.jobs, names.size(), [&](std::size_t job, std::size_t i) {
        const bench::LoadedPicture picture(options.folder, names[i]);
        if (picture.opaque.empty()) {
            histograms[job].add(picture.bitmap.bytes());
        } else {
            histograms[job].add(picture.bitmap.bytes(), picture.opaque);
        }
    });
    for (std::size_t job = 1; job < options.jobs; ++job) {
        histograms[0].add(histograms[job]);
    }
    const bool transparency = !names.empty() && bench::has_alpha(options.folder, names[0]);
    const std::vector<RGBQUAD> palette = best_palette(
        histograms[0], transparency ? transparent_index : 256,
        options.dithering.method == Dither::None ? PaletteUse::WithoutDither : PaletteUse::WithDither);
    const NearestEntry nearest(palette);
    in_parallel(options.jobs, names.size(), [&](std::size_t, std::size_t i) {
        const bench::LoadedPicture picture(options.folder, names[i]);
        const Bitmap& bitmap = picture.bitmap;
        std::vector<std::uint8_t> indices(bitmap.bytes().size() / 4, transparent_index);
        map_to_palette({bitmap.bytes(), picture.opaque, bitmap.width(), bitmap.height()}, nearest,
                       options.dithering, indices);
        bench::write_indexed(join_path(options.out, names[i] + ".bmp"), bitmap, palette, indices);
    });
}

Options parse(std::span<char*> arguments) {
    Options options;
    for (; arguments.size() > 2; arguments = arguments.subspan(2)) {
        const std::string_view name = arguments[0];
        if (name == "--dither") {
            options.dithering.method = methods.at(arguments[1]);
        } else if (name == "--strength") {
            options.dithering.strength = std::atoi(arguments[1]);
        } else if (name == "--jobs") {
            options.jobs = static_cast<std::size_t>(std::max(1, std::atoi(arguments[1])));
        }
    }
    if (arguments.size() != 2) {
        std::fputs(
            "usage: palette_job [--dither none|ordered|blue-noise|floyd-steinberg] [--strength PERCENT]\n"
            "                   [--jobs N] FOLDER OUT\n",
            stderr);
        std::exit(64);
    }
    options.folder = arguments[0];
    options.out = arguments[1];
    return options;
}

} // namespace

int main(int argc, char** argv) {
    try {
        reduce(parse(std::span(argv + 1, static_cast<std::size_t>(argc - 1))));
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 70;
    }
}
