#include "Flip.h"

#include <cstring>

#include "Common.h"
#include "base/RuntimeError.h"
#include "engine/Parallel.h"
#include "reference/PixelRows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/effects/Flip.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace kestrel::engine::HWY_NAMESPACE {

void mirrorRow(const std::uint8_t* HWY_RESTRICT in, std::int32_t count, std::uint8_t* HWY_RESTRICT out) {
#if HWY_TARGET == HWY_SCALAR
  reference::mirrorRow(in, count, out);
#else
  namespace hn = hwy::HWY_NAMESPACE;
  const hn::ScalableTag<std::uint32_t> d;
  const hn::Repartition<std::uint8_t, decltype(d)> bytes;
  const auto lanes = static_cast<std::int32_t>(hn::Lanes(d));
  std::int32_t x = 0;
  for (; x + lanes <= count; x += lanes) {
    const auto pixels = hn::BitCast(d, hn::LoadU(bytes, in + std::ptrdiff_t{4} * (count - lanes - x)));
    hn::Store(hn::BitCast(bytes, hn::Reverse(d, pixels)), bytes, out + std::ptrdiff_t{4} * x);
  }
  reference::mirrorRow(in, count - x, out + std::ptrdiff_t{4} * x);
#endif
}

}  // namespace kestrel::engine::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kestrel::engine {

HWY_EXPORT(mirrorRow);

namespace {

Bitmap mirrored(const Bitmap& source, bool columns, bool rows) {
  requirePicture(source);
  Bitmap result = Bitmap::uninitialized(source.width(), source.height());
  const ConstPixels from = source.pixels();
  const Pixels to = result.writable();
  forRows(to.height, rowsPerTask(to.width), [&](std::int32_t first, std::int32_t last) {
    for (std::int32_t y = first; y < last; ++y) {
      const std::uint8_t* const in = from.row(rows ? to.height - 1 - y : y);
      if (columns) {
        HWY_DYNAMIC_DISPATCH(mirrorRow)(in, to.width, to.row(y));
      } else {
        std::memcpy(to.row(y), in, static_cast<std::size_t>(to.width) * sizeof(Pixel));
      }
    }
  });
  return result;
}

}  // namespace

Bitmap flip(const Bitmap& source, FlipDirection direction) {
  switch (direction) {
    case FlipDirection::LeftToRight:
      return mirrored(source, true, false);
    case FlipDirection::TopToBottom:
      return mirrored(source, false, true);
  }
  throw RuntimeError(err::kInvalidCall, "A picture can be flipped left to right (0) or top to bottom (1).");
}

Bitmap halfTurn(const Bitmap& source) { return mirrored(source, true, true); }

}  // namespace kestrel::engine
#endif
