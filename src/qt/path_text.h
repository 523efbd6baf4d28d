// Conversion between paths, which are bytes, and QString, which is UTF-16. As in PEP 383, bytes that are not
// valid UTF-8 become lone surrogates, so that every path survives the round trip unchanged.
#pragma once

#include <string>
#include <string_view>

#include <QString>
#include <QUrl>

namespace varnoth {

/// The text of a path. A byte that is part of no UTF-8 character becomes a code unit from U+DC80 to U+DCFF,
/// which Qt draws as a missing character and encodes as "?".
QString text_of_path(std::string_view path);

/// The path of a local file's URL. Desktop file dialogs percent-encode bytes that are not valid UTF-8.
std::string path_of_url(const QUrl& url);

/// The path of a text: UTF-8, with a byte for each code unit from U+DC80 to U+DCFF.
std::string path_of_text(const QString& text);

} // namespace varnoth
