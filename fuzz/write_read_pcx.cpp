// Writes a picture made from the input as a PCX file, uncompressed and compressed; reading must give the
// same.
#include "core/codecs/CBitmap.h"
#include "core/codecs/LoadPCX.h"
#include "core/codecs/SavePCX.h"
#include "fuzzing.h"

namespace {

using namespace varnoth;

constexpr std::int32_t most_wide = 200;
constexpr std::int32_t most_high = 16;

void write_and_read(PictureSurface& picture, Truth compress) {
    const std::string path = fuzzing::scratch_path("written.pcx");
    SavePCX().SavePCXinFile(path, picture, compress);
    LoadPCX reader;
    reader.Load(path);
    test::TestSurface drawn(1, 1);
    reader.DrawPCX(drawn);
    fuzzing::require(reader.IsPCX() == True, "the written file is a PCX file");
    fuzzing::require(reader.Compressed() == compress, "the file states its compression");
    fuzzing::require(test::colours_of(drawn) == test::colours_of(picture), "the picture is restored");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzzing::AtEnd cleanup([] { CBitmap::CurrentBitmap = nullptr; });
    fuzzing::Recipe recipe(data, size);
    const auto picture = fuzzing::surface_of(recipe, most_wide, most_high, fuzzing::all_depths);
    // Nothing may fail: the picture is small and the folder writable.
    write_and_read(*picture, False);
    write_and_read(*picture, True);
    return 0;
}
