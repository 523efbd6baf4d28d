#include "cli/pictures.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <exception>
#include <filesystem>
#include <iterator>
#include <new>
#include <span>
#include <string_view>
#include <system_error>
#include <utility>

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QImageReader>
#include <QList>
#include <QLoggingCategory>

#include "cli/command.h"
#include "cli/files.h"
#include "cli/gif_file.h"
#include "cli/png_file.h"
#include "core/base/RunTimeFailure.h"
#include "core/base/files.h"
#include "core/base/threads.h"
#include "core/codecs/read_pcx.h"
#include "core/codecs/read_rgba_bmp.h"
#include "core/codecs/read_tga.h"
#include "core/services/FileList.h"

namespace varnoth::cli {

namespace {

namespace fs = std::filesystem;

using Bytes = std::span<const std::uint8_t>;

constexpr std::int64_t most_pixels = std::int64_t{64} << 20;
constexpr std::string_view standard_input = "-";
constexpr std::string_view no_cursors("\0\0\2\0\0\0", 6);

void require_picture(bool holds) {
    if (!holds) {
        fail(Failure::InvalidPicture);
    }
}

void require_size(std::int64_t width, std::int64_t height) {
    if (width * height > most_pixels) {
        fail(Failure::OutOfMemory);
    }
}

/// The pictures of one file.
class Pictures {
  public:
    Pictures() = default;
    virtual ~Pictures() = default;

    Pictures(const Pictures&) = delete;
    Pictures& operator=(const Pictures&) = delete;

    virtual std::size_t count() = 0;

    /// Reading them in ascending order takes linear time. InvalidPicture for damaged ones, OutOfMemory for
    /// too many pixels.
    virtual RgbaPicture read(std::size_t index) = 0;

    /// Empty for pictures that are not indexed.
    virtual std::vector<RGBQUAD> colour_table(std::size_t index) = 0;
};

/// A file of a format with one picture.
class SinglePicture : public Pictures {
  public:
    using Decoder = RgbaPicture (*)(Bytes file, std::int64_t max_pixels);
    using TableReader = std::vector<RGBQUAD> (*)(Bytes file);

    SinglePicture(Bytes file, Decoder decode, TableReader read_table)
        : file_(file), decode_(decode), read_table_(read_table) {}

    std::size_t count() override { return 1; }

    RgbaPicture read(std::size_t index) override {
        require_picture(index == 0);
        return decode_(file_, most_pixels);
    }

    std::vector<RGBQUAD> colour_table(std::size_t /*index*/) override { return read_table_(file_); }

  private:
    Bytes file_;
    Decoder decode_;
    TableReader read_table_;
};

RgbaPicture from_image(const QImage& image) {
    require_size(image.width(), image.height());
    const QImage converted = image.convertToFormat(QImage::Format_ARGB32);
    require_picture(!converted.isNull());
    RgbaPicture picture;
    picture.width = converted.width();
    picture.height = converted.height();
    const auto width = static_cast<std::size_t>(picture.width);
    picture.pixels.resize(width * static_cast<std::size_t>(picture.height));
    for (int y = 0; y < picture.height; ++y) {
        std::memcpy(picture.pixels.data() + width * static_cast<std::size_t>(y), converted.constScanLine(y),
                    width * sizeof(QRgb));
    }
    return picture;
}

/// Settings of Qt's readers that hold for the whole program.
void prepare_qt() {
    static const bool prepared = [] {
        // In MiB, for pictures of 16 bits per channel.
        QImageReader::setAllocationLimit(static_cast<int>(most_pixels * 8 >> 20));
        // Errors are reported in one line, with the name of the file.
        QLoggingCategory::setFilterRules("*=false");
        return true;
    }();
    static_cast<void>(prepared);
}

/// What Qt Gui reads.
class QtPictures : public Pictures {
  public:
    explicit QtPictures(Bytes file)
        : file_(file),
          bytes_(QByteArray::fromRawData(reinterpret_cast<const char*>(file.data()),
                                         static_cast<qsizetype>(file.size()))) {
        prepare_qt();
        restart();
    }

    /// Empty when no reader recognises the bytes.
    QByteArray format() const { return reader_->format(); }

    std::size_t count() override {
        const int count = reader_->imageCount();
        return count > 0 ? static_cast<std::size_t>(count) : counted_by_reading();
    }

    RgbaPicture read(std::size_t index) override { return from_image(read_image(index)); }

    std::vector<RGBQUAD> colour_table(std::size_t index) override {
        std::vector<RGBQUAD> colours;
        for (const QRgb colour : read_image(index).colorTable()) {
            colours.push_back({static_cast<std::uint8_t>(qBlue(colour)),
                               static_cast<std::uint8_t>(qGreen(colour)),
                               static_cast<std::uint8_t>(qRed(colour)), 0});
        }
        return colours;
    }

