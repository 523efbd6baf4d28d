// The loader decodes a file only once.
#include <string>
#include <vector>

#include <QLoggingCategory>

#include <gtest/gtest.h>

#include "qt/QtPictureLoader.h"
#include "qt/made_jpeg.h"
#include "qt/made_pictures.h"
#include "support/TemporaryFolder.h"

namespace varnoth::test {
namespace {

/// Counts the warnings of Qt's JPEG reader, which the test program disables. The reader prints one each time
/// it decodes a flawed file.
class JpegWarnings {
  public:
    JpegWarnings() {
        count_ = 0;
        filter_ = QLoggingCategory::installFilter(nullptr); // installing the next one calls it at once
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

    ~JpegWarnings() {
        qInstallMessageHandler(handler_);
        QLoggingCategory::installFilter(filter_);
    }

    JpegWarnings(const JpegWarnings&) = delete;
    JpegWarnings& operator=(const JpegWarnings&) = delete;

    int count() const { return count_; }

  private:
    static inline QLoggingCategory::CategoryFilter filter_ = nullptr;
    static inline QtMessageHandler handler_ = nullptr;
    static inline int count_ = 0;
};

TEST(QtPictureLoader, FileIsDecodedOnce) {
    const TemporaryFolder folder;
    std::vector<std::uint8_t> file = made_jpeg(2, {10, 20, 30, 40}, 0);
    file.insert(file.end() - 2, 100, 0); // ignored, but causes a warning
    const std::string path = folder.write("made.jpg", file);
    const JpegWarnings warnings;
    EXPECT_EQ(load(path).colours.front(), make_colour(10, 10, 10));
    EXPECT_EQ(warnings.count(), 1);
}

} // namespace
} // namespace varnoth::test
