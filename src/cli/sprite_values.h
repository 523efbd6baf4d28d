// The values of options about sprites, as text. Each function throws CLI::ValidationError, which is wrong
// usage, with a sentence that says what is accepted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <CLI/Error.hpp>

#include "cli/build_sprite.h"

namespace varnoth::cli {

/// An integer from `lowest` to `highest`.
std::int64_t parse_integer(const std::string& text, std::int64_t lowest, std::int64_t highest);

/// "WxH".
FrameSize parse_size(const std::string& text);

/// "X,Y"; empty for "center".
std::optional<FrameOrigin> parse_origin(const std::string& text);

/// A name such as "VP_PARALLEL" in any case and with "-" or "_", or a number from 0 to 4.
std::int32_t parse_type(const std::string& text);

/// A name such as "ALPHATEST" in any case, or a number from 0 to 3.
RenderMode parse_mode(const std::string& text);

/// "synchronized" or "random", or the number of either in a sprite.
std::int32_t parse_sync(const std::string& text);

/// "#RRGGBB".
PaletteColour parse_colour(const std::string& text);

/// "alpha", "corner", "none" or "#RRGGBB".
Transparency parse_transparency(const std::string& text);

Fit parse_fit(const std::string& text);
Dither parse_dither(const std::string& text);

/// A frame number.
std::size_t parse_frame(const std::string& text);

/// Frame numbers and ranges of them: "0-3,7". In the order given, not checked against a sprite.
std::vector<std::size_t> parse_frames(const std::string& text);

/// The value of an option; wrong usage names the option.
template <typename Parse>
auto parse_value(const std::string& option, const std::string& text, Parse parse) {
    try {
        return parse(text);
    } catch (const CLI::ValidationError& error) {
        throw CLI::ValidationError(option, error.what());
    }
}

/// The text before and after the first separator.
std::pair<std::string, std::string> split(const std::string& text, char separator);

} // namespace varnoth::cli
