// Reduces all pictures of a folder to one palette with libimagequant, one histogram for all, and writes 8-bit
// BMP files, for bench/palette_peers. A picture is NAME.bmp, and perhaps NAME.alpha with one byte per pixel,
// rows from the top, 0 for transparent. Usage: libimagequant_job SPEED DITHER FOLDER OUT, the dither from 0
// to 1.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include <libimagequant.h>

#include "core/base/RunTimeFailure.h"
#include "core/base/files.h"
#include "core/codecs/read_bmp.h"
#include "core/image/Bitmap.h"

namespace {

using namespace varnoth;

std::vector<std::uint8_t> read_whole(const std::string& path) {
    InputFile file(path);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(file.length()));
    file.read(bytes);
    return bytes;
}

void write_whole(const std::string& path, std::span<const std::uint8_t> bytes) {
    OutputFile file(path);
    file.write(bytes);
    file.close();
}

// The names of the pictures in a folder, in order.
std::vector<std::string> pictures_in(const std::string& folder) {
    std::vector<std::string> names;
    for (const std::string& name : names_in(folder)) {
        if (name.ends_with(".bmp")) {
            names.push_back(name.substr(0, name.size() - 4));
        }
    }
    std::ranges::sort(names);
    return names;
}

bool has_alpha(const std::string& folder, const std::string& name) {
    return file_exists(join_path(folder, name + ".alpha"));
}

struct LoadedPicture {
    Bitmap bitmap;                    // 32 bits per pixel
    std::vector<std::uint8_t> opaque; // empty without alpha

    LoadedPicture(const std::string& folder, const std::string& name)
        : bitmap(read_bmp(read_whole(join_path(folder, name + ".bmp")),
                          std::numeric_limits<std::int32_t>::max())) {
        if (has_alpha(folder, name)) {
            opaque = read_whole(join_path(folder, name + ".alpha"));
        }
    }
};

// Writes an 8-bit BMP file of a bitmap's size.
void write_indexed(const std::string& path, const Bitmap& size, std::span<const RGBQUAD> palette,
                   std::span<const std::uint8_t> indices) {
    const auto width = static_cast<std::uint32_t>(size.width());
    const auto height = static_cast<std::uint32_t>(size.height());
    const std::uint32_t row = (width + 3) / 4 * 4;
    std::vector<std::uint8_t> bytes{'B', 'M'};
    for (const std::uint32_t value :
         {1078 + row * height, 0U, 1078U, 40U, width, height, 1U | 8U << 16, 0U, 0U, 0U, 0U, 256U, 0U}) {
        for (int shift = 0; shift < 32; shift += 8) {
            bytes.push_back(static_cast<std::uint8_t>(value >> shift));
        }
    }
    for (const RGBQUAD& entry : palette) {
        bytes.insert(bytes.end(), {entry.rgbBlue, entry.rgbGreen, entry.rgbRed, 0});
    }
    bytes.resize(1078);
    for (std::size_t y = height; y-- > 0;) {
        const auto pixels = indices.subspan(y * width, width);
        bytes.insert(bytes.end(), pixels.begin(), pixels.end());
        bytes.resize(bytes.size() + row - width);
    }
    write_whole(path, bytes);
}

// Red, green, blue, alpha.
std::vector<std::uint8_t> rgba_of(const LoadedPicture& picture) {
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
    const std::vector<std::string> names = pictures_in(folder);
    liq_attr* settings = liq_attr_create();
    liq_set_speed(settings, speed);
    liq_histogram* histogram = liq_histogram_create(settings);
    std::vector<LoadedPicture> pictures;
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
        write_indexed(join_path(out, names[i] + ".bmp"), pictures[i].bitmap, palette, indices);
        if (!pictures[i].opaque.empty()) {
            std::vector<std::uint8_t> alpha;
            for (const std::uint8_t index : indices) {
                alpha.push_back(chosen->entries[index].a);
            }
            write_whole(join_path(out, names[i] + ".alpha"), alpha);
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
