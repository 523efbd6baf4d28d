#include "core/codecs/JpgMod.h"

#include <array>
#include <cstddef>
#include <string_view>

#include "core/base/files.h"
#include "core/base/numbers.h"

namespace varnoth::JpgMod {

namespace {

constexpr int SOF0 = 192;
constexpr int SOI = 216;
constexpr int SOS = 218;
constexpr int APP0 = 224;

// The bytes of a file by position, counted from 1; a byte beyond the end is 0. Buffers one window of the
// file.
class PositionedBytes {
  public:
    explicit PositionedBytes(const std::string& path) : file_(path) {}

    std::int64_t length() const { return file_.length(); }

    std::uint8_t at(std::int64_t position) {
        if (position > length()) {
            return 0;
        }
        if (position < start_ || position >= start_ + static_cast<std::int64_t>(window_.size())) {
            start_ = position;
            window_.fill(0);
            file_.seek(position - 1);
            file_.read(window_);
        }
        return window_[static_cast<std::size_t>(position - start_)];
    }

    /// A big-endian 16-bit number; Overflow from 32768 on.
    std::int16_t number_at(std::int64_t position) {
        return checked_add(checked_multiply(std::int16_t{at(position)}, 256), at(position + 1));
    }

    bool holds(std::int64_t position, std::string_view text) {
        for (const char character : text) {
            if (at(position++) != static_cast<std::uint8_t>(character)) {
                return false;
            }
        }
        return true;
    }

  private:
    InputFile file_;
    std::array<std::uint8_t, 4096> window_{};
    std::int64_t start_ = -4096;
};

} // namespace

Truth ProbeJpeg(const std::string& filename, std::int32_t& width, std::int32_t& height) {
    PositionedBytes bytes(filename);
    if (bytes.at(1) != 255 || bytes.at(2) != SOI) {
        return False;
    }
    Truth found = False;
    int marker = 0;
    std::int16_t length = 0;
    for (std::int64_t i = 3; i <= bytes.length(); ++i) {
        if (bytes.at(i) == 255) {
            marker = bytes.at(i + 1);
            length = bytes.number_at(i + 2);
        }
        if (marker == 0) {
            continue;
        }
        if (marker == APP0 && !bytes.holds(i + 4, "JFIF")) {
            i = bytes.length();
        } else if (marker == SOF0) {
            const std::int16_t frame_height = bytes.number_at(i + 5);
            const std::int16_t frame_width = bytes.number_at(i + 7);
            height = frame_height;
            width = frame_width;
            found = True;
            i = bytes.length();
        } else if (marker == SOS) {
            i = bytes.length();
        }
        marker = 0;
        i += length + 1;
    }
    return found;
}

} // namespace varnoth::JpgMod
