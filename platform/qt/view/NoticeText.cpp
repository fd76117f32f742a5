#include "NoticeText.h"

#include <QPainter>
#include <QTextLayout>
#include <algorithm>
#include <vector>

namespace kestrel::qt {
namespace {

constexpr int kFewLetters = 12;

/// The indices of line starts when the text is wrapped at that width.
std::vector<int> lineStarts(const QString& text, const QFont& font, int width) {
  QTextLayout layout(text, font);
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  std::vector<int> starts;
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(std::max(width, 1));
    starts.push_back(line.textStart());
  }
  layout.endLayout();
  return starts;
}

}  // namespace

NoticeText::NoticeText(QWidget* parent) : QLabel(parent) {
  QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
  setTextFormat(Qt::PlainText);
}

int NoticeText::heightForWidth(int width) const {
  const auto lines = lineStarts(text(), font(), width).size();
  return std::max(1, static_cast<int>(lines)) * fontMetrics().lineSpacing();
}

QSize NoticeText::sizeHint() const {
  return {fontMetrics().horizontalAdvance(text()), fontMetrics().lineSpacing()};
}

QSize NoticeText::minimumSizeHint() const {
  return {kFewLetters * fontMetrics().averageCharWidth(), fontMetrics().lineSpacing()};
}

void NoticeText::paintEvent(QPaintEvent* /*event*/) {
  const int spacing = fontMetrics().lineSpacing();
  const auto room = static_cast<std::size_t>(std::max(1, height() / spacing));
  const std::vector<int> starts = lineStarts(text(), font(), width());
  const std::size_t shown = std::min(room, starts.size());
  setToolTip(shown < starts.size() ? text() : QString());

  QPainter painter(this);
  painter.setPen(palette().color(QPalette::WindowText));
  int top = (height() - static_cast<int>(shown) * spacing) / 2;
  for (std::size_t line = 0; line < shown; ++line, top += spacing) {
    const bool last = line + 1 == shown;
    const int length = last ? -1 : starts[line + 1] - starts[line];
    const QString words = text().mid(starts[line], length);
    painter.drawText(QRect(0, top, width(), spacing), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     last ? fontMetrics().elidedText(words, Qt::ElideRight, width()) : words.trimmed());
  }
}

}  // namespace kestrel::qt
