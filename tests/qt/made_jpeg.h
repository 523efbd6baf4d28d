// Composes grey JPEG files bit by bit, optionally with restart markers, which the available tools cannot
// write. Every block of 8 by 8 pixels has one grey.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace varnoth::test {

/// Writes bits, most significant first, and the zero byte that must follow each 0xFF.
class JpegBits {
  public:
    explicit JpegBits(std::vector<std::uint8_t>& target) : target_(target) {}

    void put(unsigned value, int count) {
        for (int bit = count - 1; bit >= 0; --bit) {
            byte_ = byte_ << 1 | (value >> bit & 1U);
            if (++filled_ == 8) {
                flush_byte();
            }
        }
    }

    /// Pads the last byte with ones.
    void finish() {
        while (filled_ != 0) {
            put(1, 1);
        }
    }

  private:
    void flush_byte() {
        target_.push_back(static_cast<std::uint8_t>(byte_));
        if (byte_ == 0xFF) {
            target_.push_back(0);
        }
        byte_ = 0;
        filled_ = 0;
    }

    std::vector<std::uint8_t>& target_;
    unsigned byte_ = 0;
    int filled_ = 0;
};

/// `greys` has one value per block, top row first. Unless `restart_interval` is 0, a restart marker separates
/// every `restart_interval` blocks.
inline std::vector<std::uint8_t> made_jpeg(std::uint8_t blocks_across, const std::vector<std::uint8_t>& greys,
                                           std::uint8_t restart_interval) {
    const auto width = static_cast<std::uint8_t>(blocks_across * 8);
    const auto height = static_cast<std::uint8_t>(greys.size() / blocks_across * 8);
    std::vector<std::uint8_t> file{0xFF, 0xD8, 0xFF, 0xDB, 0, 67, 0};
    file.insert(file.end(), 64, 8); // quantizers of 8: a step of the DC coefficient is one grey
    // Frame: 8 bits, one component without subsampling.
    file.insert(file.end(), {0xFF, 0xC0, 0, 11, 8, 0, height, 0, width, 1, 1, 0x11, 0});
    // DC table: twelve codes of four bits. AC table: one code of one bit, the end of the block.
    file.insert(file.end(), {0xFF, 0xC4, 0, 31, 0x00, 0, 0, 0, 12, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    file.insert(file.end(), {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11});
    file.insert(file.end(), {0xFF, 0xC4, 0, 20, 0x10, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    file.insert(file.end(), {0xFF, 0xDD, 0, 4, 0, restart_interval});
    file.insert(file.end(), {0xFF, 0xDA, 0, 8, 1, 1, 0x00, 0, 63, 0});
    JpegBits bits(file);
    int before = 0;
    for (std::size_t block = 0; block < greys.size(); ++block) {
        if (restart_interval != 0 && block != 0 && block % restart_interval == 0) {
            bits.finish();
            file.push_back(0xFF);
            file.push_back(static_cast<std::uint8_t>(0xD0 + (block / restart_interval - 1) % 8));
            before = 0;
        }
        const int level = greys[block] - 128;
        const int difference = level - before;
        before = level;
        int size = 0;
        while (std::abs(difference) >> size != 0) {
            ++size;
        }
        bits.put(static_cast<unsigned>(size), 4);
        bits.put(static_cast<unsigned>(difference >= 0 ? difference : difference + (1 << size) - 1), size);
        bits.put(0, 1);
    }
    bits.finish();
    file.insert(file.end(), {0xFF, 0xD9});
    return file;
}

} // namespace varnoth::test
