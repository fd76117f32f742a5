#pragma once

#include <filesystem>
#include <functional>
#include <optional>

#include "platform/os/Files.h"

namespace kestrel::transfer {

/// The trash folder in the user's home: "Trash" in `$XDG_DATA_HOME`, or else in "~/.local/share". Empty if
/// the user has no home.
std::filesystem::path homeTrash();

/// How an attempt to move an entry to the trash ended.
struct TrashResult {
  bool hasTrash = true;  ///< false: the entry's volume has no trash that can be used
  /// Why the entry was not moved, or why the trash cannot be used: none if there is no trash.
  std::optional<os::FileFailure> failure;
};

/// Moves a file, folder or link to the trash by the trash standard 1.0 of freedesktop.org: to the home
/// trash from the file system of that, else to the trash folder at the top of the entry's volume.
///
/// The size of a folder is found out after the move, for a cache of the trash; `canceled` true ends that.
TrashResult moveToTrash(const std::filesystem::path& path, const std::filesystem::path& homeTrash,
                        const std::function<bool()>& canceled);

}  // namespace kestrel::transfer
