#include "platform/os/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "Descriptor.h"
#include "TemporaryFile.h"
#include "platform/os/Entries.h"

namespace kestrel::os {
namespace {

namespace fs = std::filesystem;
using Failure = std::optional<FileFailure>;

constexpr mode_t kByTheMask = 0666;

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

/// Some systems report only when a file is closed that something was not written. The file stays open, and so
/// locked.
bool reportsAtClose(int descriptor) { return ::close(::dup(descriptor)) != 0; }

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

FileFailure failureToName(int code) {
  if (code == EINVAL || code == EILSEQ) return {FileProblem::kBadName, code};
  return failureOf(code);
}

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
      case EEXIST:
        return FileProblem::kExists;
      case EXDEV:
        return FileProblem::kOtherDisk;
      case ENOTEMPTY:
        return FileProblem::kNotEmpty;
      default:
        return FileProblem::kOther;
    }
  }();
  return {problem, code};
}

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
    TemporaryFile temporary(folder, named, kByTheMask);
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
