#pragma once

#include <QIcon>
#include <QWidget>

#include "imaging/contract/Picture.h"

namespace kestrel::qt {

/// Shows a picture, unscaled, at its top left corner.
class PictureWidget : public QWidget {
  Q_OBJECT

 public:
  using QWidget::QWidget;

  const PicturePtr& picture() const { return picture_; }
  /// `source` is the icon that the picture was drawn from, for a user of the picture who needs it in other
  /// sizes or at another scale.
  void setPicture(const PicturePtr& picture, const QIcon& source = {});
  const QIcon& source() const { return source_; }
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  PicturePtr picture_;
  QIcon source_;
};

}  // namespace kestrel::qt
