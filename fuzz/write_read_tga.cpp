// Writes a picture made from the input as a TGA file. Reading the uncompressed file must give the same
// picture. The compressed file may lack pixels, so it must only be readable, have the right size, and be the
// same every time.
#include "core/codecs/CBitmap.h"
#include "core/codecs/LoadTGA.h"
#include "core/codecs/SaveTGA.h"
#include "fuzzing.h"

namespace {

using namespace varnoth;

constexpr std::int32_t most_wide = 200;
constexpr std::int32_t most_high = 16;

void read(const std::string& path, Truth compressed, PictureSurface& drawn) {
    LoadTGA reader;
    reader.Load(path);
    reader.DrawTGA(drawn);
    fuzzing::require(reader.IsTGA() == True, "the written file is a TGA file");
    fuzzing::require(reader.Compressed() == compressed, "the file states its compression");
}

void write_and_read_plain(PictureSurface& picture) {
    const std::string path = fuzzing::scratch_path("plain.tga");
    SaveTGA().SaveTGAinFile(path, picture, False);
    test::TestSurface drawn(1, 1);
    read(path, False, drawn);
    fuzzing::require(test::colours_of(drawn) == test::colours_of(picture), "the picture is restored");
}

void write_and_read_compressed(PictureSurface& picture) {
    const std::string path = fuzzing::scratch_path("compressed.tga");
    if (!fuzzing::succeeds([&] { SaveTGA().SaveTGAinFile(path, picture, True); })) {
        return;
    }
    test::TestSurface drawn(1, 1);
    read(path, True, drawn);
    fuzzing::require(drawn.bitmap().width() == picture.bitmap().width() &&
                         drawn.bitmap().height() == picture.bitmap().height(),
                     "the size is restored");
    const auto bytes = fuzzing::scratch_bytes(path);
    SaveTGA().SaveTGAinFile(path, picture, True);
    fuzzing::require(fuzzing::scratch_bytes(path) == bytes, "the same picture gives the same file");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzzing::AtEnd cleanup([] { CBitmap::CurrentBitmap = nullptr; });
    fuzzing::Recipe recipe(data, size);
    const auto picture = fuzzing::surface_of(recipe, most_wide, most_high, fuzzing::all_depths);
    write_and_read_plain(*picture);
    write_and_read_compressed(*picture);
    return 0;
}
