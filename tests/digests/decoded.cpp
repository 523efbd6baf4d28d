// Results of the readers and probes for files.
#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "core/base/files.h"
#include "core/codecs/BmpMod.h"
#include "core/codecs/CBitmap.h"
#include "core/codecs/JpgMod.h"
#include "core/codecs/LoadPCX.h"
#include "core/codecs/LoadTGA.h"
#include "core/codecs/read_bmp.h"
#include "core/sprite/hlspr.h"
#include "digests/Results.h"
#include "support/RecordedServices.h"
#include "support/pictures.h"
#include "support/sprites.h"

namespace varnoth::digests {

namespace {

void add_numbers(Digest& digest, std::initializer_list<std::int64_t> numbers) {
    for (const std::int64_t number : numbers) {
        digest.add(number);
    }
}

void add_current_bitmap(Digest& digest) {
    if (CBitmap::CurrentBitmap) {
        digest.add(*CBitmap::CurrentBitmap);
    }
}

void decode_pcx(Digest& digest, const std::string& path) {
    LoadPCX reader;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int16_t depth = 0;
    add_numbers(digest, {reader.GetInfoPCX(path, width, height, depth), width, height, depth});
    CBitmap::CurrentBitmap = nullptr;
    attempt(digest, [&] { reader.Load(path); });
    add_numbers(digest, {reader.IsPCX(), reader.Width(), reader.Height(), reader.Bpp(), reader.Compressed(),
                         reader.TwipWidth(), reader.TwipHeight()});
    add_current_bitmap(digest);
    test::TestSurface framed(20, 10, 24, 2);
    reader.SetAutoscale(False);
    attempt(digest, [&] { reader.DrawPCX(framed); });
    digest.add(framed.bitmap());
}

void decode_tga(Digest& digest, const std::string& path) {
    LoadTGA reader;
    CBitmap::CurrentBitmap = nullptr;
    attempt(digest, [&] { reader.Load(path); });
    add_numbers(digest, {reader.IsTGA(), reader.Width(), reader.Height(), reader.Compressed()});
    add_current_bitmap(digest);
    test::TestSurface framed(20, 10, 24, 2);
    reader.SetAutoscale(False);
    attempt(digest, [&] { reader.DrawTGA(framed); });
    digest.add(framed.bitmap());
}

void decode_bmp(Digest& digest, const std::string& path) {
    InputFile file(path);
    ByteArray bytes(static_cast<std::size_t>(file.length()));
    file.read(bytes.bytes());
    attempt(digest, [&] { digest.add(read_bmp(bytes.bytes(), 1 << 16)); });
}

void probe_bmp(Digest& digest, const std::string& path) {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int16_t depth = 0;
    std::int16_t compression = 0;
    attempt(digest, [&] { digest.add(BmpMod::ProbeBmp(path, width, height, depth, compression)); });
    add_numbers(digest, {width, height, depth, compression});
}

void probe_jpeg(Digest& digest, const std::string& path) {
    std::int32_t width = 0;
    std::int32_t height = 0;
    attempt(digest, [&] { digest.add(JpgMod::ProbeJpeg(path, width, height)); });
    add_numbers(digest, {width, height});
}

void load_sprite(Digest& digest, const std::string& path) {
    test::RecordedServices services;
    test::reset_sprite();
    digest.add(hlspr::load_sprite(path));
    for (const std::string& message : services.messages) {
        digest.add(message);
    }
    const SpriteDocument& sprite = hlspr::document();
    digest.add(to_bytes(sprite.SpriteHeader));
    digest.add(to_bytes(sprite.Palette));
    digest.add(to_bytes(sprite.FrameHeader));
    for (const ByteArray& frame : sprite.FrameStore) {
        digest.add(frame.bytes());
    }
    for (const auto number : sprite.FrameOrder) {
        digest.add(number);
    }
}

using Decode = void (*)(Digest& digest, const std::string& path);

std::vector<std::string> names_in(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(native_path(folder))) {
        names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
}

// Excludes inputs that may allocate up to 2 GiB, which can fail on 32-bit machines.
bool needs_little(const std::string& name) {
    return !name.starts_with("huge");
}

void add_folder(Results& results, const std::string& seeds, const std::string& target, Decode decode) {
    // The same separator on every system, because a message contains the path.
    const std::string folder = seeds + "/" + target + "/";
    for (const std::string& name : names_in(folder)) {
        if (needs_little(name)) {
            decode(results[target + "/" + name], folder + name);
        }
    }
}

} // namespace

void add_decoded_seeds(Results& results, const std::string& seeds) {
    add_folder(results, seeds, "load_pcx", decode_pcx);
    add_folder(results, seeds, "load_tga", decode_tga);
    add_folder(results, seeds, "read_bmp", decode_bmp);
    add_folder(results, seeds, "probe_bmp", probe_bmp);
    add_folder(results, seeds, "probe_jpeg", probe_jpeg);
    add_folder(results, seeds, "load_sprite", load_sprite);
}

void add_decoded_pictures(Results& results, const std::string& pictures) {
    for (const std::string& name : names_in(pictures)) {
        for (const Decode decode : {decode_pcx, decode_tga, probe_bmp, probe_jpeg}) {
            decode(results["picture/" + name], join_path(pictures, name));
        }
    }
}

} // namespace varnoth::digests
