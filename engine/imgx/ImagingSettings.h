#pragma once

#include <cstdint>

#include "imaging/contract/Colour.h"
#include "imaging/contract/Draw.h"
#include "imaging/contract/Types.h"

namespace kestrel::engine {

/// What a face's sub-objects are set to. A view and the `ImgX` object bound to it share one.
struct ImagingSettings {
  Colour drawColor;
  std::int32_t fillMode = kFillNone;
  std::int32_t penWidth = 1;  ///< pixels
  std::int32_t jpegQuality = 75;
  /// What a blank picture is filled with where no color is given; -1 leaves it transparent.
  OLE_COLOR backColor = kNoColor;
};

}  // namespace kestrel::engine
