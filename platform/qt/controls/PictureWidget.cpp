#include "PictureWidget.h"

#include <QBrush>
#include <QPainter>

#include "../Pictures.h"

namespace kestrel::qt {

void PictureWidget::setPicture(const PicturePtr& picture) {
  picture_ = picture;
  updateGeometry();
  update();
}

QSize PictureWidget::sizeHint() const {
  return picture_ ? QSize(picture_->Width(), picture_->Height()) : QSize(32, 32);
}

void PictureWidget::paintEvent(QPaintEvent* /*event*/) {
  if (!picture_) return;
  QPainter(this).drawImage(0, 0, lentImage(picture_->Pixels()));
}

void FrameWidget::setPicture(const PicturePtr& picture) {
  picture_ = picture;
  update();
}

void FrameWidget::paintEvent(QPaintEvent* event) {
  if (picture_) QPainter(this).fillRect(contentsRect(), QBrush(lentImage(picture_->Pixels())));
  QGroupBox::paintEvent(event);
}

}  // namespace kestrel::qt
