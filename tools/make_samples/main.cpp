// Generates the pictures of samples/: every frame of the explosion in all four picture formats, and a chart
// of its colours as an 8-bit BMP file. Usage: make_samples FOLDER
#include <cstdio>
#include <string>

#include <QCoreApplication>
#include <QImage>
#include <QImageWriter>

#include "core/base/RunTimeFailure.h"
#include "core/base/files.h"
#include "core/codecs/SavePCX.h"
#include "core/codecs/SaveTGA.h"
#include "core/image/PictureSurface.h"
#include "explosion.h"

namespace varnoth::samples {

namespace {

void write_image(const std::string& path, const char* format, const QImage& image) {
    QImageWriter writer(QString::fromStdString(path), format);
    constexpr int high = 95;
    if (std::string(format) == "jpg") {
        writer.setQuality(high);
    }
    if (!writer.write(image)) {
        fail(Failure::DeviceIo);
    }
}

QRgb rgb_of(Colour colour) {
    return qRgb(red_of(colour), green_of(colour), blue_of(colour));
}

void write_frame(const std::string& folder, std::int32_t frame) {
    const std::vector<Colour> colours = explosion_frame(frame);
    SurfaceContainer container;
    PictureSurface surface({&container, explosion_side, explosion_side, 32, 0, 0});
    QImage image(explosion_side, explosion_side, QImage::Format_RGB32);
    for (std::int32_t y = 0; y < explosion_side; ++y) {
        for (std::int32_t x = 0; x < explosion_side; ++x) {
            const Colour colour = colours[static_cast<std::size_t>(y * explosion_side + x)];
            surface.PSet(x, y, colour);
            image.setPixel(x, y, rgb_of(colour));
        }
    }
    const std::string name = join_path(folder, "explosion_" + std::to_string(frame));
    write_image(name + ".bmp", "bmp", image);
    write_image(name + ".jpg", "jpg", image);
    SavePCX().SavePCXinFile(name + ".pcx", surface, False);
    SaveTGA().SaveTGAinFile(name + ".tga", surface, False);
}

/// 16 by 16 cells of 4 by 4 pixels, one per entry of the colour table.
void write_chart(const std::string& folder) {
    QImage image(explosion_side, explosion_side, QImage::Format_Indexed8);
    QList<QRgb> table;
    for (const Colour colour : chart_colours()) {
        table.append(rgb_of(colour));
    }
    image.setColorTable(table);
    constexpr int cell = explosion_side / 16;
    for (int y = 0; y < explosion_side; ++y) {
        for (int x = 0; x < explosion_side; ++x) {
            image.setPixel(x, y, static_cast<unsigned>(y / cell * 16 + x / cell));
        }
    }
    write_image(join_path(folder, "palette.bmp"), "bmp", image);
}

} // namespace

} // namespace varnoth::samples

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: make_samples FOLDER\n", stderr);
        return 64;
    }
    const QCoreApplication application(argc, argv);
    try {
        for (std::int32_t frame = 0; frame < varnoth::samples::explosion_frames; ++frame) {
            varnoth::samples::write_frame(argv[1], frame);
        }
        varnoth::samples::write_chart(argv[1]);
    } catch (const varnoth::RunTimeFailure& failure) {
        std::fprintf(stderr, "run-time error: %s\n", failure.what());
        return 70;
    }
    return 0;
}
