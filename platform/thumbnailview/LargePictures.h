#pragma once

#include <cstdint>
#include <vector>

#include "ItemList.h"

namespace kestrel::thumbnails {

/// The large pictures of the film strip and the single view: that of one item, and of its neighbors, so that
/// going through the pictures shows them at once.
class LargePictures {
 public:
  struct Picture {
    engine::Bitmap bitmap;
    std::uint64_t version = 0;
  };

  /// Longest side of the pictures to load for a box: the next of the sizes of the store, or of their
  /// multiples; 0 for an empty box.
  static std::int32_t sideFor(const Rectangle& box);

  /// Sets what is to be kept, in the order of its importance, at a size; drops everything else.
  void want(std::vector<FileKey> keys, std::int32_t side);
  /// Whether this is a result for a picture that is wanted.
  bool wants(FileKey key, std::int32_t side) const;
  /// The wanted keys whose pictures are missing.
  std::vector<FileKey> missing() const;
  std::int32_t side() const { return side_; }

  void put(FileKey key, Picture picture);
  /// Null while it is not loaded.
  const Picture* find(FileKey key) const;
  /// A file has another version: the picture of the old one is shown until the new one is loaded.
  void renew(FileKey from, FileKey to);
  /// A file has another name and the same content.
  void rename(FileKey from, FileKey to);
  void clear();

 private:
  struct Entry {
    FileKey key = 0;
    Picture picture;
    bool current = false;  ///< of this version and size
  };

  Entry* entryOf(FileKey key);

  std::vector<Entry> entries_;
  std::int32_t side_ = 0;
};

}  // namespace kestrel::thumbnails
