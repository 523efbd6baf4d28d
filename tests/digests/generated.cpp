// Results for generated pictures: reduced, filtered, written, imported into sprites and exported again.
#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/base/number_text.h"
#include "core/codecs/SavePCX.h"
#include "core/codecs/SaveTGA.h"
#include "core/image/ProcessPicture1.h"
#include "core/image/alpha_blend.h"
#include "core/jobs/FrameExtraction.h"
#include "core/jobs/ImportPipeline.h"
#include "core/quantize/mDither8bpp.h"
#include "core/sprite/hlspr.h"
#include "digests/Results.h"
#include "support/AllFrames.h"
#include "support/PictureFolder.h"
#include "support/RecordedImport.h"
#include "support/ScriptedAddFrames.h"
#include "support/TemporaryFolder.h"
#include "support/pictures.h"
#include "support/sprites.h"

namespace varnoth::digests {

namespace {

using Surface = std::unique_ptr<test::TestSurface>;

std::string name_of(const std::string& operation, std::int32_t depth) {
    return operation + "/" + std::to_string(depth) + "-bit";
}

struct Kind {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t depth = 0;
    test::Character character = test::Character::Noise;

    Surface make(std::uint32_t seed = 1) const {
        return test::random_surface(width, height, character, seed, depth);
    }
};

std::vector<Kind> all_kinds() {
    std::vector<Kind> kinds;
    for (const auto& [width, height] : {std::pair{1, 1}, std::pair{5, 3}, std::pair{67, 41}}) {
        for (const std::int32_t depth : {16, 24, 32}) {
            for (const test::Character character : test::all_characters) {
                kinds.push_back({width, height, depth, character});
            }
        }
    }
    return kinds;
}

void add_reductions(Results& results, const Kind& kind) {
    for (const std::int32_t mode : {mDither8bpp::HalftoneMode, mDither8bpp::OptimalMode}) {
        mDither8bpp dither;
        dither.DitherMode = mode;
        const Surface picture = kind.make();
        Digest& digest = results[name_of("reduced/" + std::to_string(mode), kind.depth)];
        attempt(digest, [&] { digest.add(std::int64_t{dither.transform_to_8bit(*picture, *picture)}); });
        digest.add(picture->bitmap());
    }
}

using Filter = std::function<bool(ProcessPicture1&, PictureSurface&)>;

std::vector<std::pair<std::string, Filter>> all_filters() {
    using Toolbox = ProcessPicture1;
    return {
        {"flip-vertical", &Toolbox::Flip_Picture_Vertical},
        {"flip-horizontal", &Toolbox::Flip_Picture_Horizontal},
        {"greyscale", &Toolbox::Make_Picture_GreyScale},
        {"greyscale-but-red",
         [](Toolbox& toolbox, PictureSurface& picture) {
             return toolbox.Make_Picture_GreyScale_PureRGB(picture, true, false, false);
         }},
        {"negative", &Toolbox::Make_Picture_Negative},
        {"bgr", &Toolbox::Change_RGB_to_BGR},
        {"brg", &Toolbox::Change_RGB_to_BRG},
        {"gbr", &Toolbox::Change_RGB_to_GBR},
        {"grb", &Toolbox::Change_RGB_to_GRB},
        {"rbg", &Toolbox::Change_RGB_to_RBG},
        {"shift", [](Toolbox& toolbox,
                     PictureSurface& picture) { return toolbox.Make_ColorShift(picture, 40, -70, 3); }},
        {"bla-bla", &Toolbox::Make_BlaBla},
        {"colours", &Toolbox::Make_Pal_From_Pic},
        {"more-than-256", &Toolbox::is_more_than_256},
    };
}

void add_filtered(Results& results, const Kind& kind) {
    test::RecordedServices services;
    for (const auto& [name, filter] : all_filters()) {
        const Surface picture = kind.make();
        ProcessPicture1 toolbox;
        Digest& digest = results[name_of("filter/" + name, kind.depth)];
        attempt(digest, [&, &apply = filter] { digest.add(std::int64_t{apply(toolbox, *picture)}); });
        digest.add(picture->bitmap());
        for (const Colour colour : toolbox.ColorList()) {
            digest.add(std::int64_t{colour});
        }
    }
}

using Writer = std::function<void(const std::string& path, PictureSurface& picture)>;

std::vector<std::pair<std::string, Writer>> all_writers() {
    const auto tga = [](Truth compressed) {
        return [=](const std::string& path, PictureSurface& picture) {
            SaveTGA().SaveTGAinFile(path, picture, compressed);
        };
    };
    const auto pcx = [](Truth compressed) {
        return [=](const std::string& path, PictureSurface& picture) {
            SavePCX().SavePCXinFile(path, picture, compressed);
        };
    };
    const auto bmp = [](const std::string& path, PictureSurface& picture) {
        mDither8bpp().save_bmp(path, picture);
    };
    return {{"bmp", bmp},
            {"plain-tga", tga(False)},
            {"packed-tga", tga(True)},
            {"plain-pcx", pcx(False)},
            {"packed-pcx", pcx(True)}};
}

void add_written(Results& results, const Kind& kind) {
    for (const auto& [name, write] : all_writers()) {
        const test::TemporaryFolder folder;
        const Surface picture = kind.make();
        Digest& digest = results[name_of("written/" + name, kind.depth)];
        attempt(digest, [&, &put = write] { put(folder.file("a"), *picture); });
        digest.add(test::read_file(folder.file("a")));
    }
}

void add_copied(Results& results, const Kind& kind) {
    const Surface picture = kind.make();
    const std::int32_t width = kind.width;
    const std::int32_t height = kind.height;
    for (const std::int32_t depth : {16, 24, 32}) {
        const Surface target = test::random_surface(48, 31, test::Character::Smooth, 2, depth);
        stretch_blt(target->hDC(), {3, 29, 40, -25}, picture->hDC(), {0, 0, width, height}, SRCCOPY);
        alpha_blend(target->hDC(), {1, 2, width, height}, picture->hDC(), 0, 0, packed({0, 0, 77, 0}));
        results[name_of("copied/" + std::to_string(depth), kind.depth)].add(target->bitmap());
    }
}

// The parameters of one import.
struct Import {
    PictureFormat format = PictureFormat::Bmp;
    test::Character character = test::Character::Noise;
    std::int32_t render_mode = 0;
    bool resize = false;

