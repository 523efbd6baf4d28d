#include "cli/sprites.h"

#include <algorithm>

#include <QJsonDocument>
#include <QJsonObject>

#include "cli/command.h"
#include "cli/console.h"
#include "cli/files.h"
#include "qt/path_text.h"

namespace varnoth::cli {

SpriteFile read_sprite_file(const std::string& path) {
    SpriteParse parse = parse_sprite_file(read_input(path));
    const std::string name = name_of_input(path);
    const bool has_negative_sides = std::ranges::any_of(
        parse.sprite.frames, [](const SpriteFrame& frame) { return frame.header.FrameWidth < 1; });
    if (!parse.opens_in_editor || has_negative_sides) {
        throw CommandError(name, first_error(parse));
    }
    if (parse.missing_pixels > 0) {
        print_error(name + ": the file is truncated; the last frame has index 0 for missing pixels");
    }
    return std::move(parse.sprite);
}

std::string name_of_input(const std::string& path) {
    return path == "-" ? "standard input" : path;
}

std::string first_error(const SpriteParse& parse) {
    const SpriteFinding& error =
        *std::ranges::find(parse.findings, Severity::Error, &SpriteFinding::severity);
    return error.text + " (at byte " + std::to_string(error.offset) + ")";
}

void for_each_file(const std::vector<std::string>& paths,
                   const std::function<void(const std::string&)>& action) {
    bool failed = false;
    for (const std::string& path : paths) {
        try {
            action(path);
        } catch (const CommandError& error) {
            print_error(error.what());
            failed = true;
        }
    }
    if (failed) {
        throw ReportedFailure();
    }
}

QJsonArray findings_json(const std::vector<SpriteFinding>& findings) {
    QJsonArray result;
    for (const SpriteFinding& finding : findings) {
        const std::string_view severity = name_of(finding.severity);
        result.append(QJsonObject{
            {"severity", QString::fromLatin1(severity.data(), static_cast<qsizetype>(severity.size()))},
            {"offset", static_cast<qint64>(finding.offset)},
            {"text", QString::fromStdString(finding.text)}});
    }
    return result;
}

std::string line_of(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString() + "\n";
}

} // namespace varnoth::cli
