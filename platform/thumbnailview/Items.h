#pragma once

#include <cstdint>
#include <string>

#include "engine/pixels/Bitmap.h"
#include "imaging/contract/Types.h"

namespace kestrel::thumbnails {

enum class ItemState {
  kWaiting,  ///< not loaded yet: painted as a placeholder
  kShown,    ///< has a picture; a notice if it is incomplete
  kBroken,   ///< cannot be decoded; the notice has the reason
};

/// What a platform shows of an item: painted, as tool tip, as accessible text.
struct ItemFacts {
  std::string filename;  ///< as `Thumbnail::Filename`; the file system's bytes, not necessarily UTF-8
  /// The name as text to paint: bytes that are no UTF-8 and control characters are replaced by U+FFFD.
  std::string label;
  ItemState state = ItemState::kWaiting;
  std::string notice;         ///< why it is broken or incomplete; else empty
  Size pictureSize;           ///< in pixels; 0 by 0 while unknown
  std::uint64_t bytes = 0;    ///< size of the file
  std::int64_t modified = 0;  ///< nanoseconds since 1970-01-01 UTC
  bool selected = false;
  bool focused = false;
};

/// A picture to paint, scaled to fill `target`.
struct PaintedPicture {
  /// May be empty while the item waits, also when it is shown otherwise: then a placeholder is painted.
  engine::Bitmap bitmap;
  /// Device pixels of the viewport.
  Rectangle target;
  /// Changes with the bitmap; no two bitmaps of a view have the same. A key for a cache of converted
  /// pictures.
  std::uint64_t version = 0;
};

}  // namespace kestrel::thumbnails
