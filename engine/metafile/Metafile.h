#pragma once

#include <string>

#include "MetafileCanvas.h"
#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine {

namespace metafile {

/// The pixels of each inch at the natural size.
inline constexpr double kPixelsPerInch = 96;

struct DrawingSize {
  std::int32_t width = 0, height = 0;
  double naturalWidth = 0, naturalHeight = 0;  ///< in pixels
  double scale = 1;                            ///< pixels for one of the natural size
};

struct Drawing {
  Bitmap bitmap;
  bool complete = false;  ///< the file was played up to its end
  DrawingSize size;
};

/// What a drawing of this natural size in pixels is played at: that size, unless it is larger than anyone may
/// want to see and than a file of so many bytes can fill with bitmaps. Then it is one of the same shape of at
/// most 25 megapixels and 32000 pixels a side. Raises RuntimeError 7 or 481 for sizes that cannot be.
DrawingSize sizeToPlay(double naturalWidth, double naturalHeight, std::size_t fileSize);

/// The drawing as the picture of a file, of 96 pixels per inch at its natural size, with a notice if it could
/// not be played whole or not at its natural size.
Decoded decodedFrom(Drawing drawing, const Work& work);

}  // namespace metafile

// A file played at its natural size, which is that of 96 pixels per inch. Raises as the decoders. A Windows
// metafile without a frame has no measure: it is made smaller if a side is longer than
// `longestWithoutMeasure`.

namespace emf {
metafile::Drawing draw(Bytes file, metafile::Work& work);
}

namespace wmf {
metafile::Drawing draw(Bytes file, metafile::Work& work, double longestWithoutMeasure);
}

}  // namespace kestrel::engine
