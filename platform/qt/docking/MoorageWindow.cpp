#include "MoorageWindow.h"

#include <QContextMenuEvent>
#include <QEvent>
#include <QLayout>
#include <QMenu>
#include <QStatusBar>

namespace kestrel::qt {
namespace {

/// Enough for a notice and a part of the picture.
constexpr QSize kSmallestClient(200, 140);

}  // namespace

MoorageWindow::MoorageWindow(QWidget* parent) : QMainWindow(parent), client_(new QWidget) {
  setWindowFlags(Qt::Widget);
  setDockNestingEnabled(true);
  setCentralWidget(client_);
  client_->setMinimumSize(kSmallestClient);
  client_->installEventFilter(this);
}

QRect MoorageWindow::clientArea() {
  layout()->activate();
  return client_->geometry();
}

QMenu* MoorageWindow::createPopupMenu() {
  auto* const menu = new QMenu(this);
  if (fillBarMenu) fillBarMenu(*menu);
  return menu;
}

bool MoorageWindow::event(QEvent* event) {
  const bool handled = QMainWindow::event(event);
  if (event->type() == QEvent::LayoutRequest) Q_EMIT smallestSizeChanged();
  return handled;
}

void MoorageWindow::contextMenuEvent(QContextMenuEvent* event) {
  QMainWindow::contextMenuEvent(event);
  // The toolkit opens the menu for the other bars only.
  if (event->isAccepted() || !statusBar()->geometry().contains(event->pos())) return;
  QMenu* const menu = createPopupMenu();
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->popup(event->globalPos());
  event->accept();
}

bool MoorageWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == client_ && (event->type() == QEvent::Resize || event->type() == QEvent::Move)) {
    Q_EMIT clientAreaChanged();
  }
  return QMainWindow::eventFilter(watched, event);
}

}  // namespace kestrel::qt
