#include "ThumbnailTexts.h"

#include <QDateTime>
#include <QLocale>

#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

constexpr qint64 kNanosecondsPerMillisecond = 1'000'000;
constexpr int kDigitsOfSize = 1;

QString sizes(const thumbnails::ItemFacts& facts, const QLocale& locale) {
  const QString bytes = locale.formattedDataSize(static_cast<qint64>(facts.bytes), kDigitsOfSize,
                                                 QLocale::DataSizeTraditionalFormat);
  const Size picture = facts.pictureSize;
  if (picture.Width <= 0 || picture.Height <= 0) return bytes;
  return translated("%1 \u00D7 %2 pixels, %3")
      .arg(locale.toString(picture.Width), locale.toString(picture.Height), bytes);
}

}  // namespace

QStringList detailsOf(const thumbnails::ItemFacts& facts) {
  const QLocale locale = QLocale::system();
  const QDateTime date = QDateTime::fromMSecsSinceEpoch(facts.modified / kNanosecondsPerMillisecond);
  QStringList details = {sizes(facts, locale), locale.toString(date, QLocale::ShortFormat)};
  if (const QString reason = reasonOf(facts); !reason.isEmpty()) details += reason;
  return details;
}

QString reasonOf(const thumbnails::ItemFacts& facts) {
  if (!facts.notice.empty()) return translated(facts.notice);
  return facts.state == thumbnails::ItemState::kBroken ? translated("This picture cannot be shown.")
                                                       : QString();
}

QString tipOf(const thumbnails::ItemFacts& facts) {
  QString tip = QStringLiteral("<b>") + toQt(facts.label).toHtmlEscaped() + QStringLiteral("</b>");
  for (const QString& line : detailsOf(facts)) tip += QStringLiteral("<br>") + line.toHtmlEscaped();
  return tip;
}

}  // namespace kestrel::qt
