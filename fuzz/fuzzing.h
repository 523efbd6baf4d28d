// Shared by all fuzz targets: which exceptions are allowed, claims that must hold, and files and small
// pictures made from input bytes.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "core/base/RunTimeFailure.h"
#include "core/base/files.h"
#include "support/TemporaryFolder.h"
#include "support/pictures.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace varnoth::fuzzing {

/// FNV-1a.
inline std::uint32_t hash_of(std::span<const std::uint8_t> bytes) {
    std::uint32_t hash = 2166136261;
    for (const std::uint8_t byte : bytes) {
        hash = (hash ^ byte) * 16777619;
    }
    return hash;
}

/// Whether the action succeeds; false if it throws a RunTimeFailure. Any other exception is a finding.
template <typename Action>
bool succeeds(Action&& action) {
    try {
        action();
        return true;
    } catch (const RunTimeFailure&) {
        return false;
    }
}

/// Whether allocations have failed on purpose in this run.
inline bool memory_ran_out = false;

/// Thrown instead of reporting a finding if memory ran out.
struct OtherOutcome {};

/// Aborts with a finding if a claim does not hold. If memory ran out, results may differ, so only the run
/// ends.
inline void require(bool holds, const char* claim) {
    if (holds) {
        return;
    }
    if (memory_ran_out) {
        throw OtherOutcome();
    }
    std::fprintf(stderr, "claim violated: %s\n", claim);
    std::abort();
}

/// Set when the corpus is replayed: no check is skipped.
inline bool every_input_counts = false;

/// True for one in `count` inputs, always the same ones: for checks that are slow and rarely find anything.
inline bool is_one_in(std::uint32_t count, std::span<const std::uint8_t> bytes) {
    return every_input_counts || hash_of(bytes) % count == 0;
}

/// Runs an action at the end of a scope, to release what the program keeps from one file to the next, so that
/// anything left after the input is a leak.
template <typename Action>
class AtEnd {
  public:
    explicit AtEnd(Action action) : action_(std::move(action)) {}

    ~AtEnd() { action_(); }

    AtEnd(const AtEnd&) = delete;
    AtEnd& operator=(const AtEnd&) = delete;

  private:
    Action action_;
};

/// A temporary folder of this process, in TMPDIR. It stays empty in programs with in-memory files.
inline const std::string& scratch_folder() {
    static const test::TemporaryFolder folder;
    return folder.path();
}

/// The path of a name in the scratch folder.
inline std::string scratch_path(const std::string& name) {
    return join_path(scratch_folder(), name);
}

/// Writes a scratch file of these bytes; returns its path.
inline std::string scratch_file(const std::string& name, std::span<const std::uint8_t> bytes) {
    std::string path = scratch_path(name);
    OutputFile file(path);
    file.write(bytes);
    file.close();
    return path;
}

/// The contents of a scratch file.
inline std::vector<std::uint8_t> scratch_bytes(const std::string& path) {
    InputFile file(path);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(file.length()));
    bytes.resize(file.read(bytes));
    return bytes;
}

/// Splits input bytes into small numbers. After the last byte, everything is 0.
class Recipe {
  public:
    Recipe(const std::uint8_t* data, std::size_t size) : bytes_(data, size) {}

    bool empty() const { return bytes_.empty(); }

    std::uint8_t byte() {
        if (bytes_.empty()) {
            return 0;
        }
        const std::uint8_t first = bytes_.front();
        bytes_ = bytes_.subspan(1);
        return first;
    }

    std::int32_t number() {
        const std::uint32_t low = byte();
        const std::uint32_t middle = byte();
        const std::uint32_t high = byte();
        return static_cast<std::int32_t>(low | middle << 8 | high << 16 | std::uint32_t{byte()} << 24);
    }

    /// A number from lowest to highest, which must be less than 256 apart.
    std::int32_t between(std::int32_t lowest, std::int32_t highest) {
        return lowest + byte() % (highest - lowest + 1);
    }

    Colour colour() {
        const std::uint8_t red = byte();
        const std::uint8_t green = byte();
        return make_colour(red, green, byte());
    }

    /// The next bytes, at most `count`.
    std::span<const std::uint8_t> take(std::size_t count) {
        const auto taken = bytes_.first(std::min(count, bytes_.size()));
        bytes_ = bytes_.subspan(taken.size());
        return taken;
    }

  private:
    std::span<const std::uint8_t> bytes_;
};

/// Colours given in the recipe, directly or as indices into a palette given before them.
inline std::vector<Colour> explicit_colours(Recipe& recipe, std::size_t count) {
    std::vector<Colour> palette(static_cast<std::size_t>(recipe.between(0, 16)));
    for (Colour& entry : palette) {
        entry = recipe.colour();
    }
    std::vector<Colour> colours(count);
    for (Colour& colour : colours) {
        colour = palette.empty() ? recipe.colour() : palette[recipe.byte() % palette.size()];
    }
    return colours;
}

/// A borderless surface of 1 by 1 to `most_wide` by `most_high` pixels and one of these depths. Its pixels
/// are given in the recipe, or random with a seed in the recipe, since short inputs cannot describe 256
/// colours.
inline std::unique_ptr<test::TestSurface> surface_of(Recipe& recipe, std::int32_t most_wide,
                                                     std::int32_t most_high,
                                                     std::span<const std::int32_t> depths) {
    const std::int32_t width = recipe.between(1, most_wide);
    const std::int32_t height = recipe.between(1, most_high);
    const std::int32_t depth = depths[recipe.byte() % depths.size()];
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    const std::size_t manner = recipe.byte() % (std::size(test::all_characters) + 2);
    if (manner < std::size(test::all_characters)) {
        return test::random_surface(width, height, test::all_characters[manner], recipe.byte(), depth);
    }
    return test::surface_of(width, height, explicit_colours(recipe, count), depth);
}

inline constexpr std::array<std::int32_t, 3> all_depths{32, 24, 16};
inline constexpr std::array<std::int32_t, 2> true_colour_depths{32, 24};

} // namespace varnoth::fuzzing
