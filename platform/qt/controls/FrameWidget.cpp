#include "FrameWidget.h"

#include <QBrush>
#include <QPainter>

#include "platform/qt/core/FramedFill.h"
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
  QGroupBox::paintEvent(event);
  if (!picture_) return;
  // Over the style's frame, which would tint the picture.
  const QRect face = title().isEmpty() ? rect() : contentsRect();
  QPainter painter(this);
  fillFramed(painter, face, QBrush(borrowedImage(picture_->Pixels())), palette().color(QPalette::Mid));
}

}  // namespace kestrel::qt
