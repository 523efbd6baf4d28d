// The PCX and the TGA reader under common names, for tests of what they share.
#pragma once

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "core/codecs/LoadPCX.h"
#include "core/codecs/LoadTGA.h"
#include "support/TemporaryFolder.h"
#include "support/codec_files.h"
#include "support/pictures.h"

namespace varnoth::test {

/// The answer of a probe and the values that it reports; 77 for those that it leaves unset.
struct Info {
    Truth answer = 77;
    std::int32_t width = 77;
    std::int32_t height = 77;
    std::int16_t bpp = 77;

    friend bool operator==(const Info&, const Info&) = default;
};

inline Info probe(const LoadPCX& reader, const std::string& path) {
    Info info;
    info.answer = reader.GetInfoPCX(path, info.width, info.height, info.bpp);
    return info;
}

inline Info probe(const LoadTGA& reader, const std::string& path) {
    Info info;
    info.answer = reader.GetInfoTGA(path, info.width, info.height, info.bpp);
    return info;
}

inline void draw(const LoadPCX& reader, PictureSurface& target) {
    reader.DrawPCX(target);
}

inline void draw(const LoadTGA& reader, PictureSurface& target) {
    reader.DrawTGA(target);
}

inline Truth is_valid(const LoadPCX& reader) {
    return reader.IsPCX();
}

inline Truth is_valid(const LoadTGA& reader) {
    return reader.IsTGA();
}

struct Size {
    std::int32_t width = 0;
    std::int32_t height = 0;

    friend bool operator==(const Size&, const Size&) = default;

    friend std::ostream& operator<<(std::ostream& stream, const Size& size) {
        return stream << size.width << " by " << size.height;
    }
};

/// The size in the reader's unit, pixels or twips.
inline Size size_of(const LoadPCX& reader) {
    return {reader.PCXWidth(), reader.PCXHeight()};
}

inline Size size_of(const LoadTGA& reader) {
    return {reader.TGAWidth(), reader.TGAHeight()};
}

/// What a reader draws on a surface with autoscale.
template <typename Reader>
Colours drawn_by(const Reader& reader) {
    TestSurface target(1, 1);
    draw(reader, target);
    EXPECT_EQ(target.bitmap().width(), reader.Width());
    return colours_of(target);
}

/// The names of the formats in typed tests.
struct FormatName {
    template <typename Format>
    static std::string GetName(int /*index*/) {
        return Format::name;
    }
};

/// A reader, and a folder for its files.
template <typename Reader, typename Header>
class ReaderTest : public testing::Test {
  protected:
    std::string file(const Header& header, const Bytes& data = {}) {
        return folder.write("picture", joined({bytes_of(header), data}));
    }

    void load(const Header& header, const Bytes& data = {}) { reader.Load(file(header, data)); }

    /// The colours of the picture in such a file.
    Colours decoded(const Header& header, const Bytes& data = {}) {
        load(header, data);
        return decoded_colours();
    }

    Info info_of(const std::string& path) { return probe(reader, path); }

    Info info(const Header& header) { return info_of(file(header)); }

    TemporaryFolder folder;
    Reader reader;
};

} // namespace varnoth::test
