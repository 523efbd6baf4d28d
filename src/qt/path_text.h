// Paths as Qt's texts. A path is bytes, and a text is UTF-16: bytes that are not valid UTF-8 become lone
// surrogates, as in PEP 383, so that every path comes back from its text unchanged.
#pragma once

#include <string>
#include <string_view>

#include <QString>
#include <QUrl>

namespace varnoth {

/// The text of a path. A byte that belongs to no UTF-8 character becomes a code unit from U+DC80 to U+DCFF,
/// which is drawn as a missing character and which Qt writes out as "?".
QString text_of_path(std::string_view path);

/// The path of a local file's URL. A desktop's file dialog names a file that way by its own bytes.
std::string path_of_url(const QUrl& url);

/// The path of a text: UTF-8, and a byte for each of those code units.
std::string path_of_text(const QString& text);

} // namespace varnoth