  private:
    QImage read_image(std::size_t index) {
        require_picture(!is_png(file_) || is_whole_png(file_));
        if (reader_->supportsAnimation()) {
            skip_to(index);
        } else {
            restart(); // the reader of TIFF files jumps only from the start
            require_picture(index == 0 || reader_->jumpToImage(static_cast<int>(index)));
        }
        const QSize size = reader_->size();
        require_size(size.width(), size.height());
        const QImage image = reader_->read();
        next_ = index + 1;
        require_picture(!image.isNull());
        return image;
    }

    void restart() {
        reader_.reset();
        buffer_ = std::make_unique<QBuffer>(&bytes_);
        buffer_->open(QIODevice::ReadOnly);
        reader_ = std::make_unique<QImageReader>(buffer_.get());
        reader_->setDecideFormatFromContent(true);
        reader_->setAutoTransform(false);
        next_ = 0;
    }

    void skip_to(std::size_t index) {
        if (index < next_) {
            restart();
        }
        for (; next_ < index; ++next_) {
            require_picture(!reader_->read().isNull());
        }
    }

    std::size_t counted_by_reading() {
        restart();
        std::size_t count = 0;
        while (!reader_->read().isNull()) {
            ++count;
        }
        restart();
        return count;
    }

    Bytes file_;
    QByteArray bytes_; // the same, for Qt
    std::unique_ptr<QBuffer> buffer_;
    std::unique_ptr<QImageReader> reader_;
    std::size_t next_ = 0;
};

/// The frames of a GIF file.
class GifPictures : public Pictures {
  public:
    explicit GifPictures(Bytes file) : file_(file) {}

    std::size_t count() override { return count_gif_frames(file_); }

    RgbaPicture read(std::size_t index) override {
        if (!reader_ || index < next_) {
            reader_ = std::make_unique<GifReader>(file_, most_pixels);
            next_ = 0;
        }
        for (; next_ < index; ++next_) {
            reader_->read();
        }
        ++next_;
        return reader_->read();
    }

    std::vector<RGBQUAD> colour_table(std::size_t /*index*/) override { return gif_colour_table(file_); }

