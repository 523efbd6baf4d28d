// Writes animated GIF files through giflib: every frame with the indices it is given, and one colour table of
// 256 entries for all of them.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

struct GifFileType;

namespace varnoth::cli {

struct GifOptions {
    std::int32_t width = 0; ///< 1 to 65535
    std::int32_t height = 0;

    /// Red, green and blue from bits 16 to 0.
    std::array<std::uint32_t, 256> colours{};

    std::optional<std::uint8_t> transparent;

    /// Hundredths of a second for each frame; none for a file of one picture.
    std::optional<std::uint16_t> delay;
};

/// Part of the picture. The rest of it is transparent.
struct GifFrame {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::span<const std::uint8_t> indices;
};

/// With a delay, the animation repeats for ever. Each function fails with OutOfMemory, the only reason for
/// which giflib refuses valid arguments here; Overflow for a side beyond 65535.
class GifWriter {
  public:
    explicit GifWriter(const GifOptions& options);

    GifWriter(const GifWriter&) = delete;
    GifWriter& operator=(const GifWriter&) = delete;

    void add(const GifFrame& frame);

    /// The bytes of the file. No frame can be added afterwards.
    std::vector<std::uint8_t> finish();

  private:
    struct Close {
        void operator()(GifFileType* file) const;
    };

    void put_loop();

    GifOptions options_;
    std::vector<std::uint8_t> bytes_;
    std::unique_ptr<GifFileType, Close> file_;
};

} // namespace varnoth::cli
