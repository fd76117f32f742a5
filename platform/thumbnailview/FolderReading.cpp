#include "FolderReading.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <optional>
#include <set>
#include <utility>

#include "Candidates.h"
#include "base/NaturalOrder.h"
#include "base/VisibleText.h"
#include "platform/os/FailureText.h"
#include "platform/os/Paths.h"

namespace kestrel::thumbnails {
namespace {

namespace fs = std::filesystem;

void sortNaturally(std::vector<FoundFile>& files) {
  struct Keyed {
    std::string key;
    FoundFile file;
  };
  std::vector<Keyed> keyed;
  keyed.reserve(files.size());
  for (FoundFile& file : files) keyed.push_back({NaturalKey(os::textOf(file.name)), std::move(file)});
  std::sort(keyed.begin(), keyed.end(), [](const Keyed& left, const Keyed& right) {
    const int order = left.key.compare(right.key);
    return order != 0 ? order < 0 : left.file.name.native() < right.file.name.native();
  });
  std::transform(keyed.begin(), keyed.end(), files.begin(),
                 [](Keyed& entry) { return std::move(entry.file); });
}

/// The file if it is there and may be a picture.
std::optional<FoundFile> examined(FolderAccess& access, const fs::path& folder, const fs::path& name) {
  os::FolderEntry entry;
  if (!isCandidate(name) || access.examine(folder / name, entry) || entry.kind != os::EntryKind::kRegular) {
    return std::nullopt;
  }
  return foundFile(std::move(entry));
}

}  // namespace

FoundFile foundFile(os::FolderEntry entry) {
  return {std::move(entry.name), entry.size, entry.modified, entry.changed, entry.id};
}

bool sameVersion(const FoundFile& one, const FoundFile& other) {
  return one.size == other.size && one.modified == other.modified && one.changed == other.changed &&
         one.id == other.id;
}

FolderListing listFolder(FolderAccess& access, const fs::path& folder,
                         const std::function<bool()>& canceled) {
  FolderListing listing;
  const auto failure = access.scan(folder, [&](os::FolderEntry&& entry) {
    if (canceled()) return false;
    if (entry.kind == os::EntryKind::kRegular && isCandidate(entry.name)) {
      listing.files.push_back(foundFile(std::move(entry)));
    }
    return true;
  });
  if (failure) {
    listing.isMissing = failure->problem == os::FileProblem::kMissing;
    listing.problem = "The folder \"" + VisibleText(os::textOf(folder)) +
                      "\" cannot be read: " + os::reasonOf(*failure, folder) + ".";
  }
  sortNaturally(listing.files);
  return listing;
}

FolderLoader::Listener::Changes examineChanges(FolderAccess& access, const fs::path& folder,
                                               const std::vector<os::FolderChange>& noticed) {
  FolderLoader::Listener::Changes result;
  std::set<fs::path> done;
  const auto examine = [&](const fs::path& name) {
    if (!done.insert(name).second) return;
    if (auto file = examined(access, folder, name)) {
      result.changed.push_back(std::move(*file));
    } else if (isCandidate(name)) {
      result.gone.push_back(name);
    }
  };
  // A renamed file is examined under its last name only: the names in between are gone.
  for (const os::FolderChange& change : noticed) {
    if (change.kind != os::FolderChange::Kind::kRenamed) continue;
    auto file = examined(access, folder, change.name);
    if (file && isCandidate(change.oldName)) {
      result.renamed.push_back({change.oldName, std::move(*file)});
    }
  }
  for (const os::FolderChange& change : noticed) {
    examine(change.name);
    if (change.kind == os::FolderChange::Kind::kRenamed) examine(change.oldName);
  }
  return result;
}

}  // namespace kestrel::thumbnails
