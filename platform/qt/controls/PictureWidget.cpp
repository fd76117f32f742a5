#include "PictureWidget.h"

#include <QPainter>

#include "platform/qt/core/Pictures.h"

namespace kestrel::qt {

void PictureWidget::setPicture(const PicturePtr& picture, const QIcon& source) {
  picture_ = picture;
  source_ = source;
  updateGeometry();
  update();
}

QSize PictureWidget::sizeHint() const {
  return picture_ ? QSize(picture_->Width(), picture_->Height()) : QSize(32, 32);
}

void PictureWidget::paintEvent(QPaintEvent* /*event*/) {
  if (!picture_) return;
  QPainter(this).drawImage(0, 0, borrowedImage(picture_->Pixels()));
}

}  // namespace kestrel::qt
