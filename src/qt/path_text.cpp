#include "qt/path_text.h"

#include <algorithm>
#include <cstddef>

#include <QByteArray>
#include <QDir>
#include <QUtf8StringView>

namespace varnoth {

namespace {

constexpr char16_t escape_base = 0xDC00; // plus the byte
constexpr char16_t first_escape = 0xDC80;
constexpr char16_t last_escape = 0xDCFF;

/// The length of the UTF-8 character that the bytes begin with; 0 when there is none.
std::size_t character_length(std::string_view bytes) {
    const std::size_t longest = std::min(bytes.size(), std::size_t{4});
    for (std::size_t length = 1; length <= longest; ++length) {
        if (QUtf8StringView(bytes.substr(0, length)).isValidUtf8()) {
            return length;
        }
    }
    return 0;
}

/// The code point of one valid UTF-8 character. QString::fromUtf8 would drop a byte order mark.
char32_t code_point(std::string_view character) {
    const auto lead = static_cast<unsigned char>(character.front());
    char32_t value = character.size() == 1 ? lead : lead & (0x7FU >> character.size());
    for (const char byte : character.substr(1)) {
        value = value << 6 | (static_cast<unsigned char>(byte) & 0x3FU);
    }
    return value;
}

bool is_escape(QChar unit) {
    return unit.unicode() >= first_escape && unit.unicode() <= last_escape;
}

} // namespace

QString text_of_path(std::string_view path) {
    QString text;
    while (!path.empty()) {
        const std::size_t length = character_length(path);
        if (length == 0) {
            text += QChar(static_cast<char16_t>(escape_base + static_cast<unsigned char>(path.front())));
            path.remove_prefix(1);
        } else {
            text += QChar::fromUcs4(code_point(path.substr(0, length)));
            path.remove_prefix(length);
        }
    }
    return text;
}

std::string path_of_text(const QString& text) {
    std::string path;
    qsizetype begin = 0; // first unit not yet in the path
    const auto take_until = [&](qsizetype end) {
        path += text.mid(begin, end - begin).toStdString();
        begin = end;
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            ++i; // a surrogate pair is one character
        } else if (is_escape(text[i])) {
            take_until(i);
            path += static_cast<char>(text[i].unicode() - escape_base);
            ++begin;
        }
    }
    take_until(text.size());
    return path;
}

std::string path_of_url(const QUrl& url) {
    const QString text = url.toLocalFile();
    if (!text.contains(QChar::ReplacementCharacter)) {
        return QDir::toNativeSeparators(text).toStdString();
    }
    return QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()).toStdString();
}

} // namespace varnoth
