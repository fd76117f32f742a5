#include "platform/os/Entries.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <string>
#include <system_error>

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

/// Without a place for the new entry the missing thing is the folder.
Failure failedToMake(const fs::path& target) {
  const FileFailure failure = failureOf(errno);
  struct stat status {};
  if (failure.problem == FileProblem::kMissing && ::stat(target.parent_path().c_str(), &status) != 0)
    return FileFailure{FileProblem::kFolderMissing, failure.code};
  return failure;
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

Failure readFacts(const fs::path& path, EntryFacts& facts) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) return failureOf(errno);
  facts = factsOf(status);
  return {};
}

Failure readTargetFacts(const fs::path& path, EntryFacts& facts) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return failureOf(errno);
  facts = factsOf(status);
  return {};
}

Failure checkWritable(const fs::path& folder) {
  return failedUnless(::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0);
}

Failure listFolder(const fs::path& folder, std::vector<fs::path>& names) {
  Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
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

Failure moveEntry(const fs::path& from, const fs::path& to) {
  return renameToNew(from, to) ? Failure() : failedToMake(to);
}

Failure moveOver(const fs::path& from, const fs::path& to) {
  struct stat status {};
  // An empty folder would replace another one.
  if (::lstat(from.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) return failureOf(EISDIR);
  return ::rename(from.c_str(), to.c_str()) == 0 ? Failure() : failedToMake(to);
}

Failure copyLink(const fs::path& from, const fs::path& to, bool replace) {
  std::error_code error;
  const fs::path text = fs::read_symlink(from, error);
  if (error) return failureOf(error.value());
  if (!replace) return ::symlink(text.c_str(), to.c_str()) == 0 ? Failure() : failedToMake(to);
  fs::path temporary;
  do {
    temporary = temporaryName(to.parent_path());
  } while (::symlink(text.c_str(), temporary.c_str()) != 0 && errno == EEXIST);
  if (::rename(temporary.c_str(), to.c_str()) == 0) return {};
  const Failure failure = failedToMake(to);
  ::unlink(temporary.c_str());
  return failure;
}

Failure makeFolder(const fs::path& folder) {
  return ::mkdir(folder.c_str(), 0700) == 0 ? Failure() : failedToMake(folder);
}

Failure copyFolderFacts(const fs::path& from, const fs::path& to) {
  constexpr int kFolder = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
  const Descriptor original(::open(from.c_str(), kFolder));
  if (!original.isOpen()) return failureOf(errno);
  const Descriptor copy(::open(to.c_str(), kFolder));
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

Failure removeFile(const fs::path& path) { return failedUnless(::unlink(path.c_str()) == 0); }

Failure removeEmptyFolder(const fs::path& folder) {
  if (::rmdir(folder.c_str()) == 0) return {};
  return failureOf(errno == EEXIST ? ENOTEMPTY : errno);
}

void flushFolder(const fs::path& folder) {
  const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.isOpen()) ::fsync(descriptor.number());
}

std::uint64_t userNumber() { return ::geteuid(); }

}  // namespace kestrel::os
