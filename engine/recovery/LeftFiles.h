#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string_view>
#include <vector>

namespace kestrel::engine {

/// The bounds of what is kept on disk.
struct RecoveryBounds {
  std::size_t snapshotBytes = std::size_t{512} << 20;  ///< a larger snapshot is not kept
  std::size_t leftBytes = std::size_t{1} << 30;        ///< all that can be recovered together
  std::size_t leftPictures = 20;
};

/// The end of the names of the files that keep a picture.
inline constexpr std::string_view kJournalSuffix = ".journal";

/// A file without an owner, left to be recovered.
struct LeftFile {
  std::filesystem::path path;
  std::filesystem::file_time_type written;
  std::uintmax_t size = 0;
};

/// The files that were left in a folder, the latest first. A file with an owner belongs to a living editor.
std::vector<LeftFile> leftFiles(const std::filesystem::path& folder);

/// Removes the oldest left files until the others are within the bounds. The latest one stays.
void dropOldest(const std::filesystem::path& folder, const RecoveryBounds& bounds);

}  // namespace kestrel::engine
