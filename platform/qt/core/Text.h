#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace kestrel::qt {

inline QString toQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string fromQt(const QString& text) { return text.toStdString(); }

/// The context of our texts, for a host's own translators.
inline constexpr char kTextContext[] = "kestrel";

/// The translation of the English text into the user's language, whole or of its sentences; the English text
/// where there is none. See Language.h for texts of windows that stay open.
QString translated(std::string_view english);
/// The same for a text of a form, as the toolkit's compiler of forms calls it.
QString formText(const char* english, const char* remark);

/// A caption without its access key marker: "&&" becomes "&".
QString withoutAccessKey(const QString& caption);

/// The text with line feeds for CR LF and CR.
QString withLineFeeds(QString text);

}  // namespace kestrel::qt
