#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

struct Metadata;

/// A scroll position: picture column and row at the view's left and top edge; negative where the picture is
/// centered.
struct ScrollPlace {
  double left = 0;
  double top = 0;
};

/// A picture as a value: pixels, file format, metadata and where a view shows it. Copies share the pixels by
/// reference. An empty bitmap means no picture.
struct PictureState {
  Bitmap bitmap;
  /// Code of the file format it was loaded from, 0 if it came from no file.
  std::int32_t format = 0;
  /// How many pictures that file held.
  std::int32_t pages = 1;
  /// Notice about that file's decode errors; null if there were none.
  std::shared_ptr<const std::string> notice{};
  /// The file's metadata; null without.
  std::shared_ptr<const Metadata> metadata{};
  /// Where the view that shows it is scrolled to. An undo step that changes the size restores it.
  ScrollPlace place{};
};

}  // namespace kestrel::engine
