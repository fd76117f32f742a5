#include "platform/os/FileCopy.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>
#include <utility>
#include <vector>

#include "CopyFacts.h"
#include "Descriptor.h"
#include "FactsOf.h"
#include "TemporaryFile.h"

namespace kestrel::os {
namespace {

namespace fs = std::filesystem;
using Failure = std::optional<FileFailure>;

/// Copied at a time, so that a cancellation does not wait long even for a slow disk.
constexpr std::size_t kPortion = std::size_t{1} << 20;
constexpr std::size_t kBuffer = std::size_t{256} << 10;
/// Flushed at a time. A flush cannot be interrupted, and what waits to be written is no progress.
constexpr std::uint64_t kUnflushed = std::uint64_t{32} << 20;
/// Nobody else reads the copy before it is complete.
constexpr mode_t kOnlyTheUser = 0600;

/// The system cannot copy between these files itself.
bool needsReading(int code) {
  static constexpr std::array kCodes = {EXDEV, EINVAL, EOPNOTSUPP, ENOSYS, EPERM, EBADF, ETXTBSY};
  return std::find(kCodes.begin(), kCodes.end(), code) != kCodes.end();
}

bool isSparse(const struct stat& status) {
  constexpr off_t kBlock = 512;
  return status.st_blocks < status.st_size / kBlock;
}

/// Copies from the files' positions to the source's end. False with errno set; ECANCELED if canceled.
class Content {
 public:
  Content(int from, int to, const FileCopy::GoOn& goOn) : from_(from), to_(to), goOn_(goOn) {}

  bool copy(std::uint64_t size) {
    if (size > 0 && ::ioctl(to_, FICLONE, from_) == 0) return advance(size);
    return copyData(std::numeric_limits<std::uint64_t>::max());
  }

  /// The same without the holes, which take no space in the copy either.
  bool copySparse(std::uint64_t size) {
    if (::ioctl(to_, FICLONE, from_) == 0) return advance(size);
    off_t at = 0;
    for (;;) {
      const off_t data = ::lseek(from_, at, SEEK_DATA);
      if (data < 0 && errno == ENXIO) break;
      // The file system cannot find holes.
      if (data < 0) return at == 0 && copyData(std::numeric_limits<std::uint64_t>::max());
      const off_t end = ::lseek(from_, data, SEEK_HOLE);
      if (end < 0 || ::lseek(from_, data, SEEK_SET) < 0 || ::lseek(to_, data, SEEK_SET) < 0) return false;
      if (!progressBy(data - at) || !copyData(static_cast<std::uint64_t>(end - data))) return false;
      at = end;
    }
    const auto length = static_cast<off_t>(size);
    return at >= length || (::ftruncate(to_, length) == 0 && progressBy(length - at));
  }

 private:
  /// Copies so many bytes, or up to the source's end.
  bool copyData(std::uint64_t left) {
    while (left > 0) {
      const auto portion = static_cast<std::size_t>(std::min<std::uint64_t>(left, kPortion));
      const ssize_t count = ::copy_file_range(from_, nullptr, to_, nullptr, portion, 0);
      if (count < 0 && errno == EINTR) continue;
      if (count < 0 && !needsReading(errno)) return false;
      if (count == 0 && copiesInside_) return true;
      // The files of some file systems seem empty to this call.
      if (count <= 0) return read(left);
      copiesInside_ = true;
      left -= static_cast<std::uint64_t>(count);
      if (!advance(static_cast<std::uint64_t>(count))) return false;
    }
    return true;
  }

  bool read(std::uint64_t left) {
    std::vector<std::uint8_t> buffer(kBuffer);
    while (left > 0) {
      const auto portion = static_cast<std::size_t>(std::min<std::uint64_t>(left, kBuffer));
      const ssize_t count = ::read(from_, buffer.data(), portion);
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) return count == 0;
      if (!writeAll(to_, {buffer.data(), static_cast<std::size_t>(count)})) return false;
      left -= static_cast<std::uint64_t>(count);
      if (!advance(static_cast<std::uint64_t>(count))) return false;
    }
    return true;
  }

