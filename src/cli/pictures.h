// The picture files of the command line: everything that Qt Gui reads except SVG and PDF, TGA and PCX of
// every kind, GIF, and all frames of animated and multi-page files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "core/image/Colour.h"
#include "core/image/RgbaPicture.h"

namespace varnoth::cli {

/// A picture in a file: the only one, or one frame of an animated or multi-page file.
struct PictureSource {
    std::string path;      ///< "-" is standard input
    std::size_t index = 0; ///< the frame, from 0
    std::string name;      ///< for messages: "walk.gif[3]", or just the file if it has a single picture
};

/// All pictures of these files, in the order given. A folder stands for its picture files in natural order;
/// they are recognised by their endings, and hidden ones are left out. CommandError for a file that is no
/// picture, a folder without pictures, or a path that does not exist. Threads read the files in parallel.
std::vector<PictureSource> list_pictures(const std::vector<std::string>& paths, std::size_t threads = 1);

/// All bytes of a picture file. Standard input ("-") is read once and kept, because it is listed first and
/// decoded later, by several readers. CommandError when it cannot be read.
std::shared_ptr<const std::vector<std::uint8_t>> read_picture_file(const std::string& path);

/// The name of a file in messages: "standard input" for "-".
std::string display_name(const std::string& path);

/// Whether the bytes are of a known picture format.
bool is_picture(std::span<const std::uint8_t> file);

/// Decodes pictures. Keeps the file last read open, so that the frames of an animation cost linear time in
/// order. Not for use by several threads at once: each thread has its own reader.
class PictureReader {
  public:
    PictureReader();
    ~PictureReader();

    PictureReader(const PictureReader&) = delete;
    PictureReader& operator=(const PictureReader&) = delete;

    /// The pictures of a file, at least one. CommandError when it is no picture.
    std::vector<PictureSource> list(const std::string& path);

    /// CommandError naming the file when it cannot be read or decoded, or has more than 64 Mi pixels.
    RgbaPicture read(const PictureSource& source);

    /// The colour table of an indexed picture; empty for other pictures. Fails as read() does.
    std::vector<RGBQUAD> colour_table(const PictureSource& source);

  private:
    struct OpenFile;

    void open(const std::string& path);

    std::unique_ptr<OpenFile> open_;
};

} // namespace varnoth::cli
