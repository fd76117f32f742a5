#include "../Volumes.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <iterator>
#include <optional>

#include "../Paths.h"

namespace kestrel::os {
namespace {

namespace fs = std::filesystem;

constexpr char kMountTable[] = "/proc/self/mountinfo";
constexpr char kLabels[] = "/dev/disk/by-label";
constexpr char kBlocks[] = "/sys/class/block";

constexpr std::array<std::string_view, 14> kNetworkTypes = {
    "nfs",   "nfs4",      "cifs",       "smb3",        "smbfs",          "afs",       "ceph", "9p",
    "davfs", "glusterfs", "fuse.sshfs", "fuse.rclone", "fuse.glusterfs", "fuse.davfs"};
constexpr std::array<std::string_view, 2> kDiscTypes = {"iso9660", "udf"};
/// Local file systems whose sources are no devices.
constexpr std::array<std::string_view, 2> kPoolTypes = {"zfs", "bcachefs"};
/// Mounts another file system when it is used.
constexpr std::string_view kOnDemand = "autofs";
/// Images of programs, which have devices.
constexpr std::array<std::string_view, 2> kProgramTypes = {"squashfs", "erofs"};

/// Where the system mounts parts of itself.
constexpr std::array<std::string_view, 8> kSystemFolders = {"/boot", "/dev", "/etc", "/proc",
                                                            "/snap", "/sys", "/usr", "/var"};
/// Where desktops mount what the user plugs in.
constexpr std::array<std::string_view, 2> kUserFolders = {"/media", "/run/media"};

template <typename List>
bool contains(const List& list, std::string_view value) {
  return std::find(list.begin(), list.end(), value) != list.end();
}

bool isInOrBelow(std::string_view path, std::string_view folder) {
  return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

template <typename List>
bool isInAny(const List& folders, std::string_view path) {
  return std::any_of(folders.begin(), folders.end(),
                     [&](std::string_view folder) { return isInOrBelow(path, folder); });
}

std::string_view takeWord(std::string_view& line) {
  const std::size_t end = std::min(line.find(' '), line.size());
  const std::string_view word = line.substr(0, end);
  line.remove_prefix(std::min(end + 1, line.size()));
  return word;
}

/// Replaces each escape, a prefix and digits, by the character of that number.
std::string unescaped(std::string_view text, std::string_view prefix, std::size_t digits, int base) {
  std::string result;
  while (!text.empty()) {
    unsigned number = 0;
    if (text.starts_with(prefix) && text.size() >= prefix.size() + digits) {
      const char* const first = text.data() + prefix.size();
      const auto [end, error] = std::from_chars(first, first + digits, number, base);
      if (error == std::errc() && end == first + digits) {
        result += static_cast<char>(number);
        text.remove_prefix(prefix.size() + digits);
        continue;
      }
    }
    result += text.front();
    text.remove_prefix(1);
  }
  return result;
}

/// One line of the mount table.
struct Mount {
  std::string folder;
  std::string type;
  std::string source;
};

std::optional<Mount> mountOf(std::string_view line) {
  constexpr std::string_view kEndOfOptions = " - ";
  constexpr int kWordsBeforeFolder = 4;
  const std::size_t end = line.find(kEndOfOptions);
  if (end == std::string_view::npos) return std::nullopt;
  std::string_view kind = line.substr(end + kEndOfOptions.size());
  for (int i = 0; i < kWordsBeforeFolder; ++i) takeWord(line);
  const auto word = [](std::string_view& rest) { return unescaped(takeWord(rest), "\\", 3, 8); };
  Mount mount;
  mount.folder = word(line);
  mount.type = word(kind);
  mount.source = word(kind);
  if (!mount.folder.starts_with('/')) return std::nullopt;
  return mount;
}

/// No value for a line that describes no folder.
std::optional<Mount> takeMount(std::string_view& mountTable) {
  const std::size_t end = std::min(mountTable.find('\n'), mountTable.size());
  const std::string_view line = mountTable.substr(0, end);
  mountTable.remove_prefix(std::min(end + 1, mountTable.size()));
  return mountOf(line);
}

/// `\\server\folder` of "server:/folder", "user@server:/folder" and "//server/folder".
std::string networkNameOf(const Mount& mount) {
  std::string server;
  std::string folder;
  const std::string& source = mount.source;
  if (source.starts_with("//")) {
    const std::size_t end = std::min(source.find('/', 2), source.size());
    server = source.substr(2, end - 2);
    folder = source.substr(end);
  } else {
    // The address of a server may have colons, in brackets.
    const std::size_t bracket = source.starts_with('[') ? source.find(']') : 0;
    const std::size_t colon = std::min(source.find(':', bracket), source.size());
    server = source.substr(0, colon);
    folder = source.substr(std::min(colon + 1, source.size()));
    if (const std::size_t at = server.find('@'); at != std::string::npos) server.erase(0, at + 1);
  }
  const auto isSlash = [](char c) { return c == '/'; };
  folder.erase(folder.begin(), std::find_if_not(folder.begin(), folder.end(), isSlash));
  while (folder.ends_with('/')) folder.pop_back();
  if (folder.empty()) folder = textOf(pathOf(mount.folder).filename());
  std::replace(folder.begin(), folder.end(), '/', '\\');
  return R"(\\)" + server + '\\' + folder;
}

std::optional<Volume> volumeOf(const Mount& mount) {
  Volume volume;
  volume.folder = pathOf(mount.folder);
  const bool isDevice = mount.source.starts_with("/dev/");
  if (isDevice) volume.device = mount.source;
  if (mount.folder == "/") return volume;
  if (isInAny(kSystemFolders, mount.folder) || contains(kProgramTypes, mount.type)) return std::nullopt;
  if (contains(kNetworkTypes, mount.type)) {
    volume.kind = VolumeKind::kNetwork;
    volume.networkName = networkNameOf(mount);
    return volume;
  }
  if (!isDevice && !contains(kPoolTypes, mount.type)) return std::nullopt;
  if (contains(kDiscTypes, mount.type) || mount.source.starts_with("/dev/sr")) {
    volume.kind = VolumeKind::kDisc;
  } else if (isInAny(kUserFolders, mount.folder)) {
    volume.kind = VolumeKind::kRemovable;
  }
  return volume;
}

std::string mountTable() {
  std::ifstream table(kMountTable, std::ios::binary);
  return {std::istreambuf_iterator<char>(table), {}};
}

/// A single file can be mounted too.
bool isLocalFile(const Volume& volume) {
  std::error_code error;
  return volume.kind != VolumeKind::kNetwork && !fs::is_directory(volume.folder, error);
}

}  // namespace

std::vector<Volume> volumesIn(std::string_view mountTable) {
  std::vector<Volume> volumes = {
      Volume{.folder = "/", .kind = VolumeKind::kFixed, .device = {}, .networkName = {}}};
  while (!mountTable.empty()) {
    const std::optional<Mount> mount = takeMount(mountTable);
    if (!mount) continue;
    const std::optional<Volume> volume = volumeOf(*mount);
    // A later mount at the same place hides the earlier one.
    const auto hidden = std::find_if(volumes.begin(), volumes.end(), [&](const Volume& other) {
      return textOf(other.folder) == mount->folder;
    });
    if (hidden == volumes.end()) {
      if (volume) volumes.push_back(*volume);
    } else if (volume) {
      *hidden = *volume;
    } else {
      volumes.erase(hidden);
    }
  }
  return volumes;
}

bool isRemovable(const std::string& device, const fs::path& blocks) {
  if (device.empty()) return false;
  std::error_code error;
  // The name may be a link, as "/dev/disk/by-uuid/..." or "/dev/mapper/...".
  const fs::path name = fs::weakly_canonical(pathOf(device), error).filename();
  if (error || name.empty()) return false;
  fs::path disk = fs::canonical(blocks / name, error);
  if (error) return false;
  if (fs::exists(disk / "partition", error)) disk = disk.parent_path();
  char flag = '0';
  std::ifstream(disk / "removable") >> flag;
  return flag == '1';
}

std::vector<Volume> mountedVolumes() {
  std::vector<Volume> volumes = volumesIn(mountTable());
  std::erase_if(volumes, isLocalFile);
  for (Volume& volume : volumes) {
    if (volume.kind != VolumeKind::kFixed || volume.folder == "/") continue;
    if (isRemovable(volume.device, kBlocks)) volume.kind = VolumeKind::kRemovable;
  }
  return volumes;
}

std::vector<fs::path> remoteFolders() { return remoteFoldersIn(mountTable()); }

std::vector<fs::path> remoteFoldersIn(std::string_view mountTable) {
  std::vector<fs::path> folders;
  while (!mountTable.empty()) {
    const std::optional<Mount> mount = takeMount(mountTable);
    if (!mount || mount->folder == "/") continue;
    const bool waits = contains(kNetworkTypes, mount->type) || mount->type == "fuse" ||
                       mount->type.starts_with("fuse.") || mount->type == kOnDemand;
    if (waits) folders.push_back(pathOf(mount->folder));
  }
  return folders;
}

std::string labelOf(const Volume& volume) { return labelOf(volume, kLabels); }

std::string labelOf(const Volume& volume, const fs::path& labels) {
  if (volume.device.empty()) return {};
  std::error_code error;
  const fs::path device = fs::weakly_canonical(pathOf(volume.device), error);
  for (fs::directory_iterator link(labels, error), end; !error && link != end; link.increment(error)) {
    std::error_code dangling;
    if (fs::weakly_canonical(link->path(), dangling) != device || dangling) continue;
    return unescaped(textOf(link->path().filename()), "\\x", 2, 16);
  }
  return {};
}

}  // namespace kestrel::os
