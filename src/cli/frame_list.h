// A choice of frames on the command line: "0-3,7".
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace varnoth::cli {

class FrameList {
  public:
    /// All frames.
    FrameList() = default;

    /// CLI::ValidationError, which is wrong usage, unless the text is a list of numbers and ascending ranges.
    explicit FrameList(const std::string& text);

    /// The chosen frames of a sprite with `count` frames, in ascending order and each once. CommandError
    /// naming the file when the sprite lacks one.
    std::vector<std::size_t> select(std::size_t count, const std::string& file) const;

  private:
    std::vector<std::pair<std::size_t, std::size_t>> ranges_; ///< first and last
};

} // namespace varnoth::cli