  private:
    Bytes file_;
    std::unique_ptr<GifReader> reader_;
    std::size_t next_ = 0;
};

std::vector<RGBQUAD> bmp_colour_table(Bytes file) {
    return QtPictures(file).colour_table(0);
}

bool starts_with(Bytes file, std::string_view magic) {
    return file.size() >= magic.size() && std::memcmp(file.data(), magic.data(), magic.size()) == 0;
}

/// Without a QGuiApplication, Qt aborts the program when a picture contains text to draw.
bool has_drawn_text(const QByteArray& format) {
    return format == "svg" || format == "svgz" || format == "pdf";
}

/// Null when the bytes are no picture.
std::unique_ptr<Pictures> open_pictures(Bytes file) {
    if (starts_with(file, "BM")) {
        return std::make_unique<SinglePicture>(file, read_rgba_bmp, bmp_colour_table);
    }
    if (starts_with(file, "GIF8")) {
        return std::make_unique<GifPictures>(file);
    }
    if (is_pcx(file)) {
        return std::make_unique<SinglePicture>(file, read_pcx, pcx_palette);
    }
    // Qt takes a true-colour TGA for a cursor file with no picture in it.
    if (!starts_with(file, no_cursors)) {
        auto pictures = std::make_unique<QtPictures>(file);
        const QByteArray format = pictures->format();
        if (has_drawn_text(format)) {
            return nullptr;
        }
        if (!format.isEmpty() && format != "tga") {
            return pictures;
        }
    }
    if (is_tga(file)) {
        return std::make_unique<SinglePicture>(file, read_tga, tga_colour_map);
    }
    return nullptr;
}

/// Runs the action and turns its failures into errors that name the picture.
template <typename Action>
auto with_name(const std::string& name, Action&& action) {
    try {
        return action();
    } catch (const RunTimeFailure& failure) {
        throw CommandError(name, failure.failure() == Failure::OutOfMemory
                                     ? "the picture has more than " + std::to_string(most_pixels) + " pixels"
                                     : "the picture is damaged");
    }
}

/// The endings of picture files, in lower case and without the dot.
std::vector<std::string> picture_endings() {
    std::vector<std::string> endings{"apng", "bmp", "dib", "gif", "icb", "jfif",
                                     "jpe",  "pcx", "tga", "vda", "vst"};
    for (const QByteArray& format : QImageReader::supportedImageFormats()) {
        if (!has_drawn_text(format)) {
            endings.push_back(format.toStdString());
        }
    }
    return endings;
}

bool has_picture_ending(const std::string& name) {
    static const std::vector<std::string> endings = picture_endings();
    const std::size_t dot = name.rfind('.');
    if (dot == 0 || dot == std::string::npos) {
        return false;
    }
    std::string ending = name.substr(dot + 1);
    std::ranges::transform(ending, ending.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return std::ranges::find(endings, ending) != endings.end();
}

std::vector<std::string> pictures_in(const std::string& folder) {
    std::vector<std::string> names = names_in(folder);
    std::erase_if(names, [&folder](const std::string& name) {
        return name.starts_with('.') || !has_picture_ending(name) || !file_exists(join_path(folder, name));
    });
    std::ranges::sort(names, comes_before);
    if (names.empty()) {
        throw CommandError(folder, "the folder has no pictures");
    }
    for (std::string& name : names) {
        name = join_path(folder, name);
    }
    return names;
}

// The paths with each folder replaced by its pictures.
std::vector<std::string> files_of(const std::vector<std::string>& paths) {
    std::vector<std::string> files;
    for (const std::string& path : paths) {
        if (path != standard_input && folder_exists(path)) {
            std::ranges::move(pictures_in(path), std::back_inserter(files));
        } else {
            files.push_back(path);
        }
    }
    return files;
}

} // namespace

std::string display_name(const std::string& path) {
    return path == standard_input ? "standard input" : path;
}

bool is_picture(Bytes file) {
    return open_pictures(file) != nullptr;
}

std::shared_ptr<const std::vector<std::uint8_t>> read_picture_file(const std::string& path) {
    const auto read = [&path] { return std::make_shared<const std::vector<std::uint8_t>>(read_input(path)); };
    if (path != standard_input) {
        return read();
    }
    static const std::shared_ptr<const std::vector<std::uint8_t>> bytes = read();
    return bytes;
}

struct PictureReader::OpenFile {
    explicit OpenFile(const std::string& file)
        : path(file), bytes(read_picture_file(file)), pictures(open_pictures(*bytes)) {
        if (!pictures) {
            throw CommandError(display_name(path),
                               bytes->empty() ? "the file is empty" : "no picture of a known format");
        }
    }

    std::string path;
    std::shared_ptr<const std::vector<std::uint8_t>> bytes;
    std::unique_ptr<Pictures> pictures;
};

PictureReader::PictureReader() = default;
PictureReader::~PictureReader() = default;

std::vector<PictureSource> PictureReader::list(const std::string& path) {
    open(path);
    const std::string name = display_name(path);
    const std::size_t count = with_name(name, [this] {
        const std::size_t pictures = open_->pictures->count();
        require_picture(pictures > 0);
        return pictures;
    });
    if (count == 1) {
        return {{path, 0, name}};
    }
    std::vector<PictureSource> sources;
    for (std::size_t index = 0; index < count; ++index) {
        sources.push_back({path, index, name + "[" + std::to_string(index) + "]"});
    }
    return sources;
}

RgbaPicture PictureReader::read(const PictureSource& source) {
    open(source.path);
    return with_name(source.name, [&] { return open_->pictures->read(source.index); });
}

std::vector<RGBQUAD> PictureReader::colour_table(const PictureSource& source) {
    open(source.path);
    return with_name(source.name, [&] { return open_->pictures->colour_table(source.index); });
}

void PictureReader::open(const std::string& path) {
    if (!open_ || open_->path != path) {
        open_.reset();
        open_ = std::make_unique<OpenFile>(path);
    }
}

std::vector<PictureSource> list_pictures(const std::vector<std::string>& paths, std::size_t threads) {
    const std::vector<std::string> files = files_of(paths);
    std::vector<std::vector<PictureSource>> listed(files.size());
    std::vector<std::exception_ptr> failures(files.size());
    std::atomic<std::size_t> next = 0;
    run_in_threads(std::min(threads, files.size()), [&](std::size_t /*thread*/) {
        PictureReader reader;
        for (std::size_t file = next++; file < files.size(); file = next++) {
            try {
                listed[file] = reader.list(files[file]);
            } catch (...) {
                failures[file] = std::current_exception();
            }
        }
    });
    std::vector<PictureSource> sources;
    for (std::size_t file = 0; file < files.size(); ++file) {
        if (failures[file]) {
            std::rethrow_exception(failures[file]);
        }
        std::ranges::move(listed[file], std::back_inserter(sources));
    }
    return sources;
}

} // namespace varnoth::cli
