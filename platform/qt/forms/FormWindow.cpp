#include "FormWindow.h"

#include <QCloseEvent>
#include <QPainter>
#include <QPointer>

#include "platform/qt/core/Keys.h"

namespace kestrel::qt {

FormWindow::FormWindow(QWidget* parent) : QDialog(parent) {}

void FormWindow::finishSetUp() {
  mainWindow_ = property("mainWindow").toBool();
  if (mainWindow_) setWindowFlags(Qt::Window);
}

QImage& FormWindow::face() {
  const QSize wanted = size() * devicePixelRatioF();
  if (face_.size() != wanted) {
    QImage grown(wanted, QImage::Format_ARGB32_Premultiplied);
    grown.fill(Qt::transparent);
    if (!face_.isNull()) QPainter(&grown).drawImage(0, 0, face_);
    face_ = grown;
  }
  return face_;
}

void FormWindow::closeEvent(QCloseEvent* event) {
  // The owner hides the window to accept the close. Ignoring the event for a hidden window would keep the
  // program from ending.
  const QPointer<FormWindow> self = this;
  if (const auto notify = closing) notify();
  if (self) event->setAccepted(isHidden());
}

void FormWindow::reject() {
  if (isWindow()) close();
}

void FormWindow::changeEvent(QEvent* event) {
  if (event->type() == QEvent::ActivationChange && isActiveWindow()) Q_EMIT activated();
  if (event->type() == QEvent::LanguageChange && retranslate) {
    retranslate();
    Q_EMIT retranslated();
  }
  QDialog::changeEvent(event);
}

void FormWindow::resizeEvent(QResizeEvent* event) {
  QDialog::resizeEvent(event);
  Q_EMIT resized();
}

void FormWindow::paintEvent(QPaintEvent* /*event*/) {
  Q_EMIT painted();
  if (face_.isNull()) return;
  face_.setDevicePixelRatio(devicePixelRatioF());
  QPainter(this).drawImage(0, 0, face_);
  face_.setDevicePixelRatio(1.0);
}

void FormWindow::keyPressEvent(QKeyEvent* event) {
  const KeyStroke stroke = keyStrokeOf(*event);
  if (stroke.keyCode != 0) Q_EMIT keyPressed(stroke.keyCode, stroke.shift);
  // An embedded form does not close on Escape; the key propagates to the parent.
  mainWindow_ || !isWindow() ? QWidget::keyPressEvent(event) : QDialog::keyPressEvent(event);
}

}  // namespace kestrel::qt
