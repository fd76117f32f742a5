#include "Crop.h"

#include <algorithm>

#include "base/RuntimeError.h"
#include "engine/effects/rows/EffectRows.h"
#include "engine/effects/rows/WriteRows.h"

namespace kestrel::engine {
namespace {

struct Interval {
  std::int64_t first, last;  ///< `last` not included
};

Interval clip(std::int32_t start, std::int32_t length, std::int32_t limit) {
  const std::int64_t end = std::int64_t{start} + length;
  return {std::max<std::int64_t>(0, std::min<std::int64_t>(start, end)),
          std::min<std::int64_t>(limit, std::max<std::int64_t>(start, end))};
}

}  // namespace

Bitmap crop(const Bitmap& source, std::int32_t left, std::int32_t top, std::int32_t width,
            std::int32_t height) {
  requirePicture(source);
  const Interval columns = clip(left, width, source.width());
  const Interval rows = clip(top, height, source.height());
  if (columns.first >= columns.last || rows.first >= rows.last) {
    throw RuntimeError(err::kInvalidCall, "The crop rectangle contains no part of the picture.");
  }
  const auto newWidth = static_cast<std::int32_t>(columns.last - columns.first);
  const auto newHeight = static_cast<std::int32_t>(rows.last - rows.first);
  if (newWidth == source.width() && newHeight == source.height()) return source;

  Bitmap result = Bitmap::uninitialized(newWidth, newHeight);
  const ConstPixels from = source.pixels();
  const Pixels to = result.writable();
  const auto skip = static_cast<std::size_t>(columns.first) * sizeof(Pixel);
  writeRows(to, [&](std::int32_t y, bool stream) {
    copyRow(from.row(static_cast<std::int32_t>(rows.first) + y) + skip, newWidth, stream, to.row(y));
  });
  return result;
}

}  // namespace kestrel::engine
