// How often the loader decodes a file.
#include <string>
#include <vector>

#include <QLoggingCategory>

#include <gtest/gtest.h>

#include "qt/QtPictureLoader.h"
#include "qt/made_jpeg.h"
#include "qt/made_pictures.h"
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

} // namespace
} // namespace varnoth
