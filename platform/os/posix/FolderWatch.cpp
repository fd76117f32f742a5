#include "platform/os/FolderWatch.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include "ChangeCollector.h"
#include "Descriptor.h"

namespace kestrel::os {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr std::uint32_t kEvents = IN_CREATE | IN_MODIFY | IN_CLOSE_WRITE | IN_ATTRIB | IN_DELETE |
                                  IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR |
                                  IN_EXCL_UNLINK;

/// Of the folders above: they lead elsewhere.
constexpr std::uint32_t kEventsAbove = IN_DELETE_SELF | IN_MOVE_SELF | IN_DONT_FOLLOW | IN_MASK_ADD;

/// Whether other machines can change what is on the file system, unseen by this one.
bool isShared(const fs::path& folder) {
  constexpr std::array<std::uint32_t, 11> kShared{AFS_FS_MAGIC,     AFS_SUPER_MAGIC,  CEPH_SUPER_MAGIC,
                                                  CIFS_SUPER_MAGIC, CODA_SUPER_MAGIC, FUSE_SUPER_MAGIC,
                                                  NCP_SUPER_MAGIC,  NFS_SUPER_MAGIC,  SMB2_SUPER_MAGIC,
                                                  SMB_SUPER_MAGIC,  V9FS_MAGIC};
  struct statfs status {};
  if (::statfs(folder.c_str(), &status) != 0) return true;
  const auto type = static_cast<std::uint32_t>(status.f_type);
  return std::find(kShared.begin(), kShared.end(), type) != kShared.end();
}

}  // namespace

struct FolderWatch::Inside {
  Inside(const fs::path& folder, Changed changed)
      : folder_(folder),
        changed_(std::move(changed)),
        events_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)),
        wake_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    if (!events_.isOpen() || !wake_.isOpen()) return;
    watch_ = ::inotify_add_watch(events_.number(), folder.c_str(), kEvents);
    if (watch_ >= 0) watchAbove();
  }
  Inside(const Inside&) = delete;
  Inside& operator=(const Inside&) = delete;

  /// False if there is nothing to watch with. The thread keeps `self`, this object, until it ends.
  bool start(std::shared_ptr<Inside> self) {
    if (watch_ < 0) return false;
    try {
      thread_ = std::thread([own = std::move(self)] { own->serve(); });
    } catch (const std::system_error&) {
      return false;  // the system refuses further threads
    }
    return true;
  }

  /// Ends the thread and waits for it, unless it is the calling one: that ends by itself.
  void end() {
    constexpr std::uint64_t kOne = 1;
    [[maybe_unused]] const ssize_t written = ::write(wake_.number(), &kOne, sizeof kOne);
    if (thread_.get_id() == std::this_thread::get_id()) {
      thread_.detach();
    } else {
      thread_.join();
    }
  }

 private:
  struct Moved {
    std::uint32_t cookie;
    std::string name;
  };

  /// Watches what the path consists of: folders, links, and the folders that links lead to. Those that the
  /// user may not read are left out.
  void watchAbove() {
    std::error_code error;
    for (fs::path part : {fs::absolute(folder_, error), fs::canonical(folder_, error)}) {
      for (; part.has_relative_path(); part = part.parent_path()) {
        ::inotify_add_watch(events_.number(), part.c_str(), kEventsAbove);
      }
    }
  }

  void serve() {
    while (!ended_ && waitForEvents()) {
      readEvents();
      if (auto changes = collector_.take(Clock::now())) changed_(*std::move(changes));
    }
  }

  /// Waits for an event or until the collector is due. False when the watch is to end.
  bool waitForEvents() {
    std::array<pollfd, 2> sources{{{events_.number(), POLLIN, 0}, {wake_.number(), POLLIN, 0}}};
    ::poll(sources.data(), sources.size(), timeout());
    return sources[1].revents == 0;
  }

  /// Milliseconds; -1 for ever.
  int timeout() const {
    const auto due = collector_.due();
    if (!due) return -1;
    const auto rest = std::chrono::ceil<std::chrono::milliseconds>(*due - Clock::now()).count();
    return static_cast<int>(std::clamp<std::int64_t>(rest, 0, std::numeric_limits<int>::max()));
  }

  void readEvents() {
    alignas(inotify_event) std::array<char, std::size_t{64} << 10> buffer;
    const ssize_t size = ::read(events_.number(), buffer.data(), buffer.size());
    for (const char* at = buffer.data(); at < buffer.data() + std::max<ssize_t>(size, 0);) {
      inotify_event event;
      std::memcpy(&event, at, sizeof event);
      handle(event, event.len > 0 ? std::string(at + sizeof event) : std::string());
      at += sizeof event + event.len;
    }
    // The halves of a renaming come in one portion as a rule. If not, it is reported as two changes.
    settleMove();
  }

  void handle(const inotify_event& event, const std::string& name) {
    const ChangeCollector::Time now = Clock::now();
    if ((event.mask & IN_MOVED_TO) != 0 && moved_ && moved_->cookie == event.cookie) {
      collector_.renamed(moved_->name, name, now);
      moved_.reset();
      return;
    }
    settleMove();
    if ((event.mask & IN_Q_OVERFLOW) != 0) {
      collector_.overflowed(now);
    } else if ((event.mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED)) != 0) {
      if (!ended_) collector_.folderGone(now);
      ended_ = true;
    } else if (name.empty() || event.wd != watch_) {
      return;  // attributes of the folder itself
    } else if ((event.mask & IN_MOVED_FROM) != 0) {
      moved_ = Moved{event.cookie, name};
    } else if ((event.mask & IN_DELETE) != 0) {
      collector_.gone(name, now);
    } else if ((event.mask & IN_CREATE) != 0) {
      collector_.created(name, canBeOpen(event, name), now);
    } else if ((event.mask & IN_MODIFY) != 0) {
      collector_.written(name, now);
    } else if ((event.mask & IN_ATTRIB) != 0) {
      collector_.attributesChanged(name, now);
    } else {
      collector_.completed(name, now);
    }
  }

  /// A renaming without a second half: the entry left the folder.
  void settleMove() {
    if (moved_) collector_.gone(moved_->name, Clock::now());
    moved_.reset();
  }

  /// Whether the new entry may have a writer. Further links to a file, links and folders have none.
  bool canBeOpen(const inotify_event& event, const std::string& name) const {
    if ((event.mask & IN_ISDIR) != 0) return false;
    struct stat status {};
    if (::lstat((folder_ / name).c_str(), &status) != 0) return true;
    return S_ISREG(status.st_mode) && status.st_nlink == 1;
  }

  fs::path folder_;
  Changed changed_;
  Descriptor events_;
  Descriptor wake_;  ///< readable when the watch is to end
  int watch_ = -1;   ///< of the folder; negative if it cannot be watched
  // Of the thread
  ChangeCollector collector_;
  std::optional<Moved> moved_;
  bool ended_ = false;  ///< the folder is gone

  std::thread thread_;
};

FolderWatch::FolderWatch(const fs::path& folder, Changed changed) {
  auto inside = std::make_shared<Inside>(folder, std::move(changed));
  if (!inside->start(inside)) return;
  inside_ = std::move(inside);
  available_ = !isShared(folder);
}

FolderWatch::~FolderWatch() {
  if (inside_) inside_->end();
}

}  // namespace kestrel::os
