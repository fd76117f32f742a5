#pragma once

#include <cstdint>

namespace kestrel {

/// What the size of a thumbnail is measured in.
enum ThumbnailSizeTypeEnum : std::int32_t {
  tstPercentage = 0,
  tstWidthInPixels = 1,
};

/// Which way a picture is turned.
enum ImageProcessingDirectionConstants : std::int32_t {
  ipDirectionLeft = 0,
  ipDirectionRight = 1,
};

}  // namespace kestrel
