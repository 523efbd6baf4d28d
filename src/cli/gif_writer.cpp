#include "cli/gif_writer.h"

#include <algorithm>
#include <new>
#include <utility>

#include <gif_lib.h>

#include "core/base/numbers.h"

namespace varnoth::cli {

namespace {

constexpr int colour_bits = 8;

void require(int status) {
    if (status != GIF_OK) {
        fail(Failure::OutOfMemory);
    }
}

// Called from C code, which exceptions must not pass.
int append_bytes(GifFileType* file, const GifByteType* bytes, int count) {
    auto& target = *static_cast<std::vector<std::uint8_t>*>(file->UserData);
    try {
        target.insert(target.end(), bytes, bytes + count);
        return count;
    } catch (const std::bad_alloc&) {
        return 0;
    }
}

using ColourMap = std::unique_ptr<ColorMapObject, decltype(&GifFreeMapObject)>;

ColourMap colour_map(const std::array<std::uint32_t, 256>& colours) {
    ColourMap map(GifMakeMapObject(static_cast<int>(colours.size()), nullptr), GifFreeMapObject);
    if (!map) {
        fail(Failure::OutOfMemory);
    }
    std::ranges::transform(colours, map->Colors, [](std::uint32_t colour) {
        return GifColorType{static_cast<GifByteType>(colour >> 16 & 0xFF),
                            static_cast<GifByteType>(colour >> 8 & 0xFF),
                            static_cast<GifByteType>(colour & 0xFF)};
    });
    return map;
}

} // namespace

GifWriter::GifWriter(const GifOptions& options) : options_(options) {
    const std::uint16_t width = narrow<std::uint16_t>(options.width);
    const std::uint16_t height = narrow<std::uint16_t>(options.height);
    const ColourMap map = colour_map(options.colours);
    int error = 0;
    file_.reset(EGifOpen(&bytes_, append_bytes, &error));
    if (!file_) {
        fail(Failure::OutOfMemory);
    }
    EGifSetGifVersion(file_.get(), true);
    require(EGifPutScreenDesc(file_.get(), width, height, colour_bits, 0, map.get()));
    if (options.delay) {
        put_loop();
    }
}

void GifWriter::Close::operator()(GifFileType* file) const {
    int ignored = 0;
    EGifCloseFile(file, &ignored);
}

void GifWriter::put_loop() {
    constexpr char name[] = "NETSCAPE2.0";
    constexpr GifByteType for_ever[] = {1, 0, 0};
    require(EGifPutExtensionLeader(file_.get(), APPLICATION_EXT_FUNC_CODE));
    require(EGifPutExtensionBlock(file_.get(), sizeof name - 1, name));
    require(EGifPutExtensionBlock(file_.get(), sizeof for_ever, for_ever));
    require(EGifPutExtensionTrailer(file_.get()));
}

void GifWriter::add(const GifFrame& frame) {
    GraphicsControlBlock control{};
    control.DisposalMode = options_.delay ? DISPOSE_BACKGROUND : DISPOSAL_UNSPECIFIED;
    control.DelayTime = options_.delay.value_or(0);
    control.TransparentColor = options_.transparent ? *options_.transparent : NO_TRANSPARENT_COLOR;
    GifByteType bytes[4];
    const auto size = static_cast<int>(EGifGCBToExtension(&control, bytes));
    require(EGifPutExtension(file_.get(), GRAPHICS_EXT_FUNC_CODE, size, bytes));
    require(EGifPutImageDesc(file_.get(), frame.left, frame.top, frame.width, frame.height, false, nullptr));
    const auto width = static_cast<std::size_t>(frame.width);
    std::vector<std::uint8_t> row(width); // giflib takes rows that it may change
    for (std::size_t at = 0; at < frame.indices.size(); at += width) {
        std::ranges::copy(frame.indices.subspan(at, width), row.begin());
        require(EGifPutLine(file_.get(), row.data(), frame.width));
    }
}

std::vector<std::uint8_t> GifWriter::finish() {
    int error = 0;
    require(EGifCloseFile(file_.release(), &error));
    return std::move(bytes_);
}

} // namespace varnoth::cli
