#pragma once

#include <QDialog>
#include <QImage>
#include <functional>

namespace kestrel::qt {

/// The widget of a form: tells of what happens to the window, and keeps what is drawn on its face.
class FormWindow : public QDialog {
  Q_OBJECT

 public:
  explicit FormWindow(QWidget* parent = nullptr);

  /// After the .ui file has filled the window: a form with the property `mainWindow` becomes a window with
  /// all buttons on its frame, which no key closes.
  void finishSetUp();

  /// Called where the user asks to close the window, which stays unless this hides it.
  std::function<void()> closing;

  /// The drawing of the window's face, as large as the window in device pixels, transparent where nothing is
  /// drawn.
  QImage& face();

 Q_SIGNALS:
  void activated();
  void resized();
  void painted();
  void keyPressed(int keyCode, int shift);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void reject() override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QImage face_;
  bool mainWindow_ = false;
};

}  // namespace kestrel::qt
