// Checks for uninitialised reads: decodes every file twice, with memory and stack filled with different
// bytes, and compares the results. The files are the fuzzing corpus, the samples and generated files of every
// layout.
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "core/base/bytes.h"
#include "core/codecs/BmpMod.h"
#include "core/codecs/JpgMod.h"
#include "core/image/cDIB.h"
#include "fault_injection/Operation.h"
#include "fault_injection/made_files.h"
#include "support/expect_failure.h"
#include "support/readers.h"
#include "support/sprites.h"

namespace varnoth::test {
namespace {

std::vector<MadeFile> files_in(const std::string& folder, const std::string& extension = {}) {
    std::vector<MadeFile> files;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::string(VARNOTH_SOURCE_DIR) + "/" + folder)) {
        if (extension.empty() || entry.path().extension() == extension) {
            files.push_back({entry.path().string(), read_file(entry.path().string())});
        }
    }
    std::ranges::sort(files, {}, &MadeFile::name);
    EXPECT_FALSE(files.empty()) << folder;
    return files;
}

std::vector<MadeFile> with(std::vector<MadeFile> files, std::vector<MadeFile> more) {
    std::ranges::move(more, std::back_inserter(files));
    return files;
}

class Poisoned : public testing::Test {
  protected:
    ~Poisoned() override { reset_sprite(); }

    // `decode` resets all state, decodes the file and returns everything that depends on it.
    template <typename Decode>
    void expect_same_twice(const std::vector<MadeFile>& files, Decode&& decode) {
        for (const MadeFile& file : files) {
            const std::string path = folder_.write("file", file.bytes);
            const FileBytes first = over(0xA5, path, decode);
            const FileBytes second = over(0x5A, path, decode);
            EXPECT_TRUE(first == second) << file.name;
        }
        RecordProperty("files", static_cast<int>(files.size()));
    }

    TemporaryFolder folder_;
    FaultFreeServices services_;

  private:
    template <typename Decode>
    FileBytes over(std::uint8_t byte, const std::string& path, Decode&& decode) {
        services_.messages.clear();
        const Poison poison(byte);
        FileBytes result;
        const std::optional<Failure> failure = failure_in([&] { result = decode(path); });
        result.push_back(failure ? static_cast<std::uint8_t>(*failure) : 0xFF);
        for (const std::string& message : services_.messages) {
            result.insert(result.end(), message.begin(), message.end());
        }
        return result;
    }
};

// A small file may declare a picture of up to 2 GiB; decoding that takes long and finds nothing more.
constexpr std::int64_t most_pixels = 1 << 19;

bool is_worth_decoding(const PcxHeader& header) {
    const auto side = [](std::int16_t first, std::int16_t last) {
        return std::abs(std::int64_t{last} - first + 1);
    };
    return side(header.XMin, header.XMax) * side(header.YMin, header.YMax) <= most_pixels;
}

bool is_worth_decoding(const TgaHeader& header) {
    return std::abs((std::int64_t{header.ImageWidth} - header.XOrigin) *
                    (std::int64_t{header.ImageHeight} - header.YOrigin)) <= most_pixels;
}

template <typename Header>
std::vector<MadeFile> worth_decoding(std::vector<MadeFile> files) {
    std::erase_if(files, [](const MadeFile& file) {
        return file.bytes.size() >= Header::size &&
               !is_worth_decoding(Header::from_bytes(std::span(file.bytes).template first<Header::size>()));
    });
    return files;
}

void append(FileBytes& bytes, std::int32_t number) {
    append_i32(bytes, number);
}

template <typename Reader>
FileBytes decode(const std::string& path) {
    CBitmap::CurrentBitmap.reset();
    Reader reader;
    const Info info = probe(reader, path);
    const std::optional<Failure> failure = failure_in([&] { reader.Load(path); });
    FileBytes result;
    for (const std::int32_t number :
         {std::int32_t{info.answer}, info.width, info.height, std::int32_t{info.bpp},
          failure ? static_cast<std::int32_t>(*failure) : -1}) {
        append(result, number);
    }
    const FileBytes pixels = decoded_bytes();
    result.insert(result.end(), pixels.begin(), pixels.end());
    return result;
}

TEST_F(Poisoned, PcxResultsAreReproducible) {
    const auto files =
        with(with(files_in("fuzz/corpus/load_pcx"), files_in("samples", ".pcx")), all_made_pcx());
    expect_same_twice(worth_decoding<PcxHeader>(files), decode<LoadPCX>);
}

TEST_F(Poisoned, TgaResultsAreReproducible) {
    const auto files =
        with(with(files_in("fuzz/corpus/load_tga"), files_in("samples", ".tga")), all_made_tga());
    expect_same_twice(worth_decoding<TgaHeader>(files), decode<LoadTGA>);
}

