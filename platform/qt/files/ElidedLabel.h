#pragma once

#include <QLabel>

namespace kestrel::qt {

/// A line of text that is elided in its middle where it is too narrow; the tool tip has the whole text. The
/// text is plain, and so is what assistive programs read.
class ElidedLabel final : public QLabel {
  Q_OBJECT

 public:
  explicit ElidedLabel(const QString& text = {}, QWidget* parent = nullptr);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace kestrel::qt
