#pragma once

#include <QWidget>

namespace kestrel::engine {
class ClipboardPort;
}

namespace kestrel::qt {

class QtSite;

/// The window of one of our controls inside its container. Keys that no child uses arrive here.
class SiteWidget : public QWidget {
  Q_OBJECT

 public:
  using QWidget::QWidget;

  /// Puts the child windows of the control into the widget and makes them controls of the site.
  virtual void furnish(QtSite& site, engine::ClipboardPort& clipboard) = 0;

 Q_SIGNALS:
  void resized();
  void shown();
  void hidden();
  void keyPressed(int keyCode, int shift);
  void characterTyped(int character);
  void keyReleased(int keyCode, int shift);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
};

}  // namespace kestrel::qt
