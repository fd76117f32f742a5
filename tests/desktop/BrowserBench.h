#pragma once

#include <QTemporaryDir>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "browser/frmImageBrowser.h"
#include "platform/qt/app/QtPlatform.h"
#include "platform/qt/docking/QtMoorage.h"
#include "platform/qt/forms/BrowserWidget.h"
#include "platform/qt/forms/QtForm.h"
#include "platform/qt/thumbnails/QtThumbnailView.h"
#include "platform/qt/thumbnails/ThumbnailArea.h"

namespace kestrel::desktop {

/// The browser's window on a folder with pictures, with settings, a home and a cache of its own.
class BrowserBench {
 public:
  BrowserBench();
  ~BrowserBench();

  /// Writes a picture of that size into the folder; returns its path.
  std::string addPicture(const std::string& name, int width = 64, int height = 48);
  std::string addFolder(const std::string& name);
  std::string pathOf(const std::string& name) const;
  bool exists(const std::string& name) const;
  bool isInTrash(const std::string& name) const;
  /// Puts a file of the trash back into the folder, as another program would.
  void restoreFromTrash(const std::string& name) const;
  const std::string& folder() const { return folder_; }

  /// Shows the window on the folder, 1000 by 700, and waits until it is loaded.
  void open();
  /// Destroys the window.
  void closeWindow();
  /// Processes events until the condition holds; fails the test after a minute.
  void waitUntil(const std::string& what, const std::function<bool()>& condition);
  void waitUntilLoaded();

  qt::QtPlatform& platform() { return *platform_; }
  frmImageBrowser& browserWindow() { return *window_; }
  IImageBrowserCtl& browser() { return window_->Browser(); }
  qt::FormWindow& window() { return dynamic_cast<qt::QtForm&>(window_->Form()).window(); }
  qt::BrowserWidget& widget() { return *window().findChild<qt::BrowserWidget*>(); }
  qt::QtMoorage& moorage() { return *widget().moorage(); }
  qt::QtThumbnailView& view() { return *widget().thumbnails(); }
  qt::ThumbnailArea& area() { return view().area(); }
  docking::CommandModel& command(const std::string& key) { return moorage().Commands().Item(key); }

  /// The base names of thumbnails, in order.
  std::vector<std::string> names(Thumbnails& thumbnails);
  /// The middle of an item, counted from 0, in the area's viewport.
  QPoint middleOf(std::int32_t item);
  void click(std::int32_t item, Qt::KeyboardModifiers modifiers = {},
             Qt::MouseButton button = Qt::LeftButton);
  void doubleClick(std::int32_t item);

 private:
  void watchLoading();
  QString trashed(const std::string& name) const;

  QTemporaryDir scratch_;
  std::string folder_;
  std::unique_ptr<qt::QtPlatform> platform_;
  std::unique_ptr<frmImageBrowser> window_;
  bool loading_ = false;
  std::vector<Connection> connections_;
};

}  // namespace kestrel::desktop
