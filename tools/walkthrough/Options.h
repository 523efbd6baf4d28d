// The command line of the walkthrough.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/jobs/FrameExtraction.h"
#include "core/jobs/PictureFormat.h"

namespace varnoth::walkthrough {

/// An unknown option, or one whose value is missing or invalid.
struct WrongOption : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Point {
    std::int32_t x = 0;
    std::int32_t y = 0;
};

struct Move {
    std::int16_t position = 0;
    bool up = true;
};

struct Drawing {
    std::int16_t position = 0;
    std::string path;
};

struct Options {
    // The sprite: a new one unless a file is opened.
    std::int32_t width = 32;
    std::int32_t height = 32;
    std::int32_t type = 2;
    std::int32_t render = 1;
    std::optional<std::string> open;

    // The import.
    std::optional<std::string> pictures;
    std::optional<std::string> again;
    PictureFormat filter = PictureFormat::Bmp;
    std::vector<std::string> select;
    bool resize = false;
    std::optional<Point> pick;
    std::optional<std::int32_t> abort_after;

    // The frame list.
    std::vector<Move> moves;
    std::vector<Drawing> drawings;

    std::optional<std::string> save;

    // The extraction.
    std::optional<std::string> export_folder;
    ExtractionFormat format = ExtractionFormat::Bmp;
    bool compressed = false;
    std::optional<std::vector<std::int16_t>> frames;
    IfFileExists if_exists = IfFileExists::Ask;
    std::optional<std::int32_t> abort_export_after;

    bool answer = true;

    std::optional<std::string> screenshots;
};

/// Throws WrongOption.
Options parse(const std::vector<std::string>& arguments);

/// The help text: one line per option.
extern const char* const usage;

} // namespace varnoth::walkthrough
