// Prints how the readers interpret files: one line with a JSON object per file. The extension decides the
// picture format; any other file is read as a sprite. The place in the source where a failure arose goes to
// standard error. For tests and bug reports; not part of the editor.

#include <functional>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

#include "core/base/RunTimeFailure.h"
#include "core/base/Truth.h"
#include "core/codecs/BmpMod.h"
#include "core/codecs/CBitmap.h"
#include "core/codecs/JpgMod.h"
#include "core/codecs/LoadPCX.h"
#include "core/codecs/LoadTGA.h"
#include "core/image/PictureSurface.h"
#include "core/sprite/sprite_file.h"
#include "shared/ppm.h"

namespace {

using namespace varnoth;

constexpr int exit_wrong_option = 64;

struct Options {
    std::vector<std::string> files;
    std::optional<std::string> decode;
    bool same_object = false;
};

QString to_text(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString sha256(std::span<const std::uint8_t> bytes) {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(QByteArray::fromRawData(reinterpret_cast<const char*>(bytes.data()),
                                         static_cast<qsizetype>(bytes.size())));
    return QString::fromLatin1(hash.result().toHex());
}

void print_place(const RunTimeFailure& failure) {
    const SourceLocation& location = failure.location();
    std::cerr << "inspect: " << failure.name() << ", at " << location.file_name() << ':' << location.line()
              << " in " << location.function_name() << '\n';
}

// Returns the result of the action, or an object that names the failure, whose place goes to standard error.
QJsonObject guarded(const std::function<QJsonObject()>& action) {
    try {
        return action();
    } catch (const RunTimeFailure& failure) {
        print_place(failure);
        return {{"failure", to_text(failure.name())}};
    } catch (const std::bad_alloc&) {
        return {{"failure", to_text(name_of(Failure::OutOfMemory))}};
    }
}

QJsonArray frames_of(const SpriteDocument& sprite) {
    QJsonArray frames;
    for (const ByteArray& frame : sprite.FrameStore) {
        frames.append(
            QJsonObject{{"length", static_cast<qint64>(frame.size())}, {"sha256", sha256(frame.bytes())}});
    }
    return frames;
}

QJsonArray order_of(const SpriteDocument& sprite) {
    QJsonArray order;
    for (const std::int16_t number : sprite.FrameOrder) {
        order.append(number);
    }
    return order;
}

QString palette_sha256(const PaletteRecord& palette) {
    const auto record = to_bytes(palette);
    return sha256(std::span<const std::uint8_t>(record).subspan(2));
}

QJsonObject inspect_sprite(const std::string& path) {
    SpriteDocument sprite;
    const std::optional<SpriteReadError> error = read_sprite(path, sprite);
    if (error && error->failure) {
        print_place(*error->failure);
    }
    const SpriteHeaderRecord& header = sprite.SpriteHeader;
    const FrameHeaderRecord& frame = sprite.FrameHeader;
    return {{"result", truth(!error)},
            {"message", error ? QJsonValue(to_text(error->message)) : QJsonValue()},
            {"Ident", QString::fromLatin1(header.Ident.data(), static_cast<qsizetype>(header.Ident.size()))},
            {"Version", header.Version},
            {"SpriteType", header.SpriteType},
            {"RenderMode", header.RenderMode},
            {"BoundingRadius", static_cast<double>(header.BoundingRadius)},
            {"Width", header.Width},
            {"Height", header.Height},
            {"FrameCount", header.FrameCount},
            {"BeamLength", static_cast<double>(header.BeamLength)},
            {"SyncType", header.SyncType},
            {"ColourCount", sprite.Palette.ColourCount},
            {"FrameHeader", QJsonObject{{"FrameType", frame.FrameType},
                                        {"OriginX", frame.OriginX},
                                        {"OriginY", frame.OriginY},
                                        {"FrameWidth", frame.FrameWidth},
                                        {"FrameHeight", frame.FrameHeight}}},
            {"PaletteSha256", palette_sha256(sprite.Palette)},
            {"Frames", frames_of(sprite)},
            {"FrameOrder", order_of(sprite)}};
}

QJsonObject probe_bmp(const std::string& path) {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int16_t bit_count = 0;
    std::int16_t compression = 0;
    const Truth result = BmpMod::ProbeBmp(path, width, height, bit_count, compression);
    return {{"result", result},
            {"width", width},
            {"height", height},
            {"bitCount", bit_count},
            {"compression", compression}};
}

QJsonObject probe_jpeg(const std::string& path) {
    std::int32_t width = 0;
    std::int32_t height = 0;
    const Truth result = JpgMod::ProbeJpeg(path, width, height);
    return {{"result", result}, {"width", width}, {"height", height}};
}

// Give the PCX and TGA readers a common interface.
struct PcxFormat {
    using Reader = LoadPCX;

    static Truth probe(Reader& reader, const std::string& path, std::int32_t& width, std::int32_t& height,
                       std::int16_t& bpp) {
        return reader.GetInfoPCX(path, width, height, bpp);
    }

    static QJsonObject recognised(const Reader& reader) { return {{"IsPCX", reader.IsPCX()}}; }

    static void draw(Reader& reader, PictureSurface& surface) { reader.DrawPCX(surface); }
};

struct TgaFormat {
    using Reader = LoadTGA;

    static Truth probe(Reader& reader, const std::string& path, std::int32_t& width, std::int32_t& height,
                       std::int16_t& bpp) {
        return reader.GetInfoTGA(path, width, height, bpp);
    }

    static QJsonObject recognised(const Reader& reader) { return {{"IsTGA", reader.IsTGA()}}; }

    static void draw(Reader& reader, PictureSurface& surface) { reader.DrawTGA(surface); }
};

template <typename Format>
QJsonObject load(typename Format::Reader& reader, const std::string& path) {
    // Keep the old picture alive: a new one at the same address would look unchanged.
    const auto before = CBitmap::CurrentBitmap;
    reader.Load(path);
    QJsonObject loaded = Format::recognised(reader);
    loaded["Width"] = reader.Width();
    loaded["Height"] = reader.Height();
    loaded["TwipWidth"] = reader.TwipWidth();
    loaded["TwipHeight"] = reader.TwipHeight();
    loaded["Bpp"] = reader.Bpp();
    loaded["Compressed"] = reader.Compressed();
    if (CBitmap::CurrentBitmap == nullptr || CBitmap::CurrentBitmap == before) {
        loaded["nothing"] = true;
    }
    return loaded;
}

template <typename Format>
QJsonObject draw(typename Format::Reader& reader, const std::optional<std::string>& decode) {
    SurfaceContainer container;
    PictureSurface surface({&container, 1, 1});
    reader.SetAutoscale(True);
    Format::draw(reader, surface);
    if (decode) {
        write_ppm(*decode, surface.bitmap());
    }
    return {{"width", surface.bitmap().width()},
            {"height", surface.bitmap().height()},
            {"sha256", sha256(rgb_bytes(surface.bitmap()))}};
}

template <typename Format>
QJsonObject inspect_picture(const std::string& path, const Options& options) {
    static typename Format::Reader shared_reader;
    typename Format::Reader own_reader;
    typename Format::Reader& reader = options.same_object ? shared_reader : own_reader;
    QJsonObject object;
    object["probe"] = guarded([&]() -> QJsonObject {
        std::int32_t width = 0;
        std::int32_t height = 0;
        std::int16_t bpp = 0;
        const Truth result = Format::probe(reader, path, width, height, bpp);
        return {{"result", result}, {"width", width}, {"height", height}, {"bpp", bpp}};
    });
    const QJsonObject loaded = guarded([&] { return load<Format>(reader, path); });
    object["load"] = loaded;
    if (!loaded.contains("failure")) {
        object["drawn"] = guarded([&] { return draw<Format>(reader, options.decode); });
    }
    return object;
}

QString extension_of(const std::string& path) {
    return to_text(path).section('.', -1).toLower();
}

QJsonObject inspect(const std::string& path, const Options& options) {
    const QString extension = extension_of(path);
    if (extension == "bmp") {
        return {{"probe", guarded([&] { return probe_bmp(path); })}};
    }
    if (extension == "jpg" || extension == "jpeg") {
        return {{"probe", guarded([&] { return probe_jpeg(path); })}};
    }
    if (extension == "pcx") {
        return inspect_picture<PcxFormat>(path, options);
    }
    if (extension == "tga") {
        return inspect_picture<TgaFormat>(path, options);
    }
    return guarded([&] { return inspect_sprite(path); });
}

std::optional<Options> parse(const std::vector<std::string>& words) {
    Options options;
    for (auto word = words.begin(); word != words.end(); ++word) {
        if (*word == "--same-object") {
            options.same_object = true;
        } else if (*word == "--decode" && word + 1 != words.end()) {
            options.decode = *++word;
        } else if (word->starts_with("--")) {
            return std::nullopt;
        } else {
            options.files.push_back(*word);
        }
    }
    return options.files.empty() ? std::nullopt : std::optional(options);
}

} // namespace

int main(int argument_count, char** arguments) {
    const std::optional<Options> options = parse({arguments + 1, arguments + argument_count});
    if (!options) {
        std::cerr << "usage: inspect [--same-object] [--decode OUT.ppm] FILE...\n"
                     "Prints how the readers interpret each file, as one line with a JSON object.\n"
                     "  --same-object     uses the same reader for all PCX files, and for all TGA files\n"
                     "  --decode OUT.ppm  writes the decoded picture; only for PCX and TGA files\n";
        return exit_wrong_option;
    }
    for (const std::string& path : options->files) {
        QJsonObject object = inspect(path, *options);
        object["file"] = to_text(path);
        std::cout << QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString() << std::endl;
    }
    return 0;
}
