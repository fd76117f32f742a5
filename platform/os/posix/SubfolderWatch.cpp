#include "../SubfolderWatch.h"

#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <utility>

#include "../Volumes.h"
#include "Descriptor.h"

namespace kestrel::os {
namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t kEvents = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF |
                                  IN_MOVE_SELF | IN_ONLYDIR | IN_EXCL_UNLINK;

/// Whether a path is one of the folders or in one of them.
bool isInAny(const std::vector<fs::path>& folders, const fs::path& path) {
  return std::any_of(folders.begin(), folders.end(), [&](const fs::path& folder) {
    return std::mismatch(folder.begin(), folder.end(), path.begin(), path.end()).first == folder.end();
  });
}

}  // namespace

struct SubfolderWatch::Inside {
  Descriptor events{::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)};
  /// By the numbers of their watches. A folder has one number, also where a link leads to it.
  std::map<int, std::set<fs::path>> folders;
  std::set<fs::path> changed;
  std::set<fs::path> lost;  ///< vanished, and not found again
  std::vector<Renaming> renamings;
  /// The first half of a renaming, whose second half is the next event.
  std::uint32_t movedCookie = 0;
  fs::path movedFrom;

  void add(const fs::path& folder) {
    const int number = ::inotify_add_watch(events.number(), folder.c_str(), kEvents);
    if (number < 0) return;
    folders[number].insert(folder);
    // What it holds now was not noticed.
    if (lost.erase(folder) > 0) changed.insert(folder);
  }

  void handle(const inotify_event& event, const std::string& name) {
    if ((event.mask & IN_Q_OVERFLOW) != 0) {
      for (const auto& watched : folders) changed.insert(watched.second.begin(), watched.second.end());
      return;
    }
    const auto watched = folders.find(event.wd);
    if (watched == folders.end()) return;
    if ((event.mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED)) != 0) {
      changed.insert(watched->second.begin(), watched->second.end());
      lost.insert(watched->second.begin(), watched->second.end());
      if ((event.mask & IN_IGNORED) == 0) ::inotify_rm_watch(events.number(), event.wd);
      folders.erase(watched);
    } else if ((event.mask & IN_ISDIR) != 0 || mayBeLink(event, *watched->second.begin() / name)) {
      changed.insert(watched->second.begin(), watched->second.end());
      noteRenaming(event, *watched->second.begin() / name);
    }
  }

  void noteRenaming(const inotify_event& event, const fs::path& entry) {
    if ((event.mask & IN_MOVED_TO) != 0 && event.cookie == movedCookie && !movedFrom.empty()) {
      renamings.push_back({movedFrom, entry});
    }
    movedCookie = event.cookie;
    movedFrom = (event.mask & IN_MOVED_FROM) != 0 ? entry : fs::path();
  }

  /// A link may lead to a folder. What it was cannot be known after it has gone.
  static bool mayBeLink(const inotify_event& event, const fs::path& entry) {
    if ((event.mask & (IN_CREATE | IN_MOVED_TO)) == 0) return false;
    struct stat status {};
    return ::lstat(entry.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
  }
};

SubfolderWatch::SubfolderWatch() : inside_(std::make_unique<Inside>()) {}

SubfolderWatch::~SubfolderWatch() = default;

void SubfolderWatch::watch(const std::set<fs::path>& folders) {
  Inside& inside = *inside_;
  std::set<fs::path> added = folders;
  for (auto watched = inside.folders.begin(); watched != inside.folders.end();) {
    std::erase_if(watched->second, [&](const fs::path& folder) { return added.erase(folder) == 0; });
    if (!watched->second.empty()) {
      ++watched;
      continue;
    }
    ::inotify_rm_watch(inside.events.number(), watched->first);
    watched = inside.folders.erase(watched);
  }
  std::erase_if(inside.lost, [&](const fs::path& folder) { return !folders.contains(folder); });
  std::erase_if(inside.changed, [&](const fs::path& folder) { return !folders.contains(folder); });
  if (added.empty()) return;
  const std::vector<fs::path> remote = remoteFolders();
  for (const fs::path& folder : added) {
    if (!isInAny(remote, folder)) inside.add(folder);
  }
}

int SubfolderWatch::descriptor() const { return inside_->events.number(); }

std::vector<fs::path> SubfolderWatch::read() {
  Inside& inside = *inside_;
  inside.renamings.clear();
  alignas(inotify_event) std::array<char, std::size_t{16} << 10> buffer;
  for (;;) {
    const ssize_t size = ::read(inside.events.number(), buffer.data(), buffer.size());
    if (size <= 0) break;
    for (const char* at = buffer.data(); at < buffer.data() + size;) {
      inotify_event event;
      std::memcpy(&event, at, sizeof event);
      inside.handle(event, event.len > 0 ? std::string(at + sizeof event) : std::string());
      at += sizeof event + event.len;
    }
  }
  const std::set<fs::path> changed = std::exchange(inside.changed, {});
  return {changed.begin(), changed.end()};
}

const std::vector<SubfolderWatch::Renaming>& SubfolderWatch::renamings() const { return inside_->renamings; }

}  // namespace kestrel::os
