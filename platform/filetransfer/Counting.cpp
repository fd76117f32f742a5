#include "Counting.h"

#include <vector>

#include "platform/os/Entries.h"

namespace kestrel::transfer {
namespace {

namespace fs = std::filesystem;

/// Calls `use` for each entry of a tree, its root first, until that returns false.
void walk(const fs::path& root, const std::function<bool(const os::EntryFacts&)>& use) {
  std::vector<fs::path> left = {root};
  while (!left.empty()) {
    const fs::path path = std::move(left.back());
    left.pop_back();
    os::EntryFacts facts;
    if (os::readFacts(path, facts)) continue;
    if (!use(facts)) return;
    if (facts.type != os::EntryType::kFolder) continue;
    std::vector<fs::path> names;
    os::listFolder(path, names);
    for (const fs::path& name : names) left.push_back(path / name);
  }
}

}  // namespace

Count countTree(const fs::path& path, const std::function<bool()>& canceled) {
  Count count;
  walk(path, [&](const os::EntryFacts& facts) {
    if (facts.type != os::EntryType::kFolder) ++count.files;
    count.bytes += facts.size;
    return !canceled();
  });
  return count;
}

std::optional<std::uint64_t> spaceOf(const fs::path& path, const std::function<bool()>& canceled) {
  std::uint64_t space = 0;
  bool goOn = true;
  walk(path, [&](const os::EntryFacts& facts) {
    space += facts.spaceOnDisk;
    return goOn = !canceled();
  });
  return goOn ? std::optional(space) : std::nullopt;
}

}  // namespace kestrel::transfer