    std::string name() const {
        return std::string(extension_of(format)) + "-" + std::to_string(static_cast<int>(character)) +
               "-render-" + std::to_string(render_mode) + (resize ? "-resized" : "");
    }
};

constexpr std::int32_t picture_width = 45;
constexpr std::int32_t picture_height = 38;
constexpr std::uint32_t picture_count = 4;

void put_pictures(test::PictureFolder& folder, const Import& import) {
    for (std::uint32_t i = 0; i < picture_count; ++i) {
        const std::string name = "picture" + std::to_string(i) + std::string(extension_of(import.format));
        const std::vector<Colour> colours =
            test::random_colours(picture_width * picture_height, picture_width, import.character, i);
        folder.add(name, import.format, picture_width, picture_height, colours);
    }
}

void add_extracted(Results& results, const std::string& name, const std::string& folder) {
    test::TestSurface scratch(1, 1);
    Digest& digest = results["extracted/" + name];
    for (const auto format : {ExtractionFormat::Bmp, ExtractionFormat::Tga, ExtractionFormat::Pcx}) {
        ExtractionOptions options;
        options.folder = folder;
        options.sprite_path = "taken.spr";
        options.format = format;
        options.compressed = true;
        options.if_file_exists = IfFileExists::Overwrite;
        test::AllFrames view;
        test::Texts written;
        view.on_written = [&](const std::string& path) { written.push_back(path); };
        attempt(digest, [&] { extract_frames(options, view, scratch); });
        for (const std::string& path : written) {
            digest.add(test::read_file(path));
        }
    }
}

void add_imported(Results& results, const Import& import) {
    test::RecordedServices services;
    test::PictureFolder folder(services);
    put_pictures(folder, import);
    test::reset_sprite();
    test::reset_mixpals();
    hlspr::new_sprite(import.resize ? 29 : picture_width, picture_height, 2, import.render_mode);
    test::ScriptedAddFrames form(folder.path(), import.format, import.render_mode > 1);
    for (std::int16_t i = 0; i < form.entry_count(); ++i) {
        form.click(i);
    }
    form.choose_resize(import.resize);
    form.pick(7, 9);
    test::RecordedImport view;
    import_frames(form, view);
    Digest& digest = results["import/" + import.name()];
    for (const std::string& event : view.events) {
        digest.add(event);
    }
    const std::string path = folder.file("made.spr");
    hlspr::save_sprite(path);
    digest.add(test::read_file(path));
    add_extracted(results, import.name(), folder.path());
}

void add_numbers(Results& results) {
    Digest& digest = results["numbers"];
    for (const char* text :
         {"0.1", "-7", "32.5 pixels", "1e300", "4.35", "0.30000000000000004", "  12", "x"}) {
        digest.add(number_text(leading_number(text)));
    }
}

void add_new_sprites(Results& results) {
    Digest& digest = results["new-sprites"];
    for (std::int32_t width = 1; width < 400; width += 7) {
        for (const std::int32_t height : {1, 2, 17, 255, 1024}) {
            hlspr::new_sprite(width, height, 2, 0);
            digest.add(to_bytes(hlspr::document().SpriteHeader));
        }
    }
}

} // namespace

void add_pictures(Results& results) {
    for (const Kind& kind : all_kinds()) {
        add_reductions(results, kind);
        add_filtered(results, kind);
        add_written(results, kind);
        add_copied(results, kind);
    }
    add_numbers(results);
}

void add_sprites(Results& results) {
    add_new_sprites(results);
    for (const PictureFormat format : {PictureFormat::Bmp, PictureFormat::Tga, PictureFormat::Pcx}) {
        for (const test::Character character : test::all_characters) {
            for (const std::int32_t render_mode : {0, 3}) {
                for (const bool resize : {false, true}) {
                    add_imported(results, {format, character, render_mode, resize});
                }
            }
        }
    }
}

} // namespace varnoth::digests
