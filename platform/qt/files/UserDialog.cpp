#include "UserDialog.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QPointer>

namespace kestrel::qt {

void UserDialog::closeWith(int result) {
  closedByUser_ = true;
  done(result);
}

void UserDialog::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Cancel)) {
    cancel();
    return;
  }
  QDialog::keyPressEvent(event);
}

void UserDialog::closeEvent(QCloseEvent* event) {
  const QPointer<UserDialog> alive(this);
  cancel();
  if (alive && isVisible()) event->ignore();
}

}  // namespace kestrel::qt
