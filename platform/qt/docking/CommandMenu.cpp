#include "CommandMenu.h"

#include <QFontInfo>
#include <QHelpEvent>
#include <QScreen>
#include <QToolTip>
#include <algorithm>

#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

constexpr int kWidestEm = 40;
constexpr QChar kTab = u'\t';  // between caption and hot key

QString escaped(QString text) { return text.replace(u'&', QStringLiteral("&&")); }

QString captionOf(const QAction& action) { return action.text().section(kTab, 0, 0); }

/// The text as a tool tip shows it unchanged: marked up, so that it wraps and "&" and "<" need no guessing.
QString toolTipOf(const QString& text) {
  return QStringLiteral("<p style='white-space:pre-wrap'>%1</p>").arg(text.toHtmlEscaped());
}

int widthOf(const QAction& action, const QFontMetrics& metrics) {
  return metrics.size(Qt::TextSingleLine | Qt::TextShowMnemonic, captionOf(action)).width();
}

}  // namespace

QAction* CommandMenu::addLine(const QString& text) {
  QAction* const line = addAction(escaped(text));
  line->setData(text);
  return line;
}

/// Width of the widest caption that leaves the menu narrow enough, also for a small screen: what remains
/// beside icons, hot keys and frame.
int CommandMenu::captionRoom() const {
  int widest = 0;
  for (const QAction* action : actions()) {
    if (action->isVisible()) widest = std::max(widest, widthOf(*action, fontMetrics()));
  }
  const int most = std::min(kWidestEm * QFontInfo(font()).pixelSize(), screen()->availableGeometry().width());
  return std::max(0, most - (sizeHint().width() - widest));
}

void CommandMenu::elide() {
  whole_.clear();
  ensurePolished();
  const int room = captionRoom();
  for (QAction* action : actions()) {
    if (widthOf(*action, fontMetrics()) <= room) continue;
    const QString rest = action->text().mid(captionOf(*action).size());
    if (const QString line = action->data().toString(); !line.isEmpty()) {
      whole_[action] = line;
      action->setText(escaped(fontMetrics().elidedText(line, Qt::ElideMiddle, room)) + rest);
    } else {
      whole_[action] = withoutAccessKey(captionOf(*action));
      action->setText(
          fontMetrics().elidedText(captionOf(*action), Qt::ElideMiddle, room, Qt::TextShowMnemonic) + rest);
    }
  }
}

bool CommandMenu::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QMenu::event(event);
  const auto* const help = static_cast<QHelpEvent*>(event);
  QAction* const action = actionAt(help->pos());
  if (const auto whole = whole_.find(action); action && whole != whole_.end()) {
    QToolTip::showText(help->globalPos(), toolTipOf(*whole), this, actionGeometry(action));
  } else {
    QToolTip::hideText();
  }
  return true;
}

}  // namespace kestrel::qt
