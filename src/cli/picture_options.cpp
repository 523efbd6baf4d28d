#include "cli/picture_options.h"

#include <algorithm>
#include <thread>

#include <CLI/App.hpp>
#include <CLI/Error.hpp>

#include "cli/sprite_values.h"

namespace varnoth::cli {

namespace {

int parse_percentage(const std::string& text) {
    return static_cast<int>(parse_integer(text, 0, 100));
}

std::size_t parse_threads(const std::string& text) {
    constexpr std::int64_t most = 256;
    return static_cast<std::size_t>(parse_integer(text, 1, most));
}

} // namespace

void PictureOptionTexts::add_to(CLI::App& command) {
    command
        .add_option(
            "--fit", fit,
            "How pictures of another size become frames. stretch: whatever their proportions; contain: "
            "with a transparent border; crop: without what lies outside.")
        ->capture_default_str()
        ->type_name("stretch|contain|crop");
    command
        .add_option("--transparent", transparent,
                    "What makes a pixel transparent: its alpha, a colour, having the colour of the picture's "
                    "top left pixel, or nothing.")
        ->capture_default_str()
        ->type_name("alpha|#RRGGBB|corner|none");
    command.add_option("--dither", dither, "How colours that are not in the palette are approximated.")
        ->capture_default_str()
        ->type_name("none|ordered|floyd-steinberg|blue-noise");
    command.add_option("--dither-strength", strength, "In percent.")
        ->capture_default_str()
        ->type_name("0..100");
    command
        .add_option("--jobs", jobs,
                    "Number of threads; as many as there are cores by default. The result is "
                    "the same.")
        ->type_name("N");
    command.add_flag("-q,--quiet", quiet, "Show no progress bar.");
}

PictureOptions PictureOptionTexts::parse() const {
    PictureOptions options;
    options.fit = parse_value("--fit", fit, parse_fit);
    options.transparency = parse_value("--transparent", transparent, parse_transparency);
    options.dithering = {parse_value("--dither", dither, parse_dither),
                         parse_value("--dither-strength", strength, parse_percentage)};
    options.threads = jobs.empty() ? std::max(std::thread::hardware_concurrency(), 1U)
                                   : parse_value("--jobs", jobs, parse_threads);
    options.quiet = quiet;
    return options;
}

} // namespace varnoth::cli
