#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "../Desktop.h"
#include "../FileSystem.h"
#include "imaging/contract/Shell.h"

namespace kestrel::headless {

/// Drives and folders of the simulated machine. Its special folders (desktop, personal, Windows, system) are
/// in the scratch folder or on the first drive.
class Shell final : public kestrel::Shell {
 public:
  Shell(Desktop& desktop, const FileSystem& files) : desktop_(desktop), files_(files) {}

  std::vector<std::string> LogicalDrives() override;
  std::int32_t DriveType(const std::string& root) override;
  std::string VolumeLabel(const std::string& root) override;
  std::string NetworkPath(const std::string& drive) override;
  std::string SpecialFolder(std::int32_t folder) override;
  std::string WindowsFolder() override;
  std::string SystemFolder() override;
  std::vector<FolderEntry> Entries(const std::string& folder) override;
  std::string FirstSubfolder(const std::string& folder) override;
  void CreateFolder(const std::string& path) override;

  /// `kFileIcon`, `kFolderIcon`, or the sum of `kDriveIcon` and the drive's type.
  std::int32_t IconIndex(const std::string& path) override;
  /// Draws a square whose shade encodes the number.
  void DrawIcon(std::int32_t iconIndex, WindowHandle picture) override;
  bool DrawFileIcon(const std::string& filename, std::int32_t iconIndex, bool large,
                    WindowHandle picture) override;

  // For tests.
  /// Replaces a special folder, or the Windows or system folder; an empty path means that there is none.
  void specialFolder(std::int32_t folder, std::string path) { replaced_[folder] = std::move(path); }
  static constexpr std::int32_t kWindowsFolder = 36;
  static constexpr std::int32_t kSystemFolder = 37;
  /// The folders whose entries were read, in order, as they were named.
  const std::vector<std::string>& reads() const { return reads_; }
  void forgetReads() { reads_.clear(); }

  static constexpr std::int32_t kFileIcon = 0;
  static constexpr std::int32_t kFolderIcon = 3;
  static constexpr std::int32_t kDriveIcon = 8;

 private:
  std::string ownFolder(std::int32_t folder, const std::string& name) const;
  void drawSquare(std::int32_t iconIndex, std::int32_t size, WindowHandle picture) const;

  Desktop& desktop_;
  const FileSystem& files_;
  std::map<std::int32_t, std::string> replaced_;
  std::vector<std::string> reads_;
};

}  // namespace kestrel::headless
