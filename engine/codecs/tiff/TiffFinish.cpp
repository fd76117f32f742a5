#include "TiffFinish.h"

#include <algorithm>
#include <string>

#include "engine/codecs/common/DecodeErrors.h"

namespace kestrel::engine::tiff {

void unpremultiply(Bitmap& bitmap) {
  const Pixels pixels = bitmap.writable();
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    std::uint8_t* p = pixels.row(y);
    for (std::int32_t x = 0; x < pixels.width; ++x, p += 4) {
      const int alpha = p[3];
      if (alpha == 0 || alpha == 255) continue;
      for (int i = 0; i < 3; ++i)
        p[i] = static_cast<std::uint8_t>(std::min(255, (p[i] * 255 + alpha / 2) / alpha));
    }
  }
}

void reportMissingRows(Decoded& decoded, std::int64_t goodRows) {
  if (goodRows == 0) refusePicture("The TIFF file is damaged: not one row of the picture can be read.");
  decoded.notice = "The file is damaged or truncated: only " + std::to_string(goodRows) + " of " +
                   std::to_string(decoded.bitmap.height()) + " rows could be read.";
}

}  // namespace kestrel::engine::tiff
