// Sprite files as the subcommands read them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <QJsonArray>
#include <QJsonObject>

#include "core/sprite/SpriteFile.h"

namespace varnoth::cli {

/// A sprite of at least one frame, each of at least one pixel. CommandError, with the first error of the
/// file, when the editor would refuse it. Missing pixels of the last frame are only reported on standard
/// error.
SpriteFile read_sprite_file(const std::string& path);

/// The file as the first part of a message: "standard input" for "-".
std::string name_of_input(const std::string& path);

/// The first error of a file that has one, with its place.
std::string first_error(const SpriteParse& parse);

/// Runs an action on each file, on standard input for "-". When it fails with a CommandError, prints the
/// error and goes on; ReportedFailure at the end.
void for_each_file(const std::vector<std::string>& paths,
                   const std::function<void(const std::string&)>& action);

/// What `--json` prints for the findings of a file.
QJsonArray findings_json(const std::vector<SpriteFinding>& findings);

/// One line of JSON.
std::string line_of(const QJsonObject& object);

} // namespace varnoth::cli
