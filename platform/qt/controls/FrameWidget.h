#pragma once

#include <QGroupBox>

#include "imaging/contract/Picture.h"

namespace kestrel::qt {

/// A group box with an optional tiled background picture.
class FrameWidget : public QGroupBox {
  Q_OBJECT

 public:
  using QGroupBox::QGroupBox;

  const PicturePtr& picture() const { return picture_; }
  void setPicture(const PicturePtr& picture);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  PicturePtr picture_;
};

}  // namespace kestrel::qt
