#include "Flip.h"

#include "base/RuntimeError.h"
#include "engine/effects/rows/EffectRows.h"
#include "engine/effects/rows/WriteRows.h"
#include "engine/effects/rows/reference/PixelRows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/effects/Flip.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "engine/effects/rows/PutPixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kestrel::engine::HWY_NAMESPACE {

void mirrorRow(const std::uint8_t* HWY_RESTRICT in, std::int32_t count, [[maybe_unused]] bool stream,
               std::uint8_t* HWY_RESTRICT out) {
#if HWY_TARGET == HWY_SCALAR
  reference::mirrorRow(in, count, out);
#else
  const hn::ScalableTag<std::uint32_t> d;
  const hn::Repartition<std::uint8_t, decltype(d)> bytes;
  const auto lanes = static_cast<std::int32_t>(hn::Lanes(d));
  const std::int32_t rest = count % lanes;
  reference::mirrorRow(in, rest, out + std::ptrdiff_t{4} * (count - rest));
  for (std::int32_t x = rest; x < count; x += lanes) {
    const auto pixels = hn::BitCast(d, hn::LoadU(bytes, in + std::ptrdiff_t{4} * x));
    putPixels(d, hn::Reverse(d, pixels), stream, out + std::ptrdiff_t{4} * (count - lanes - x));
  }
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
  writeRows(to, [&](std::int32_t y, bool stream) {
    // Reads sequentially and writes in reverse: reads stall on memory, stores do not.
    std::uint8_t* const out = to.row(rows ? to.height - 1 - y : y);
    if (columns) {
      HWY_DYNAMIC_DISPATCH(mirrorRow)(from.row(y), to.width, stream, out);
    } else {
      copyRow(from.row(y), to.width, stream, out);
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
