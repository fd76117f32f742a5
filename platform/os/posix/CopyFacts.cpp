#include "CopyFacts.h"

#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <string_view>
#include <vector>

namespace kestrel::os {
namespace {

/// The system assigns these itself.
constexpr std::string_view kSecurityLabels = "security.";

/// Whether owner and group are those of the original.
bool copyOwner(const struct stat& status, int to) {
  struct stat own {};
  if (::fstat(to, &own) == 0 && own.st_uid == status.st_uid && own.st_gid == status.st_gid) return true;
  if (::fchown(to, status.st_uid, status.st_gid) == 0) return true;
  // A user may give a file to a group of their own.
  [[maybe_unused]] const int ignored = ::fchown(to, static_cast<uid_t>(-1), status.st_gid);
  return false;
}

/// Not every file system has them, so what cannot be copied is left out.
void copyAttributes(int from, int to) {
  const ssize_t length = ::flistxattr(from, nullptr, 0);
  if (length <= 0) return;
  std::string names(static_cast<std::size_t>(length), '\0');
  const ssize_t filled = ::flistxattr(from, names.data(), names.size());
  if (filled <= 0) return;
  names.resize(static_cast<std::size_t>(filled));
  std::vector<char> value;
  for (std::size_t at = 0; at < names.size();) {
    const std::string name = names.c_str() + at;
    at += name.size() + 1;
    if (name.starts_with(kSecurityLabels)) continue;
    const ssize_t size = ::fgetxattr(from, name.c_str(), nullptr, 0);
    if (size < 0) continue;
    value.resize(static_cast<std::size_t>(size));
    if (::fgetxattr(from, name.c_str(), value.data(), value.size()) != size) continue;
    ::fsetxattr(to, name.c_str(), value.data(), value.size(), 0);
  }
}

/// The file system has no permissions or times of that kind: the owner of a file may always set them.
bool unsupported(int code) { return code == EPERM || code == EOPNOTSUPP || code == ENOSYS || code == EINVAL; }

}  // namespace

bool copyFacts(int from, const struct stat& status, int to) {
  const bool sameOwner = copyOwner(status, to);
  copyAttributes(from, to);
  // A program must not run with the rights of another user than before.
  const mode_t mode = status.st_mode & (sameOwner ? 07777U : 01777U);
  if (::fchmod(to, mode) != 0 && !unsupported(errno)) return false;
  const struct timespec times[] = {status.st_atim, status.st_mtim};
  return ::futimens(to, times) == 0 || unsupported(errno);
}

}  // namespace kestrel::os
