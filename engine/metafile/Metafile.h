#pragma once

#include <string>

#include "MetafileCanvas.h"
#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine {

namespace metafile {

/// Pixels per inch at natural size.
inline constexpr double kPixelsPerInch = 96;

struct DrawingSize {
  std::int32_t width = 0, height = 0;
  double naturalWidth = 0, naturalHeight = 0;  ///< in pixels
  double scale = 1;                            ///< pixels per pixel of the natural size
};

struct Drawing {
  Bitmap bitmap;
  bool complete = false;  ///< the end record was reached
  DrawingSize size;
};

/// Size at which to play a drawing: the natural size, unless it is implausibly large for a file of `fileSize`
/// bytes. Then it is reduced in proportion to at most 25 megapixels and 32000 pixels per side. Raises
/// RuntimeError 7 or 481 for invalid sizes.
DrawingSize sizeToPlay(double naturalWidth, double naturalHeight, std::size_t fileSize);

/// Converts a drawing to a decoded picture, with a resolution of 96 pixels per inch at natural size. Sets a
/// notice if the drawing is incomplete or reduced.
Decoded decodedFrom(Drawing drawing, const Work& work);

}  // namespace metafile

// Play a file at its natural size at 96 pixels per inch. Raise as the decoders. A Windows metafile without a
// frame has no physical size: it is reduced if a side is longer than `longestWithoutMeasure` pixels.

namespace emf {
metafile::Drawing draw(Bytes file, metafile::Work& work);
}

namespace wmf {
metafile::Drawing draw(Bytes file, metafile::Work& work, double longestWithoutMeasure);
}

}  // namespace kestrel::engine
