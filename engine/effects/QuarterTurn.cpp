#include "QuarterTurn.h"

#include <algorithm>

#include "Flip.h"
#include "engine/effects/rows/EffectRows.h"
#include "engine/parallel/Parallel.h"
#include "engine/pixels/NonTemporal.h"
#include "reference/TurnRows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/effects/QuarterTurn.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "hwy/cache_control.h"

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

namespace {

/// Tiles of one cache line by 64 rows: small enough to stay in cache while they are transposed.
constexpr std::int32_t kTileColumns = 16;
constexpr std::int32_t kTileRows = 64;

/// A turn by 90 degrees as a transposition: to the right it reads the input rows from last to first, to the
/// left it writes the output rows in that order.
class Turn {
 public:
  Turn(const ConstPixels& from, const Pixels& to, bool right)
      : from_(from),
        to_(to),
        right_(right),
        inStep_(right ? -static_cast<std::ptrdiff_t>(from.stride) : static_cast<std::ptrdiff_t>(from.stride)),
        outStep_(right ? static_cast<std::ptrdiff_t>(to.stride) : -static_cast<std::ptrdiff_t>(to.stride)),
        stream_(exceedsCaches(to.stride * static_cast<std::size_t>(to.height))) {}

  std::int32_t strips() const { return (from_.width - 1) / kTileColumns + 1; }

  /// Transposes strips of columns, tile by tile.
  void run(std::int32_t firstStrip, std::int32_t lastStrip) const {
    for (std::int32_t strip = firstStrip; strip < lastStrip; ++strip) {
      const std::int32_t column = strip * kTileColumns;
      const std::int32_t columns = std::min(kTileColumns, from_.width - column);
      std::uint8_t* const out = to_.row(right_ ? column : from_.width - 1 - column);
      for (std::int32_t row = 0; row < from_.height; row += kTileRows) {
        const std::int32_t rows = std::min(kTileRows, from_.height - row);
        const std::uint8_t* const in =
            from_.row(right_ ? from_.height - 1 - row : row) + std::ptrdiff_t{4} * column;
        // Prefetch the next tile: hardware prefetchers do not predict column access.
        const std::int32_t next = std::min(kTileRows, from_.height - row - rows);
        for (std::int32_t i = 0; i < next; ++i) hwy::Prefetch(in + (rows + i) * inStep_);
        turnTile(in, columns, rows, out + std::ptrdiff_t{4} * row);
      }
    }
    if (stream_) storeFence();
  }

 private:
  void turnTile(const std::uint8_t* in, std::int32_t columns, std::int32_t rows, std::uint8_t* out) const {
    if (!stream_) {
      HWY_DYNAMIC_DISPATCH(Transpose)(in, inStep_, columns, rows, out, outStep_);
      return;
    }
    constexpr std::ptrdiff_t kTileStep = std::ptrdiff_t{4} * kTileRows;
    alignas(64) std::uint8_t tile[kTileColumns * kTileStep];
    HWY_DYNAMIC_DISPATCH(Transpose)(in, inStep_, columns, rows, tile, kTileStep);
    for (std::int32_t j = 0; j < columns; ++j) {
      copyNonTemporal(tile + j * kTileStep, static_cast<std::size_t>(rows) * sizeof(Pixel),
                      out + j * outStep_);
    }
  }

  ConstPixels from_;
  Pixels to_;
  bool right_;
  std::ptrdiff_t inStep_, outStep_;
  bool stream_;
};

}  // namespace

Bitmap quarterTurn(const Bitmap& source, int quarters) {
  requirePicture(source);
  if (quarters == 2) return halfTurn(source);
  Bitmap result = Bitmap::uninitialized(source.height(), source.width());
  const Turn turn(source.pixels(), result.writable(), quarters == 1);
  forRows(turn.strips(), rowsPerTask(kTileColumns * source.height()),
          [&](std::int32_t first, std::int32_t last) { turn.run(first, last); });
  return result;
}

}  // namespace kestrel::engine
#endif
