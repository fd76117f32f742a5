#include "platform/os/CacheFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "Descriptor.h"
#include "TemporaryFile.h"
#include "platform/os/Entries.h"

namespace kestrel::os {
namespace {

namespace fs = std::filesystem;
using Failure = std::optional<FileFailure>;

constexpr mode_t kOnlyTheUser = 0600;

/// Reads until `content` is full; shorter if the file ends before. False with errno set.
bool readAll(int descriptor, std::vector<std::uint8_t>& content) {
  std::size_t filled = 0;
  while (filled < content.size()) {
    const ssize_t got = ::read(descriptor, content.data() + filled, content.size() - filled);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return false;
    if (got == 0) break;
    filled += static_cast<std::size_t>(got);
  }
  content.resize(filled);
  return true;
}

}  // namespace

Failure readCacheFile(const fs::path& path, std::size_t most, std::vector<std::uint8_t>& content) {
  content.clear();
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
  struct stat status {};
  if (!file.isOpen() || ::fstat(file.number(), &status) != 0) return failureOf(errno);
  if (!S_ISREG(status.st_mode)) return FileFailure{FileProblem::kNotAFile};
  if (static_cast<std::uint64_t>(status.st_size) > most) return failureOf(EFBIG);
  content.resize(static_cast<std::size_t>(status.st_size));
  if (!readAll(file.number(), content)) return failureOf(errno);
  return {};
}

Failure writeCacheFile(const fs::path& path, std::span<const std::uint8_t> content) {
  for (const bool named : {false, true}) {
    TemporaryFile temporary(path.parent_path(), named, kOnlyTheUser);
    if (temporary.descriptor() < 0 || !writeAll(temporary.descriptor(), content)) return failureOf(errno);
    if (!temporary.giveName()) {
      if (named) return failureOf(errno);
      continue;
    }
    if (!temporary.moveTo(path)) return failureOf(errno);
    return {};
  }
  return failureOf(errno);
}

bool isReadable(const fs::path& path) { return ::faccessat(AT_FDCWD, path.c_str(), R_OK, AT_EACCESS) == 0; }

}  // namespace kestrel::os
