#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <utility>

#include "Descriptor.h"
#include "platform/os/OpenFolder.h"

namespace kestrel::os {

/// As `removeStaleFiles` at that moment.
void removeStaleFiles(const std::filesystem::path& folder, std::chrono::system_clock::time_point now);

/// A name for a temporary entry, which `removeStaleFiles` recognizes. Probably free.
EntryPath temporaryName(const EntryPath& folder);

/// A new file in a folder, removed again unless it was moved to its place. It is locked while it has a name,
/// so that no other process takes it for stale. Its name is short and does not depend on the target's, which
/// may be as long as the file system allows.
class TemporaryFile {
 public:
  /// `named` at once, or only when it is moved. Where a file without a name cannot be made it has one at
  /// once. `mode` are its permissions, reduced by the user's mask.
  TemporaryFile(const EntryPath& folder, bool named, mode_t mode);
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile();

  /// Negative, with errno set, if no file could be made.
  int descriptor() const { return descriptor_.number(); }

  bool hasName() const { return name_.has_value(); }

  /// Gives the file a name if it has none. False with errno set if that is not possible here.
  bool giveName();

  /// False with errno set if it could not be moved. The file must have a name.
  bool moveTo(const EntryPath& target);

  /// The same, but only under a name that is free: else EEXIST. The file needs no name for this.
  bool moveToNew(const EntryPath& target);

  /// The descriptor, with its lock; the file closes it no more.
  Descriptor takeDescriptor() { return std::move(descriptor_); }

 private:
  bool linkTo(const EntryPath& name) const;
  void openNamed(mode_t mode);
  bool isLocked() const;

  EntryPath folder_;
  Descriptor descriptor_;
  std::optional<EntryPath> name_;  ///< none before it has one
};

/// False with errno set at the first failure.
bool writeAll(int descriptor, std::span<const std::uint8_t> data);

}  // namespace kestrel::os
