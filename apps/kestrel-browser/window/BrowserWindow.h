#pragma once

#include <functional>
#include <string>
#include <vector>

#include "browser/frmImageBrowser.h"

namespace kestrel::app {

/// The browser's window in a program: opens on a folder, and passes pictures on that the user wants to edit.
class BrowserWindow {
 public:
  /// The thread must be attached to a platform. `closed` is called when the user has closed the window,
  /// `open` with each picture that the user opens by the keyboard.
  BrowserWindow(const std::string& title, std::function<void()> closed,
                std::function<void(const std::string&)> open);

  Form& form() { return window_.Form(); }
  IImageBrowserCtl& browser() { return window_.Browser(); }
  /// The control, for additions of the desktop to it.
  Control& control();

  /// Shows the window on a folder. When the folder has been read, the file of that name is selected, if there
  /// is one. Call it once.
  void show(const std::string& folder, const std::string& file = {});
  /// Selects a folder. Raises RuntimeError 76 if the tree has no such folder.
  void path(const std::string& folder);

  /// Selects these thumbnails, counted from 1. Raises RuntimeError 9 outside.
  void select(const std::vector<std::int32_t>& numbers);
  std::vector<std::string> selectedFiles();

  /// Whether a folder is being loaded, or its thumbnails made again.
  bool loading() const { return loading_ || recalculating_; }

  /// Runs the command of that dispatch key ("viewsingle"). Raises RuntimeError 5 for an unknown or disabled
  /// command.
  void runCommand(const std::string& key);

 private:
  void connectLoading();
  void selectWanted();

  frmImageBrowser window_;
  std::string wanted_;  ///< the file to select
  bool loading_ = false;
  bool recalculating_ = false;
  std::vector<Connection> connections_;
};

}  // namespace kestrel::app
