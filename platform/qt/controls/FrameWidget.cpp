#include "FrameWidget.h"

#include <QBrush>
#include <QPainter>

#include "platform/qt/core/Pictures.h"

namespace kestrel::qt {

void FrameWidget::setPicture(const PicturePtr& picture) {
  picture_ = picture;
  update();
}

void FrameWidget::paintEvent(QPaintEvent* event) {
  if (picture_) QPainter(this).fillRect(contentsRect(), QBrush(borrowedImage(picture_->Pixels())));
  QGroupBox::paintEvent(event);
}

}  // namespace kestrel::qt
