#include "LeftFiles.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "platform/os/OwnedFile.h"
#include "platform/os/Paths.h"

namespace kestrel::engine {

namespace fs = std::filesystem;

std::vector<LeftFile> leftFiles(const fs::path& folder) {
  std::vector<LeftFile> files;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    std::error_code vanished;
    if (!os::textOf(entry->path().filename()).ends_with(kJournalSuffix)) continue;
    if (!entry->is_regular_file(vanished) || os::isOwned(entry->path())) continue;
    LeftFile file{entry->path(), entry->last_write_time(vanished)};
    if (vanished) continue;
    file.size = entry->file_size(vanished);
    if (!vanished) files.push_back(std::move(file));
  }
  std::ranges::sort(files, [](const LeftFile& a, const LeftFile& b) {
    return std::pair(b.written, a.path) < std::pair(a.written, b.path);
  });
  return files;
}

void dropOldest(const fs::path& folder, const RecoveryBounds& bounds) {
  std::size_t count = 0;
  std::uintmax_t bytes = 0;
  for (const LeftFile& file : leftFiles(folder)) {
    ++count;
    bytes += file.size;
    if (count == 1 || (count <= bounds.leftPictures && bytes <= bounds.leftBytes)) continue;
    os::OwnedFile oldest;
    if (!oldest.take(file.path)) (void)oldest.remove();
  }
}

}  // namespace kestrel::engine
