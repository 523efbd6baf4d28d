#include "core/codecs/SaveTGA.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "core/base/files.h"
#include "core/base/numbers.h"
#include "core/codecs/PackedBytes.h"
#include "core/codecs/TgaHeader.h"
#include "core/codecs/grab_rows.h"

namespace varnoth {

namespace {

constexpr std::uint8_t plain_true_colour = 2;
constexpr std::uint8_t run_length_true_colour = 10;

TgaHeader header_of(std::int32_t width, std::int32_t height, Truth compress) {
    TgaHeader header;
    header.ImageType = compress == True ? run_length_true_colour : compress == False ? plain_true_colour : 0;
    header.ImageWidth = narrow<std::int16_t>(width);
    header.ImageHeight = narrow<std::int16_t>(height);
    header.PixelDepth = 24;
    return header;
}

ByteArray rows_without_padding(const ByteArray& grabbed, std::int32_t stride, std::int32_t width,
                               std::int32_t height) {
    const std::size_t row_bytes = static_cast<std::size_t>(width) * 3;
    ByteArray rows(static_cast<std::size_t>(height) * row_bytes);
    for (std::size_t y = 0; y < static_cast<std::size_t>(height); ++y) {
        std::copy_n(grabbed.data() + y * static_cast<std::size_t>(stride), row_bytes,
                    rows.data() + y * row_bytes);
    }
    return rows;
}

constexpr std::size_t pixel_bytes = 3;

// The state of the encoder: its position, the row that it counts, and its output.
class RleEncoder {
  public:
    RleEncoder(std::span<const std::uint8_t> bytes, std::int32_t width)
        : count_(bytes.size() / pixel_bytes),
          width_(static_cast<std::size_t>(width)),
          row_end_(width_),
          rows_by_bytes_(divide(static_cast<double>(bytes.size()), width)),
          rows_by_pixels_(divide(static_cast<double>(count_ + 1), width)),
          pixels_((count_ + 1) * pixel_bytes),
          packed_(std::max(encoder_room(bytes.size(), width), 4 * (count_ + 1))) {
        std::copy_n(bytes.data(), count_ * pixel_bytes, pixels_.data());
    }

    ByteArray encode() {
        // The loop includes the zero pixel appended to the picture.
        while (at_ <= count_ && write_packet()) {
            ++at_;
        }
        return packed_.take();
    }

  private:
    // Writes the packet that begins here, if any, and steps to its last pixel. False after the last row.
    bool write_packet() {
        if (const std::size_t run = scan_run(); run > 0) {
            packed_.append(static_cast<std::uint8_t>(128 + run));
            append_pixels(at_, 1);
            // This row limit counts bytes as pixels, so it is three times too high and never reached.
            return pass_row_end(rows_by_bytes_);
        }
        if (const std::size_t raw = scan_raw(); raw > 0) {
            // The length is not limited to 128 pixels: above that it reads as a run, above 256 it overflows.
            packed_.append(narrow<std::uint8_t>(raw - 1));
            append_pixels(at_, raw);
            at_ += raw - 1;
        }
        return pass_row_end(rows_by_pixels_);
    }

    // Steps to the last pixel of the run that begins here and returns the number of steps.
    std::size_t scan_run() {
        std::size_t run = 0;
        while (at_ < count_ && equals_next(at_) && run < 127 && !ends_row(at_)) {
            ++at_;
            ++run;
        }
        return run;
    }

    // The number of pixels from here on that differ from their successor, without stepping. It tests for the
    // end of the row only after the first pixel, and then excludes the row's last pixel.
    std::size_t scan_raw() const {
        std::size_t i = at_;
        while (i < count_ && !equals_next(i)) {
            ++i;
            if (ends_row(i)) {
                break;
            }
        }
        return i - at_;
    }

    bool pass_row_end(double rows) {
        if (ends_row(at_)) {
            ++row_;
            row_end_ += width_;
            return !(rows < static_cast<double>(row_));
        }
        return true;
    }

    bool ends_row(std::size_t i) const { return i + 1 == row_end_; }

    bool equals_next(std::size_t i) const {
        const std::uint8_t* pixel = pixels_.data() + i * pixel_bytes;
        return std::memcmp(pixel, pixel + pixel_bytes, pixel_bytes) == 0;
    }

    void append_pixels(std::size_t first, std::size_t count) {
        packed_.append(pixels_.bytes().subspan(first * pixel_bytes, count * pixel_bytes));
    }

    std::size_t count_;
    std::size_t width_;
    std::size_t row_ = 1;
    std::size_t row_end_; // width * row
    double rows_by_bytes_;
    double rows_by_pixels_;
    ByteArray pixels_;
    std::size_t at_ = 0;
    PackedBytes packed_;
};

} // namespace

void SaveTGA::SaveTGAinFile(const std::string& filename, PictureSurface& ThePicture, Truth Compress) {
    compress_ = Compress;
    const PixelSize size = size_in_pixels(ThePicture);
    height_ = size.height;
    width_ = size.width;
    const ByteArray grabbed = grab_rows(ThePicture, size, FirstRow::Bottom);
    WriteTgaFile(filename, rows_without_padding(grabbed, stride_of_24_bits(width_), width_, height_).bytes());
}

void SaveTGA::WriteTgaFile(const std::string& filename, std::span<const std::uint8_t> rows) const {
    const TgaHeader header = header_of(width_, height_, compress_);
    if (file_exists(filename)) {
        delete_file(filename);
    }
    ByteArray packed;
    if (compress_ == True) {
        packed = EncodeRle(rows, width_);
    }
    OutputFile file(filename);
    file.write(header.to_bytes());
    file.write(compress_ == True ? packed.bytes() : rows);
    file.close();
}

ByteArray SaveTGA::EncodeRle(std::span<const std::uint8_t> bytes, std::int32_t width) {
    return RleEncoder(bytes, width).encode();
}

} // namespace varnoth
