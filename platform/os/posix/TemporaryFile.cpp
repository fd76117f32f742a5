#include "TemporaryFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/os/Paths.h"

namespace kestrel::os {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPrefix = ".kestrel-", kSuffix = ".tmp";

}  // namespace

void removeStaleFiles(const fs::path& folder) {
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    const std::string name = textOf(entry->path().filename());
    if (!name.starts_with(kPrefix) || !name.ends_with(kSuffix)) continue;
    const Descriptor file(::open(entry->path().c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
    if (file.isOpen() && ::flock(file.number(), LOCK_EX | LOCK_NB) == 0) ::unlink(entry->path().c_str());
  }
}

TemporaryFile::TemporaryFile(const fs::path& folder, bool named, mode_t mode) : folder_(folder) {
  if (!named) descriptor_ = Descriptor(::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, mode));
  if (!descriptor_.isOpen()) openNamed(mode);
}

TemporaryFile::~TemporaryFile() {
  if (!name_.empty()) ::unlink(name_.c_str());
}

bool TemporaryFile::giveName() {
  if (!name_.empty()) return true;
  ::flock(descriptor(), LOCK_EX | LOCK_NB);
  const std::string source = "/proc/self/fd/" + std::to_string(descriptor());
  fs::path name;
  do {
    name = freshName();
    if (::linkat(AT_FDCWD, source.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0) {
      name_ = name;
      return true;
    }
  } while (errno == EEXIST);
  return false;
}

bool TemporaryFile::moveTo(const fs::path& target) {
  if (::rename(name_.c_str(), target.c_str()) != 0) return false;
  name_.clear();
  return true;
}

fs::path TemporaryFile::freshName() {
  return folder_ / (std::string(kPrefix) + std::to_string(random_()) + std::string(kSuffix));
}

void TemporaryFile::openNamed(mode_t mode) {
  do {
    name_ = freshName();
    descriptor_ = Descriptor(::open(name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    // Another process may have taken it for stale before it was locked.
  } while (descriptor_.isOpen() ? !isLocked() : errno == EEXIST);
  if (!descriptor_.isOpen()) name_.clear();
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

void flushFolder(const fs::path& folder) {
  const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.isOpen()) ::fsync(descriptor.number());
}

}  // namespace kestrel::os
