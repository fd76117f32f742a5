#pragma once

#include <filesystem>
#include <memory>
#include <set>
#include <vector>

namespace kestrel::os {

/// Notices that subfolders of several folders, and links, appear, vanish and get other names. Without a
/// thread: the owner waits until the descriptor is readable, and then calls `read`.
class SubfolderWatch {
 public:
  SubfolderWatch();
  SubfolderWatch(const SubfolderWatch&) = delete;
  SubfolderWatch& operator=(const SubfolderWatch&) = delete;
  ~SubfolderWatch();

  /// Watches these folders instead of the former ones. Those that cannot be watched are left out. Never waits
  /// for a network: its folders are left out too.
  void watch(const std::set<std::filesystem::path>& folders);

  /// Readable when there is something to read; negative if the system refuses to watch.
  int descriptor() const;

  /// The watched folders whose subfolders may differ since the last call. A folder that vanished is one of
  /// them, and no longer watched; so is one that `watch` has found again.
  std::vector<std::filesystem::path> read();

  /// A folder that is in a watched folder by another name than before, or in another one.
  struct Renaming {
    std::filesystem::path from;
    std::filesystem::path to;
  };
  /// Those that the last `read` has found, in their order.
  const std::vector<Renaming>& renamings() const;

 private:
  struct Inside;

  std::unique_ptr<Inside> inside_;
};

}  // namespace kestrel::os
