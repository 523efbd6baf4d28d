#include "cli/contact_sheet.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "cli/command.h"

namespace varnoth::cli {

namespace {

constexpr std::uint32_t ground = 0xFF303030;
constexpr std::uint32_t ink = 0xFFFFFFFF;
constexpr std::int64_t margin = 4;
constexpr std::int64_t most_pixels = std::int64_t{1} << 27;

// The digits are built in: fonts differ between machines.
constexpr std::int64_t digit_width = 5;
constexpr std::int64_t digit_height = 7;
constexpr std::int64_t digit_step = digit_width + 1;
using Digit = std::array<std::string_view, digit_height>;
constexpr std::array<Digit, 10> digits = {{
    {" ### ", "#   #", "#  ##", "# # #", "##  #", "#   #", " ### "},
    {"  #  ", " ##  ", "  #  ", "  #  ", "  #  ", "  #  ", " ### "},
    {" ### ", "#   #", "    #", "   # ", "  #  ", " #   ", "#####"},
    {" ### ", "#   #", "    #", "  ## ", "    #", "#   #", " ### "},
    {"   # ", "  ## ", " # # ", "#  # ", "#####", "   # ", "   # "},
    {"#####", "#    ", "#### ", "    #", "    #", "#   #", " ### "},
    {" ### ", "#    ", "#    ", "#### ", "#   #", "#   #", " ### "},
    {"#####", "    #", "   # ", "  #  ", "  #  ", "  #  ", "  #  "},
    {" ### ", "#   #", "#   #", " ### ", "#   #", "#   #", " ### "},
    {" ### ", "#   #", "#   #", " ####", "    #", "    #", " ### "},
}};

struct Grid {
    std::int64_t columns = 1;
    std::int64_t rows = 1;
    std::int64_t cell_width = 0; ///< with the margin to the next cell
    std::int64_t cell_height = 0;

    std::int64_t width() const { return columns * cell_width + margin; }

    std::int64_t height() const { return rows * cell_height + margin; }

    std::int64_t longest_side() const { return std::max(width(), height()); }
};

/// The grid that fits into the smallest square.
Grid grid_of(const FrameView& view) {
    const auto count = static_cast<std::int64_t>(view.frame_count());
    const auto most_digits = static_cast<std::int64_t>(std::to_string(count - 1).size());
    Grid grid;
    grid.cell_width = std::max<std::int64_t>(view.width(), most_digits * digit_step - 1) + margin;
    grid.cell_height = view.height() + margin + digit_height + margin;
    Grid best = grid;
    for (grid.columns = 1; grid.columns <= count; ++grid.columns) {
        grid.rows = (count + grid.columns - 1) / grid.columns;
        if (grid.columns == 1 || grid.longest_side() < best.longest_side()) {
            best = grid;
        }
    }
    return best;
}

class Sheet {
  public:
    explicit Sheet(const Grid& grid)
        : picture_{
              static_cast<int>(grid.width()), static_cast<int>(grid.height()),
              std::vector<std::uint32_t>(static_cast<std::size_t>(grid.width() * grid.height()), ground)} {}

    RgbaPicture take() { return std::move(picture_); }

    void put_picture(std::int64_t left, std::int64_t top, const RgbaPicture& picture) {
        for (std::int64_t y = 0; y < picture.height; ++y) {
            std::copy_n(picture.pixels.begin() + y * picture.width, picture.width, pixel(left, top + y));
        }
    }

    void put_number(std::int64_t left, std::int64_t top, std::size_t number) {
        for (const char character : std::to_string(number)) {
            put_digit(left, top, digits[static_cast<std::size_t>(character - '0')]);
            left += digit_step;
        }
    }

  private:
    std::vector<std::uint32_t>::iterator pixel(std::int64_t x, std::int64_t y) {
        return picture_.pixels.begin() + y * picture_.width + x;
    }

    void put_digit(std::int64_t left, std::int64_t top, const Digit& digit) {
        for (const std::string_view row : digit) {
            for (std::size_t x = 0; x < row.size(); ++x) {
                if (row[x] == '#') {
                    *pixel(left + static_cast<std::int64_t>(x), top) = ink;
                }
            }
            ++top;
        }
    }

    RgbaPicture picture_;
};

} // namespace

RgbaPicture contact_sheet(const FrameView& view, const std::string& file) {
    const Grid grid = grid_of(view);
    if (grid.width() * grid.height() > most_pixels) {
        throw CommandError(file, "the contact sheet would have " + std::to_string(grid.width()) + " x " +
                                     std::to_string(grid.height()) + " pixels, which is too large");
    }
    Sheet sheet(grid);
    for (std::size_t frame = 0; frame < view.frame_count(); ++frame) {
        const auto number = static_cast<std::int64_t>(frame);
        const std::int64_t left = margin + number % grid.columns * grid.cell_width;
        const std::int64_t top = margin + number / grid.columns * grid.cell_height;
        sheet.put_picture(left, top, view.draw(frame));
        sheet.put_number(left, top + view.height() + margin, frame);
    }
    return sheet.take();
}

} // namespace varnoth::cli
