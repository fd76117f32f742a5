#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

namespace kestrel::os {

struct FolderChange {
  enum class Kind {
    kChanged,  ///< a file or folder that is new, or whose content, time or permissions changed
    kGone,
    kRenamed,  ///< from `oldName` to `name` within the folder; a file that had `name` before is replaced
  };

  Kind kind = Kind::kChanged;
  std::filesystem::path name;     ///< in the folder; not necessarily UTF-8
  std::filesystem::path oldName;  ///< of kRenamed; may be a name that was never reported
};

/// Changes of a folder in a short span of time.
struct FolderChanges {
  /// In the order in which they happened. A file that changed several times is listed once. Each names a past
  /// state: the file may have changed again or be gone when the change is handled.
  std::vector<FolderChange> changes;
  /// Too many changes at once: some are missing, so the folder must be listed again.
  bool overflow = false;
  /// The path leads to the folder no more: it or a folder above was removed, renamed or unmounted. The last
  /// report of the watch.
  bool folderGone = false;
};

/// Notices that the entries of one folder appear, vanish and change. Folders below are not watched.
///
/// A file that is being written is reported when its writer closes it, and not before; a writer that pauses
/// for seconds cannot be distinguished from one that has finished and is reported early, and again at its
/// end.
///
/// To miss nothing, construct the watch first and list the folder afterwards.
class FolderWatch {
 public:
  /// Runs on the thread of the watch. It must not raise: it hands the changes over to its own thread. It may
  /// release the last owner of the watch.
  using Changed = std::function<void(FolderChanges changes)>;

  /// Watches the folder until destruction.
  FolderWatch(const std::filesystem::path& folder, Changed changed);
  FolderWatch(const FolderWatch&) = delete;
  FolderWatch& operator=(const FolderWatch&) = delete;
  /// After the return `changed` is not called any more; waits for a call in progress, unless called by it.
  ~FolderWatch();

  /// False where changes may go unnoticed: the folder cannot be watched, or it is on a file system which
  /// other machines can change. The owner then lists the folder again at suitable moments. Changes that are
  /// noticed nevertheless are reported.
  bool available() const { return available_; }

 private:
  struct Inside;

  std::shared_ptr<Inside> inside_;  ///< null if the folder cannot be watched
  bool available_ = false;
};

}  // namespace kestrel::os
