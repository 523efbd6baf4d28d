// Results, each with a name and a digest of its bytes, that must be identical on every machine.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/RunTimeFailure.h"
#include "core/image/Bitmap.h"
#include "core/image/Colour.h"

namespace varnoth::digests {

/// 64-bit FNV-1a over bytes; numbers count as little-endian bytes.
class Digest {
  public:
    void add(std::span<const std::uint8_t> bytes);
    void add(std::string_view text);
    void add(std::int64_t number);
    void add(const std::vector<Colour>& colours);

    /// Adds size, depth, colour table and pixels.
    void add(const Bitmap& bitmap);

    /// Returns 16 hexadecimal digits.
    std::string text() const;

  private:
    std::uint64_t state_ = 0xCBF29CE484222325;
};

/// Runs an action and adds its outcome; a failure is a result too.
template <typename Action>
void attempt(Digest& digest, Action&& action) {
    try {
        action();
        digest.add("went through");
    } catch (const RunTimeFailure& failure) {
        digest.add(failure.name());
    }
}

/// Digests by name. One digest may combine several results of a kind.
using Results = std::map<std::string, Digest>;

/// The results of the readers and probes for every file of the fuzzing corpus.
void add_decoded_seeds(Results& results, const std::string& seeds);

/// The results of all readers and probes for every picture in a folder.
void add_decoded_pictures(Results& results, const std::string& pictures);

/// Generated pictures after colour reduction and every filter, and as files of each format.
void add_pictures(Results& results);

/// Palettes of generated pictures, and the pictures mapped to them.
void add_palettes(Results& results);

/// Sprite files from imports of generated pictures, and their exported frames.
void add_sprites(Results& results);

} // namespace varnoth::digests
