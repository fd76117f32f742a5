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
/// The same of the text of a mount table, in the format of /proc/self/mountinfo.
std::vector<Volume> volumesIn(std::string_view mountTable);

/// The label of a volume, UTF-8; empty if it has none or is of a network.
std::string labelOf(const Volume& volume);
/// The same with another folder of links from labels to devices.
std::string labelOf(const Volume& volume, const std::filesystem::path& labels);

}  // namespace kestrel::os
