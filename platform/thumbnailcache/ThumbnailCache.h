#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <set>
#include <string>

#include "platform/thumbnailview/ThumbnailStore.h"

namespace kestrel::thumbnails {

/// Thumbnails in the user's cache, in the format of the freedesktop Thumbnail Managing Standard 0.9: shared
/// with the other programs of the desktop, and never cleaned up here.
///
/// Entries are used if they are complete, name the file by its URI, and have its modification time (to the
/// nanosecond if this program wrote them, else to the second) and its size if they have one. An entry of this
/// program is not used for another file that was put in its file's place with the same time and size. An
/// entry that does not fit is replaced. Read-only shared repositories (".sh_thumbnails" in the folder of the
/// file) are read where the user's own cache has nothing.
///
/// Nothing is read or written for files that the user cannot read, for files in the cache, and for relative
/// paths. Pictures of at most 128 by 128 pixels are not kept.
class ThumbnailCache : public ThumbnailStore {
 public:
  /// `root` is the folder of the cache, absolute. It is made when the first thumbnail is kept.
  explicit ThumbnailCache(std::filesystem::path root);

  StoredThumbnail get(const FileVersion& file, std::int32_t side, StoredDetail detail) noexcept override;
  void put(const FileVersion& file, std::int32_t side, const engine::Bitmap& bitmap,
           Size pictureSize) noexcept override;
  void putFailed(const FileVersion& file, const std::string& reason) noexcept override;

 private:
  bool serves(const FileVersion& file);
  bool isOwnFolder(const std::filesystem::path& folder);
  StoredThumbnail read(const FileVersion& file, std::int32_t side, StoredDetail detail) const;
  StoredThumbnail readFailed(const FileVersion& file, const std::string& uri) const;
  bool prepare(const std::filesystem::path& folder);
  void write(const FileVersion& file, const std::filesystem::path& folder, const engine::Bitmap& bitmap,
             Size pictureSize, const std::string& reason);

  const std::filesystem::path root_;
  std::mutex mutex_;
  // Guarded by the mutex
  std::filesystem::path lastFolder_;  ///< asked about last: most requests are for the same one
  bool lastIsOwn_ = false;
  std::set<std::filesystem::path> cleaned_;  ///< folders without left-over temporary files
};

/// The folder of the user's thumbnails: $XDG_CACHE_HOME/thumbnails, else $HOME/.cache/thumbnails. Empty if
/// there is neither an absolute path in XDG_CACHE_HOME nor a home. Read the environment on one thread.
std::filesystem::path sharedThumbnailFolder();

/// The user's cache; null if there is no folder for it.
std::shared_ptr<ThumbnailStore> sharedThumbnailCache();

}  // namespace kestrel::thumbnails
