#include "SiteWidget.h"

#include <QHideEvent>
#include <QKeyEvent>
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

void SiteWidget::keyPressEvent(QKeyEvent* event) {
  const KeyStroke stroke = keyStrokeOf(*event);
  if (stroke.keyCode != 0) Q_EMIT keyPressed(stroke.keyCode, stroke.shift);
  if (!event->text().isEmpty()) Q_EMIT characterTyped(event->text()[0].unicode());
  event->ignore();
}

void SiteWidget::keyReleaseEvent(QKeyEvent* event) {
  const KeyStroke stroke = keyStrokeOf(*event);
  if (stroke.keyCode != 0) Q_EMIT keyReleased(stroke.keyCode, stroke.shift);
  event->ignore();
}

}  // namespace kestrel::qt
