#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Types.h"

namespace kestrel {

/// Values of `Shell::DriveType`.
inline constexpr std::int32_t kDriveNoRoot = 1;
inline constexpr std::int32_t kDriveRemovable = 2;
inline constexpr std::int32_t kDriveFixed = 3;
inline constexpr std::int32_t kDriveRemote = 4;
inline constexpr std::int32_t kDriveCD = 5;

/// Values of `Shell::SpecialFolder`.
inline constexpr std::int32_t kFolderDesktop = 0;
inline constexpr std::int32_t kFolderPersonal = 5;

/// One entry of a folder.
struct FolderEntry {
  std::string Name;
  bool IsDirectory = false;
};

/// Drives, folders and icons of the machine. Queries for missing or unavailable items return an empty result;
/// only `CreateFolder` raises.
class Shell {
 public:
  virtual ~Shell() = default;

  /// The roots of all drives, each with a trailing separator.
  virtual std::vector<std::string> LogicalDrives() = 0;
  virtual std::int32_t DriveType(const std::string& root) = 0;
  virtual std::string VolumeLabel(const std::string& root) = 0;
  /// The network name of a mapped drive.
  virtual std::string NetworkPath(const std::string& drive) = 0;
  virtual std::string SpecialFolder(std::int32_t folder) = 0;
  virtual std::string WindowsFolder() = 0;
  virtual std::string SystemFolder() = 0;

  /// The entries of a folder in file system order.
  virtual std::vector<FolderEntry> Entries(const std::string& folder) = 0;
  /// The name of its first subfolder; does not enumerate the rest.
  virtual std::string FirstSubfolder(const std::string& folder) = 0;
  virtual void CreateFolder(const std::string& path) = 0;

  /// The number of the icon that the shell shows for a path.
  virtual std::int32_t IconIndex(const std::string& path) = 0;
  /// Draws that icon on a picture.
  virtual void DrawIcon(std::int32_t iconIndex, WindowHandle picture) = 0;
  /// Draws an icon that is stored in a file; false if there is none.
  virtual bool DrawFileIcon(const std::string& filename, std::int32_t iconIndex, bool large,
                            WindowHandle picture) = 0;
};

}  // namespace kestrel
