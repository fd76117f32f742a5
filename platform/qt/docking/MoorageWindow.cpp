#include "MoorageWindow.h"

#include <QEvent>
#include <QLayout>
#include <QMenu>

namespace kestrel::qt {

MoorageWindow::MoorageWindow(QWidget* parent) : QMainWindow(parent), client_(new QWidget) {
  setWindowFlags(Qt::Widget);
  setDockNestingEnabled(true);
  setCentralWidget(client_);
  client_->setMinimumSize(32, 32);
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

bool MoorageWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == client_ && (event->type() == QEvent::Resize || event->type() == QEvent::Move)) {
    Q_EMIT clientAreaChanged();
  }
  return QMainWindow::eventFilter(watched, event);
}

}  // namespace kestrel::qt
