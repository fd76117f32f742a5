#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "Files.h"

namespace kestrel::os {

/// A file that at most one process, and one object in it, owns. Ownership is a lock on the file, which ends
/// with the process at the latest: a file that a killed process leaves has no owner.
///
/// Not thread-safe.
class OwnedFile {
 public:
  /// Owns no file.
  OwnedFile();
  OwnedFile(OwnedFile&& other) noexcept;
  OwnedFile& operator=(OwnedFile&& other) noexcept;
  /// Gives the file up: it stays, without an owner.
  ~OwnedFile();

  bool owns() const;
  /// Empty without a file.
  const std::filesystem::path& path() const { return path_; }

  /// Takes over an existing file that has no owner. Fails with `kInUse` if it has one.
  std::optional<FileFailure> take(const std::filesystem::path& path);

  /// Makes the blocks, one after the other, the content of a file of its own, at first `path` if none is
  /// owned yet. At every moment the name has the previous content or the new one, whole and owned; a power
  /// cut does not change that. Only the user can read it.
  ///
  /// `canceled` is asked between portions; true ends the work with `kCanceled`. A failure leaves the
  /// previous file as it was.
  std::optional<FileFailure> replace(const std::filesystem::path& path,
                                     std::span<const std::vector<std::uint8_t>> blocks,
                                     const std::function<bool()>& canceled);

  /// Removes the file, if one is owned.
  std::optional<FileFailure> remove();

 private:
  struct Handle;

  std::filesystem::path path_;
  std::unique_ptr<Handle> handle_;  ///< holds the lock
};

/// Whether a living process owns the file. True too where that cannot be found out.
bool isOwned(const std::filesystem::path& path);

/// Makes a folder that only the user can enter, and those above it that are missing, in the same way.
/// Existing ones are left as they are.
std::optional<FileFailure> makePrivateFolder(const std::filesystem::path& folder);

}  // namespace kestrel::os
