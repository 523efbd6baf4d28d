#include "walkthrough/Options.h"

#include <charconv>
#include <functional>
#include <limits>
#include <map>
#include <string_view>
#include <utility>

namespace varnoth::walkthrough {

const char* const usage =
    "usage: walkthrough OPTION...\n"
    "Operates the editor's windows in this order: New or Open, Import, the arrows, Save, Open again, "
    "Export.\n"
    "  --size WxH --type N --render N            the new sprite (default: 32x32, 2, 1)\n"
    "  --open FILE.spr          opens a sprite instead of creating one\n"
    "  --pictures DIR --filter bmp|jpg|tga|pcx   imports the pictures of this format (default: bmp)\n"
    "  --select NAME            imports only this picture (repeatable)\n"
    "  --choice set|resize      answer to the size question (default: set)\n"
    "  --pick X,Y               picks the transparent colour from this point of the preview\n"
    "  --abort-after N          clicks Cancel after N pictures have been loaded, counting both passes\n"
    "  --again DIR              imports a second time, from this folder\n"
    "  --move P:up|P:down       moves the frame at position P with an arrow (repeatable)\n"
    "  --draw P:OUT.ppm         writes the pixels of the frame at position P (repeatable)\n"
    "  --save OUT.spr           saves the sprite and opens the file again\n"
    "  --export DIR --format bmp|tga|pcx [--compressed] [--frames 0,2,5]\n"
    "           [--if-exists skip|ask|overwrite] [--abort-export-after N]   exports the frames\n"
    "  --answer yes|no          answer to all other questions (default: yes)\n"
    "  --screenshots DIR        writes screenshots of every window in its main states\n";

namespace {

template <typename Number>
Number parse_number(std::string_view text, Number lowest, Number highest) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < lowest || value > highest) {
        throw WrongOption("invalid number: " + std::string(text));
    }
    return value;
}

std::int32_t parse_size(std::string_view text) {
    return parse_number<std::int32_t>(text, std::numeric_limits<std::int32_t>::min(),
                                      std::numeric_limits<std::int32_t>::max());
}

std::int32_t parse_count(std::string_view text) {
    return parse_number<std::int32_t>(text, 0, std::numeric_limits<std::int32_t>::max());
}

std::int16_t parse_position(std::string_view text) {
    return parse_number<std::int16_t>(text, 0, std::numeric_limits<std::int16_t>::max());
}

// Splits a text at its first separator.
std::pair<std::string, std::string> split(const std::string& text, char separator) {
    const std::size_t at = text.find(separator);
    if (at == std::string::npos) {
        throw WrongOption("missing '" + std::string(1, separator) + "' in " + text);
    }
    return {text.substr(0, at), text.substr(at + 1)};
}

template <typename Value>
Value choose(const std::string& text, const std::map<std::string, Value>& choices) {
    const auto found = choices.find(text);
    if (found == choices.end()) {
        throw WrongOption("invalid choice: " + text);
    }
    return found->second;
}

std::vector<std::int16_t> parse_positions(std::string text) {
    std::vector<std::int16_t> positions;
    while (text.find(',') != std::string::npos) {
        auto [first, rest] = split(text, ',');
        positions.push_back(parse_position(first));
        text = std::move(rest);
    }
    positions.push_back(parse_position(text));
    return positions;
}

using Handler = std::function<void(Options&, const std::string&)>;

void set_size(Options& options, const std::string& value) {
    const auto [width, height] = split(value, 'x');
    options.width = parse_size(width);
    options.height = parse_size(height);
}

void set_pick(Options& options, const std::string& value) {
    const auto [x, y] = split(value, ',');
    options.pick = {parse_size(x), parse_size(y)};
}

void add_move(Options& options, const std::string& value) {
    const auto [position, direction] = split(value, ':');
    options.moves.push_back(
        {parse_position(position), choose<bool>(direction, {{"up", true}, {"down", false}})});
}

void add_drawing(Options& options, const std::string& value) {
    const auto [position, path] = split(value, ':');
    options.drawings.push_back({parse_position(position), path});
}

const std::map<std::string, Handler>& handlers_with_value() {
    static const std::map<std::string, Handler> handlers{
        {"--pictures", [](Options& o, const std::string& v) { o.pictures = v; }},
        {"--again", [](Options& o, const std::string& v) { o.again = v; }},
        {"--filter",
         [](Options& o, const std::string& v) {
             o.filter = choose<PictureFormat>(v, {{"bmp", PictureFormat::Bmp},
                                                  {"jpg", PictureFormat::Jpg},
                                                  {"tga", PictureFormat::Tga},
                                                  {"pcx", PictureFormat::Pcx}});
         }},
        {"--select", [](Options& o, const std::string& v) { o.select.push_back(v); }},
        {"--size", set_size},
        {"--type", [](Options& o, const std::string& v) { o.type = parse_number<std::int32_t>(v, 0, 4); }},
        {"--render",
         [](Options& o, const std::string& v) { o.render = parse_number<std::int32_t>(v, 0, 3); }},
        {"--open", [](Options& o, const std::string& v) { o.open = v; }},
        {"--choice",
         [](Options& o, const std::string& v) {
             o.resize = choose<bool>(v, {{"set", false}, {"resize", true}});
         }},
        {"--pick", set_pick},
        {"--abort-after", [](Options& o, const std::string& v) { o.abort_after = parse_count(v); }},
        {"--abort-export-after",
         [](Options& o, const std::string& v) { o.abort_export_after = parse_count(v); }},
        {"--move", add_move},
        {"--draw", add_drawing},
        {"--save", [](Options& o, const std::string& v) { o.save = v; }},
        {"--export", [](Options& o, const std::string& v) { o.export_folder = v; }},
        {"--format",
         [](Options& o, const std::string& v) {
             o.format = choose<ExtractionFormat>(v, {{"bmp", ExtractionFormat::Bmp},
                                                     {"tga", ExtractionFormat::Tga},
                                                     {"pcx", ExtractionFormat::Pcx}});
         }},
        {"--frames", [](Options& o, const std::string& v) { o.frames = parse_positions(v); }},
        {"--if-exists",
         [](Options& o, const std::string& v) {
             o.if_exists = choose<IfFileExists>(v, {{"skip", IfFileExists::Skip},
                                                    {"ask", IfFileExists::Ask},
                                                    {"overwrite", IfFileExists::Overwrite}});
         }},
        {"--answer",
         [](Options& o, const std::string& v) {
             o.answer = choose<bool>(v, {{"yes", true}, {"no", false}});
         }},
        {"--screenshots", [](Options& o, const std::string& v) { o.screenshots = v; }},
    };
    return handlers;
}

} // namespace

Options parse(const std::vector<std::string>& arguments) {
    Options options;
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        if (*argument == "--compressed") {
            options.compressed = true;
            continue;
        }
        const auto handler = handlers_with_value().find(*argument);
        if (handler == handlers_with_value().end()) {
            throw WrongOption("unknown option " + *argument);
        }
        if (argument + 1 == arguments.end()) {
            throw WrongOption("missing value for " + *argument);
        }
        ++argument;
        handler->second(options, *argument);
    }
    return options;
}

} // namespace varnoth::walkthrough
