#include "platform/os/Files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <random>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/os/Paths.h"

namespace kestrel::os {
namespace {

namespace fs = std::filesystem;
using Failure = std::optional<FileFailure>;

FileFailure failureOf(int code) {
  const auto problem = [code] {
    switch (code) {
      case ENOENT:
        return FileProblem::kMissing;
      case EACCES:
      case EPERM:
        return FileProblem::kDenied;
      case EROFS:
        return FileProblem::kReadOnlyDisk;
      case ENOSPC:
        return FileProblem::kDiskFull;
      case EDQUOT:
        return FileProblem::kQuota;
      case EFBIG:
        return FileProblem::kTooLargeForDisk;
      case EIO:
        return FileProblem::kDevice;
      case ENOMEM:
        return FileProblem::kMemory;
      case ENAMETOOLONG:
        return FileProblem::kNameTooLong;
      case ELOOP:
        return FileProblem::kLinkLoop;
      case ENOTDIR:
        return FileProblem::kNotAFolder;
      case EISDIR:
        return FileProblem::kIsAFolder;
      default:
        return FileProblem::kOther;
    }
  }();
  return {problem, code};
}

/// A file descriptor that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }

  int number() const { return number_; }
  bool isOpen() const { return number_ >= 0; }

  int release() { return std::exchange(number_, -1); }

 private:
  int number_;
};

/// The file that a path means once all symbolic links at its end are followed; it need not exist. An empty
/// path for a loop of links.
fs::path followLinks(fs::path path) {
  constexpr int kMostLinks = 40;
  for (int i = 0; i < kMostLinks; ++i) {
    std::error_code error;
    if (!fs::is_symlink(fs::symlink_status(path, error))) return path;
    const fs::path target = fs::read_symlink(path, error);
    if (error) return path;
    path = target.is_absolute() ? target : path.parent_path() / target;
  }
  return {};
}

constexpr std::string_view kPrefix = ".kestrel-", kSuffix = ".tmp";

/// Removes the temporary files that killed processes left behind. A living process holds a lock on its own.
void removeStaleFiles(const fs::path& folder) {
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    const std::string name = textOf(entry->path().filename());
    if (!name.starts_with(kPrefix) || !name.ends_with(kSuffix)) continue;
    const Descriptor file(::open(entry->path().c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
    if (file.isOpen() && ::flock(file.number(), LOCK_EX | LOCK_NB) == 0) ::unlink(entry->path().c_str());
  }
}

/// A new file in a folder, removed again unless it was moved to its place. It is locked while it has a name,
/// so that no other process takes it for stale. Its name is short and does not depend on the target's, which
/// may be as long as the file system allows.
class TemporaryFile {
 public:
  /// `named` at once, or only when it is moved. Where a file without a name cannot be made it has one at
  /// once.
  TemporaryFile(const fs::path& folder, bool named) : folder_(folder) {
    if (!named) descriptor_ = Descriptor(::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666));
    if (!descriptor_.isOpen()) openNamed();
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!name_.empty()) ::unlink(name_.c_str());
  }

  /// Negative, with errno set, if no file could be made.
  int descriptor() const { return descriptor_.number(); }

