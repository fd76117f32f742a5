#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engine/codecs/common/Decoded.h"
#include "platform/thumbnailview/ThumbnailStore.h"

namespace kestrel::thumbnails {

/// Attributes of an entry, from the text chunks of its file.
struct CacheEntry {
  std::int32_t width = 0, height = 0;  ///< of the thumbnail
  Size pictureSize;                    ///< of the picture; 0 by 0 where unknown
  std::string reason;                  ///< why a picture could not be decoded; UTF-8
};

/// The attributes of the entry `data` if it belongs to this version of the file, which the entry names `uri`.
/// Nothing if it belongs to another, lacks a required attribute, or is no complete PNG file.
std::optional<CacheEntry> readEntry(engine::Bytes data, const std::string& uri, const FileVersion& file);

/// A complete entry. `reason` is empty for a thumbnail; `pictureSize` may be 0 by 0.
std::vector<std::uint8_t> writeEntry(const engine::Bitmap& bitmap, const std::string& uri,
                                     const FileVersion& file, Size pictureSize, const std::string& reason);

}  // namespace kestrel::thumbnails
