#include "Resize.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "FixedPointResample.h"
#include "Resample.h"
#include "base/RuntimeError.h"
#include "engine/effects/rows/EffectRows.h"
#include "engine/effects/rows/FilterTable.h"
#include "engine/effects/rows/FloatRows.h"
#include "engine/parallel/Parallel.h"

namespace kestrel::engine {
namespace {

/// Along one axis, the index of the source pixel under each new pixel's center.
std::vector<std::int32_t> nearest(std::int32_t inputs, std::int32_t outputs) {
  std::vector<std::int32_t> result(static_cast<std::size_t>(outputs));
  for (std::int64_t i = 0; i < outputs; ++i) {
    result[static_cast<std::size_t>(i)] =
        static_cast<std::int32_t>((2 * i + 1) * inputs / (std::int64_t{2} * outputs));
  }
  return result;
}

Bitmap resizeToNearest(const Bitmap& source, std::int32_t width, std::int32_t height) {
  Bitmap result = Bitmap::uninitialized(width, height);
  const std::vector<std::int32_t> columns = nearest(source.width(), width);
  const std::vector<std::int32_t> rows = nearest(source.height(), height);
  const ConstPixels from = source.pixels();
  const Pixels to = result.writable();
  forRows(height, rowsPerTask(width), [&](std::int32_t first, std::int32_t last) {
    for (std::int32_t y = first; y < last; ++y) {
      const std::int32_t sourceY = rows[static_cast<std::size_t>(y)];
      std::uint8_t* const out = to.row(y);
      if (y > first && sourceY == rows[static_cast<std::size_t>(y) - 1]) {
        std::memcpy(out, to.row(y - 1), static_cast<std::size_t>(width) * sizeof(Pixel));
        continue;
      }
      const std::uint8_t* const in = from.row(sourceY);
      for (std::size_t x = 0; x < columns.size(); ++x) {
        std::memcpy(out + 4 * x, in + std::ptrdiff_t{4} * columns[x], sizeof(Pixel));
      }
    }
  });
  return result;
}

FilterTable axisTable(std::int32_t inputs, std::int32_t outputs, ResampleMethod method) {
  switch (method) {
    case ResampleMethod::Bilinear:
      return scalingTable(inputs, outputs, triangleKernel());
    case ResampleMethod::Bicubic:
      return scalingTable(inputs, outputs, catmullRomKernel());
    case ResampleMethod::Lanczos3:
      return scalingTable(inputs, outputs, lanczos3Kernel());
    default:  // Decimate
      return {inputs, outputs, areaKernel(static_cast<double>(inputs) / outputs)};
  }
}

std::int32_t heightInProportion(const Bitmap& source, std::int32_t width) {
  const std::int64_t height =
      (std::int64_t{2} * width * source.height() + source.width()) / (std::int64_t{2} * source.width());
  // The bitmap refuses a height beyond its limits.
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(height, 1, INT32_MAX));
}

}  // namespace

Bitmap resize(const Bitmap& source, std::int32_t width, std::int32_t height, ResampleMethod method) {
  requirePicture(source);
  if (width < 1 || height < 0) {
    throw RuntimeError(err::kInvalidCall, "A picture cannot be resized to " + std::to_string(width) + " x " +
                                              std::to_string(height) + " pixels.");
  }
  switch (method) {
    case ResampleMethod::Bilinear:
    case ResampleMethod::Bicubic:
    case ResampleMethod::Pixel:
    case ResampleMethod::Decimate:
    case ResampleMethod::Lanczos3:
      break;
    default:
      throw RuntimeError(err::kInvalidCall,
                         "There is no resampling method " + std::to_string(static_cast<int>(method)) + ".");
  }
  if (height == 0) height = heightInProportion(source, width);
  if (width == source.width() && height == source.height()) return source;
  if (method == ResampleMethod::Pixel) return resizeToNearest(source, width, height);

  Bitmap result = Bitmap::uninitialized(width, height);
  const Pixels to = result.writable();
  const FilterTable columns = axisTable(source.width(), width, method);
  const FilterTable rows = axisTable(source.height(), height, method);
  if (suitsFixedPointResample(columns, rows)) {
    fixedPointResample(source.pixels(), columns, rows, to);
  } else {
    resample(source.pixels(), columns, rows,
             [&](std::int32_t y, const float* row) { storeStraightRow(row, width, to.row(y)); });
  }
  return result;
}

}  // namespace kestrel::engine
