#pragma once

#include <QObject>
#include <QRect>
#include <QWidget>
#include <optional>

namespace kestrel::qt {

/// Places the client area of a top-level window for any frame of the window manager.
///
/// Window managers interpret the position of a window that is not shown yet differently: as the frame's, as
/// the client area's, or not at all. So a window placed before it was shown is placed again when its frame is
/// known, and moved onto the screen, title bar included.
class WindowPlacement final : public QObject {
 public:
  /// The window is not owned.
  explicit WindowPlacement(QWidget& window);

  void place(const QRect& client);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void settle();

  QWidget& window_;
  std::optional<QRect> wanted_;  ///< target once the frame is known
};

}  // namespace kestrel::qt
