#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <unordered_map>

#include "platform/os/FolderWatch.h"

namespace kestrel::os {

/// Collects the events of a folder into batches. Files in the middle of writing are held back.
///
/// Not thread-safe. Each event comes with its time; times must not decrease.
class ChangeCollector {
 public:
  using Time = std::chrono::steady_clock::time_point;
  using Duration = std::chrono::steady_clock::duration;

  /// A batch ends when no event came for this long,
  static constexpr Duration kQuiet = std::chrono::milliseconds(100);
  /// and at the latest this long after its first event.
  static constexpr Duration kLongest = std::chrono::milliseconds(500);
  /// A new file is taken as complete without a writer's close if nothing was written to it for this long,
  static constexpr Duration kUnwritten = std::chrono::milliseconds(500);
  /// and a file that is being written if its writer pauses for this long.
  static constexpr Duration kPause = std::chrono::seconds(5);
  /// More changes in one batch are an overflow.
  static constexpr std::size_t kMostChanges = 10'000;

  /// A new entry. `canBeOpen`: it may be open for writing, so that a close will follow.
  void created(const std::string& name, bool canBeOpen, Time now);
  void written(const std::string& name, Time now);
  /// Closed after writing, or moved into the folder.
  void completed(const std::string& name, Time now);
  /// Other times, permissions or links.
  void attributesChanged(const std::string& name, Time now);
  void gone(const std::string& name, Time now);
  void renamed(const std::string& oldName, const std::string& name, Time now);
  void overflowed(Time now);
  void folderGone(Time now);

  /// When `take` is to be called next; nothing while there is nothing to report.
  std::optional<Time> due() const;

  /// The batch if it is complete, with the files whose writers paused; nothing else.
  std::optional<FolderChanges> take(Time now);

 private:
  struct Unfinished {
    Time deadline;
    bool known;  ///< the entry was reported or listed before
  };

  void add(FolderChange change, Time now);
  /// Begins a batch or extends it.
  void touch(Time now);

  FolderChanges batch_;
  std::optional<Time> first_;  ///< event of the batch; nothing for an empty batch
  Time last_;
  std::unordered_map<std::string, std::size_t> latest_;  ///< each name's last change in the batch
  std::unordered_map<std::string, Unfinished> unfinished_;
};

}  // namespace kestrel::os
