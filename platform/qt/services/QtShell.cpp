#include "QtShell.h"

#include <QDir>
#include <QDirIterator>
#include <QFileIconProvider>
#include <QStandardPaths>
#include <QStorageInfo>
#include <algorithm>
#include <cstddef>

#include "base/RuntimeError.h"
#include "platform/qt/controls/PictureWidget.h"
#include "platform/qt/core/Handles.h"
#include "platform/qt/core/Pictures.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

constexpr int kSmallIcon = 16;
constexpr int kLargeIcon = 32;

std::string rootPath(const QStorageInfo& volume) {
  QString path = volume.rootPath();
  if (!path.endsWith(u'/')) path += u'/';
  return fromQt(path);
}

/// The volume mounted at exactly that root; invalid if there is none.
QStorageInfo volumeAt(const std::string& root) {
  for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
    if (rootPath(volume) == root) return volume;
  }
  return {};
}

bool oneOf(const QByteArray& type, std::initializer_list<const char*> types) {
  return std::any_of(types.begin(), types.end(), [&](const char* other) { return type == other; });
}

bool isNetwork(const QStorageInfo& volume) {
  return oneOf(volume.fileSystemType(), {"nfs", "nfs4", "cifs", "smb3", "fuse.sshfs", "9p"});
}

/// Whether it is mounted in a directory for user volumes.
bool isUserVolume(const QStorageInfo& volume) {
  const QString path = volume.rootPath();
  return path.startsWith(QStringLiteral("/media/")) || path.startsWith(QStringLiteral("/mnt/")) ||
         path.startsWith(QStringLiteral("/run/media/"));
}

bool draw(const QIcon& icon, int size, WindowHandle picture) {
  auto* const box = qobject_cast<PictureWidget*>(widgetOf(picture));
  if (!box || icon.isNull()) return false;
  box->setPicture(std::make_shared<ImagePicture>(icon.pixmap(QSize(size, size), 1.0).toImage()));
  return true;
}

}  // namespace

std::vector<std::string> QtShell::LogicalDrives() {
  std::vector<std::string> roots = {"/"};
  for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
    if (volume.isReady() && isUserVolume(volume)) roots.push_back(rootPath(volume));
  }
  return roots;
}

std::int32_t QtShell::DriveType(const std::string& root) {
  const QStorageInfo volume = volumeAt(root);
  if (root != "/" && !volume.isValid()) return kDriveNoRoot;
  if (isNetwork(volume)) return kDriveRemote;
  if (oneOf(volume.fileSystemType(), {"iso9660", "udf"})) return kDriveCD;
  return isUserVolume(volume) ? kDriveRemovable : kDriveFixed;
}

std::string QtShell::VolumeLabel(const std::string& root) { return fromQt(volumeAt(root).name()); }

std::string QtShell::NetworkPath(const std::string& drive) {
  const QStorageInfo volume = volumeAt(drive);
  return isNetwork(volume) ? volume.device().toStdString() : std::string();
}

std::string QtShell::SpecialFolder(std::int32_t folder) {
  return fromQt(QStandardPaths::writableLocation(
      folder == kFolderDesktop ? QStandardPaths::DesktopLocation : QStandardPaths::DocumentsLocation));
}

std::vector<FolderEntry> QtShell::Entries(const std::string& folder) {
  std::vector<FolderEntry> entries;
  QDirIterator walk(toQt(folder), QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System);
  while (walk.hasNext()) {
    walk.next();
    entries.push_back({fromQt(walk.fileName()), walk.fileInfo().isDir()});
  }
  return entries;
}

std::string QtShell::FirstSubfolder(const std::string& folder) {
  QDirIterator walk(toQt(folder), QDir::Dirs | QDir::NoDotAndDotDot);
  if (!walk.hasNext()) return {};
  walk.next();
  return fromQt(walk.fileName());
}

void QtShell::CreateFolder(const std::string& path) {
  if (QFileInfo::exists(toQt(path))) {
    throw RuntimeError(err::kPathFileAccess, "The folder \"" + path + "\" already exists.");
  }
  if (!QDir().mkdir(toQt(path))) {
    throw RuntimeError(err::kPathNotFound, "The folder \"" + path + "\" cannot be created.");
  }
}

std::int32_t QtShell::IconIndex(const std::string& path) {
  const QIcon icon = QFileIconProvider().icon(QFileInfo(toQt(path)));
  const auto known = numbers_.constFind(icon.cacheKey());
  if (known != numbers_.constEnd()) return *known;
  const auto number = static_cast<std::int32_t>(icons_.size());
  numbers_.insert(icon.cacheKey(), number);
  icons_.push_back(icon);
  return number;
}

void QtShell::DrawIcon(std::int32_t iconIndex, WindowHandle picture) {
  if (iconIndex < 0 || static_cast<std::size_t>(iconIndex) >= icons_.size()) return;
  draw(icons_[static_cast<std::size_t>(iconIndex)], kSmallIcon, picture);
}

bool QtShell::DrawFileIcon(const std::string& filename, std::int32_t iconIndex, bool large,
                           WindowHandle picture) {
  if (iconIndex != 0 || !QFileInfo::exists(toQt(filename))) return false;
  return draw(QIcon(toQt(filename)), large ? kLargeIcon : kSmallIcon, picture);
}

}  // namespace kestrel::qt