  /// Gives the file a name if it has none. False with errno set if that is not possible here.
  bool giveName() {
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

  /// False with errno set if it could not be moved. The file must have a name.
  bool moveTo(const fs::path& target) {
    if (::rename(name_.c_str(), target.c_str()) != 0) return false;
    name_.clear();
    return true;
  }

 private:
  fs::path freshName() {
    return folder_ / (std::string(kPrefix) + std::to_string(random_()) + std::string(kSuffix));
  }

  void openNamed() {
    do {
      name_ = freshName();
      descriptor_ = Descriptor(::open(name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
      // Another process may have taken it for stale before it was locked.
    } while (descriptor_.isOpen() ? !isLocked() : errno == EEXIST);
    if (!descriptor_.isOpen()) name_.clear();
  }

  /// A file system without locks has no processes that look for stale files there.
  bool isLocked() const {
    struct stat status {};
    if (::flock(descriptor(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return false;
    return ::fstat(descriptor(), &status) == 0 && status.st_nlink > 0;
  }

  fs::path folder_;
  std::random_device random_;
  Descriptor descriptor_;
  fs::path name_;  ///< empty without a name
};

/// False with errno set at the first failure.
bool writeAll(int descriptor, std::span<const std::uint8_t> data) {
  while (!data.empty()) {
    const ssize_t written = ::write(descriptor, data.data(), data.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    data = data.subspan(static_cast<std::size_t>(written));
  }
  return true;
}

/// Some systems report only when a file is closed that something was not written. The file stays open, and so
/// locked.
bool reportsAtClose(int descriptor) { return ::close(::dup(descriptor)) != 0; }

/// The new name must survive a power cut too. A folder that cannot be flushed is no failure of the save.
void flushFolder(const fs::path& folder) {
  const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.isOpen()) ::fsync(descriptor.number());
}

enum class Outcome { kDone, kFailed, kCannotBeNamed };

/// Fills the file and moves it to its place; `existing` is what it replaces, or null. Sets errno on a
/// failure.
Outcome fillAndMove(TemporaryFile& file, std::span<const std::uint8_t> data, const struct stat* existing,
                    const fs::path& target) {
  if (file.descriptor() < 0 || !writeAll(file.descriptor(), data)) return Outcome::kFailed;
  if (existing != nullptr) {
    // Another owner can only be kept by the superuser; the mode comes last, as a change of owner clears bits.
    [[maybe_unused]] const int ignored = ::fchown(file.descriptor(), existing->st_uid, existing->st_gid);
    if (::fchmod(file.descriptor(), existing->st_mode & 07777) != 0) return Outcome::kFailed;
  }
  if (::fsync(file.descriptor()) != 0 || reportsAtClose(file.descriptor())) return Outcome::kFailed;
  if (!file.giveName()) return Outcome::kCannotBeNamed;
  return file.moveTo(target) ? Outcome::kDone : Outcome::kFailed;
}

}  // namespace

InputFile::~InputFile() {
  if (handle_ >= 0) ::close(static_cast<int>(handle_));
}

Failure InputFile::open(const fs::path& path) {
  Descriptor descriptor(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  struct stat status {};
  if (!descriptor.isOpen() || ::fstat(descriptor.number(), &status) != 0) return failureOf(errno);
  if (S_ISDIR(status.st_mode)) return failureOf(EISDIR);
  if (!S_ISREG(status.st_mode)) return FileFailure{FileProblem::kNotAFile};
  size_ = static_cast<std::size_t>(status.st_size);
  handle_ = descriptor.release();
  return {};
}

Failure InputFile::read(std::span<std::uint8_t> target, std::size_t& filled) {
  filled = 0;
  while (filled < target.size()) {
    const ssize_t got = ::read(static_cast<int>(handle_), target.data() + filled, target.size() - filled);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return failureOf(errno);
    if (got == 0) break;
    filled += static_cast<std::size_t>(got);
  }
  return {};
}

Failure replaceFile(const fs::path& path, std::span<const std::uint8_t> data) {
  const fs::path target = followLinks(path);
  if (target.empty()) return failureOf(ELOOP);
  const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");

  struct stat status {};
  const bool exists = ::stat(target.c_str(), &status) == 0;
  if (!exists && errno != ENOENT) return failureOf(errno);
  if (exists && S_ISDIR(status.st_mode)) return failureOf(EISDIR);
  if (exists && !S_ISREG(status.st_mode)) return FileFailure{FileProblem::kNotAFile};
  // A folder's permission would be enough to replace it, but a file that is write-protected means to stay.
  if (exists && ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) return failureOf(errno);

  removeStaleFiles(folder);
  Outcome outcome = Outcome::kCannotBeNamed;
  for (const bool named : {false, true}) {
    if (outcome != Outcome::kCannotBeNamed) break;
    TemporaryFile temporary(folder, named);
    if (temporary.descriptor() < 0 && errno == ENOENT)
      return FileFailure{FileProblem::kFolderMissing, ENOENT};
    outcome = fillAndMove(temporary, data, exists ? &status : nullptr, target);
    if (outcome == Outcome::kFailed) return failureOf(errno);
  }
  if (outcome != Outcome::kDone) return failureOf(errno);
  flushFolder(folder);
  return {};
}

}  // namespace kestrel::os
