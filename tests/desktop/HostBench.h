#pragma once

#include <QWidget>
#include <memory>
#include <string>
#include <vector>

#include "EditorBench.h"

namespace kestrel::desktop {

/// An editor as a host has it: one widget among others.
class HostedEditor {
 public:
  HostedEditor(qt::QtPlatform& platform, QWidget& parent);
  ~HostedEditor();

  qt::EditorWidget& widget() { return *widget_; }
  IImageProcessingCtl& control() { return *control_; }
  qt::QtMoorage& moorage() { return *widget_->moorage(); }
  qt::ViewCanvas& canvas() { return widget_->view()->surface().canvas(); }

  /// The commands that were clicked since the last call, with a blank behind each.
  std::string takeClicked() { return std::exchange(clicked_, {}); }

 private:
  std::unique_ptr<qt::EditorWidget> widget_;
  std::unique_ptr<qt::QtSite> site_;
  std::unique_ptr<ImageProcessingCtl> control_;
  std::string clicked_;
  Connection clicks_;
};

/// A host's window with widgets of its own, in which editors can be put side by side. Each shows a picture,
/// and hears hot keys without Ctrl or Alt too.
class HostBench {
 public:
  HostBench();
  ~HostBench();

  qt::QtPlatform& platform() { return *platform_; }
  QWidget& window() { return *window_; }

  /// Puts the widget to the right of those that are there.
  void add(QWidget& widget);
  HostedEditor& addEditor();
  /// Shows the window, active.
  void show();

 private:
  std::unique_ptr<qt::QtPlatform> platform_;
  std::unique_ptr<QWidget> window_;
  std::vector<std::unique_ptr<HostedEditor>> editors_;
};

}  // namespace kestrel::desktop
