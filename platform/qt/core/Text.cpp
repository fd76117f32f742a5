#include "Text.h"

#include <QCoreApplication>

namespace kestrel::qt {

QString translated(std::string_view english) {
  if (english.empty()) return {};
  return QCoreApplication::translate(kTextContext, std::string(english).c_str());
}

QString formText(const char* english, const char* /*remark*/) { return translated(english); }

QString withoutAccessKey(const QString& caption) {
  QString plain;
  plain.reserve(caption.size());
  for (qsizetype i = 0; i < caption.size(); ++i) {
    if (caption[i] == u'&' && ++i == caption.size()) break;
    plain += caption[i];
  }
  return plain;
}

QString withLineFeeds(QString text) {
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  text.replace(u'\r', u'\n');
  return text;
}

}  // namespace kestrel::qt
