#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace kestrel::qt {

inline QString toQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string fromQt(const QString& text) { return text.toStdString(); }

/// The translation of the English text into the user's language; the English text if there is none.
QString translated(std::string_view english);

/// A caption without its access key marker: "&&" becomes "&".
QString withoutAccessKey(const QString& caption);

/// The text with line feeds for CR LF and CR.
QString withLineFeeds(QString text);

}  // namespace kestrel::qt
