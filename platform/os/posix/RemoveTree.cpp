#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <string>
#include <vector>

#include "Descriptor.h"
#include "platform/os/Entries.h"

namespace kestrel::os {
namespace {

namespace fs = std::filesystem;
using Failure = std::optional<FileFailure>;

/// How the removal of an entry ended.
enum class End { kRemoved, kLeft, kStopped };

/// Names relative to open folders, so that a link that replaces a folder leads nowhere.
class Remover {
 public:
  explicit Remover(const Removed& removed) : removed_(removed) {}

  End remove(int parent, const std::string& name, const fs::path& path) const {
    struct stat status {};
    if (::fstatat(parent, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return report(path, false);
    if (!S_ISDIR(status.st_mode)) return report(path, ::unlinkat(parent, name.c_str(), 0) == 0);
    const End inside = removeEntries(parent, name, path);
    if (inside != End::kRemoved) return inside;
    return report(path, ::unlinkat(parent, name.c_str(), AT_REMOVEDIR) == 0);
  }

 private:
  End report(const fs::path& path, bool done) const {
    const Failure failure = done ? Failure() : failureOf(errno);
    if (!removed_(path, failure)) return End::kStopped;
    return done ? End::kRemoved : End::kLeft;
  }

  End removeEntries(int parent, const std::string& name, const fs::path& path) const {
    Descriptor folder(
        ::openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!folder.isOpen()) return report(path, false);
    const std::unique_ptr<DIR, int (*)(DIR*)> list(::fdopendir(folder.number()), &::closedir);
    if (!list) return report(path, false);
    const int number = folder.release();
    std::vector<std::string> names;
    errno = 0;
    while (const dirent* const entry = ::readdir(list.get())) {
      const std::string each = entry->d_name;
      if (each != "." && each != "..") names.push_back(each);
    }
    if (errno != 0) return report(path, false);
    End all = End::kRemoved;
    for (const std::string& each : names) {
      const End end = remove(number, each, path / each);
      if (end == End::kStopped) return end;
      if (end == End::kLeft) all = end;
    }
    return all;
  }

  const Removed& removed_;
};

}  // namespace

void removeTree(const fs::path& folder, const Removed& removed) {
  Remover(removed).remove(AT_FDCWD, folder.native(), folder);
}

}  // namespace kestrel::os
