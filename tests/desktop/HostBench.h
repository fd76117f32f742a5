#pragma once

#include <QWidget>
#include <memory>
#include <string>
#include <vector>

#include "EditorBench.h"

namespace kestrel::desktop {

/// An editor embedded in a host, next to other widgets.
class HostedEditor {
 public:
  HostedEditor(qt::QtPlatform& platform, QWidget& parent);
  ~HostedEditor();

  qt::EditorWidget& widget() { return *widget_; }
  ImageProcessingCtl& control() { return *control_; }
  qt::QtMoorage& moorage() { return *widget_->moorage(); }
  qt::ViewCanvas& canvas() { return widget_->view()->surface().canvas(); }

  /// The commands clicked since the last call, each followed by a space.
  std::string takeClicked() { return std::exchange(clicked_, {}); }

 private:
  std::unique_ptr<qt::EditorWidget> widget_;
  std::unique_ptr<qt::QtSite> site_;
  std::unique_ptr<ImageProcessingCtl> control_;
  std::string clicked_;
  Connection clicks_;
};

/// A host's window with its own widgets and editors side by side. Each editor shows a picture and accepts hot
/// keys without Ctrl or Alt.
class HostBench {
 public:
  HostBench();
  ~HostBench();

  qt::QtPlatform& platform() { return *platform_; }
  QWidget& window() { return *window_; }

  /// Adds the widget on the right.
  void add(QWidget& widget);
  HostedEditor& addEditor();
  /// Shows and activates the window.
  void show();

 private:
  std::unique_ptr<qt::QtPlatform> platform_;
  std::unique_ptr<QWidget> window_;
  std::vector<std::unique_ptr<HostedEditor>> editors_;
};

}  // namespace kestrel::desktop
