#pragma once

#include <QImage>
#include <QWidget>
#include <functional>
#include <memory>
#include <string>

#include "editor/ImageProcessingCtl.h"
#include "platform/qt/app/QtPlatform.h"
#include "platform/qt/docking/QtMoorage.h"
#include "platform/qt/forms/EditorWidget.h"
#include "platform/qt/forms/QtForm.h"
#include "platform/qt/view/QtImageView.h"

namespace kestrel::desktop {

/// The editor in a real, visible window, with private settings.
class EditorBench {
 public:
  EditorBench();
  ~EditorBench();

  qt::QtPlatform& platform() { return *platform_; }
  IImageProcessingCtl& editor() { return *editor_; }
  qt::QtForm& form() { return *form_; }
  qt::FormWindow& window() { return form_->window(); }
  qt::EditorWidget& widget();
  qt::QtMoorage& moorage() { return *widget().moorage(); }
  qt::QtImageView& view() { return *widget().view(); }
  qt::ViewCanvas& canvas() { return view().surface().canvas(); }
  docking::CommandModel& command(const std::string& key) { return moorage().Commands().Item(key); }

  /// Puts a picture into the view, as if it had been opened.
  void showPicture(const QImage& picture);
  /// A grab of the window in device pixels.
  QImage grabWindow();
  /// Writes a screenshot to the build folder.
  void screenshot(const std::string& name);

 private:
  std::unique_ptr<qt::QtPlatform> platform_;
  std::unique_ptr<qt::QtForm> form_;
  std::unique_ptr<ImageProcessingCtl> editor_;
};

/// The desktop with private settings.
std::unique_ptr<qt::QtPlatform> testPlatform();

/// A picture in which every pixel differs from its neighbors.
QImage noise(int width, int height);

/// A key as the window system reports it to the widget's window: shortcuts see it first, then the widget that
/// has the focus in that window. The text is that of the key unless another is given.
void pressKey(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers = {});
void pressKey(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers, const QString& text);

/// Drags a file to the middle of the widget, through its window, and drops it there. False if the widget
/// refuses it.
bool dropFile(QWidget& widget, const std::string& name, Qt::DropActions actions = Qt::CopyAction);

/// Processes all pending events.
void settle();

/// Writes a screenshot of a widget to the build folder; its name includes the scale factor.
void writeScreenshot(QWidget& widget, const std::string& name);

/// Runs `work` with the next modal window as soon as it is shown. `work` must close it.
void whenModalOpens(std::function<void(QWidget& dialog)> work);

}  // namespace kestrel::desktop
