// GIF files composed record by record, where no tool writes them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/base/bytes.h"
#include "support/codec_files.h"

namespace varnoth::test {

/// A colour table with colours of this red value onwards: entry i is red + i, 0, 0.
inline Bytes gif_colours(std::uint8_t red, std::size_t count = 4) {
    Bytes colours;
    for (std::size_t i = 0; i < count; ++i) {
        colours.insert(colours.end(), {static_cast<std::uint8_t>(red + i), 0, 0});
    }
    return colours;
}

/// Two bits per index. Without compression: each index is a code of 3 bits after a clear code.
inline Bytes gif_codes(const Bytes& indices) {
    constexpr unsigned clear_code = 4;
    constexpr unsigned end_code = 5;
    std::vector<unsigned> codes;
    for (const std::uint8_t index : indices) {
        codes.insert(codes.end(), {clear_code, index});
    }
    codes.push_back(end_code);
    Bytes packed((codes.size() * 3 + 7) / 8);
    for (std::size_t i = 0; i < codes.size() * 3; ++i) {
        const unsigned bit = codes[i / 3] >> i % 3 & 1;
        packed[i / 8] = static_cast<std::uint8_t>(packed[i / 8] | bit << i % 8);
    }
    Bytes data{2, static_cast<std::uint8_t>(packed.size())};
    data.insert(data.end(), packed.begin(), packed.end());
    data.push_back(0);
    return data;
}

struct GifFrame {
    std::int16_t left = 0;
    std::int16_t top = 0;
    std::int16_t width = 0;
    std::int16_t height = 0;
    Bytes indices; ///< each 0 to 3
    int transparent = -1;
    int disposal = 0;
    std::int16_t delay = 0;
    Bytes local_colours; ///< none or 4
    bool is_interlaced = false;

    Bytes bytes() const {
        Bytes control{0x21,
                      0xF9,
                      4,
                      static_cast<std::uint8_t>(disposal << 2 | (transparent >= 0 ? 1 : 0)),
                      0,
                      0,
                      static_cast<std::uint8_t>(transparent),
                      0};
        put_i16(control, 4, delay);
        Bytes header{
            0x2C, 0,
            0,    0,
            0,    0,
            0,    0,
            0,    static_cast<std::uint8_t>((local_colours.empty() ? 0 : 0x81) | (is_interlaced ? 0x40 : 0))};
        put_i16(header, 1, left);
        put_i16(header, 3, top);
        put_i16(header, 5, width);
        put_i16(header, 7, height);
        return joined({control, header, local_colours, gif_codes(indices)});
    }
};

/// A file with four global colours from 0x640000 on, or without any.
inline Bytes gif_file(std::int16_t width, std::int16_t height, const std::vector<GifFrame>& frames,
                      bool has_global_colours = true) {
    Bytes file{
        'G', 'I', 'F', '8', '9', 'a', 0, 0, 0, 0, static_cast<std::uint8_t>(has_global_colours ? 0x81 : 0),
        0,   0};
    put_i16(file, 6, width);
    put_i16(file, 8, height);
    if (has_global_colours) {
        file = joined({file, gif_colours(100)});
    }
    for (const GifFrame& frame : frames) {
        file = joined({file, frame.bytes()});
    }
    file.push_back(0x3B);
    return file;
}

} // namespace varnoth::test
