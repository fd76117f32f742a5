#include "FaultCalls.h"

#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <signal.h>
#include <stdarg.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

namespace kestrel::transfer::test {
namespace {

/// Counts a call; true if it shall fail, with errno set.
bool struck(const char* name) {
  Faults& all = faults();
  ++all.calls;
  const bool now = all.calls == all.at || (all.kind == Faults::Kind::kFailsFromThereOn && all.calls > all.at);
  if (!now || all.kind == Faults::Kind::kNone) return false;
  all.struck = name;
  if (all.kind == Faults::Kind::kKilled) kill(getpid(), SIGKILL);
  if (all.kind == Faults::Kind::kVanishes) {
    std::error_code ignored;
    all.kind = Faults::Kind::kNone;
    std::filesystem::remove(all.vanishing, ignored);
    return false;
  }
  errno = all.error;
  return true;
}

/// The same of a call that only reads.
bool struckReading(const char* name) { return faults().reading && struck(name); }

/// The number of the innermost simulated file system, 0 for none.
std::size_t volumeOf(std::string_view path) {
  std::size_t found = 0, longest = 0;
  const std::vector<std::string>& volumes = faults().volumes;
  for (std::size_t i = 0; i < volumes.size(); ++i) {
    const bool below = path == volumes[i] || path.starts_with(volumes[i] + "/");
    if (!below || volumes[i].size() < longest) continue;
    found = i + 1;
    longest = volumes[i].size();
  }
  return found;
}

std::string pathOf(int file) {
  char path[PATH_MAX] = {};
  const std::string link = "/proc/self/fd/" + std::to_string(file);
  const ssize_t length = readlink(link.c_str(), path, sizeof path);
  return {path, length > 0 ? static_cast<std::size_t>(length) : 0};
}

/// Of a path from an open folder.
std::string pathOf(int folder, const char* path) {
  return folder == AT_FDCWD || path[0] == '/' ? path : pathOf(folder) + "/" + path;
}

bool otherDisk(int from, const char* source, int to, const char* target) {
  if (volumeOf(pathOf(from, source)) == volumeOf(pathOf(to, target))) return false;
  errno = EXDEV;
  return true;
}

/// Whether the file system does not have such names.
bool refused(const char* name) {
  const std::string& bad = faults().refusedName;
  if (bad.empty() || std::filesystem::path(name).filename() != bad) return false;
  errno = EINVAL;
  return true;
}

int seen(int result, std::size_t volume, struct stat* status) {
  constexpr dev_t kOther = 0x1000;
  if (result == 0) status->st_dev += volume * kOther;
  return result;
}

}  // namespace

Faults& faults() {
  static Faults all;
  return all;
}

}  // namespace kestrel::transfer::test

using namespace kestrel::transfer::test;

