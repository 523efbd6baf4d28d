// Fonts that are installed or removed while the program runs.
#include <string>
#include <vector>

#include <QByteArray>
#include <QFontDatabase>

#include <gtest/gtest.h>

#include "desktop/theme/theme.h"
#include "support/TemporaryFolder.h"
#include "support/foreign_tools.h"

namespace varnoth::test {
namespace {

/// A font file whose family is called DejaVu Sanz.
QByteArray renamed_font() {
    const TemporaryFolder folder;
    run_tool("cp \"$(fc-match -f '%{file}' 'DejaVu Sans')\" " + folder.file("font.ttf"));
    const std::vector<std::uint8_t> bytes = read_file(folder.file("font.ttf"));
    QByteArray font(reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size()));
    font.replace("DejaVu Sans", "DejaVu Sanz");
    font.replace(QByteArray("S\0a\0n\0s", 7), QByteArray("S\0a\0n\0z", 7)); // in UTF-16
    return font;
}

TEST(FontDatabase, FamilyIsUsedWhileItIsInstalled) {
    QFont wanted = theme::design_font();
    wanted.setFamily("DejaVu Sanz");
    const QFont stand_in = theme::display_font(wanted);
    ASSERT_NE(stand_in.family(), "DejaVu Sanz");
    const int number = QFontDatabase::addApplicationFontFromData(renamed_font());
    ASSERT_EQ(QFontDatabase::applicationFontFamilies(number), QStringList("DejaVu Sanz"));
    EXPECT_EQ(theme::display_font(wanted).family(), "DejaVu Sanz");
    QFontDatabase::removeApplicationFont(number);
    EXPECT_EQ(theme::display_font(wanted), stand_in);
}

} // namespace
} // namespace varnoth::test
