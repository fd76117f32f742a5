#pragma once

#include <QWidget>

#include "imaging/contract/Picture.h"

namespace kestrel::qt {

/// Shows a picture, unscaled, at its top left corner.
class PictureWidget : public QWidget {
  Q_OBJECT

 public:
  using QWidget::QWidget;

  const PicturePtr& picture() const { return picture_; }
  void setPicture(const PicturePtr& picture);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  PicturePtr picture_;
};

}  // namespace kestrel::qt
