// The options of make and edit that say how pictures are treated.
#pragma once

#include <string>

#include "cli/command.h"
#include "cli/picture_frames.h"

namespace varnoth::cli {

/// The options as they are given.
struct PictureOptionTexts {
    std::string fit = "stretch";
    std::string transparent = "alpha";
    std::string dither = "none";
    std::string strength = "100";
    std::string jobs;
    bool quiet = false;

    /// Adds the options to a subcommand. This object must outlive it.
    void add_to(CLI::App& command);

    /// Throws CLI::ValidationError.
    PictureOptions parse() const;
};

} // namespace varnoth::cli
