// The input is a JPEG file for Qt's picture loader, which must return the same pixels every time. BMP files
// are left to read_bmp.
#include <algorithm>

#include <QCoreApplication>
#include <QLoggingCategory>

#include "fuzzing.h"
#include "qt/QtPictureLoader.h"

namespace {

using namespace varnoth;

constexpr std::int64_t few_pixels = 1 << 12;
constexpr std::int64_t most_decoded_pixels = 1 << 20;
constexpr std::uint32_t inputs_for_one_large = 64;

// Qt needs an application object to find its image plugins.
void ensure_application() {
    static int count = 1;
    static char name[] = "load_picture";
    static char* arguments[] = {name, nullptr};
    static const QCoreApplication application(count, arguments);
    static const bool is_quiet = [] {
        QLoggingCategory::setFilterRules("*=false"); // most inputs are broken pictures
        return true;
    }();
    static_cast<void>(is_quiet);
}

// The largest size in anything that looks like a frame header.
std::int64_t jpeg_pixels(std::span<const std::uint8_t> bytes) {
    std::int64_t most = 0;
    for (std::size_t i = 0; i + 9 <= bytes.size(); ++i) {
        if (bytes[i] == 0xFF && bytes[i + 1] >= 0xC0 && bytes[i + 1] <= 0xCF) {
            const std::int64_t height = bytes[i + 5] * 256 + bytes[i + 6];
            most = std::max(most, height * (bytes[i + 7] * 256 + bytes[i + 8]));
        }
    }
    return most;
}

// A small file may declare a picture of 64 million pixels.
bool is_worth_decoding(std::span<const std::uint8_t> bytes) {
    if (bytes.size() >= 2 && bytes[0] == 'B' && bytes[1] == 'M') {
        return false;
    }
    const std::int64_t pixels = jpeg_pixels(bytes);
    return pixels <= few_pixels ||
           (pixels <= most_decoded_pixels && fuzzing::is_one_in(inputs_for_one_large, bytes));
}

Picture load(const std::string& path) {
    Picture picture;
    fuzzing::succeeds([&] { picture = QtPictureLoader().load(path); });
    return picture;
}

void require_same(const Bitmap& first, const Bitmap& second) {
    fuzzing::require(first.width() > 0 && first.height() > 0 && first.bits_per_pixel() == 32,
                     "a picture has 32-bit pixels");
    fuzzing::require(first.width() == second.width() && first.height() == second.height(),
                     "the size depends only on the file");
    fuzzing::require(std::ranges::equal(first.bytes(), second.bytes()), "the pixels depend only on the file");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ensure_application();
    if (!is_worth_decoding({data, size})) {
        return 0;
    }
    const std::string path = fuzzing::scratch_file("input.picture", {data, size});
    const Picture first = load(path);
    const Picture second = load(path);
    fuzzing::require((first.empty()) == (second.empty()), "a file loads always or never");
    if (!first.empty()) {
        require_same(*first.bitmap, *second.bitmap);
    }
    return 0;
}
