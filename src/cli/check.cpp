#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <CLI/App.hpp>

#include "cli/command.h"
#include "cli/console.h"
#include "cli/files.h"
#include "cli/sprites.h"
#include "qt/path_text.h"

namespace varnoth::cli {

namespace {

struct Arguments {
    std::vector<std::string> files;
    bool json = false;
    bool quiet = false;
};

std::string_view colour_of(Severity severity) {
    switch (severity) {
    case Severity::Note:
        return "\x1b[36m"; // cyan
    case Severity::Warning:
        return "\x1b[35m"; // magenta
    case Severity::Error:
        break;
    }
    return "\x1b[31m"; // red
}

std::string text_line(const std::string& path, const SpriteFinding& finding, bool coloured) {
    std::string severity(name_of(finding.severity));
    if (coloured) {
        severity = std::string(colour_of(finding.severity)) + severity + "\x1b[0m";
    }
    return name_of_input(path) + ": " + std::to_string(finding.offset) + ": " + severity + ": " +
           finding.text + "\n";
}

/// Returns whether the file is free of errors.
bool check(const std::string& path, const Arguments& arguments) {
    SpriteParse parse = parse_sprite_file(read_input(path));
    const auto is_error = [](const SpriteFinding& finding) { return finding.severity == Severity::Error; };
    const bool passes = std::ranges::none_of(parse.findings, is_error);
    if (arguments.quiet) {
        std::erase_if(parse.findings, std::not_fn(is_error));
    }
    if (arguments.json) {
        print(line_of({{"file", text_of_path(path)},
                       {"opens_in_editor", parse.opens_in_editor},
                       {"findings", findings_json(parse.findings)}}));
        return passes;
    }
    const bool coloured = shows_colours();
    std::string text;
    for (const SpriteFinding& finding : parse.findings) {
        text += text_line(path, finding, coloured);
    }
    print(text);
    return passes;
}

} // namespace

void add_check(CLI::App& program) {
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* const command = program.add_subcommand(
        "check",
        "Lists everything that is wrong with sprites. Exits with 1 where the editor would not open a\n"
        "sprite or it is damaged.");
    command->add_option("FILE", arguments->files, "The sprites; - is standard input.")->required();
    command->add_flag("--json", arguments->json, "Print one JSON object per line and file.");
    command->add_flag("-q,--quiet", arguments->quiet, "Print errors only.");
    command->callback([arguments] {
        bool all_pass = true;
        for_each_file(arguments->files,
                      [&](const std::string& path) { all_pass = check(path, *arguments) && all_pass; });
        if (!all_pass) {
            throw ReportedFailure();
        }
    });
}

} // namespace varnoth::cli
