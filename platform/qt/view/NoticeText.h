#pragma once

#include <QLabel>

namespace kestrel::qt {

/// A word-wrapped text. If the height is too small, the last line ends in an ellipsis and the tool tip has
/// the whole text.
class NoticeText final : public QLabel {
  Q_OBJECT

 public:
  explicit NoticeText(QWidget* parent);

  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  QSize sizeHint() const override;
  /// A few words of one line.
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace kestrel::qt
