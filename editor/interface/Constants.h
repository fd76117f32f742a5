#pragma once

#include <cstdint>

namespace kestrel {

/// The editor's tools.
enum ImageProcessingToolConstants : std::int32_t {
  ipToolNone = 0,
  ipToolSelect = 1,
  ipToolPan = 2,
  ipToolZoom = 5,
  ipToolLine = 7,
  ipToolRectangle = 9,
  ipToolEllipse = 10,
  ipToolFreehand = 11,
  ipToolDropper = 100,
};

/// As an optional argument: use the value of the option.
enum ImageProcessingDefaultConstants : std::int32_t { ipUseDefault = -1 };

}  // namespace kestrel
