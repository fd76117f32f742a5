#pragma once

#include <QWidget>

class QDropEvent;
class QKeyEvent;

namespace kestrel::qt {

class QtSite;
struct SiteServices;

/// The widget of one of our controls inside its container. It receives keys that no child handles, and keys
/// that a child forwards although it handled them.
class SiteWidget : public QWidget {
  Q_OBJECT

 public:
  using QWidget::QWidget;

  /// Creates the child widgets of the control and adds them to the site as controls.
  virtual void populate(QtSite& site, const SiteServices& services) = 0;

  /// Closes the menus of the control that are open; they need not be children of the widget.
  virtual void closeMenus() {}

  /// Raises the key events of the control that contains `child`, docked or floating; for a key that the child
  /// accepts, so that no window above handles it. The handlers may destroy the child.
  static void forwardKey(const QWidget& child, const QKeyEvent& event);

  /// Whether files can be dropped on the control; at first they can't.
  void acceptFiles(bool value);

 Q_SIGNALS:
  void resized();
  void shown();
  void hidden();
  void keyPressed(int keyCode, int shift);
  /// A slot that handles the character sets it to 0.
  void characterTyped(int& character);
  void keyReleased(int keyCode, int shift);
  /// A slot that would use Escape sets it to true.
  void escapeQueried(bool& used);
  void acceptsFilesChanged();
  /// A slot that would take a dropped file sets it to true.
  void fileDropQueried(bool& taken);
  /// The name of the first dropped file. Emitted after the drag has ended, so a slot may show a dialog.
  void fileDropped(const QString& name);

 protected:
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  /// True if a handler handled the key.
  bool raiseKeyDown(const QKeyEvent& event);
  /// The file that a drop would open; empty if the control would take none now.
  QString fileToTake(const QDropEvent& event);
};

}  // namespace kestrel::qt
