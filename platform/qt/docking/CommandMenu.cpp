#include "CommandMenu.h"

#include <QFontInfo>
#include <QHelpEvent>
#include <QScreen>
#include <QStyle>
#include <QStyleOptionMenuItem>
#include <QToolTip>
#include <algorithm>

#include "platform/qt/core/SvgIcon.h"
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

/// The icon as it is in any mode: a style may still fade what it takes for a disabled icon.
QIcon fixedIcon(const QPixmap& pixmap) {
  QIcon icon;
  for (const QIcon::Mode mode : {QIcon::Normal, QIcon::Disabled, QIcon::Active, QIcon::Selected}) {
    icon.addPixmap(pixmap, mode);
  }
  return icon;
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

void CommandMenu::initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const {
  QMenu::initStyleOption(option, action);
  if (option->icon.isNull()) return;
  const bool enabled = action->isEnabled();
  // Styles highlight enabled entries only.
  const bool highlighted = enabled && (option->state & QStyle::State_Selected);
  const QColor text =
      palette().color(QPalette::Active, highlighted ? QPalette::HighlightedText : QPalette::Text);
  const QColor ground = palette().color(QPalette::Active, highlighted ? QPalette::Highlight : QPalette::Base);
  const int side = style()->pixelMetric(QStyle::PM_SmallIconSize, option, this);
  QPixmap pixmap = svgPixmap(option->icon, QSize(side, side) * devicePixelRatioF(), text, ground, enabled);
  if (pixmap.isNull()) return;
  pixmap.setDevicePixelRatio(devicePixelRatioF());
  option->icon = fixedIcon(pixmap);
}

}  // namespace kestrel::qt
