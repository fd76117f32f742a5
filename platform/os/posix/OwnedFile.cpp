#include "platform/os/OwnedFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include "Descriptor.h"
#include "TemporaryFile.h"
#include "platform/os/Entries.h"

namespace kestrel::os {
namespace {

namespace fs = std::filesystem;
using Failure = std::optional<FileFailure>;

constexpr mode_t kOnlyTheUser = 0600;
/// What is written and flushed at a time. A flush cannot be interrupted, so this bounds the wait for a
/// cancellation.
constexpr std::size_t kPortion = std::size_t{4} << 20;

/// Whether the name still means the open file.
bool isStillNamed(const Descriptor& file, const fs::path& path) {
  struct stat open {
  }, named{};
  return ::fstat(file.number(), &open) == 0 && ::stat(path.c_str(), &named) == 0 &&
         open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

/// False with errno set at the first failure; ECANCELED if canceled.
bool writePortions(int descriptor, std::span<const std::vector<std::uint8_t>> blocks,
                   const std::function<bool()>& canceled) {
  std::size_t unflushed = 0;
  for (std::span<const std::uint8_t> rest : blocks) {
    while (!rest.empty()) {
      if (canceled()) {
        errno = ECANCELED;
        return false;
      }
      const std::size_t count = std::min(rest.size(), kPortion - unflushed);
      if (!writeAll(descriptor, rest.first(count))) return false;
      rest = rest.subspan(count);
      unflushed += count;
      if (unflushed < kPortion) continue;
      if (::fdatasync(descriptor) != 0) return false;
      unflushed = 0;
    }
  }
  return ::fsync(descriptor) == 0;
}

}  // namespace

struct OwnedFile::Handle {
  explicit Handle(Descriptor open) : descriptor(std::move(open)) {}

  Descriptor descriptor;
};

OwnedFile::OwnedFile() = default;
OwnedFile::OwnedFile(OwnedFile&&) noexcept = default;
OwnedFile& OwnedFile::operator=(OwnedFile&&) noexcept = default;
OwnedFile::~OwnedFile() = default;

bool OwnedFile::owns() const { return handle_ != nullptr; }

Failure OwnedFile::take(const fs::path& path) {
  // Some network file systems lock only what is open for writing.
  auto handle = std::make_unique<Handle>(
      Descriptor(::open(path.c_str(), O_RDWR | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC)));
  if (!handle->descriptor.isOpen()) return failureOf(errno);
  if (::flock(handle->descriptor.number(), LOCK_EX | LOCK_NB) != 0)
    return FileFailure{FileProblem::kInUse, errno};
  // Its owner may have replaced or removed it in the meantime.
  if (!isStillNamed(handle->descriptor, path)) return FileFailure{FileProblem::kInUse, 0};
  handle_ = std::move(handle);
  path_ = path;
  return {};
}

Failure OwnedFile::replace(const fs::path& path, std::span<const std::vector<std::uint8_t>> blocks,
                           const std::function<bool()>& canceled) {
  const fs::path target = owns() ? path_ : path;
  const fs::path folder = target.parent_path();
  removeStaleFiles(folder);
  for (const bool named : {false, true}) {
    TemporaryFile temporary(folder, named, kOnlyTheUser);
    if (temporary.descriptor() < 0 || !writePortions(temporary.descriptor(), blocks, canceled)) {
      return errno == ECANCELED ? FileFailure{FileProblem::kCanceled} : failureOf(errno);
    }
    if (!temporary.giveName()) {
      if (named) return failureOf(errno);
      continue;
    }
    if (!temporary.moveTo(target)) return failureOf(errno);
    handle_ = std::make_unique<Handle>(temporary.takeDescriptor());
    path_ = target;
    flushFolder(folder);
    return {};
  }
  return failureOf(errno);
}

Failure OwnedFile::remove() {
  if (!owns()) return {};
  const bool removed = ::unlink(path_.c_str()) == 0 || errno == ENOENT;
  const int code = errno;
  handle_.reset();
  path_.clear();
  return removed ? Failure() : failureOf(code);
}

bool isOwned(const fs::path& path) {
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
  // A shared lock: processes that look at the same time do not take each other for owners.
  return !file.isOpen() || ::flock(file.number(), LOCK_SH | LOCK_NB) != 0;
}

Failure makePrivateFolder(const fs::path& folder) {
  std::error_code error;
  if (fs::is_directory(folder, error)) return {};
  const fs::path above = folder.parent_path();
  if (folder.has_filename() && above.has_filename()) {
    if (const Failure failure = makePrivateFolder(above)) return failure;
  }
  if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) return failureOf(errno);
  return {};
}

}  // namespace kestrel::os
