#pragma once

#include <QEvent>
#include <QImage>
#include <QTemporaryDir>
#include <QWidget>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/OpenCalls.h"
#include "platform/qt/services/QtClipboardPort.h"
#include "platform/qt/thumbnails/QtThumbnailView.h"
#include "platform/qt/thumbnails/ThumbnailArea.h"
#include "platform/store/FileNames.h"

namespace kestrel::desktop {

/// A folder of pictures on the disk, removed at the end.
class PictureFolder {
 public:
  std::string path() const { return folder_.path().toStdString(); }
  std::string file(const std::string& name) const { return path() + "/" + name; }

  /// Writes a PNG file of one color.
  void add(const std::string& name, const QColor& color = Qt::red, QSize size = {60, 40}) const;
  void add(const std::string& name, const QImage& picture) const;
  /// Writes files "img1.png" to "img<count>.png".
  void addMany(int count) const;
  void addBroken(const std::string& name) const;
  void remove(const std::string& name) const;
  bool has(const std::string& name) const;

 private:
  QTemporaryDir folder_;
};

/// File helpers that record what they are asked for, then copy and move without questions.
class RecordingHelpers final : public store::FileNames {
 public:
  RecordingHelpers() : FileNames("/") {}

  std::string ResolvePath(const std::string& Path) override { return Path; }
  bool CopyFiles(const std::string& Buffer, const std::string& Folder, std::int32_t Flags,
                 WindowHandle Owner) override;
  bool MoveFiles(const std::string& Buffer, const std::string& Folder, std::int32_t Flags,
                 WindowHandle Owner) override;
  bool DeleteFiles(const std::string& Buffer, const std::string& Folder, std::int32_t Flags,
                   WindowHandle Owner) override;

  /// "copy a.png b.png", with names in their folders; empty if nothing was asked for.
  std::string log;
  std::string target;
  WindowHandle owner = 0;
  /// Called first; the files are left alone if it returns false.
  std::function<bool()> before;

 private:
  bool record(const char* what, const std::string& buffer, const std::string& folder, WindowHandle window);
};

/// A thumbnail view in a window of its own, which has the focus.
class ThumbnailBench {
 public:
  explicit ThumbnailBench(QSize size = {700, 500});
  ~ThumbnailBench();

  qt::ThumbnailArea& area() { return *area_; }
  qt::QtThumbnailView& view() { return *view_; }
  bool hasView() const { return view_ != nullptr; }
  QWidget& window() { return *window_; }
  RecordingHelpers& helpers() { return helpers_; }

  /// Shows the folder and waits until all thumbnails are loaded and painted.
  void open(const PictureFolder& folder);
  void waitForLoad();
  /// Destroys the view, and its widget with it.
  void destroy();

  /// The middle of an item's cell in the window.
  QPoint middleOf(std::int32_t item) const;
  QPoint inWindow(const Rectangle& place) const;
  // Through the window, as the window system does.
  void press(QPoint at, Qt::KeyboardModifiers modifiers = {}) const;
  void move(QPoint to, Qt::KeyboardModifiers modifiers = {}) const;
  void release(QPoint at, Qt::KeyboardModifiers modifiers = {}) const;
  void click(std::int32_t item, Qt::KeyboardModifiers modifiers = {}) const;
  void doubleClick(std::int32_t item) const;
  void rightClick(QPoint at) const;
  /// To the widget of the window that has the focus.
  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const;
  void type(const std::string& text) const;

  /// The numbers of the selected items, counted from 0: "0 2 3".
  std::string selection();
  /// The names of all items in their order.
  std::string names();
  /// The pixels of the viewport as the window shows them, in device pixels.
  QImage grab();
  /// The part of `grab` that shows the item's picture.
  QImage grabPicture(std::int32_t item);
  void screenshot(const std::string& name);

 private:
  void sendMouse(QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons held,
                 Qt::KeyboardModifiers modifiers) const;

  RecordingHelpers helpers_;
  qt::QtClipboardPort clipboard_;
  OpenCalls calls_;
  std::unique_ptr<QWidget> window_;
  qt::ThumbnailArea* area_ = nullptr;
  std::unique_ptr<qt::QtThumbnailView> view_;
};

/// Processes all pending events.
void settle();

/// Waits for a condition, for as long as a busy machine may need. False if it does not come true.
bool eventually(const std::function<bool()>& condition);

}  // namespace kestrel::desktop
