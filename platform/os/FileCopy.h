#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "Entries.h"
#include "Files.h"

namespace kestrel::os {

/// A copy of a file that appears whole or not at all. Call `open`, `fill`, and `place` or `replace`. Without
/// the last the copy vanishes with this object, and with the process at the latest where the file system has
/// files without a name.
///
/// Not thread-safe.
class FileCopy {
 public:
  FileCopy();
  FileCopy(const FileCopy&) = delete;
  FileCopy& operator=(const FileCopy&) = delete;
  ~FileCopy();

  /// Called with the bytes copied so far; false ends the work with `kCanceled`.
  using GoOn = std::function<bool(std::uint64_t copied)>;

  /// Opens a regular file, never the target of a link. Never waits for the other end of a pipe: fails with
  /// `kNotAFile`.
  std::optional<FileFailure> open(const EntryPath& source);

  /// Of the open file.
  const EntryFacts& facts() const;

  /// Copies content, times and permissions and, as far as the system allows, owner and extended attributes,
  /// into a temporary file in `folder`, and flushes it to the disk. The blocks are shared where the file
  /// system can do that. Fails with `kChanged` if the file changes meanwhile.
  std::optional<FileFailure> fill(const EntryPath& folder, GoOn goOn);

  /// Gives the copy a name in the folder. Fails with `kExists` if the name is taken; then another one can be
  /// tried.
  std::optional<FileFailure> place(const EntryPath& target);

  /// Puts the copy in place of an existing file or link, in one step. On failure the old one is left as it
  /// was.
  std::optional<FileFailure> replace(const EntryPath& target);

 private:
  struct Inside;

  std::unique_ptr<Inside> inside_;
};

}  // namespace kestrel::os
