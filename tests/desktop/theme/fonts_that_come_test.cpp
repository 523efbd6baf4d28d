// Fonts that are installed or removed while the program runs.
#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <QByteArray>
#include <QFontDatabase>

#include <gtest/gtest.h>

#include "desktop/theme/theme.h"
#include "support/TemporaryFolder.h"
#include "support/foreign_tools.h"

namespace varnoth {
namespace {

/// A font file. All numbers in it are big-endian.
class FontFile {
  public:
    explicit FontFile(std::vector<std::uint8_t> bytes) : bytes_(std::move(bytes)) {}

    /// Renames the family. The new name must not be longer than the old one.
    void rename_family(const std::string& name) {
        const std::size_t table = name_table();
        const std::size_t texts = table + number(table + 4, 2);
        for (std::size_t i = 0; i < number(table + 2, 2); ++i) {
            const std::size_t record = table + 6 + 12 * i;
            const std::size_t kind = number(record + 6, 2);
            if (kind == 1 || kind == 16) { // font family and typographic family
                const std::size_t bytes_a_letter =
                    number(record, 2) == 1 ? 1 : 2; // platform 1 has one byte per letter
                write_text(texts + number(record + 10, 2), name, bytes_a_letter);
                put(record + 8, name.size() * bytes_a_letter);
            }
        }
    }

    QByteArray data() const {
        return {reinterpret_cast<const char*>(bytes_.data()), static_cast<qsizetype>(bytes_.size())};
    }

  private:
    std::size_t number(std::size_t at, std::size_t size) const {
        std::size_t value = 0;
        for (std::size_t i = 0; i < size; ++i) {
            value = value << 8 | bytes_.at(at + i);
        }
        return value;
    }

    void put(std::size_t at, std::size_t value) {
        bytes_.at(at) = static_cast<std::uint8_t>(value >> 8);
        bytes_.at(at + 1) = static_cast<std::uint8_t>(value);
    }

    void write_text(std::size_t at, const std::string& text, std::size_t bytes_a_letter) {
        for (const char letter : text) {
            at += bytes_a_letter;
            bytes_.at(at - bytes_a_letter) = 0;
            bytes_.at(at - 1) = static_cast<std::uint8_t>(letter);
        }
    }

    std::size_t name_table() const {
        for (std::size_t i = 0; i < number(4, 2); ++i) {
            const std::size_t entry = 12 + 16 * i;
            if (number(entry, 4) == 0x6E616D65) { // "name"
                return number(entry + 8, 4);
            }
        }
        throw std::runtime_error("the font has no names");
    }

    std::vector<std::uint8_t> bytes_;
};

TEST(FontDatabase, TahomaIsUsedWhileItIsInstalled) {
    const QFont stand_in = theme::display_font(theme::design_font());
    ASSERT_NE(stand_in.family(), "Tahoma");
    const test::TemporaryFolder folder;
    test::run_tool("cp \"$(fc-match -f '%{file}' 'DejaVu Sans')\" " + folder.file("font.ttf"));
    FontFile font(test::read_file(folder.file("font.ttf")));
    font.rename_family("Tahoma");
    const int number = QFontDatabase::addApplicationFontFromData(font.data());
    ASSERT_EQ(QFontDatabase::applicationFontFamilies(number), QStringList("Tahoma"));
    EXPECT_EQ(theme::display_font(theme::design_font()).family(), "Tahoma");
    QFontDatabase::removeApplicationFont(number);
    EXPECT_EQ(theme::display_font(theme::design_font()), stand_in);
}

} // namespace
} // namespace varnoth
