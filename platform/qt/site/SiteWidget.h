#pragma once

#include <QWidget>

class QKeyEvent;

namespace kestrel::engine {
class ClipboardPort;
}

namespace kestrel::qt {

class QtSite;

/// The window of one of our controls inside its container. Keys that no child uses arrive here, and so do
/// those that a child hands on though it used them itself.
class SiteWidget : public QWidget {
  Q_OBJECT

 public:
  using QWidget::QWidget;

  /// Puts the child windows of the control into the widget and makes them controls of the site.
  virtual void furnish(QtSite& site, engine::ClipboardPort& clipboard) = 0;

  /// Raises the events of a key that went down for the control that `child` belongs to, be it docked or
  /// floating; for a key that the child accepts, so that no window above it hears of it. The handlers may
  /// destroy the child.
  static void handOn(const QWidget& child, const QKeyEvent& event);

 Q_SIGNALS:
  void resized();
  void shown();
  void hidden();
  void keyPressed(int keyCode, int shift);
  /// A slot that used the character sets it to 0.
  void characterTyped(int& character);
  void keyReleased(int keyCode, int shift);
  /// A slot that would use Escape sets it to true.
  void escapeQueried(bool& used);

 protected:
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;

 private:
  /// True if a handler used the key.
  bool raiseKeyDown(const QKeyEvent& event);
};

}  // namespace kestrel::qt
