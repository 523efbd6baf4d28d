// The job of palette_job with libimagequant, one histogram for all pictures. Transparency that it chooses is
// written to .alpha files. Usage: libimagequant_job SPEED DITHER FOLDER OUT, the dither from 0 to 1.
#include <cstdio>
#include <cstdlib>
#include <exception>

#include <libimagequant.h>

#include "core/base/RunTimeFailure.h"
#include "palette_files.h"

namespace {

using namespace varnoth;

// Red, green, blue, alpha.
std::vector<std::uint8_t> rgba_of(const bench::LoadedPicture& picture) {
    std::vector<std::uint8_t> result;
    const auto pixels = picture.bitmap.bytes();
    for (std::size_t i = 0; i < pixels.size(); i += 4) {
        const bool opaque = picture.opaque.empty() || picture.opaque[i / 4] != 0;
        result.insert(result.end(),
                      {pixels[i + 2], pixels[i + 1], pixels[i], static_cast<std::uint8_t>(opaque ? 255 : 0)});
    }
    return result;
}

void check(bool success) {
    if (!success) {
        fail(Failure::InvalidProcedureCall);
    }
}

// The objects of the library are not freed: the program ends anyway.
void reduce(int speed, float dither, const std::string& folder, const std::string& out) {
    const std::vector<std::string> names = bench::pictures_in(folder);
    liq_attr* settings = liq_attr_create();
    liq_set_speed(settings, speed);
    liq_histogram* histogram = liq_histogram_create(settings);
    std::vector<bench::LoadedPicture> pictures;
    std::vector<std::vector<std::uint8_t>> pixels;
    std::vector<liq_image*> images;
    for (const std::string& name : names) {
        pictures.emplace_back(folder, name);
        pixels.push_back(rgba_of(pictures.back()));
        const Bitmap& size = pictures.back().bitmap;
        images.push_back(
            liq_image_create_rgba(settings, pixels.back().data(), size.width(), size.height(), 0));
        check(liq_histogram_add_image(histogram, settings, images.back()) == LIQ_OK);
    }
    liq_result* result = nullptr;
    check(liq_histogram_quantize(histogram, settings, &result) == LIQ_OK);
    liq_set_dithering_level(result, dither);
    for (std::size_t i = 0; i < names.size(); ++i) {
        std::vector<std::uint8_t> indices(pixels[i].size() / 4);
        check(liq_write_remapped_image(result, images[i], indices.data(), indices.size()) == LIQ_OK);
        const liq_palette* chosen = liq_get_palette(result);
        std::vector<RGBQUAD> palette;
        for (unsigned k = 0; k < chosen->count; ++k) {
            palette.push_back({chosen->entries[k].b, chosen->entries[k].g, chosen->entries[k].r, 0});
        }
        bench::write_indexed(join_path(out, names[i] + ".bmp"), pictures[i].bitmap, palette, indices);
        if (!pictures[i].opaque.empty()) {
            std::vector<std::uint8_t> alpha;
            for (const std::uint8_t index : indices) {
                alpha.push_back(chosen->entries[index].a);
            }
            bench::write_whole(join_path(out, names[i] + ".alpha"), alpha);
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 5) {
        std::fputs("usage: libimagequant_job SPEED DITHER FOLDER OUT\n", stderr);
        return 64;
    }
    try {
        reduce(std::atoi(argv[1]), std::strtof(argv[2], nullptr), argv[3], argv[4]);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 70;
    }
}
