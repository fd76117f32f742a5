#pragma once

#include <cstdint>

namespace kestrel {

/// The unit of a thumbnail's size.
enum ThumbnailSizeTypeEnum : std::int32_t {
  tstPercentage = 0,
  tstWidthInPixels = 1,
};

/// The direction of a rotation.
enum ImageProcessingDirectionConstants : std::int32_t {
  ipDirectionLeft = 0,
  ipDirectionRight = 1,
};

}  // namespace kestrel
