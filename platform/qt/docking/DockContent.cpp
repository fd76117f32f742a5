#include "DockContent.h"

#include <QPainter>
#include <QSizeGrip>
#include <QVBoxLayout>

namespace kestrel::qt {
namespace {

constexpr int kFrame = 1;

}  // namespace

DockContent::DockContent(DockableForm& form) {
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  form.embedIn(*this);
  grip_ = new QSizeGrip(this);
  grip_->setVisible(false);
  layout->addWidget(grip_, 0, Qt::AlignRight | Qt::AlignBottom);
}

void DockContent::setFloating(bool value) {
  if (floating_ == value) return;
  floating_ = value;
  const int frame = floating_ ? kFrame : 0;
  layout()->setContentsMargins(frame, frame, frame, frame);
  // A grip of a docked window would resize the window around it.
  grip_->setVisible(floating_);
  update();
}

void DockContent::paintFrame(QWidget& widget, const QRect& place) {
  QColor line = widget.palette().color(QPalette::WindowText);
  line.setAlphaF(0.5F);
  QPainter painter(&widget);
  painter.setPen(QPen(line, kFrame));
  painter.drawRect(QRectF(place).adjusted(0.5, 0.5, -0.5, -0.5));
}

void DockContent::paintEvent(QPaintEvent* /*event*/) {
  if (floating_) paintFrame(*this, rect());
}

}  // namespace kestrel::qt
