#pragma once

#include <cstdint>

#include "imaging/contract/Colour.h"
#include "imaging/contract/Draw.h"
#include "imaging/contract/Formats.h"
#include "imaging/contract/Types.h"

namespace kestrel::engine {

/// Settings of the sub-objects (`Draw`, `Writer`). A view and the `ImgX` object bound to it share one
/// instance.
struct ImagingSettings {
  Colour drawColor;
  std::int32_t fillMode = kFillNone;
  std::int32_t penWidth = 1;  ///< pixels
  std::int32_t jpegQuality = kDefaultJpegQuality;
  /// Fill of a new picture when no color is given; -1 leaves it transparent.
  OLE_COLOR backColor = kNoColor;
};

}  // namespace kestrel::engine
