// A list of results, each a name and a digest of its bytes, that must be the same on every machine.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/RunTimeFailure.h"
#include "platform/Bitmap.h"
#include "platform/Colour.h"

namespace varnoth::results {

/// FNV-1a of 64 bits over bytes, and over numbers as their bytes, the lowest first.
class Digest {
  public:
    void add(std::span<const std::uint8_t> bytes);
    void add(std::string_view text);
    void add(std::int64_t number);
    void add(const std::vector<Colour>& colours);

    /// Size, depth, colour table and bytes.
    void add(const Bitmap& bitmap);

    /// 16 hexadecimal digits.
    std::string text() const;

  private:
    std::uint64_t state_ = 0xCBF29CE484222325;
};

/// Runs an action and adds how it ends: a failure is a result too.
template <typename Action>
void attempt(Digest& digest, Action&& action) {
    try {
        action();
        digest.add("went through");
    } catch (const RunTimeFailure& failure) {
        digest.add(failure.name());
    }
}

/// By name. Several results of a kind may go into one digest.
using Results = std::map<std::string, Digest>;

/// What the readers and probes make of every seed below the folder of seeds.
void add_decoded_seeds(Results& results, const std::string& seeds);

/// What they make of the pictures in a folder, and the probes of those that they do not decode.
void add_decoded_pictures(Results& results, const std::string& pictures);

/// Generated pictures through colour reduction and every filter, and as files of each format.
void add_pictures(Results& results);

/// Generated pictures imported into sprites, whose files are digested, and drawn and taken apart again.
void add_sprites(Results& results);

} // namespace varnoth::results
