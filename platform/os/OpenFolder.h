#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <utility>

#include "Files.h"

namespace kestrel::os {

/// The path of an entry, from an open folder or, without one, as the system takes it.
struct EntryPath {
  EntryPath(std::filesystem::path whole) : path(std::move(whole)) {}
  EntryPath(std::intptr_t openFolder, std::filesystem::path below)
      : folder(openFolder), path(std::move(below)) {}

  std::intptr_t folder =
      -1;  ///< the handle of an `OpenFolder`, which must outlive this; negative without one
  std::filesystem::path path;
};

/// A folder that is open. Its entries are reached through it, and never those of a link or another folder
/// that has taken its name in the meantime.
class OpenFolder {
 public:
  OpenFolder() = default;
  OpenFolder(const OpenFolder&) = delete;
  OpenFolder& operator=(const OpenFolder&) = delete;
  ~OpenFolder();

  /// Opens a folder, not the target of a link at the end of the path. To be called once. Needs no permission
  /// to list the folder.
  std::optional<FileFailure> open(const EntryPath& folder);

  EntryPath entry(const std::filesystem::path& name) const { return {handle_, name}; }
  EntryPath itself() const { return {handle_, "."}; }

 private:
  std::intptr_t handle_ = -1;
};

}  // namespace kestrel::os
