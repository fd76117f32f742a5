#include "Shell.h"

#include <filesystem>
#include <memory>

#include "../Window.h"
#include "base/RuntimeError.h"
#include "engine/imgx/PictureObject.h"
#include "imaging/contract/controls/PictureBox.h"
#include "platform/os/Paths.h"

namespace kestrel::headless {

namespace fs = std::filesystem;

std::vector<std::string> Shell::LogicalDrives() {
  if (files_.pathStyle() == PathStyle::kSlash) return {"/"};
  std::vector<std::string> roots;
  for (const Drive& drive : files_.drives()) roots.push_back(std::string(1, drive.letter) + ":\\");
  return roots;
}

std::int32_t Shell::DriveType(const std::string& root) {
  if (files_.pathStyle() == PathStyle::kSlash) return root == "/" ? kDriveFixed : kDriveNoRoot;
  const Drive* drive = files_.driveOf(root);
  return drive ? drive->type : kDriveNoRoot;
}

std::string Shell::VolumeLabel(const std::string& root) {
  const Drive* drive = files_.driveOf(root);
  return drive && drive->ready ? drive->label : std::string();
}

std::string Shell::NetworkPath(const std::string& drive) {
  const Drive* found = files_.driveOf(drive);
  return found && found->ready ? found->networkPath : std::string();
}

std::string Shell::SpecialFolder(std::int32_t folder) {
  if (folder == kFolderDesktop) return ownFolder(folder, "Desktop");
  if (folder == kFolderPersonal) return ownFolder(folder, "Documents");
  return {};
}

std::string Shell::WindowsFolder() { return ownFolder(kWindowsFolder, "Windows"); }

std::string Shell::SystemFolder() { return ownFolder(kSystemFolder, "System"); }

std::string Shell::ownFolder(std::int32_t folder, const std::string& name) const {
  if (const auto replaced = replaced_.find(folder); replaced != replaced_.end()) return replaced->second;
  const std::string path = files_.scratch() + files_.separator() + name;
  fs::create_directories(files_.host(path));
  return path;
}

std::vector<FolderEntry> Shell::Entries(const std::string& folder) {
  std::vector<FolderEntry> entries;
  reads_.push_back(folder);
  std::error_code error;
  for (fs::directory_iterator entry(files_.host(folder), error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code unknown;
    entries.push_back({os::textOf(entry->path().filename()), entry->is_directory(unknown)});
  }
  return entries;
}

std::string Shell::FirstSubfolder(const std::string& folder) {
  reads_.push_back(folder);
  std::error_code error;
  for (fs::directory_iterator entry(files_.host(folder), error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code unknown;
    if (entry->is_directory(unknown)) return os::textOf(entry->path().filename());
  }
  return {};
}

void Shell::CreateFolder(const std::string& path) {
  std::error_code error;
  if (fs::create_directory(files_.host(path), error)) return;
  if (error == std::errc::no_such_file_or_directory) {
    throw RuntimeError(err::kPathNotFound, "The folder of \"" + path + "\" does not exist.");
  }
  throw RuntimeError(err::kPathFileAccess, error ? "The folder \"" + path + "\" can't be made."
                                                 : "\"" + path + "\" exists already.");
}

std::int32_t Shell::IconIndex(const std::string& path) {
  for (const std::string& root : LogicalDrives()) {
    if (path == root) return kDriveIcon + DriveType(root);
  }
  std::error_code error;
  return fs::is_directory(files_.host(path), error) ? kFolderIcon : kFileIcon;
}

void Shell::DrawIcon(std::int32_t iconIndex, WindowHandle picture) { drawSquare(iconIndex, 16, picture); }

bool Shell::DrawFileIcon(const std::string& filename, std::int32_t iconIndex, bool large,
                         WindowHandle picture) {
  if (!files_.exists(filename)) return false;
  drawSquare(iconIndex, large ? 32 : 16, picture);
  return true;
}

void Shell::drawSquare(std::int32_t iconIndex, std::int32_t size, WindowHandle picture) const {
  auto* box = dynamic_cast<kestrel::PictureBox*>(desktop_.find(picture));
  if (!box) return;
  const auto shade = static_cast<std::uint8_t>(iconIndex & 255);
  box->Picture(std::make_shared<engine::PictureObject>(
      engine::Bitmap::filled(size, size, {shade, shade, shade, 255})));
}

}  // namespace kestrel::headless
