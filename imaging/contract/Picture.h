#pragma once

#include <cstdint>
#include <memory>

#include "Types.h"
#include "base/Object.h"

namespace kestrel {

/// An immutable picture: pixels that can be passed around, shown and loaded.
class Picture : public Object {
 public:
  virtual std::int32_t Width() const = 0;
  virtual std::int32_t Height() const = 0;

  /// All its pixels. Valid as long as the picture.
  virtual PixelRows Pixels() const = 0;
};

using PicturePtr = std::shared_ptr<const Picture>;

}  // namespace kestrel
