#pragma once

#include <QObject>
#include <QRect>
#include <QWidget>
#include <optional>

namespace kestrel::qt {

/// Places the client area of a top-level window for any frame of the window manager.
///
/// Window managers differ in what they make of the position of a window that is not shown yet: some put the
/// frame there, some the client area, some choose another place. So a window that was placed before it was
/// shown is placed once more when its frame is known, and then moved onto the screen, title bar included. A
/// window that comes up maximized is placed when it is restored. A window that only got a size before it was
/// shown stays where the toolkit or the window manager put it, unless a part of it is off the screen. A
/// window that is embedded before it is shown is placed by its parent.
class WindowPlacement final : public QObject {
 public:
  /// The window is not owned.
  explicit WindowPlacement(QWidget& window);

  void place(const QRect& client);
  void resize(const QSize& client);
  /// The client area while the window is neither maximized nor minimised: the present one, or the one that it
  /// is restored to.
  QRect normalPlace() const;

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool isNormal() const;
  void settle();

  QWidget& window_;
  bool waits_ = false;           ///< for the frame of a window that was placed or got a size
  std::optional<QRect> wanted_;  ///< where the window is to be then
};

}  // namespace kestrel::qt
