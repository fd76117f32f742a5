#include "platform/os/Entries.h"

#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <string>

#include "CopyFacts.h"
#include "Descriptor.h"
#include "FactsOf.h"
#include "Renaming.h"
#include "TemporaryFile.h"

namespace kestrel::os {
namespace {

namespace fs = std::filesystem;
using Failure = std::optional<FileFailure>;

Failure failedUnless(bool done) { return done ? Failure() : failureOf(errno); }

/// Without a place for the new entry the missing thing is the folder. An open one may have been removed.
Failure failedToMake(const EntryPath& target) {
  const FileFailure failure = failureToName(errno);
  const fs::path above = target.path.has_parent_path() ? target.path.parent_path() : fs::path(".");
  struct stat status {};
  const bool hasFolder =
      ::fstatat(descriptorOf(target), above.c_str(), &status, 0) == 0 && status.st_nlink > 0;
  if (failure.problem == FileProblem::kMissing && !hasFolder)
    return FileFailure{FileProblem::kFolderMissing, failure.code};
  return failure;
}

Failure readFacts(const EntryPath& path, int flags, EntryFacts& facts) {
  struct stat status {};
  if (::fstatat(descriptorOf(path), path.path.c_str(), &status, flags) != 0) return failureOf(errno);
  facts = factsOf(status);
  return {};
}

/// False with errno set if it is no link.
bool readLink(const EntryPath& link, std::string& text) {
  text.resize(PATH_MAX);
  const ssize_t length = ::readlinkat(descriptorOf(link), link.path.c_str(), text.data(), text.size());
  if (length < 0) return false;
  text.resize(static_cast<std::size_t>(length));
  return true;
}

Descriptor openFolder(const EntryPath& folder) {
  return Descriptor(
      ::openat(descriptorOf(folder), folder.path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

}  // namespace

EntryFacts factsOf(const struct stat& status) {
  EntryFacts facts;
  facts.type = S_ISREG(status.st_mode)   ? EntryType::kFile
               : S_ISDIR(status.st_mode) ? EntryType::kFolder
               : S_ISLNK(status.st_mode) ? EntryType::kLink
                                         : EntryType::kOther;
  facts.size = facts.type == EntryType::kFile ? static_cast<std::uint64_t>(status.st_size) : 0;
  constexpr std::uint64_t kBlock = 512;
  facts.spaceOnDisk = static_cast<std::uint64_t>(status.st_blocks) * kBlock;
  facts.modified = std::chrono::sys_time<std::chrono::nanoseconds>(
      std::chrono::seconds(status.st_mtim.tv_sec) + std::chrono::nanoseconds(status.st_mtim.tv_nsec));
  facts.id = {status.st_dev, status.st_ino};
  facts.names = status.st_nlink;
  facts.owner = status.st_uid;
  facts.sticky = (status.st_mode & S_ISVTX) != 0;
  return facts;
}

Failure readFacts(const EntryPath& path, EntryFacts& facts) {
  return readFacts(path, AT_SYMLINK_NOFOLLOW, facts);
}

Failure readTargetFacts(const EntryPath& path, EntryFacts& facts) { return readFacts(path, 0, facts); }

Failure checkWritable(const EntryPath& folder) {
  return failedUnless(::faccessat(descriptorOf(folder), folder.path.c_str(), W_OK | X_OK, AT_EACCESS) == 0);
}

Failure listFolder(const EntryPath& folder, std::vector<fs::path>& names) {
  Descriptor descriptor = openFolder(folder);
  if (!descriptor.isOpen()) return failureOf(errno);
  const std::unique_ptr<DIR, int (*)(DIR*)> list(::fdopendir(descriptor.number()), &::closedir);
  if (!list) return failureOf(errno);
  descriptor.release();
  for (;;) {
    errno = 0;
    const dirent* const entry = ::readdir(list.get());
    if (entry == nullptr) return errno == 0 ? Failure() : failureOf(errno);
    const std::string name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
}

Failure moveEntry(const EntryPath& from, const EntryPath& to) {
  return renameToNew(from, to) ? Failure() : failedToMake(to);
}

Failure moveOver(const EntryPath& from, const EntryPath& to) {
  EntryFacts facts;
  // An empty folder would replace another one.
  if (!readFacts(from, facts) && facts.type == EntryType::kFolder) return failureOf(EISDIR);
  return rename(from, to) ? Failure() : failedToMake(to);
}

Failure copyLink(const EntryPath& from, const EntryPath& to, bool replace) {
  struct stat status {};
  std::string text;
  if (::fstatat(descriptorOf(from), from.path.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0 ||
      !readLink(from, text))
    return failureOf(errno);
  const auto make = [&](const EntryPath& link) {
    if (::symlinkat(text.c_str(), descriptorOf(link), link.path.c_str()) != 0) return false;
    const struct timespec times[] = {status.st_atim, status.st_mtim};
    // Not every file system has times of links.
    ::utimensat(descriptorOf(link), link.path.c_str(), times, AT_SYMLINK_NOFOLLOW);
    return true;
  };
  if (!replace) return make(to) ? Failure() : failedToMake(to);
  EntryPath temporary = to;
  do {
    temporary = temporaryName({to.folder, to.path.parent_path()});
    if (make(temporary)) {
      if (rename(temporary, to)) return {};
      const Failure failure = failedToMake(to);
      removeFile(temporary);
      return failure;
    }
  } while (errno == EEXIST);
  return failedToMake(to);
}

Failure makeFolder(const EntryPath& folder) {
  return ::mkdirat(descriptorOf(folder), folder.path.c_str(), 0700) == 0 ? Failure() : failedToMake(folder);
}

Failure copyFolderFacts(const EntryPath& from, const EntryPath& to) {
  const Descriptor original = openFolder(from);
  if (!original.isOpen()) return failureOf(errno);
  const Descriptor copy = openFolder(to);
  struct stat status {};
  return failedUnless(copy.isOpen() && ::fstat(original.number(), &status) == 0 &&
                      copyFacts(original.number(), status, copy.number()));
}

Failure writeNewFile(const fs::path& path, std::string_view content) {
  const Descriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (!file.isOpen()) return failedToMake(path);
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(content.data());
  if (writeAll(file.number(), {bytes, content.size()}) && ::fsync(file.number()) == 0) return {};
  const Failure failure = failureOf(errno);
  ::unlink(path.c_str());
  return failure;
}

Failure removeFile(const EntryPath& path) {
  return failedUnless(::unlinkat(descriptorOf(path), path.path.c_str(), 0) == 0);
}

Failure removeEmptyFolder(const EntryPath& folder) {
  if (::unlinkat(descriptorOf(folder), folder.path.c_str(), AT_REMOVEDIR) == 0) return {};
  return failureOf(errno == EEXIST ? ENOTEMPTY : errno);
}

void flushFolder(const EntryPath& folder) {
  const Descriptor descriptor(
      ::openat(descriptorOf(folder), folder.path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.isOpen()) ::fsync(descriptor.number());
}

std::uint64_t userNumber() { return ::geteuid(); }

}  // namespace kestrel::os
