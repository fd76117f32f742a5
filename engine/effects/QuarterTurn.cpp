#include "QuarterTurn.h"

#include <algorithm>

#include "Common.h"
#include "Flip.h"
#include "engine/Parallel.h"
#include "reference/TurnRows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/effects/QuarterTurn.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace kestrel::engine::HWY_NAMESPACE {

void Transpose(const std::uint8_t* HWY_RESTRICT in, std::ptrdiff_t inStep, std::int32_t columns,
               std::int32_t rows, std::uint8_t* HWY_RESTRICT out, std::ptrdiff_t outStep) {
#if HWY_TARGET == HWY_SCALAR
  reference::transpose(in, inStep, columns, rows, out, outStep);
#else
  namespace hn = hwy::HWY_NAMESPACE;
  const hn::FixedTag<std::uint32_t, 4> d;
  const hn::Repartition<std::uint64_t, decltype(d)> d64;
  const hn::Repartition<std::uint8_t, decltype(d)> d8;
  const auto load = [&](const std::uint8_t* p) HWY_ATTR { return hn::BitCast(d, hn::LoadU(d8, p)); };
  const auto store = [&](auto v, std::uint8_t* p) HWY_ATTR { hn::StoreU(hn::BitCast(d8, v), d8, p); };
  const std::int32_t wholeColumns = columns / 4 * 4;
  const std::int32_t wholeRows = rows / 4 * 4;
  for (std::int32_t j = 0; j < wholeColumns; j += 4) {
    for (std::int32_t i = 0; i < wholeRows; i += 4) {
      const std::uint8_t* const p = in + i * inStep + std::ptrdiff_t{4} * j;
      const auto a = load(p), b = load(p + inStep), c = load(p + 2 * inStep), e = load(p + 3 * inStep);
      const auto abLow = hn::BitCast(d64, hn::InterleaveLower(d, a, b));
      const auto abHigh = hn::BitCast(d64, hn::InterleaveUpper(d, a, b));
      const auto ceLow = hn::BitCast(d64, hn::InterleaveLower(d, c, e));
      const auto ceHigh = hn::BitCast(d64, hn::InterleaveUpper(d, c, e));
      std::uint8_t* const q = out + j * outStep + std::ptrdiff_t{4} * i;
      store(hn::InterleaveLower(d64, abLow, ceLow), q);
      store(hn::InterleaveUpper(d64, abLow, ceLow), q + outStep);
      store(hn::InterleaveLower(d64, abHigh, ceHigh), q + 2 * outStep);
      store(hn::InterleaveUpper(d64, abHigh, ceHigh), q + 3 * outStep);
    }
  }
  reference::transpose(in + wholeRows * inStep, inStep, wholeColumns, rows - wholeRows,
                       out + std::ptrdiff_t{4} * wholeRows, outStep);
  reference::transpose(in + std::ptrdiff_t{4} * wholeColumns, inStep, columns - wholeColumns, rows,
                       out + wholeColumns * outStep, outStep);
#endif
}

}  // namespace kestrel::engine::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kestrel::engine {

HWY_EXPORT(Transpose);

Bitmap quarterTurn(const Bitmap& source, int quarters) {
  requirePicture(source);
  if (quarters == 2) return halfTurn(source);
  Bitmap result = Bitmap::uninitialized(source.height(), source.width());
  const ConstPixels from = source.pixels();
  const Pixels to = result.writable();
  const bool right = quarters == 1;
  // A turn to the right reads the input from its last row upwards, one to the left writes the output so.
  const auto inStep =
      right ? -static_cast<std::ptrdiff_t>(from.stride) : static_cast<std::ptrdiff_t>(from.stride);
  const auto outStep =
      right ? static_cast<std::ptrdiff_t>(to.stride) : -static_cast<std::ptrdiff_t>(to.stride);
  // Tiles of one cache line by many rows: small enough to stay cached while they are turned.
  constexpr std::int32_t kTileColumns = 16;
  constexpr std::int32_t kTileRows = 64;
  const std::int32_t strips = (from.width - 1) / kTileColumns + 1;
  forRows(strips, rowsPerTask(kTileColumns * from.height), [&](std::int32_t first, std::int32_t last) {
    for (std::int32_t column = first * kTileColumns; column < std::min(last * kTileColumns, from.width);
         column += kTileColumns) {
      const std::int32_t columns = std::min(kTileColumns, from.width - column);
      std::uint8_t* const out = to.row(right ? column : from.width - 1 - column);
      for (std::int32_t row = 0; row < from.height; row += kTileRows) {
        const std::int32_t rows = std::min(kTileRows, from.height - row);
        const std::uint8_t* const in =
            from.row(right ? from.height - 1 - row : row) + std::ptrdiff_t{4} * column;
        HWY_DYNAMIC_DISPATCH(Transpose)(in, inStep, columns, rows, out + std::ptrdiff_t{4} * row, outStep);
      }
    }
  });
  return result;
}

}  // namespace kestrel::engine
#endif
