#pragma once

#include <QGroupBox>

#include "imaging/contract/Picture.h"

namespace kestrel::qt {

/// A group box with an optional tiled background picture. A hidden one keeps its place in a layout: a window
/// with several pages in one place has room for the largest.
class FrameWidget : public QGroupBox {
  Q_OBJECT

 public:
  explicit FrameWidget(QWidget* parent = nullptr);

  const PicturePtr& picture() const { return picture_; }
  void setPicture(const PicturePtr& picture);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  PicturePtr picture_;
};

}  // namespace kestrel::qt
