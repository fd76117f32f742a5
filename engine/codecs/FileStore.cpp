#include "FileStore.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <random>
#include <string>
#include <string_view>
#include <system_error>

#include "base/RuntimeError.h"
#include "engine/pixels/Memory.h"

namespace kestrel::engine {
namespace {

namespace fs = std::filesystem;

/// A file descriptor that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }

  int number() const { return number_; }
  bool isOpen() const { return number_ >= 0; }

  /// False with errno set if the system reports, at the last moment, that something was not written.
  bool close() {
    const int result = ::close(number_);
    number_ = -1;
    return result == 0;
  }

 private:
  int number_;
};

/// The run-time error for a system error code.
RuntimeError fileError(int code, const std::string& what) {
  const auto number = [code] {
    switch (code) {
      case ENOENT:
        return err::kFileNotFound;
      case EACCES:
      case EPERM:
      case EROFS:
        return err::kPermissionDenied;
      case ENOSPC:
      case EDQUOT:
      case EFBIG:
        return err::kDiskFull;
      case EIO:
        return err::kDeviceIO;
      case ENOMEM:
        return err::kOutOfMemory;
      default:
        return err::kPathFileAccess;
    }
  }();
  const auto reason = [code]() -> std::string {
    switch (code) {
      case ENOENT:
        return "it does not exist";
      case EACCES:
      case EPERM:
        return "permission is denied";
      case EROFS:
        return "the disk can only be read";
      case ENOSPC:
        return "the disk is full";
      case EDQUOT:
        return "there is no room left for this user";
      case EFBIG:
        return "it is too large for the disk";
      case EIO:
        return "the device failed";
      case ENAMETOOLONG:
        return "its name is too long";
      case ELOOP:
        return "its symbolic links run in a circle";
      case ENOTDIR:
        return "part of its path is not a folder";
      case EISDIR:
        return "it is a folder";
      default:
        return std::system_category().message(code);
    }
  }();
  return RuntimeError(number, what + ": " + reason + ".");
}

std::string quoted(const fs::path& path) { return "\"" + path.string() + "\""; }

/// The file that a path means once all symbolic links at its end are followed; it need not exist.
fs::path followLinks(fs::path path) {
  constexpr int kMostLinks = 40;
  for (int i = 0; i < kMostLinks; ++i) {
    std::error_code error;
    if (!fs::is_symlink(fs::symlink_status(path, error))) return path;
    const fs::path target = fs::read_symlink(path, error);
    if (error) return path;
    path = target.is_absolute() ? target : path.parent_path() / target;
  }
  throw fileError(ELOOP, "The file " + quoted(path) + " cannot be written");
}

/// A new file in a folder, removed again unless it was moved to its place. Its name is short and does not
/// depend on the target's, which may be as long as the file system allows.
class TemporaryFile {
 public:
  explicit TemporaryFile(const fs::path& folder) {
    std::random_device random;
    do {
      path_ = folder / (".kestrel-" + std::to_string(random()) + ".tmp");
      number_ = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    } while (number_ < 0 && errno == EEXIST);
    exists_ = number_ >= 0;
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (exists_) ::unlink(path_.c_str());
  }

  int number() const { return number_; }

  /// False with errno set if it could not be moved.
  bool moveTo(const fs::path& target) {
    if (::rename(path_.c_str(), target.c_str()) != 0) return false;
    exists_ = false;
    return true;
  }

 private:
  fs::path path_;
  int number_ = -1;
  bool exists_ = false;
};

/// False with errno set at the first failure.
bool writeAll(int descriptor, Bytes data) {
  while (!data.empty()) {
    const ssize_t written = ::write(descriptor, data.data(), data.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    data = data.subspan(static_cast<std::size_t>(written));
  }
  return true;
}

/// The new name must survive a power cut too. A folder that cannot be flushed is no failure of the save.
void flushFolder(const fs::path& folder) {
  const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.isOpen()) ::fsync(descriptor.number());
}

}  // namespace

FileContent readFile(const fs::path& path) {
  const std::string what = "The file " + quoted(path) + " cannot be read";
  // Without blocking: opening a pipe would otherwise wait for somebody to write into it.
  const Descriptor descriptor(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  struct stat status {};
  if (!descriptor.isOpen() || ::fstat(descriptor.number(), &status) != 0) throw fileError(errno, what);
  if (S_ISDIR(status.st_mode)) throw fileError(EISDIR, what);
  if (!S_ISREG(status.st_mode)) {
    throw RuntimeError(err::kPathFileAccess, what + ": it is a device or a pipe.");
  }
  const auto size = static_cast<std::size_t>(status.st_size);
  if (size > machineMemory() / 4) {
    throw RuntimeError(err::kOutOfMemory, what + ": it is larger than a quarter of this machine's memory.");
  }

  Memory memory(size);
  std::size_t filled = 0;
  while (filled < size) {
    const ssize_t got = ::read(descriptor.number(), memory.data() + filled, size - filled);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) throw fileError(errno, what);
    if (got == 0) break;
    filled += static_cast<std::size_t>(got);
  }
  return FileContent(std::move(memory), filled);
}

void replaceFile(const fs::path& path, Bytes data) {
  const std::string what = "The file " + quoted(path) + " cannot be written";
  const fs::path target = followLinks(path);
  const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");

  struct stat status {};
  const bool exists = ::stat(target.c_str(), &status) == 0;
  if (!exists && errno != ENOENT) throw fileError(errno, what);
  if (exists && S_ISDIR(status.st_mode)) throw fileError(EISDIR, what);
  if (exists && !S_ISREG(status.st_mode)) {
    throw RuntimeError(err::kPathFileAccess, what + ": it is a device or a pipe.");
  }
  // A folder's permission would be enough to replace it, but a file that is write-protected means to stay.
  if (exists && ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) throw fileError(errno, what);

  TemporaryFile temporary(folder);
  Descriptor descriptor(temporary.number());
  if (!descriptor.isOpen()) {
    if (errno == ENOENT) {
      throw RuntimeError(err::kPathNotFound, what + ": the folder " + quoted(folder) + " does not exist.");
    }
    throw fileError(errno, what);
  }
  if (!writeAll(descriptor.number(), data)) throw fileError(errno, what);
  if (exists) {
    // Another owner can only be kept by the superuser; the mode comes last, as a change of owner clears bits.
    [[maybe_unused]] const int ignored = ::fchown(descriptor.number(), status.st_uid, status.st_gid);
    if (::fchmod(descriptor.number(), status.st_mode & 07777) != 0) throw fileError(errno, what);
  }
  if (::fsync(descriptor.number()) != 0 || !descriptor.close() || !temporary.moveTo(target)) {
    throw fileError(errno, what);
  }
  flushFolder(folder);
}

}  // namespace kestrel::engine
