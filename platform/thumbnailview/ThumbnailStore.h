#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "engine/pixels/Bitmap.h"
#include "imaging/contract/Types.h"

namespace kestrel::thumbnails {

/// One version of a file. A thumbnail belongs to it as long as path, time and size are the same, unless
/// another file was put in its place: then both `inode` and `changed` differ.
struct FileVersion {
  std::filesystem::path path;  ///< absolute
  std::int64_t modified = 0;   ///< nanoseconds since 1970-01-01 UTC
  std::uint64_t size = 0;      ///< bytes
  std::uint64_t inode = 0;     ///< some file systems number their files anew when they are mounted
  std::int64_t changed = 0;    ///< as `os::FolderEntry::changed`; permissions and links change it too

  bool operator==(const FileVersion&) const = default;
};

/// Longest sides of the thumbnails in a store, in pixels.
inline constexpr std::int32_t kStoredSides[] = {128, 256, 512, 1024};

/// A kept thumbnail, or what is kept in its place.
struct StoredThumbnail {
  enum class State {
    kMissing,  ///< none, or one of another version of the file
    kKept,
    kFailed,  ///< this version of the file could not be decoded by this program
  };
  State state = State::kMissing;
  /// Upright, in sRGB, straight alpha; its longest side is at most the side asked for. Empty unless kept and
  /// wanted.
  engine::Bitmap bitmap;
  /// Of the picture, in pixels; 0 by 0 where unknown.
  Size pictureSize;
  /// Why the picture is broken or incomplete; a sentence for the user, may be empty.
  std::string notice;
};

/// What `ThumbnailStore::get` reads.
enum class StoredDetail {
  kFacts,   ///< without the bitmap: faster
  kBitmap,  ///< with it
};

/// Thumbnails kept from one run to the next. All members are thread-safe, do not raise, and are called on
/// worker threads; they may block. A store that cannot be read or written loses thumbnails, nothing else.
class ThumbnailStore {
 public:
  virtual ~ThumbnailStore() = default;

  /// `side` is one of `kStoredSides`. A picture without as many pixels may be kept at its own size.
  virtual StoredThumbnail get(const FileVersion& file, std::int32_t side, StoredDetail detail) noexcept = 0;

  /// Keeps a complete thumbnail; replaces one of another version. `pictureSize` may be 0 by 0.
  virtual void put(const FileVersion& file, std::int32_t side, const engine::Bitmap& bitmap,
                   Size pictureSize) noexcept = 0;

  /// Records that this version of the file cannot be decoded.
  virtual void putFailed(const FileVersion& file, const std::string& reason) noexcept = 0;
};

}  // namespace kestrel::thumbnails
