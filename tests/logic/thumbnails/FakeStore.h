#pragma once

#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "platform/thumbnailview/ThumbnailStore.h"

namespace kestrel::thumbnails::test {

/// A store in memory that counts what is asked of it.
class FakeStore final : public ThumbnailStore {
 public:
  StoredThumbnail get(const FileVersion& file, std::int32_t side, StoredDetail detail) noexcept override {
    const std::lock_guard lock(mutex_);
    if (detail == StoredDetail::kBitmap) ++bitmaps_;
    const auto kept = kept_.find({file.path.string(), side});
    if (kept != kept_.end() && kept->second.first == file) {
      StoredThumbnail thumbnail = kept->second.second;
      if (detail == StoredDetail::kFacts) thumbnail.bitmap = {};
      return thumbnail;
    }
    const auto failed = failed_.find(file.path.string());
    if (failed == failed_.end() || !(failed->second.first == file)) return {};
    StoredThumbnail thumbnail;
    thumbnail.state = StoredThumbnail::State::kFailed;
    thumbnail.notice = failed->second.second;
    return thumbnail;
  }

  void put(const FileVersion& file, std::int32_t side, const engine::Bitmap& bitmap,
           Size pictureSize) noexcept override {
    const std::lock_guard lock(mutex_);
    StoredThumbnail thumbnail;
    thumbnail.state = StoredThumbnail::State::kKept;
    thumbnail.bitmap = bitmap;
    thumbnail.pictureSize = pictureSize;
    kept_[{file.path.string(), side}] = {file, thumbnail};
  }

  void putFailed(const FileVersion& file, const std::string& reason) noexcept override {
    const std::lock_guard lock(mutex_);
    failed_[file.path.string()] = {file, reason};
  }

  bool keeps(const std::string& path, std::int32_t side) {
    const std::lock_guard lock(mutex_);
    return kept_.contains({path, side});
  }
  bool keepsFailure(const std::string& path) {
    const std::lock_guard lock(mutex_);
    return failed_.contains(path);
  }
  int bitmapsRead() {
    const std::lock_guard lock(mutex_);
    return bitmaps_;
  }

 private:
  std::mutex mutex_;
  std::map<std::pair<std::string, std::int32_t>, std::pair<FileVersion, StoredThumbnail>> kept_;
  std::map<std::string, std::pair<FileVersion, std::string>> failed_;
  int bitmaps_ = 0;
};

}  // namespace kestrel::thumbnails::test
