// How often the loader has Qt decode a file, and over which memory.
#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <malloc.h>

#include <QLoggingCategory>

#include <gtest/gtest.h>

#include "platform/qt/QtPictureLoader.h"
#include "platform/qt/cut_jpeg.h"
#include "platform/qt/made_jpeg.h"
#include "platform/qt/made_pictures.h"
#include "support/TemporaryFolder.h"

namespace varnoth {
namespace {

/// Counts the complaints of Qt's JPEG reader, which the test program leaves unheard. It has one for each time
/// that it decodes a flawed file.
class Complaints {
  public:
    Complaints() {
        count_ = 0;
        filter_ = QLoggingCategory::installFilter(nullptr); // the next one is called at once
        QLoggingCategory::installFilter([](QLoggingCategory* category) {
            filter_(category);
            if (qstrcmp(category->categoryName(), "qt.gui.imageio.jpeg") == 0) {
                category->setEnabled(QtWarningMsg, true);
            }
        });
        handler_ = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
            count_ += text.contains("Corrupt") ? 1 : 0;
        });
    }

    ~Complaints() {
        qInstallMessageHandler(handler_);
        QLoggingCategory::installFilter(filter_);
    }

    Complaints(const Complaints&) = delete;
    Complaints& operator=(const Complaints&) = delete;

    int count() const { return count_; }

  private:
    static inline QLoggingCategory::CategoryFilter filter_ = nullptr;
    static inline QtMessageHandler handler_ = nullptr;
    static inline int count_ = 0;
};

TEST(QtPictureLoader, AWholePictureIsDecodedOnce) {
    const test::TemporaryFolder folder;
    std::vector<std::uint8_t> file = test::made_jpeg(2, {10, 20, 30, 40}, 0);
    file.insert(file.end() - 2, 100, 0); // between the scan and the end marker: of no meaning, and no harm
    const std::string path = folder.write("made.jpg", file);
    const Complaints complaints;
    EXPECT_EQ(test::load(path).colours.front(), make_colour(10, 10, 10));
    EXPECT_EQ(complaints.count(), 1);
}

/// 32 bits with a mask for alpha but without compression: Qt announces a picture without an alpha channel and
/// decodes one with it. The pixels begin behind the header whatever the offset of the file says, so that by
/// this one they seem to be whole and are not.
std::vector<std::uint8_t> file_with_alpha_mask() {
    constexpr std::uint32_t header = 108;
    constexpr std::int32_t rows = 40;
    test::Bytes between(header - 40);
    const test::Bytes masks = test::dwords({0xFF0000, 0xFF00, 0xFF, 0xFF000000});
    std::copy(masks.begin(), masks.end(), between.begin());
    std::vector<std::uint8_t> file =
        test::MadeBmp{1, rows, 32, 0, between, test::Bytes(4 * rows - 60, 0x55)}.file();
    put_u32(file, 10, 54);
    put_u32(file, 14, header);
    return file;
}

TEST(QtPictureLoader, RowsMissingFromAPictureWithAnAlphaMaskAreBlack) {
    const test::TemporaryFolder folder;
    const std::string path = folder.write("made.bmp", file_with_alpha_mask());
    mallopt(M_PERTURB, 0xAA);
    const std::vector<Colour> colours = test::load(path).colours;
    mallopt(M_PERTURB, 0);
    const auto there = std::count(colours.begin(), colours.end(), 0x555555);
    const auto missing = std::count(colours.begin(), colours.end(), 0);
    EXPECT_GT(there, 0);
    EXPECT_GT(missing, 0);
    EXPECT_EQ(there + missing, std::ssize(colours));
}

TEST(JpegFiller, TheFirstTwoBitsOfTheFillersHaveAllTheirValues) {
    std::set<int> values;
    for (unsigned number = 0; number < jpeg_fillers; ++number) {
        values.insert(jpeg_filler({}, number).front() >> 6);
    }
    EXPECT_EQ(values, (std::set<int>{0, 1, 2, 3}));
}

} // namespace
} // namespace varnoth
