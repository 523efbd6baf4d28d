#include "core/image/cDIB.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <new>
#include <utility>

#include "core/base/files.h"
#include "core/base/numbers.h"

namespace varnoth {

namespace {

bool is_section_depth(std::int32_t bits) {
    return bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
}

// Null when there can be no such bitmap or no memory for it.
std::unique_ptr<Bitmap> create_section(std::int32_t width, std::int32_t height, std::int32_t bits) {
    if (width < 1 || height < 1 || !is_section_depth(bits)) {
        return nullptr;
    }
    try {
        return std::make_unique<Bitmap>(width, height, bits, Bitmap::Rows::Section);
    } catch (const RunTimeFailure& failure) {
        if (failure.failure() != Failure::OutOfMemory) {
            throw;
        }
        return nullptr;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void copy_colour_table(const DrawingContext& from, DrawingContext& to) {
    std::array<RGBQUAD, 256> table{};
    get_colour_table(from, 0, table);
    set_colour_table(to, 0, table);
}

void delete_if_there(const std::string& path) {
    try {
        if (file_exists(path)) {
            delete_file(path);
        }
    } catch (const RunTimeFailure&) {
        // The file may still be writable; if it is not, opening it fails.
    } catch (const std::bad_alloc&) {
        // Likewise.
    }
}

} // namespace

bool cDIB::Create(std::int32_t NewWidth, std::int32_t NewHeight, std::int32_t Newbpp) {
    Destroy();
    header_.biSize = BITMAPINFOHEADER::size;
    header_.biPlanes = 1;
    header_.biBitCount = narrow<std::int16_t>(Newbpp);
    header_.biWidth = NewWidth;
    header_.biHeight = NewHeight;

    width_ = NewWidth;
    height_ = NewHeight;
    bits_per_pixel_ = Newbpp;
    bytes_per_scanline_ = checked_add(checked_multiply(NewWidth, Newbpp), 31) / 32 * 4;
    size_ = checked_multiply(bytes_per_scanline_, NewHeight);

    section_ = create_section(NewWidth, NewHeight, Newbpp);
    if (!section_) {
        Destroy();
        return false;
    }
    context_.select(section_.get());
    return true;
}

std::uint8_t cDIB::CreateFromStdPicture(const Picture& Image, bool Force32bpp) {
    if (Image.kind != PictureKind::Bitmap || !Image.bitmap) {
        return 0;
    }
    const BITMAP description = Image.bitmap->description();
    if (!Create(description.bmWidth, description.bmHeight, Force32bpp ? 32 : description.bmBitsPixel)) {
        return 0;
    }
    if (!Force32bpp && description.bmBitsPixel < 9) {
        set_colour_table(context_, 0, Image.bitmap->colour_table());
    }
    const Rectangle whole{0, 0, width_, height_};
    stretch_pixels(*section_, whole, *Image.bitmap, whole);
    // The depth of the source, even if the copy has 32 bits.
    return narrow<std::uint8_t>(description.bmBitsPixel);
}

bool cDIB::CreateFromHdc(DrawingContext& Image, std::int32_t NewWidth, std::int32_t NewHeight) {
    if (!Create(NewWidth, NewHeight, 32)) {
        return false;
    }
    bit_blt(context_, 0, 0, NewWidth, NewHeight, Image, 0, 0, SRCCOPY);
    return true;
}

bool cDIB::CreateFromHdc8bpp(DrawingContext& Image, std::int32_t NewWidth, std::int32_t NewHeight) {
    if (!Create(NewWidth, NewHeight, 8)) {
        return false;
    }
    copy_colour_table(Image, context_);
    bit_blt(context_, 0, 0, NewWidth, NewHeight, Image, 0, 0, SRCCOPY);
    return true;
}

void cDIB::CloneTo(cDIB& oDIB) const {
    const bool nothing_to_copy = !section_;
    if (!oDIB.Create(width_, height_, bits_per_pixel_)) {
        if (nothing_to_copy) {
            return;
        }
        fail(Failure::SubscriptOutOfRange);
    }
    if (has_colour_table()) {
        std::vector<std::uint8_t> palette;
        GetPalette(palette);
        oDIB.SetPalette(palette);
    }
    // When cloned to itself, Create() has already cleared it.
    if (&oDIB != this) {
        std::memcpy(oDIB.lpBits(), lpBits(), static_cast<std::size_t>(size_));
    }
}

void cDIB::Save(const std::string& filename) const {
    if (!section_) {
        return;
    }
    const std::vector<std::uint8_t> head = file_head();
    delete_if_there(filename);
    OutputFile file(filename);
    file.write(head);
    file.write(section_->bytes());
    file.close();
}

// The file header, the information header and the colour table.
std::vector<std::uint8_t> cDIB::file_head() const {
    std::vector<std::uint8_t> palette;
    GetPalette(palette);
    const auto pixels_at =
        static_cast<std::int32_t>(BITMAPFILEHEADER::size + BITMAPINFOHEADER::size + palette.size());
    const BITMAPFILEHEADER file_header{{'B', 'M'}, checked_add(pixels_at, size_), 0, 0, pixels_at};

    std::vector<std::uint8_t> head;
    // biSizeImage stays 0; readers compute it.
    std::ranges::copy(file_header.to_bytes(), std::back_inserter(head));
    std::ranges::copy(header_.to_bytes(), std::back_inserter(head));
    std::ranges::copy(palette, std::back_inserter(head));
    return head;
}

void cDIB::Destroy() {
    context_.select(nullptr);
    section_.reset();
    width_ = 0;
    height_ = 0;
    bits_per_pixel_ = 0;
    bytes_per_scanline_ = 0;
    size_ = 0;
}

std::int32_t cDIB::LoadBlt(const DrawingContext& hSrcDC, std::int32_t x, std::int32_t y, std::int32_t nWidth,
                           std::int32_t nHeight) {
    if (!section_) {
        return 0;
    }
    // The same coordinates in source and destination.
    return bit_blt(context_, x, y, nWidth < 1 ? width_ : nWidth, nHeight < 1 ? height_ : nHeight, hSrcDC, x,
                   y, SRCCOPY);
}

std::int32_t cDIB::Stretch(DrawingContext& hDstDC, std::int32_t x, std::int32_t y, std::int32_t nWidth,
                           std::int32_t nHeight, std::int32_t XSrc, std::int32_t YSrc, std::int32_t nSrcWidth,
                           std::int32_t nSrcHeight, std::uint32_t lROP) const {
    if (!section_) {
        return 0;
    }
    const Rectangle from{XSrc, YSrc, nSrcWidth < 1 ? width_ : nSrcWidth,
                         nSrcHeight < 1 ? height_ : nSrcHeight};
    const std::int32_t mode_before = hDstDC.set_stretch_mode(COLORONCOLOR);
    const std::int32_t result = stretch_blt(hDstDC, {x, y, nWidth, nHeight}, context_, from, lROP);
    hDstDC.set_stretch_mode(mode_before);
    return result;
}

void cDIB::Cls(Colour BackColor) {
    if (section_) {
        section_->fill(translate_colour(BackColor));
    }
}

void cDIB::SetPalette(std::span<const std::uint8_t> Palette) {
    if (!has_colour_table()) {
        return;
    }
    std::array<RGBQUAD, 256> entries{};
    const std::size_t count = std::min(Palette.size() / 4, entries.size());
    if (count > 0) {
        std::memcpy(entries.data(), Palette.data(), count * 4);
    }
    set_colour_table(context_, 0, std::span(entries).first(count));
}

void cDIB::GetPalette(std::vector<std::uint8_t>& Palette) const {
    if (!has_colour_table()) {
        return;
    }
    Palette.resize(colour_table_bytes());
    std::memcpy(Palette.data(), section_->colour_table().data(), Palette.size());
}

void cDIB::Resize(std::int32_t NewWidth, std::int32_t NewHeight, bool StretchDIB) {
    const std::int32_t bits = bits_per_pixel_;
    std::vector<std::uint8_t> palette;
    GetPalette(palette);

    cDIB resized;
    if (resized.Create(NewWidth, NewHeight, bits)) {
        resized.SetPalette(palette);
        Stretch(*resized.hDIBDC(), 0, 0, StretchDIB ? NewWidth : width_, StretchDIB ? NewHeight : height_);
    }
    if (Create(NewWidth, NewHeight, bits)) {
        SetPalette(palette);
        LoadBlt(resized.context_);
    }
}

void cDIB::GetBestFitInfo(std::int32_t DstW, std::int32_t DstH, std::int32_t& bfx, std::int32_t& bfy,
                          std::int32_t& bfW, std::int32_t& bfH, bool StretchFit) const {
    if (!section_) {
        return;
    }
    const Rectangle fit = BestFit(width_, height_, DstW, DstH, StretchFit);
    bfx = fit.x;
    bfy = fit.y;
    bfW = fit.width;
    bfH = fit.height;
}

Rectangle cDIB::BestFit(std::int32_t Width, std::int32_t Height, std::int32_t DstW, std::int32_t DstH,
                        bool StretchFit) {
    Rectangle fit{0, 0, Width, Height};
    if (Width > DstW || Height > DstH || StretchFit) {
        const auto ratio_x = static_cast<float>(divide(DstW, Width));
        const auto ratio_y = static_cast<float>(divide(DstH, Height));
        if (ratio_x < ratio_y) {
            fit.width = DstW;
            fit.height = round_to_even<std::int32_t>(double{ratio_x} * Height);
        } else {
            fit.height = DstH;
            fit.width = round_to_even<std::int32_t>(double{ratio_y} * Width);
        }
    }
    fit.x = checked_subtract(DstW, fit.width) / 2;
    fit.y = checked_subtract(DstH, fit.height) / 2;
    return fit;
}

Picture cDIB::Image() const {
    if (!section_) {
        return {};
    }
    Bitmap copy(width_, height_, 32, Bitmap::Rows::Surface);
    DrawingContext target(&copy);
    Stretch(target, 0, 0, width_, height_);
    return make_picture(std::move(copy));
}

} // namespace varnoth
