#include "TemporaryFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <random>
#include <string>
#include <string_view>
#include <system_error>

#include "Renaming.h"
#include "platform/os/Entries.h"
#include "platform/os/Paths.h"

namespace kestrel::os {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPrefix = ".kestrel-", kSuffix = ".tmp";
/// A link has its temporary name for moments only.
constexpr std::chrono::minutes kLinkIsStaleAfter{1};

/// A living process holds a lock on its own file.
bool isStaleFile(const fs::path& path) {
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
  return file.isOpen() && ::flock(file.number(), LOCK_EX | LOCK_NB) == 0;
}

/// Links have no locks.
bool isStaleLink(const fs::path& path, std::chrono::system_clock::time_point now) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return false;
  return std::chrono::system_clock::from_time_t(status.st_ctim.tv_sec) + kLinkIsStaleAfter < now;
}

}  // namespace

void removeStaleFiles(const fs::path& folder) { removeStaleFiles(folder, std::chrono::system_clock::now()); }

void removeStaleFiles(const fs::path& folder, std::chrono::system_clock::time_point now) {
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    const std::string name = textOf(entry->path().filename());
    if (!name.starts_with(kPrefix) || !name.ends_with(kSuffix)) continue;
    const fs::path& path = entry->path();
    if (isStaleFile(path) || isStaleLink(path, now)) ::unlink(path.c_str());
  }
}

EntryPath temporaryName(const EntryPath& folder) {
  std::random_device random;
  return {folder.folder,
          folder.path / (std::string(kPrefix) + std::to_string(random()) + std::string(kSuffix))};
}

TemporaryFile::TemporaryFile(const EntryPath& folder, bool named, mode_t mode) : folder_(folder) {
  if (!named)
    descriptor_ = Descriptor(
        ::openat(descriptorOf(folder), folder.path.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, mode));
  if (!descriptor_.isOpen()) openNamed(mode);
}

TemporaryFile::~TemporaryFile() {
  if (name_) removeFile(*name_);
}

bool TemporaryFile::giveName() {
  if (name_) return true;
  ::flock(descriptor(), LOCK_EX | LOCK_NB);
  do {
    EntryPath name = temporaryName(folder_);
    if (linkTo(name)) {
      name_ = std::move(name);
      return true;
    }
  } while (errno == EEXIST);
  return false;
}

bool TemporaryFile::moveTo(const EntryPath& target) {
  if (!rename(*name_, target)) return false;
  name_.reset();
  return true;
}

bool TemporaryFile::moveToNew(const EntryPath& target) {
  if (!name_) return linkTo(target);
  if (!renameToNew(*name_, target)) return false;
  name_.reset();
  return true;
}

bool TemporaryFile::linkTo(const EntryPath& name) const {
  const std::string source = "/proc/self/fd/" + std::to_string(descriptor());
  return ::linkat(AT_FDCWD, source.c_str(), descriptorOf(name), name.path.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

void TemporaryFile::openNamed(mode_t mode) {
  do {
    name_ = temporaryName(folder_);
    descriptor_ = Descriptor(
        ::openat(descriptorOf(*name_), name_->path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    // Another process may have taken it for stale before it was locked.
  } while (descriptor_.isOpen() ? !isLocked() : errno == EEXIST);
  if (!descriptor_.isOpen()) name_.reset();
}

/// A file system without locks has no processes that look for stale files there.
bool TemporaryFile::isLocked() const {
  struct stat status {};
  if (::flock(descriptor(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return false;
  return ::fstat(descriptor(), &status) == 0 && status.st_nlink > 0;
}

bool writeAll(int descriptor, std::span<const std::uint8_t> data) {
  while (!data.empty()) {
    const ssize_t written = ::write(descriptor, data.data(), data.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    data = data.subspan(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace kestrel::os
