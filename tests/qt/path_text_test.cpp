#include "qt/path_text.h"

#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace varnoth {
namespace {

QString text_of(std::u16string_view units) {
    return QString::fromUtf16(units.data(), static_cast<qsizetype>(units.size()));
}

TEST(PathText, Utf8PathIsItsText) {
    for (const std::string path : {"", "/home/a.bmp", "/ñ/日本.bmp", "/\xF0\x9F\x94\xA5.spr"}) {
        EXPECT_EQ(text_of_path(path), QString::fromStdString(path));
        EXPECT_EQ(path_of_text(text_of_path(path)), path);
    }
}

TEST(PathText, InvalidUtf8ByteBecomesALoneSurrogate) {
    EXPECT_EQ(text_of_path("a\xFF.bmp"), text_of(u"a\xDCFF.bmp"));
    EXPECT_EQ(text_of_path("\x80"), text_of(u"\xDC80"));
    EXPECT_EQ(path_of_text(text_of(u"a\xDCFF.bmp")), "a\xFF.bmp");
}

TEST(PathText, EveryPathSurvivesTheRoundTrip) {
    const std::vector<std::string> paths{
        "\xC3",                     // truncated
        "\xC3(",                    // truncated, then another character
        "\xE2\x82",                 // two of three bytes
        "\xF0\x9F\x94",             // three of four bytes
        "\xC0\xAF",                 // overlong
        "\xED\xA0\x80\xED\xB2\x80", // encoded surrogates
        "\xED\xB3\xBF",             // the surrogate that stands for the byte FF
        "\xF4\x90\x80\x80",         // beyond U+10FFFF
        "\xEF\xBB\xBF.bmp",         // a byte order mark
        "a\xEF\xBB\xBF\xFF",
        "\xF0\x90\x82\x80\x80", // a pair whose second unit could be an escape, then an escape
        "\xFF\xF0\x90\x82\x80",
        "\xC3\xBC\xFC", // ü in UTF-8 and in Latin-1
        "\xEF\xBF\xBD", // the replacement character itself
    };
    for (const std::string& path : paths) {
        EXPECT_EQ(path_of_text(text_of_path(path)), path) << testing::PrintToString(path);
    }
}

TEST(PathText, RandomBytesSurviveTheRoundTrip) {
    std::mt19937 random(1);
    const std::string often = "/a\xC3\xBC\xE2\x82\xAC\xED\xB2\x80\xF0\x9F\x94\xA5\xEF\xBB\xBF\xFF";
    for (int round = 0; round < 20000; ++round) {
        std::string path;
        for (std::size_t length = random() % 12; path.size() < length;) {
            path += random() % 2 == 0 ? often[random() % often.size()]
                                      : static_cast<char>(1 + random() % 255); // no null bytes
        }
        ASSERT_EQ(path_of_text(text_of_path(path)), path) << testing::PrintToString(path);
    }
}

TEST(PathText, EscapedByteIsEncodedAsAQuestionMark) {
    EXPECT_EQ(text_of_path("a\xFF.bmp").toUtf8(), "a?.bmp");
}

TEST(PathText, SurrogateBelowTheEscapesIsNoByte) {
    EXPECT_NE(path_of_text(QString(QChar(0xDC7F))), "\x7F");
}

TEST(PathText, LocalFileUrlIsConvertedToItsPath) {
    EXPECT_EQ(path_of_url(QUrl("file:///home/a%20b/%C3%BC.spr")), "/home/a b/ü.spr");
    EXPECT_EQ(path_of_url(QUrl::fromLocalFile("/home/50%25/ü.spr")), "/home/50%25/ü.spr");
    EXPECT_EQ(path_of_url(QUrl("file:///home/%FE%20b/a%FF.spr")), "/home/\xFE b/a\xFF.spr");
    EXPECT_EQ(path_of_url(QUrl("file:///home/%EF%BF%BD%FF%25.spr")), "/home/\xEF\xBF\xBD\xFF%.spr");
}

TEST(PathText, RemoteUrlHasNoPath) {
    EXPECT_EQ(path_of_url(QUrl("sftp://host/a.spr")), "");
}

} // namespace
} // namespace varnoth
