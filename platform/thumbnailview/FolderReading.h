#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "FolderLoader.h"
#include "Services.h"

/// Reading a folder on a worker thread.
namespace kestrel::thumbnails {

/// Shown in place of a folder that was there.
inline constexpr const char* kFolderGone = "The folder no longer exists.";

/// `entry` as the view knows it.
FoundFile foundFile(os::FolderEntry entry);

struct FolderListing {
  std::vector<FoundFile> files;  ///< in natural order
  std::string problem;           ///< for the user; empty if the folder was read to its end
  bool isMissing = false;        ///< there is no such folder
};

/// Lists the pictures of a folder. `canceled` is asked for each entry; true ends the listing.
FolderListing listFolder(FolderAccess& access, const std::filesystem::path& folder,
                         const std::function<bool()>& canceled);

/// What the noticed changes mean now: each file is examined once more, so that the result does not depend on
/// how long ago they were noticed.
FolderLoader::Listener::Changes examineChanges(FolderAccess& access, const std::filesystem::path& folder,
                                               const std::vector<os::FolderChange>& noticed);

}  // namespace kestrel::thumbnails
