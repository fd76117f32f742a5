#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>

#include "platform/thumbnailview/ThumbnailStore.h"

namespace kestrel::bench {

/// Times from the begin of a run.
struct FolderTimes {
  std::chrono::duration<double> listed{};
  std::chrono::duration<double> first{};  ///< the first screen
  std::chrono::duration<double> all{};
};

/// Loads all thumbnails of a folder as the thumbnail view does, without painting: lists it, then loads the
/// files in the order of their names; the first `screen` are the first screen. `store` may be null. Raises
/// std::runtime_error if a file has no thumbnail.
FolderTimes loadFolder(const std::filesystem::path& folder, std::int32_t side, int screen,
                       std::shared_ptr<thumbnails::ThumbnailStore> store);

/// Peak resident memory of this process, in megabytes.
double peakMegabytes();

}  // namespace kestrel::bench