extern "C" {
int __real_fstatat(int folder, const char* path, struct stat* status, int flags);
int __real_fstat(int file, struct stat* status);
int __real_open(const char* path, int flags, ...);
int __real_openat(int folder, const char* path, int flags, ...);
ssize_t __real_read(int file, void* data, size_t count);
ssize_t __real_readlinkat(int folder, const char* link, char* text, size_t size);
struct dirent* __real_readdir(DIR* list);
ssize_t __real_write(int file, const void* data, size_t count);
ssize_t __real_copy_file_range(int from, off64_t* in, int to, off64_t* out, size_t count, unsigned flags);
int __real_fsync(int file);
int __real_fdatasync(int file);
int __real_fchmod(int file, mode_t mode);
int __real_futimens(int file, const struct timespec* times);
int __real_linkat(int from, const char* source, int to, const char* target, int flags);
int __real_symlinkat(const char* text, int folder, const char* name);
int __real_mkdirat(int folder, const char* name, mode_t mode);
int __real_renameat(int from, const char* source, int to, const char* target);
int __real_renameat2(int from, const char* source, int to, const char* target, unsigned flags);
int __real_unlink(const char* name);
int __real_unlinkat(int folder, const char* name, int flags);

int __wrap_fstatat(int folder, const char* path, struct stat* status, int flags) {
  if (struckReading("fstatat")) return -1;
  return seen(__real_fstatat(folder, path, status, flags), volumeOf(pathOf(folder, path)), status);
}
int __wrap_fstat(int file, struct stat* status) {
  const int result = __real_fstat(file, status);
  const int code = errno;
  const std::size_t volume = volumeOf(pathOf(file));
  errno = code;
  return seen(result, volume, status);
}
int __wrap_openat(int folder, const char* path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode = va_arg(more, mode_t);
  va_end(more);
  const bool nameless = (flags & O_TMPFILE) == O_TMPFILE;
  if (nameless && !faults().namelessFiles) {
    errno = EOPNOTSUPP;
    return -1;
  }
  if ((flags & O_CREAT) != 0 && refused(path)) return -1;
  const bool changes = nameless || (flags & O_CREAT) != 0;
  if (changes ? struck("openat") : struckReading("openat")) return -1;
  return __real_openat(folder, path, flags, mode);
}
int __wrap_open(const char* path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode = va_arg(more, mode_t);
  va_end(more);
  if ((flags & O_CREAT) != 0 && struck("open")) return -1;
  return __real_open(path, flags, mode);
}
ssize_t __wrap_read(int file, void* data, size_t count) {
  return struckReading("read") ? -1 : __real_read(file, data, count);
}
ssize_t __wrap_readlinkat(int folder, const char* link, char* text, size_t size) {
  return struckReading("readlinkat") ? -1 : __real_readlinkat(folder, link, text, size);
}
struct dirent* __wrap_readdir(DIR* list) {
  return struckReading("readdir") ? nullptr : __real_readdir(list);
}
ssize_t __wrap_write(int file, const void* data, size_t count) {
  return struck("write") ? -1 : __real_write(file, data, count);
}
ssize_t __wrap_copy_file_range(int from, off64_t* in, int to, off64_t* out, size_t count, unsigned flags) {
  ++faults().copies;
  if (faults().copiesInside != 0) {
    errno = faults().copiesInside;
    return -1;
  }
  // A file is copied in several portions.
  constexpr size_t kSmall = 1000;
  const size_t portion = count < kSmall ? count : kSmall;
  return struck("copy_file_range") ? -1 : __real_copy_file_range(from, in, to, out, portion, flags);
}
int __wrap_fsync(int file) {
  struct stat status {};
  const std::string changed = faults().changeOnFolderFlush;
  if (!changed.empty() && __real_fstat(file, &status) == 0 && S_ISDIR(status.st_mode)) {
    faults().changeOnFolderFlush.clear();
    std::ofstream(changed) << "changed";
  }
  return struck("fsync") ? -1 : __real_fsync(file);
}
int __wrap_fdatasync(int file) { return struck("fdatasync") ? -1 : __real_fdatasync(file); }
int __wrap_fchmod(int file, mode_t mode) { return struck("fchmod") ? -1 : __real_fchmod(file, mode); }
int __wrap_futimens(int file, const struct timespec* times) {
  return struck("futimens") ? -1 : __real_futimens(file, times);
}
int __wrap_linkat(int from, const char* source, int to, const char* target, int flags) {
  const bool nameless = (flags & AT_SYMLINK_FOLLOW) != 0;
  if (nameless && !faults().namelessLinked) {
    errno = ENOENT;
    return -1;
  }
  if (refused(target) || (!nameless && otherDisk(from, source, to, target))) return -1;
  if (!nameless && !faults().hardLinks) {
    errno = EPERM;
    return -1;
  }
  return struck("linkat") ? -1 : __real_linkat(from, source, to, target, flags);
}
int __wrap_symlinkat(const char* text, int folder, const char* name) {
  if (refused(name)) return -1;
  return struck("symlinkat") ? -1 : __real_symlinkat(text, folder, name);
}
int __wrap_mkdirat(int folder, const char* name, mode_t mode) {
  if (refused(name)) return -1;
  return struck("mkdirat") ? -1 : __real_mkdirat(folder, name, mode);
}
int __wrap_renameat(int from, const char* source, int to, const char* target) {
  if (refused(target) || otherDisk(from, source, to, target)) return -1;
  return struck("renameat") ? -1 : __real_renameat(from, source, to, target);
}
int __wrap_renameat2(int from, const char* source, int to, const char* target, unsigned flags) {
  if (refused(target) || otherDisk(from, source, to, target)) return -1;
  if (!faults().renamesToNew) {
    errno = EINVAL;
    return -1;
  }
  return struck("renameat2") ? -1 : __real_renameat2(from, source, to, target, flags);
}
int __wrap_unlink(const char* name) { return struck("unlink") ? -1 : __real_unlink(name); }
int __wrap_unlinkat(int folder, const char* name, int flags) {
  return struck("unlinkat") ? -1 : __real_unlinkat(folder, name, flags);
}
}
