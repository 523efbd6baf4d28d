#include "cli/sprite_values.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <span>
#include <string_view>

#include "core/sprite/hlspr.h"

namespace varnoth::cli {

namespace {

constexpr std::int64_t largest_side = 65535;
constexpr std::int64_t most_pixels = std::int64_t{64} << 20;
constexpr std::int64_t last_frame = (std::int64_t{1} << 20) - 1;
constexpr std::int32_t sprite_types = 5;
constexpr std::int32_t render_modes = 4;

[[noreturn]] void reject(const std::string& text, const std::string& accepted) {
    throw CLI::ValidationError("'" + text + "' is not " + accepted);
}

std::string upper(std::string text) {
    std::ranges::transform(text, text.begin(), [](char c) {
        return c == '-' ? '_' : c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    return text;
}

template <typename Value>
struct Choice {
    std::string_view name;
    Value value;
};

template <typename Value>
Value choose(const std::string& text, std::span<const Choice<Value>> choices) {
    std::string names;
    for (const Choice<Value>& choice : choices) {
        if (upper(text) == upper(std::string(choice.name))) {
            return choice.value;
        }
        names += names.empty() ? "" : ", ";
        names += choice.name;
    }
    reject(text, "one of " + names);
}

// The number of a name in a list, or the number itself.
std::int32_t number_of(const std::string& text, std::int32_t count, std::string_view (*name)(std::int32_t)) {
    std::string names;
    for (std::int32_t number = 0; number < count; ++number) {
        if (upper(text) == name(number) || text == std::to_string(number)) {
            return number;
        }
        names += std::string(name(number)) + ", ";
    }
    reject(text, "one of " + names + "0 to " + std::to_string(count - 1));
}

} // namespace

std::int64_t parse_integer(const std::string& text, std::int64_t lowest, std::int64_t highest) {
    std::int64_t value = 0;
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, value);
    if (error != std::errc() || end != last || value < lowest || value > highest) {
        reject(text, "a number from " + std::to_string(lowest) + " to " + std::to_string(highest));
    }
    return value;
}

FrameSize parse_size(const std::string& text) {
    const auto [width, height] = split(text, 'x');
    const FrameSize size{static_cast<std::int32_t>(parse_integer(width, 1, largest_side)),
                         static_cast<std::int32_t>(parse_integer(height, 1, largest_side))};
    if (std::int64_t{size.width} * size.height > most_pixels) {
        reject(text, "a size of at most " + std::to_string(most_pixels) + " pixels");
    }
    return size;
}

std::optional<FrameOrigin> parse_origin(const std::string& text) {
    if (text == "center") {
        return std::nullopt;
    }
    constexpr std::int64_t lowest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t highest = std::numeric_limits<std::int32_t>::max();
    const auto [x, y] = split(text, ',');
    return FrameOrigin{static_cast<std::int32_t>(parse_integer(x, lowest, highest)),
                       static_cast<std::int32_t>(parse_integer(y, lowest, highest))};
}

std::int32_t parse_type(const std::string& text) {
    return number_of(text, sprite_types, hlspr::sprite_type_name);
}

RenderMode parse_mode(const std::string& text) {
    return static_cast<RenderMode>(number_of(text, render_modes, hlspr::render_mode_name));
}

std::int32_t parse_sync(const std::string& text) {
    static constexpr Choice<std::int32_t> choices[] = {
        {"synchronized", 0}, {"random", 1}, {"0", 0}, {"1", 1}};
    return choose<std::int32_t>(text, choices);
}

PaletteColour parse_colour(const std::string& text) {
    std::uint32_t value = 0;
    const char* const last = text.data() + text.size();
    if (text.size() != 7 || text.front() != '#' || text[1] == '-' ||
        std::from_chars(text.data() + 1, last, value, 16).ptr != last) {
        reject(text, "a colour as #RRGGBB");
    }
    return {static_cast<std::uint8_t>(value >> 16), static_cast<std::uint8_t>(value >> 8 & 0xFF),
            static_cast<std::uint8_t>(value & 0xFF)};
}

Transparency parse_transparency(const std::string& text) {
    using By = Transparency::By;
    if (text.starts_with('#')) {
        const PaletteColour colour = parse_colour(text);
        return {By::Key, std::uint32_t{colour.red} << 16 | std::uint32_t{colour.green} << 8 | colour.blue};
    }
    static constexpr Choice<By> choices[] = {
        {"alpha", By::Alpha}, {"corner", By::Corner}, {"none", By::None}, {"#RRGGBB", By::Key}};
    return {choose<By>(text, choices), 0};
}

Fit parse_fit(const std::string& text) {
    static constexpr Choice<Fit> choices[] = {
        {"stretch", Fit::Stretch}, {"contain", Fit::Contain}, {"crop", Fit::Crop}};
    return choose<Fit>(text, choices);
}

Dither parse_dither(const std::string& text) {
    static constexpr Choice<Dither> choices[] = {{"none", Dither::None},
                                                 {"ordered", Dither::Ordered},
                                                 {"floyd-steinberg", Dither::FloydSteinberg},
                                                 {"blue-noise", Dither::BlueNoise}};
    return choose<Dither>(text, choices);
}

std::size_t parse_frame(const std::string& text) {
    return static_cast<std::size_t>(parse_integer(text, 0, last_frame));
}

std::vector<std::size_t> parse_frames(const std::string& text) {
    std::vector<std::size_t> frames;
    std::string rest = text;
    while (true) {
        const std::size_t comma = rest.find(',');
        const std::string part = rest.substr(0, comma);
        const std::size_t dash = part.find('-');
        const std::int64_t first = parse_integer(part.substr(0, dash), 0, last_frame);
        const std::int64_t last =
            dash == std::string::npos ? first : parse_integer(part.substr(dash + 1), first, last_frame);
        for (std::int64_t frame = first; frame <= last; ++frame) {
            frames.push_back(static_cast<std::size_t>(frame));
        }
        if (comma == std::string::npos) {
            return frames;
        }
        rest = rest.substr(comma + 1);
    }
}

std::pair<std::string, std::string> split(const std::string& text, char separator) {
    const std::size_t at = text.find(separator);
    if (at == std::string::npos) {
        reject(text, std::string("two values with '") + separator + "' between them");
    }
    return {text.substr(0, at), text.substr(at + 1)};
}

} // namespace varnoth::cli
