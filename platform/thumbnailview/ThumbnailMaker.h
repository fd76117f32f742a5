#pragma once

#include <filesystem>
#include <memory>

#include "FolderLoader.h"
#include "Services.h"

namespace kestrel::thumbnails {

/// Makes thumbnails on worker threads: from the store if it has them, else by decoding. Thread-safe.
class ThumbnailMaker {
 public:
  ThumbnailMaker(std::shared_ptr<ThumbnailStore> store, std::shared_ptr<FolderAccess> access)
      : store_(std::move(store)), access_(std::move(access)) {}

  /// Does not raise. A thumbnail is attributed to the version of the file that was asked for only if the file
  /// has that version before and after it is read.
  LoadResult make(const std::filesystem::path& folder, const LoadRequest& request) const noexcept;

 private:
  bool isCurrent(const std::filesystem::path& path, const LoadRequest& request, LoadResult& result) const;
  bool readStore(const FileVersion& file, const LoadRequest& request, LoadResult& result) const;
  void decode(const FileVersion& file, const LoadRequest& request, LoadResult& result) const;

  std::shared_ptr<ThumbnailStore> store_;  ///< may be null
  std::shared_ptr<FolderAccess> access_;
};

}  // namespace kestrel::thumbnails
