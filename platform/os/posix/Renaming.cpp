#include "Renaming.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "Descriptor.h"

namespace kestrel::os {
namespace {

/// Takes the name with an empty entry of its own, which the other one then replaces. A killed process leaves
/// the empty entry.
bool renameOverOwn(const EntryPath& from, const EntryPath& to, bool isFolder) {
  if (isFolder) {
    if (::mkdirat(descriptorOf(to), to.path.c_str(), 0700) != 0) return false;
  } else {
    const Descriptor own(
        ::openat(descriptorOf(to), to.path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!own.isOpen()) return false;
  }
  if (rename(from, to)) return true;
  const int code = errno;
  ::unlinkat(descriptorOf(to), to.path.c_str(), isFolder ? AT_REMOVEDIR : 0);
  errno = code;
  return false;
}

}  // namespace

bool rename(const EntryPath& from, const EntryPath& to) {
  return ::renameat(descriptorOf(from), from.path.c_str(), descriptorOf(to), to.path.c_str()) == 0;
}

bool renameToNew(const EntryPath& from, const EntryPath& to) {
  const char* const source = from.path.c_str();
  const char* const target = to.path.c_str();
  if (::renameat2(descriptorOf(from), source, descriptorOf(to), target, RENAME_NOREPLACE) == 0) return true;
  // Network file systems and old ones cannot do that in one call.
  if (errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP) return false;
  struct stat status {};
  if (::fstatat(descriptorOf(from), source, &status, AT_SYMLINK_NOFOLLOW) != 0) return false;
  const bool isFolder = S_ISDIR(status.st_mode);
  if (!isFolder) {
    if (::linkat(descriptorOf(from), source, descriptorOf(to), target, 0) == 0) {
      if (::unlinkat(descriptorOf(from), source, 0) == 0) return true;
      const int code = errno;
      ::unlinkat(descriptorOf(to), target, 0);
      errno = code;
      return false;
    }
    if (errno == EEXIST || errno == EXDEV) return false;
  }
  return renameOverOwn(from, to, isFolder);
}

}  // namespace kestrel::os
