#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "Files.h"
#include "FolderScan.h"
#include "OpenFolder.h"

/// Entries of folders: files, folders, symbolic links. Unless they say so the functions do not follow a
/// symbolic link at the end of a path: they work on the link.
namespace kestrel::os {

/// Of the entry itself, other than `EntryKind`, which sees what a link leads to.
enum class EntryType {
  kFile,
  kFolder,
  kLink,   ///< a symbolic link
  kOther,  ///< a device, a pipe or a socket
};

struct EntryFacts {
  EntryType type = EntryType::kFile;
  std::uint64_t size = 0;         ///< of a file, in bytes
  std::uint64_t spaceOnDisk = 0;  ///< in bytes
  std::chrono::sys_time<std::chrono::nanoseconds> modified;
  FileId id;
  std::uint64_t names = 1;  ///< hard links
  std::uint64_t owner = 0;  ///< the number of the user
  bool sticky = false;      ///< of a folder: users may only remove their own entries
};

std::optional<FileFailure> readFacts(const EntryPath& path, EntryFacts& facts);

/// The same of what a symbolic link leads to. Follows links at the end of the path.
std::optional<FileFailure> readTargetFacts(const EntryPath& path, EntryFacts& facts);

/// The same file, perhaps by two names.
inline bool sameFile(const EntryFacts& one, const EntryFacts& other) { return one.id == other.id; }
/// The same file with the same content.
inline bool unchanged(const EntryFacts& before, const EntryFacts& now) {
  return sameFile(before, now) && before.size == now.size && before.modified == now.modified;
}

/// Whether entries can be added to the folder and removed from it, as far as permissions and the disk decide
/// that: fails with `kDenied` or `kReadOnlyDisk`.
std::optional<FileFailure> checkWritable(const EntryPath& folder);

/// The names of a folder's entries, in no particular order.
std::optional<FileFailure> listFolder(const EntryPath& folder, std::vector<std::filesystem::path>& names);

/// Gives an entry another name in the same file system, in one step. It never replaces: fails with `kExists`
/// if the name is taken, and with `kOtherDisk` if it is in another file system.
std::optional<FileFailure> moveEntry(const EntryPath& from, const EntryPath& to);

/// The same, but in place of an existing file or link.
std::optional<FileFailure> moveOver(const EntryPath& from, const EntryPath& to);

/// Makes a symbolic link with the same target text. Fails with `kExists` if the name is taken, unless
/// `replace`: then the link takes the place of a file or link in one step.
std::optional<FileFailure> copyLink(const EntryPath& from, const EntryPath& to, bool replace);

/// Makes a folder that only the user can enter until `copyFolderFacts`. Fails with `kExists` if the name is
/// taken.
std::optional<FileFailure> makeFolder(const EntryPath& folder);

/// Gives a folder the times and permissions of another one and, as far as the system allows, its owner and
/// extended attributes.
std::optional<FileFailure> copyFolderFacts(const EntryPath& from, const EntryPath& to);

/// Makes a file that only the user can read, flushed to the disk. Fails with `kExists` if the name is taken;
/// another failure leaves no file.
std::optional<FileFailure> writeNewFile(const std::filesystem::path& path, std::string_view content);

/// Removes an entry that is not a folder.
std::optional<FileFailure> removeFile(const EntryPath& path);

/// Fails with `kNotEmpty` if it has entries.
std::optional<FileFailure> removeEmptyFolder(const EntryPath& folder);

/// Called for each entry that was removed, or that could not be; false ends the work.
using Removed = std::function<bool(const std::filesystem::path& path, std::optional<FileFailure> failure)>;

/// Removes a folder with all it contains, the innermost entries first. Links are removed and never followed,
/// not even one that replaces a folder during the work. A folder whose entries could not all be removed is
/// left without a failure of its own.
void removeTree(const std::filesystem::path& folder, const Removed& removed);

/// Flushes new names to the disk. A folder that cannot be flushed is no failure.
void flushFolder(const EntryPath& folder);

/// Removes the temporary files and links that killed processes left in the folder.
void removeStaleFiles(const std::filesystem::path& folder);

/// The number of the user that this process runs for.
std::uint64_t userNumber();

}  // namespace kestrel::os
