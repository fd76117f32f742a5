#include "SiteWidget.h"

#include <QDropEvent>
#include <QHideEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QPointer>
#include <QResizeEvent>
#include <QShowEvent>
#include <QTimer>
#include <QUrl>

#include "platform/qt/core/Blocking.h"
#include "platform/qt/core/Keys.h"

namespace kestrel::qt {
namespace {

/// The path of the first local file, empty if there is none.
QString firstFile(const QMimeData& data) {
  for (const QUrl& url : data.urls()) {
    if (url.isLocalFile()) return url.toLocalFile();
  }
  return {};
}

/// Copying or linking leaves the file to its owner. After a move the source of the drag would delete it.
Qt::DropAction harmlessAction(Qt::DropActions possible) {
  return possible & Qt::CopyAction   ? Qt::CopyAction
         : possible & Qt::LinkAction ? Qt::LinkAction
                                     : Qt::IgnoreAction;
}

}  // namespace

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

bool SiteWidget::event(QEvent* event) {
  const bool claims = event->type() == QEvent::ShortcutOverride;
  if (claims && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
    bool used = false;
    Q_EMIT escapeQueried(used);
    event->setAccepted(used);
    return used;
  }
  return QWidget::event(event);
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

void SiteWidget::acceptFiles(bool value) {
  if (value == acceptDrops()) return;
  setAcceptDrops(value);
  Q_EMIT acceptsFilesChanged();
}

QString SiteWidget::fileToTake(const QDropEvent& event) {
  const QString file = firstFile(*event.mimeData());
  if (file.isEmpty() || harmlessAction(event.possibleActions()) == Qt::IgnoreAction) return {};
  if (isBlockedByDialog(*this)) return {};
  bool taken = false;
  Q_EMIT fileDropQueried(taken);
  return taken ? file : QString();
}

void SiteWidget::dragEnterEvent(QDragEnterEvent* event) {
  if (fileToTake(*event).isEmpty()) return event->ignore();
  event->setDropAction(harmlessAction(event->possibleActions()));
  event->accept();
}

void SiteWidget::dropEvent(QDropEvent* event) {
  const QString file = fileToTake(*event);
  if (file.isEmpty()) return event->ignore();
  event->setDropAction(harmlessAction(event->possibleActions()));
  event->accept();
  activateWindow();  // a question may follow
  // The source of the drag waits for the end of this event.
  QTimer::singleShot(0, this, [this, file] { Q_EMIT fileDropped(file); });
}

}  // namespace kestrel::qt
