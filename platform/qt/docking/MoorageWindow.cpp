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
  const bool isLayout = event->type() == QEvent::LayoutRequest;
  if (isLayout || event->type() == QEvent::Resize || event->type() == QEvent::Show) Q_EMIT roomChanged();
  if (isLayout) Q_EMIT smallestSizeChanged();
  return handled;
}

QSize MoorageWindow::minimumSizeHint() const { return minimumSizeOfShown() + roomForHidden_; }

QSize MoorageWindow::minimumSizeFor(const QSize& content) const {
  return minimumSizeHint() + (content - client_->minimumSize()).expandedTo(QSize(0, 0));
}

void MoorageWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::LayoutDirectionChange) Q_EMIT layoutDirectionChanged();
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
