#pragma once

#include <QLabel>

namespace kestrel::qt {

/// A text that takes as many lines as it needs. Where there is room for fewer, the last one ends in dots, and
/// the whole text is the tool tip.
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
