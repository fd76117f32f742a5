#pragma once

#include <QSocketNotifier>
#include <QTimer>
#include <memory>
#include <string>
#include <vector>

#include "imaging/contract/FolderNotices.h"
#include "platform/os/MountWatch.h"
#include "platform/os/SubfolderWatch.h"
#include "platform/qt/controls/WidgetControl.h"

namespace kestrel::qt {

/// Notices of the file system, raised in the event loop.
class QtFolderNotices final : public WidgetControl<FolderNotices> {
 public:
  /// The widget has no content and stays hidden.
  QtFolderNotices(QWidget& widget, ControlId id);

  void Folders(const std::vector<std::string>& value) override;

 private:
  void watchFolders();
  void watchMounts();
  void report();

  os::SubfolderWatch watch_;
  std::vector<std::string> watched_;
  /// Null if the system refuses to watch.
  std::unique_ptr<QSocketNotifier> readable_;
  QTimer delay_;

  os::MountWatch mounts_;
  std::unique_ptr<QSocketNotifier> mounted_;
  QTimer mountDelay_;
};

}  // namespace kestrel::qt
