#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>

#include "Files.h"

/// Listing a folder without opening its entries: a pipe or a device in it never blocks.
namespace kestrel::os {

enum class EntryKind {
  kRegular,
  kFolder,
  kOther,  ///< a pipe, device or socket, or a link that leads nowhere or in a loop
};

/// Identity of a file while it exists; equal for its hard links.
struct FileId {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;

  bool operator==(const FileId&) const = default;
};

struct FolderEntry {
  /// The name in its folder, with the bytes that the file system has; they need not be valid UTF-8.
  std::filesystem::path name;
  /// Of a symbolic link: what its target is.
  EntryKind kind = EntryKind::kOther;
  bool isLink = false;
  /// The entry's own, or its target's for a link; zero where `ScanDetail::kKind` was asked for.
  std::uint64_t size = 0;     ///< bytes
  std::int64_t modified = 0;  ///< nanoseconds since 1970-01-01 UTC
  /// When content, name or permissions changed last, in the same unit. Programs cannot set it. File systems
  /// without such a time have another one here, which renaming does not change.
  std::int64_t changed = 0;
  FileId id;
};

enum class ScanDetail {
  kKind,  ///< name, kind and isLink: fast, since most file systems keep the kind with the name
  kAll,
};

/// Calls `visit` for each entry of the folder except "." and "..", in the order of the file system. Folders
/// below are not entered. An entry that vanishes during the listing may be left out. `visit` returns false to
/// end the listing, which then fails with `kCanceled`. A failure in the middle leaves the entries already
/// visited valid. Thread-safe.
std::optional<FileFailure> scanFolder(const std::filesystem::path& folder, ScanDetail detail,
                                      const std::function<bool(FolderEntry&& entry)>& visit);

/// The entry of one path as `scanFolder` would list it with all details. Never opens the file. Thread-safe.
std::optional<FileFailure> examineEntry(const std::filesystem::path& path, FolderEntry& entry);

}  // namespace kestrel::os
