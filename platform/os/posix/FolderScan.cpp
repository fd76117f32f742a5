#include "platform/os/FolderScan.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <memory>
#include <string_view>
#include <utility>

#include "Descriptor.h"

namespace kestrel::os {
namespace {

namespace fs = std::filesystem;
using Failure = std::optional<FileFailure>;

constexpr std::int64_t kNanoseconds = 1'000'000'000;

EntryKind kindOf(mode_t mode) {
  return S_ISREG(mode) ? EntryKind::kRegular : S_ISDIR(mode) ? EntryKind::kFolder : EntryKind::kOther;
}

/// A listing must not mount anything.
int status(int folder, const char* name, struct stat& result, int flags) {
  return ::fstatat(folder, name, &result, flags | AT_NO_AUTOMOUNT);
}

std::int64_t nanosecondsOf(const timespec& time) { return time.tv_sec * kNanoseconds + time.tv_nsec; }

/// False with errno set if there is no such entry.
bool examine(int folder, const char* name, FolderEntry& entry) {
  struct stat found {};
  if (status(folder, name, found, AT_SYMLINK_NOFOLLOW) != 0) return false;
  entry.isLink = S_ISLNK(found.st_mode);
  // A link without a target keeps its own status, and so is neither a file nor a folder.
  if (entry.isLink) status(folder, name, found, 0);
  entry.kind = kindOf(found.st_mode);
  entry.size = static_cast<std::uint64_t>(found.st_size);
  entry.modified = nanosecondsOf(found.st_mtim);
  entry.changed = nanosecondsOf(found.st_ctim);
  entry.id = {found.st_dev, found.st_ino};
  return true;
}

/// The kind alone, from the folder where it is kept there.
bool examineKind(int folder, const dirent& item, FolderEntry& entry) {
  if (item.d_type == DT_LNK || item.d_type == DT_UNKNOWN) {
    if (!examine(folder, item.d_name, entry)) return false;
    entry.size = 0;
    entry.modified = 0;
    entry.changed = 0;
    entry.id = {};
    return true;
  }
  entry.kind = kindOf(static_cast<mode_t>(DTTOIF(item.d_type)));
  return true;
}

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

bool isSelfOrParent(std::string_view name) { return name == "." || name == ".."; }

}  // namespace

Failure scanFolder(const fs::path& folder, ScanDetail detail,
                   const std::function<bool(FolderEntry&& entry)>& visit) {
  Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC));
  if (!descriptor.isOpen()) return failureOf(errno);
  const std::unique_ptr<DIR, CloseFolder> stream(::fdopendir(descriptor.number()));
  if (!stream) return failureOf(errno);
  const int number = descriptor.release();

  for (;;) {
    errno = 0;
    const dirent* const item = ::readdir(stream.get());
    if (item == nullptr) return errno == 0 ? Failure{} : failureOf(errno);
    if (isSelfOrParent(item->d_name)) continue;
    FolderEntry entry;
    const bool exists =
        detail == ScanDetail::kAll ? examine(number, item->d_name, entry) : examineKind(number, *item, entry);
    // Only a vanished entry is left out: one that cannot be examined is still a name in the folder.
    if (!exists && errno == ENOENT) continue;
    entry.name = item->d_name;
    if (!visit(std::move(entry))) return FileFailure{FileProblem::kCanceled};
  }
}

Failure examineEntry(const fs::path& path, FolderEntry& entry) {
  entry = {};
  if (!examine(AT_FDCWD, path.c_str(), entry)) return failureOf(errno);
  entry.name = path.filename();
  return {};
}

}  // namespace kestrel::os
