#pragma once

#include <QObject>
#include <QRect>
#include <QWidget>
#include <optional>

namespace kestrel::qt {

/// Places the client area of a top-level window, whatever frame the window manager will put around it.
///
/// Window managers differ in what they make of the position of a window that is not shown yet: some put the
/// frame there, some the client area, some choose another place. So a window that was placed before it was
/// shown is placed once more when its frame is known, and then moved onto the screen, title bar included.
class WindowPlacement final : public QObject {
 public:
  /// The window is lent.
  explicit WindowPlacement(QWidget& window);

  void place(const QRect& client);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void settle();

  QWidget& window_;
  std::optional<QRect> wanted_;  ///< where the window is to be once it has its frame
};

}  // namespace kestrel::qt
