#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ShellIcons.h"
#include "imaging/contract/Shell.h"
#include "platform/os/Volumes.h"

namespace kestrel::qt {

/// The file system of the desktop. Its drives are the user's home folder, the root, and the mounted volumes
/// that a user works with. Folders whose names begin with a point are hidden: they are not listed.
class QtShell final : public Shell {
 public:
  using ListVolumes = std::function<std::vector<os::Volume>()>;
  explicit QtShell(ListVolumes listVolumes = os::mountedVolumes);

  /// The home folder comes first. What the other members say of drives is as of the last call.
  std::vector<std::string> LogicalDrives() override;
  std::int32_t DriveType(const std::string& root) override;
  std::string VolumeLabel(const std::string& root) override;
  /// `\\server\folder`.
  std::string NetworkPath(const std::string& drive) override;
  /// Empty for a folder that is missing, or is the home folder itself.
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
  struct Drives {
    std::filesystem::path home;  ///< empty if the user has none, or has the root
    std::vector<os::Volume> volumes;
  };

  /// Of the last `LogicalDrives`: to ask each drive again for each of its properties may wake disks.
  const Drives& drives();
  const Drives& readDrives();
  static std::vector<std::string> rootsOf(const Drives& drives);
  bool isHome(const std::string& root);
  std::optional<os::Volume> volumeAt(const std::string& root);

  ListVolumes listVolumes_;
  std::optional<Drives> drives_;
  ShellIcons icons_;
};

}  // namespace kestrel::qt
