#pragma once

#include <QDialog>
#include <QImage>
#include <functional>

namespace kestrel {
class Form;
}

namespace kestrel::qt {

/// The widget of a form: signals window events, and retains the drawing of its surface.
class FormWindow : public QDialog {
  Q_OBJECT

 public:
  explicit FormWindow(QWidget* parent = nullptr);

  /// Call after the .ui file has filled the window: a form with the property `mainWindow` becomes a window
  /// with all title bar buttons, which no key closes.
  void finishSetUp();

  /// Called when the user asks to close the window, which stays unless this hides it.
  std::function<void()> closing;

  /// Sets the texts of the .ui file in the present language.
  std::function<void()> retranslate;

  /// The form that this is the window of; null while there is none.
  Form* form = nullptr;

  /// The retained drawing of the window, in device pixels, transparent where nothing is drawn.
  QImage& face();

 Q_SIGNALS:
  void activated();
  /// The texts of the .ui file are in another language.
  void retranslated();
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
