#include "FrameWidget.h"

#include <QBrush>
#include <QPainter>

#include "platform/qt/core/Pictures.h"

namespace kestrel::qt {

FrameWidget::FrameWidget(QWidget* parent) : QGroupBox(parent) {
  QSizePolicy policy = sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  setSizePolicy(policy);
}

void FrameWidget::setPicture(const PicturePtr& picture) {
  picture_ = picture;
  update();
}

void FrameWidget::paintEvent(QPaintEvent* event) {
  if (picture_) QPainter(this).fillRect(contentsRect(), QBrush(borrowedImage(picture_->Pixels())));
  QGroupBox::paintEvent(event);
}

}  // namespace kestrel::qt