// The same for sprites, judged by their first frame.
std::vector<MadeFile> worth_loading(std::vector<MadeFile> files) {
    constexpr std::size_t first_frame = SpriteHeaderRecord::file_size + PaletteRecord::file_size;
    std::erase_if(files, [](const MadeFile& file) {
        if (file.bytes.size() < first_frame + FrameHeaderRecord::file_size) {
            return false;
        }
        const FrameHeaderRecord header = frame_header_from_bytes(
            std::span(file.bytes).subspan<first_frame, FrameHeaderRecord::file_size>());
        return std::abs(std::int64_t{header.FrameWidth} * header.FrameHeight) > most_pixels;
    });
    return files;
}

FileBytes drawn_frames() {
    FileBytes result;
    const SpriteHeaderRecord& header = hlspr::document().SpriteHeader;
    if (header.Width < 0 || header.Height < 0 || std::int64_t{header.Width} * header.Height > most_pixels) {
        return result;
    }
    TestSurface picture(1, 1);
    for (std::int16_t i = 0; i < std::min<std::int32_t>(header.FrameCount, 5); ++i) {
        std::int16_t number = i;
        static_cast<void>(failure_in([&] { hlspr::draw_frame(number, picture); }));
        const auto pixels = picture.bitmap().bytes();
        result.insert(result.end(), pixels.begin(), pixels.end());
    }
    return result;
}

// Loads each sprite, draws its frames and saves it again.
TEST_F(Poisoned, SpriteResultsAreReproducible) {
    expect_same_twice(worth_loading(files_in("fuzz/corpus/load_sprite")), [this](const std::string& path) {
        reset_sprite();
        FileBytes result;
        append(result, hlspr::load_sprite(path));
        append(result, hlspr::save_sprite(folder_.file("copy.spr")));
        for (const FileBytes& bytes :
             {document_bytes(), drawn_frames(), read_file(folder_.file("copy.spr"))}) {
            result.insert(result.end(), bytes.begin(), bytes.end());
        }
        return result;
    });
}

// Header, palette and frame header are read; the frame's indices are not.
TEST_F(Poisoned, FrameIsReproducibleAfterAReadError) {
    const auto sprites = worth_loading(files_in("samples", ".spr"));
    expect_same_twice(sprites, [](const std::string& path) {
        reset_sprite();
        const FaultInjection fault({.call = Call::Read, .number = 4, .error = EIO});
        EXPECT_EQ(hlspr::load_sprite(path), False);
        EXPECT_TRUE(fault.hit());
        return document_bytes();
    });
}

TEST_F(Poisoned, BmpAndJpegProbesAreReproducible) {
    expect_same_twice(with(files_in("fuzz/corpus/probe_bmp"), files_in("samples", ".bmp")), [](const std::
                                                                                                   string&
                                                                                                       path) {
        FileBytes result;
        std::int32_t width = 0;
        std::int32_t height = 0;
        std::int16_t depth = 0;
        std::int16_t compression = 0;
        append(result, BmpMod::ProbeBmp(path, width, height, depth, compression));
        for (const std::int32_t number : {width, height, std::int32_t{depth}, std::int32_t{compression}}) {
            append(result, number);
        }
        return result;
    });
    expect_same_twice(with(files_in("fuzz/corpus/probe_jpeg"), files_in("samples", ".jpg")),
                      [](const std::string& path) {
                          FileBytes result;
                          std::int32_t width = 0;
                          std::int32_t height = 0;
                          append(result, JpgMod::ProbeJpeg(path, width, height));
                          append(result, width);
                          append(result, height);
                          return result;
                      });
}

// Creating empties the object before the pixels are copied, so a size that the old pixels covered must not
// leave new memory as it came.
TEST(Poison, ADibTakenOverFromItsOwnContextIsBlack) {
    for (const std::uint8_t byte : std::array<std::uint8_t, 2>{0xA5, 0x5A}) {
        for (const std::int32_t side : {19, 20, 21}) {
            const Poison poison(byte);
            cDIB dib;
            ASSERT_TRUE(dib.Create(20, 20, 32));
            ASSERT_TRUE(dib.CreateFromHdc(*dib.hDIBDC(), side, side));
            const std::span<const std::uint8_t> bits(dib.lpBits(), static_cast<std::size_t>(dib.Size()));
            EXPECT_EQ(std::ranges::count(bits, 0), dib.Size()) << side;
        }
    }
}

// The tests above rely on this.
TEST(Poison, FillsNewMemoryWithTheByte) {
    for (const std::uint8_t byte : std::array<std::uint8_t, 2>{0xA5, 0x5A}) {
        const Poison poison(byte);
        const std::unique_ptr<volatile std::uint8_t[]> memory(new std::uint8_t[1000]);
        EXPECT_TRUE(std::all_of(memory.get(), memory.get() + 1000,
                                [&](volatile std::uint8_t& place) { return place == byte; }));
    }
}

} // namespace
} // namespace varnoth::test
