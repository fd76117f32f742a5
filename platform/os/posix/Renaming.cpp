#include "Renaming.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "Descriptor.h"

namespace kestrel::os {
namespace {

namespace fs = std::filesystem;

/// Takes the name with an empty entry of its own, which the other one then replaces. A killed process leaves
/// the empty entry.
bool renameOverOwn(const fs::path& from, const fs::path& to, bool isFolder) {
  if (isFolder) {
    if (::mkdir(to.c_str(), 0700) != 0) return false;
  } else {
    const Descriptor own(::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!own.isOpen()) return false;
  }
  if (::rename(from.c_str(), to.c_str()) == 0) return true;
  const int code = errno;
  if (isFolder) {
    ::rmdir(to.c_str());
  } else {
    ::unlink(to.c_str());
  }
  errno = code;
  return false;
}

}  // namespace

bool renameToNew(const fs::path& from, const fs::path& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  // Network file systems and old ones cannot do that in one call.
  if (errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP) return false;
  struct stat status {};
  if (::lstat(from.c_str(), &status) != 0) return false;
  const bool isFolder = S_ISDIR(status.st_mode);
  if (!isFolder) {
    if (::linkat(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), 0) == 0) {
      if (::unlink(from.c_str()) == 0) return true;
      const int code = errno;
      ::unlink(to.c_str());
      errno = code;
      return false;
    }
    if (errno == EEXIST || errno == EXDEV) return false;
  }
  return renameOverOwn(from, to, isFolder);
}

}  // namespace kestrel::os
