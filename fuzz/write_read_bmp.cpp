// Writes a picture made from the input, of any depth, as a BMP file, checks the file against the format, and
// reads it back as the same picture.
#include "core/base/bytes.h"
#include "core/codecs/BmpMod.h"
#include "core/codecs/read_bmp.h"
#include "core/image/cDIB.h"
#include "fuzzing.h"

namespace {

using namespace varnoth;

constexpr std::int32_t largest_side = 64;
constexpr std::array<std::int32_t, 6> depths{1, 4, 8, 16, 24, 32};
constexpr std::size_t head_bytes = 54;

void fill(fuzzing::Recipe& recipe, cDIB& picture) {
    picture.SetPalette(recipe.take(recipe.byte() * std::size_t{4}));
    const std::span<std::uint8_t> pixels(picture.lpBits(), static_cast<std::size_t>(picture.Size()));
    const auto given = recipe.take(pixels.size());
    for (std::size_t i = 0; i < pixels.size() && !given.empty(); ++i) {
        pixels[i] = given[i % given.size()];
    }
}

void require_probed(const std::string& path, const cDIB& picture) {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int16_t depth = 0;
    std::int16_t compression = -1;
    fuzzing::require(BmpMod::ProbeBmp(path, width, height, depth, compression) == True,
                     "the written file is accepted");
    fuzzing::require(width == picture.Width() && height == picture.Height() && depth == picture.Bpp() &&
                         compression == 0,
                     "the probe reports what was written");
}

void require_written(std::span<const std::uint8_t> file, const cDIB& picture) {
    std::vector<std::uint8_t> palette;
    picture.GetPalette(palette);
    const std::size_t pixels_at = head_bytes + palette.size();
    const std::span<const std::uint8_t> pixels(picture.lpBits(), static_cast<std::size_t>(picture.Size()));
    fuzzing::require(file.size() == pixels_at + pixels.size(), "the file has the expected length");
    fuzzing::require(get_u32(file, 2) == file.size(), "the header has the length of the file");
    fuzzing::require(get_u32(file, 10) == pixels_at, "the header has the offset of the pixels");
    fuzzing::require(std::ranges::equal(file.subspan(head_bytes, palette.size()), palette),
                     "the colours are the picture's");
    fuzzing::require(std::ranges::equal(file.subspan(pixels_at), pixels), "the rows are the picture's");
}

void require_read_back(std::span<const std::uint8_t> file, const cDIB& picture) {
    const Bitmap back = read_bmp(file, largest_side * largest_side);
    for (std::int32_t y = 0; y < picture.Height(); ++y) {
        for (std::int32_t x = 0; x < picture.Width(); ++x) {
            fuzzing::require(back.pixel(x, y) == picture.hDIB()->pixel(x, y), "the pixels are read back");
        }
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzzing::Recipe recipe(data, size);
    const std::int32_t width = recipe.between(1, largest_side);
    const std::int32_t height = recipe.between(1, largest_side);
    cDIB picture;
    fuzzing::require(picture.Create(width, height, depths[recipe.byte() % depths.size()]),
                     "pictures of these sizes can be created");
    fill(recipe, picture);
    const std::string path = fuzzing::scratch_path("written.bmp");
    picture.Save(path);
    require_probed(path, picture);
    const std::vector<std::uint8_t> file = fuzzing::scratch_bytes(path);
    require_written(file, picture);
    require_read_back(file, picture);
    return 0;
}
