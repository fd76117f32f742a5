#include "QtShell.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "base/RuntimeError.h"
#include "platform/os/FolderScan.h"
#include "platform/os/Paths.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

namespace fs = std::filesystem;

constexpr int kSmallIcon = 16;
constexpr int kLargeIcon = 32;

std::string withSeparator(const fs::path& folder) {
  const std::string text = os::textOf(folder);
  return text.ends_with('/') ? text : text + '/';
}

/// The real path of an existing folder, empty for any other.
fs::path realFolder(const QString& path) {
  if (path.isEmpty()) return {};
  std::error_code error;
  const fs::path real = fs::canonical(os::pathOf(fromQt(path)), error);
  return !error && fs::is_directory(real, error) ? real : fs::path();
}

/// Empty if the user has none, or has the root.
fs::path homeFolder() {
  const fs::path home = realFolder(QDir::homePath());
  return home == "/" ? fs::path() : home;
}

bool isHidden(const fs::path& name) { return os::textOf(name).starts_with('.'); }

bool isShownFolder(const os::FolderEntry& entry) {
  return entry.kind == os::EntryKind::kFolder && !isHidden(entry.name);
}

ShellIcons::Kind iconOf(std::int32_t driveType) {
  switch (driveType) {
    case kDriveRemovable:
      return ShellIcons::Kind::kRemovable;
    case kDriveRemote:
      return ShellIcons::Kind::kNetwork;
    case kDriveCD:
      return ShellIcons::Kind::kDisc;
    default:
      return ShellIcons::Kind::kDrive;
  }
}

/// The number and the sentence of a folder that can't be created.
RuntimeError creationError(const std::string& path, const std::error_code& error) {
  const std::string folder = "The folder \"" + path + "\" ";
  if (!error || error == std::errc::file_exists || error == std::errc::not_a_directory) {
    return RuntimeError(err::kPathFileAccess, folder + "already exists.");
  }
  if (error == std::errc::no_such_file_or_directory) {
    return RuntimeError(err::kPathNotFound, folder + "cannot be created: its parent does not exist.");
  }
  if (error == std::errc::permission_denied || error == std::errc::read_only_file_system) {
    return RuntimeError(err::kPermissionDenied, folder + "cannot be created: permission denied.");
  }
  if (error == std::errc::no_space_on_device) {
    return RuntimeError(err::kDiskFull, folder + "cannot be created: the disk is full.");
  }
  return RuntimeError(err::kPathFileAccess, folder + "cannot be created.");
}

}  // namespace

QtShell::QtShell(ListVolumes listVolumes) : listVolumes_(std::move(listVolumes)) {}

const QtShell::Drives& QtShell::drives() { return drives_ ? *drives_ : readDrives(); }

const QtShell::Drives& QtShell::readDrives() {
  drives_ = Drives{homeFolder(), listVolumes_()};
  return *drives_;
}

bool QtShell::isHome(const std::string& root) {
  const fs::path& home = drives().home;
  return !home.empty() && withSeparator(home) == withSeparator(os::pathOf(root));
}

std::optional<os::Volume> QtShell::volumeAt(const std::string& root) {
  for (const os::Volume& volume : drives().volumes) {
    if (withSeparator(volume.folder) == withSeparator(os::pathOf(root))) return volume;
  }
  return std::nullopt;
}

std::vector<std::string> QtShell::rootsOf(const Drives& drives) {
  std::vector<std::string> roots;
  if (!drives.home.empty()) roots.push_back(withSeparator(drives.home));
  for (const os::Volume& volume : drives.volumes) {
    const std::string root = withSeparator(volume.folder);
    if (std::find(roots.begin(), roots.end(), root) == roots.end()) roots.push_back(root);
  }
  return roots;
}

std::vector<std::string> QtShell::LogicalDrives() { return rootsOf(readDrives()); }

std::int32_t QtShell::DriveType(const std::string& root) {
  if (isHome(root)) return kDriveFixed;
  const std::optional<os::Volume> volume = volumeAt(root);
  if (!volume) return kDriveNoRoot;
  switch (volume->kind) {
    case os::VolumeKind::kRemovable:
      return kDriveRemovable;
    case os::VolumeKind::kNetwork:
      return kDriveRemote;
    case os::VolumeKind::kDisc:
      return kDriveCD;
    case os::VolumeKind::kFixed:
      break;
  }
  return kDriveFixed;
}

std::string QtShell::VolumeLabel(const std::string& root) {
  if (isHome(root)) return fromQt(translated("Home"));
  const std::optional<os::Volume> volume = volumeAt(root);
  const std::string label = volume ? os::labelOf(*volume) : std::string();
  return label.empty() && root == "/" ? fromQt(translated("File System")) : label;
}

std::string QtShell::NetworkPath(const std::string& drive) {
  const std::optional<os::Volume> volume = volumeAt(drive);
  return volume ? volume->networkName : std::string();
}

std::string QtShell::SpecialFolder(std::int32_t folder) {
  const fs::path path = realFolder(QStandardPaths::writableLocation(
      folder == kFolderDesktop ? QStandardPaths::DesktopLocation : QStandardPaths::DocumentsLocation));
  return path == homeFolder() ? std::string() : os::textOf(path);
}

std::vector<FolderEntry> QtShell::Entries(const std::string& folder) {
  std::vector<FolderEntry> entries;
  // What was listed before a failure is kept.
  os::scanFolder(os::pathOf(folder), os::ScanDetail::kKind, [&](os::FolderEntry&& entry) {
    const bool isFolder = entry.kind == os::EntryKind::kFolder;
    if (!isFolder || isShownFolder(entry)) entries.push_back({os::textOf(entry.name), isFolder});
    return true;
  });
  return entries;
}

std::string QtShell::FirstSubfolder(const std::string& folder) {
  std::string first;
  os::scanFolder(os::pathOf(folder), os::ScanDetail::kKind, [&](os::FolderEntry&& entry) {
    if (isShownFolder(entry)) first = os::textOf(entry.name);
    return first.empty();
  });
  return first;
}

void QtShell::CreateFolder(const std::string& path) {
  std::error_code error;
  if (!fs::create_directory(os::pathOf(path), error)) throw creationError(path, error);
}

std::int32_t QtShell::IconIndex(const std::string& path) {
  const std::string root = withSeparator(os::pathOf(path));
  const std::vector<std::string> roots = rootsOf(drives());
  if (isHome(root)) return icons_.numberOf(ShellIcons::Kind::kHome);
  if (std::find(roots.begin(), roots.end(), root) != roots.end()) {
    return icons_.numberOf(iconOf(DriveType(root)));
  }
  std::error_code error;
  if (fs::is_directory(os::pathOf(path), error)) return icons_.numberOf(ShellIcons::Kind::kFolder);
  return icons_.numberOfFile(toQt(path));
}

void QtShell::DrawIcon(std::int32_t iconIndex, WindowHandle picture) {
  icons_.draw(iconIndex, kSmallIcon, picture);
}

bool QtShell::DrawFileIcon(const std::string& filename, std::int32_t iconIndex, bool large,
                           WindowHandle picture) {
  if (iconIndex != 0 || !QFileInfo::exists(toQt(filename))) return false;
  return ShellIcons::draw(QIcon(toQt(filename)), large ? kLargeIcon : kSmallIcon, picture);
}

}  // namespace kestrel::qt