  bool advance(std::uint64_t count) {
    unflushed_ += count;
    if (unflushed_ >= kUnflushed) {
      if (::fdatasync(to_) != 0) return false;
      unflushed_ = 0;
    }
    return progressBy(static_cast<std::int64_t>(count));
  }

  bool progressBy(std::int64_t count) {
    copied_ += static_cast<std::uint64_t>(count);
    if (goOn_(copied_)) return true;
    errno = ECANCELED;
    return false;
  }

  int from_;
  int to_;
  const FileCopy::GoOn& goOn_;
  std::uint64_t copied_ = 0;
  std::uint64_t unflushed_ = 0;
  bool copiesInside_ = false;  ///< the system has copied between these files
};

Failure failureToCopy(int code) {
  return code == ECANCELED ? FileFailure{FileProblem::kCanceled} : failureOf(code);
}

}  // namespace

struct FileCopy::Inside {
  Failure fill(bool named) {
    copy.reset();
    copy = std::make_unique<TemporaryFile>(folder, named, kOnlyTheUser);
    const int to = copy->descriptor();
    if (to < 0 && errno == ENOENT) return FileFailure{FileProblem::kFolderMissing, ENOENT};
    struct stat before {
    }, after{};
    if (to < 0 || ::lseek(source.number(), 0, SEEK_SET) != 0 || ::fstat(source.number(), &before) != 0)
      return failureOf(errno);
    Content content(source.number(), to, goOn);
    const auto size = static_cast<std::uint64_t>(before.st_size);
    if (!(isSparse(before) ? content.copySparse(size) : content.copy(size))) return failureToCopy(errno);
    if (!copyFacts(source.number(), before, to) || ::fsync(to) != 0 || ::fstat(source.number(), &after) != 0)
      return failureOf(errno);
    if (!unchanged(factsOf(before), factsOf(after))) return FileFailure{FileProblem::kChanged};
    facts = factsOf(after);
    return {};
  }

  /// Runs `move`; where a file without a name cannot get one, with a copy that has one from the start.
  template <typename Move>
  Failure moveWith(Move move) {
    for (bool refilled = false;; refilled = true) {
      if (move()) return {};
      const int code = errno;
      if (refilled || copy->hasName() ||
          (code != ENOENT && code != EINVAL && code != EPERM && code != EOPNOTSUPP && code != EXDEV))
        return failureToName(code);
      if (const Failure failure = fill(true)) return failure;
    }
  }

  Descriptor source;
  EntryFacts facts;
  EntryPath folder{fs::path()};
  GoOn goOn;
  std::unique_ptr<TemporaryFile> copy;
};

FileCopy::FileCopy() : inside_(std::make_unique<Inside>()) {}
FileCopy::~FileCopy() = default;

const EntryFacts& FileCopy::facts() const { return inside_->facts; }

Failure FileCopy::open(const EntryPath& source) {
  Descriptor file(
      ::openat(descriptorOf(source), source.path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  struct stat status {};
  if (!file.isOpen() && errno == ENXIO) return FileFailure{FileProblem::kNotAFile, ENXIO};  // a socket
  if (!file.isOpen() || ::fstat(file.number(), &status) != 0) return failureOf(errno);
  if (S_ISDIR(status.st_mode)) return failureOf(EISDIR);
  if (!S_ISREG(status.st_mode)) return FileFailure{FileProblem::kNotAFile};
  inside_->source = std::move(file);
  inside_->facts = factsOf(status);
  return {};
}

Failure FileCopy::fill(const EntryPath& folder, GoOn goOn) {
  inside_->folder = folder;
  inside_->goOn = std::move(goOn);
  return inside_->fill(false);
}

Failure FileCopy::place(const EntryPath& target) {
  return inside_->moveWith([&] { return inside_->copy->moveToNew(target); });
}

Failure FileCopy::replace(const EntryPath& target) {
  return inside_->moveWith([&] { return inside_->copy->giveName() && inside_->copy->moveTo(target); });
}

}  // namespace kestrel::os
