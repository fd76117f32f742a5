#include "SiteWidget.h"

#include <QHideEvent>
#include <QKeyEvent>
#include <QPointer>
#include <QResizeEvent>
#include <QShowEvent>

#include "../Keys.h"

namespace kestrel::qt {

void SiteWidget::resizeEvent(QResizeEvent* /*event*/) { Q_EMIT resized(); }

// What the window system does by itself, such as minimising the window, is no showing or hiding.

void SiteWidget::showEvent(QShowEvent* event) {
  if (!event->spontaneous()) Q_EMIT shown();
}

void SiteWidget::hideEvent(QHideEvent* event) {
  if (!event->spontaneous()) Q_EMIT hidden();
}

void SiteWidget::handOn(const QWidget& child, const QKeyEvent& event) {
  for (QWidget* ancestor = child.parentWidget(); ancestor; ancestor = ancestor->parentWidget()) {
    if (auto* const site = qobject_cast<SiteWidget*>(ancestor)) return site->raiseKeyDown(event);
  }
}

void SiteWidget::keyPressEvent(QKeyEvent* event) {
  event->ignore();
  raiseKeyDown(*event);
}

void SiteWidget::raiseKeyDown(const QKeyEvent& event) {
  const QPointer<SiteWidget> self(this);  // a handler may destroy the control
  const KeyStroke stroke = keyStrokeOf(event);
  const QString text = event.text();
  if (stroke.keyCode != 0) Q_EMIT keyPressed(stroke.keyCode, stroke.shift);
  if (self && !text.isEmpty()) Q_EMIT characterTyped(text[0].unicode());
}

void SiteWidget::keyReleaseEvent(QKeyEvent* event) {
  const KeyStroke stroke = keyStrokeOf(*event);
  if (stroke.keyCode != 0) Q_EMIT keyReleased(stroke.keyCode, stroke.shift);
  event->ignore();
}

}  // namespace kestrel::qt
