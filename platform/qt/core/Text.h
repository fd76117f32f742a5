#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace kestrel::qt {

inline QString toQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string fromQt(const QString& text) { return text.toStdString(); }

/// The text in the user's language, keyed by the English one; the English text itself where there is no
/// translation.
QString translated(std::string_view english);

/// A caption without its access key: "&&" counts as a plain "&".
QString withoutAccessKey(const QString& caption);

/// Text of a message as a paragraph: CR LF and CR alone become line feeds.
QString withLineFeeds(QString text);

}  // namespace kestrel::qt
