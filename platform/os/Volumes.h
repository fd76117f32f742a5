#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// The volumes that the system has mounted. No call waits for a network or a drive.
namespace kestrel::os {

enum class VolumeKind {
  kFixed,
  kRemovable,
  kDisc,
  kNetwork,
};

struct Volume {
  std::filesystem::path folder;  ///< where it is mounted
  VolumeKind kind = VolumeKind::kFixed;
  std::string device;       ///< "/dev/sdb1"; empty for a network
  std::string networkName;  ///< `\\server\folder`; empty unless it is of a network
};

/// The volumes that a user works with: the root first, then the others in the order of mounting. Pseudo file
/// systems and the system's own folders are left out.
std::vector<Volume> mountedVolumes();
/// The same of the text of a mount table, in the format of /proc/self/mountinfo. Of the volumes of devices
/// only those in the folders where desktops mount what the user plugs in are removable.
std::vector<Volume> volumesIn(std::string_view mountTable);
/// Whether the system describes the device of that name ("/dev/sdb1"), or the disk that it is a part of, as
/// removable. `blocks` is the folder with the descriptions of all devices.
bool isRemovable(const std::string& device, const std::filesystem::path& blocks);

/// The mount points of file systems that may wait for another machine, or for a program.
std::vector<std::filesystem::path> remoteFolders();
/// The same of the text of a mount table.
std::vector<std::filesystem::path> remoteFoldersIn(std::string_view mountTable);

/// The label of a volume, UTF-8; empty if it has none or is of a network.
std::string labelOf(const Volume& volume);
/// The same with another folder of links from labels to devices.
std::string labelOf(const Volume& volume, const std::filesystem::path& labels);

}  // namespace kestrel::os
