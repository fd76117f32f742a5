#include "ElidedLabel.h"

#include <QPainter>

namespace kestrel::qt {
namespace {

constexpr int kWidestHint = 480;

}  // namespace

ElidedLabel::ElidedLabel(const QString& text, QWidget* parent) : QLabel(text, parent) {
  setTextFormat(Qt::PlainText);
}

QSize ElidedLabel::sizeHint() const {
  const QFontMetrics metrics = fontMetrics();
  return {qMin(metrics.horizontalAdvance(text()) + 2, kWidestHint), metrics.height()};
}

QSize ElidedLabel::minimumSizeHint() const { return {0, fontMetrics().height()}; }

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(palette().color(foregroundRole()));
  const QString shown = fontMetrics().elidedText(text(), Qt::ElideMiddle, width());
  if (shown == text()) {
    setToolTip({});
  } else {
    setToolTip(text().toHtmlEscaped());
  }
  painter.drawText(rect(), static_cast<int>(Qt::AlignVCenter | Qt::AlignLeft) | Qt::TextSingleLine, shown);
}

}  // namespace kestrel::qt
