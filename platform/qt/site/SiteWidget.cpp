#include "SiteWidget.h"

#include <QHideEvent>
#include <QKeyEvent>
#include <QPointer>
#include <QResizeEvent>
#include <QShowEvent>

#include "platform/qt/core/Keys.h"

namespace kestrel::qt {

void SiteWidget::resizeEvent(QResizeEvent* /*event*/) { Q_EMIT resized(); }

// Showing and hiding by the window system, such as minimizing the window, does not count.

void SiteWidget::showEvent(QShowEvent* event) {
  if (!event->spontaneous()) Q_EMIT shown();
}

void SiteWidget::hideEvent(QHideEvent* event) {
  if (!event->spontaneous()) Q_EMIT hidden();
}

void SiteWidget::forwardKey(const QWidget& child, const QKeyEvent& event) {
  for (QWidget* ancestor = child.parentWidget(); ancestor; ancestor = ancestor->parentWidget()) {
    auto* const site = qobject_cast<SiteWidget*>(ancestor);
    if (!site) continue;
    site->raiseKeyDown(event);
    return;
  }
}

void SiteWidget::keyPressEvent(QKeyEvent* event) { event->setAccepted(raiseKeyDown(*event)); }

bool SiteWidget::raiseKeyDown(const QKeyEvent& event) {
  const QPointer<SiteWidget> self(this);  // a handler may destroy the control
  const KeyStroke stroke = keyStrokeOf(event);
  const QString text = event.text();
  if (stroke.keyCode != 0) Q_EMIT keyPressed(stroke.keyCode, stroke.shift);
  if (!self || text.isEmpty()) return false;
  int character = text[0].unicode();
  Q_EMIT characterTyped(character);
  return character == 0;
}

void SiteWidget::keyReleaseEvent(QKeyEvent* event) {
  const KeyStroke stroke = keyStrokeOf(*event);
  if (stroke.keyCode != 0) Q_EMIT keyReleased(stroke.keyCode, stroke.shift);
  event->ignore();
}

}  // namespace kestrel::qt
