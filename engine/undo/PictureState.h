#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

struct Metadata;

/// A picture as a value: its pixels and what came with them and goes out with them again. Copying it takes
/// references only. Without pixels it is no picture.
struct PictureState {
  Bitmap bitmap;
  /// Code of the file format it was loaded from, 0 if it came from no file.
  std::int32_t format = 0;
  /// How many pictures that file held.
  std::int32_t pages = 1;
  /// What the user should know of the damage of that file; null for nothing.
  std::shared_ptr<const std::string> damage{};
  /// What the file told besides the pixels; null for nothing.
  std::shared_ptr<const Metadata> metadata{};
};

}  // namespace kestrel::engine
