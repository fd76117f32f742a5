#pragma once

#include <QHash>
#include <QIcon>

#include "imaging/contract/Shell.h"

namespace kestrel::qt {

/// The file system of the desktop: one drive "/", and one for each mounted volume.
class QtShell final : public Shell {
 public:
  std::vector<std::string> LogicalDrives() override;
  std::int32_t DriveType(const std::string& root) override;
  std::string VolumeLabel(const std::string& root) override;
  std::string NetworkPath(const std::string& drive) override;
  std::string SpecialFolder(std::int32_t folder) override;
  /// No such folders on this system.
  std::string WindowsFolder() override { return {}; }
  std::string SystemFolder() override { return {}; }
  std::vector<FolderEntry> Entries(const std::string& folder) override;
  std::string FirstSubfolder(const std::string& folder) override;
  void CreateFolder(const std::string& path) override;
  std::int32_t IconIndex(const std::string& path) override;
  void DrawIcon(std::int32_t iconIndex, WindowHandle picture) override;
  bool DrawFileIcon(const std::string& filename, std::int32_t iconIndex, bool large,
                    WindowHandle picture) override;

 private:
  QHash<qint64, std::int32_t> numbers_;  // icon numbers by cache key
  std::vector<QIcon> icons_;
};

}  // namespace kestrel::qt
