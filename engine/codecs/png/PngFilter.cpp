#include "PngFilter.h"

#include <array>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/codecs/png/PngFilter.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace kestrel::engine::png::HWY_NAMESPACE {

using Sums = std::array<std::uint64_t, kFilters>;

#if HWY_TARGET == HWY_SCALAR

void SumDifferences(const std::uint8_t* row, const std::uint8_t* above, std::size_t count, std::size_t step,
                    Sums& sums) {
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t f = 0; f < sums.size(); ++f) {
      const std::uint8_t value =
          predict(static_cast<Filter>(f), (row - step)[i], above[i], (above - step)[i]);
      sums[f] += static_cast<std::uint64_t>(std::abs(static_cast<std::int8_t>(row[i] - value)));
    }
  }
}

void FilterRow(Filter filter, const std::uint8_t* row, const std::uint8_t* above, std::size_t count,
               std::size_t step, std::uint8_t* out) {
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint8_t value = predict(filter, (row - step)[i], above[i], (above - step)[i]);
    out[i] = static_cast<std::uint8_t>(row[i] - value);
  }
}

void PackRgb(const std::uint8_t* rgba, std::int32_t width, std::uint8_t* out) {
  for (std::int32_t x = 0; x < width; ++x, rgba += 4, out += 3)
    for (std::size_t i = 0; i < 3; ++i) out[i] = rgba[i];
}

#else

namespace hn = hwy::HWY_NAMESPACE;
/// At most one block per vector, so that the sums are the same for all vector targets.
using Block = hn::CappedTag<std::uint8_t, kRowBlock>;

/// The average, rounded down.
template <class V>
HWY_INLINE V averageOf(V left, V above) {
  const auto odd = hn::And(hn::Xor(left, above), hn::Set(Block(), 1));
  return hn::Sub(hn::AverageRound(left, above), odd);
}

template <class V>
HWY_INLINE V paethOf(V left, V above, V corner) {
  // Positive and negative part of each difference separately, so that bytes suffice. A sum that saturates is
  // not the smallest anyway.
  const auto aboveUp = hn::SaturatedSub(above, corner), aboveDown = hn::SaturatedSub(corner, above);
  const auto leftUp = hn::SaturatedSub(left, corner), leftDown = hn::SaturatedSub(corner, left);
  const auto up = hn::SaturatedAdd(aboveUp, leftUp), down = hn::SaturatedAdd(aboveDown, leftDown);
  const auto byLeft = hn::Or(aboveUp, aboveDown), byAbove = hn::Or(leftUp, leftDown);
  const auto byCorner = hn::Or(hn::SaturatedSub(up, down), hn::SaturatedSub(down, up));
  const auto aboveOrCorner = hn::IfThenElse(hn::Eq(hn::Min(byAbove, byCorner), byAbove), above, corner);
  const auto least = hn::Min(byAbove, byCorner);
  return hn::IfThenElse(hn::Eq(hn::Min(byLeft, least), byLeft), left, aboveOrCorner);
}

void SumDifferences(const std::uint8_t* HWY_RESTRICT row, const std::uint8_t* HWY_RESTRICT above,
                    std::size_t count, std::size_t step, Sums& sums) {
  const Block d;
  const hn::Repartition<std::uint64_t, Block> d64;
  auto none = hn::Zero(d64), sub = none, up = none, average = none, paeth = none;
  const auto add = [&](auto& sum, auto difference) HWY_ATTR {
    const auto size = hn::Min(difference, hn::Sub(hn::Zero(Block()), difference));
    sum = hn::Add(sum, hn::SumsOf8(size));
  };
  for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
    const auto x = hn::LoadU(d, row + i), a = hn::LoadU(d, row + i - step);
    const auto b = hn::LoadU(d, above + i), c = hn::LoadU(d, above + i - step);
    add(none, x);
    add(sub, hn::Sub(x, a));
    add(up, hn::Sub(x, b));
    add(average, hn::Sub(x, averageOf(a, b)));
    add(paeth, hn::Sub(x, paethOf(a, b, c)));
  }
  const auto total = [&](auto sum) HWY_ATTR { return hn::GetLane(hn::SumOfLanes(d64, sum)); };
  sums = {total(none), total(sub), total(up), total(average), total(paeth)};
}

template <class Predict>
HWY_INLINE void subtract(const std::uint8_t* HWY_RESTRICT row, const std::uint8_t* HWY_RESTRICT above,
                         std::size_t count, std::size_t step, std::uint8_t* HWY_RESTRICT out,
                         const Predict& predict) {
  const Block d;
  for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
    const auto value =
        predict(hn::LoadU(d, row + i - step), hn::LoadU(d, above + i), hn::LoadU(d, above + i - step));
    hn::StoreU(hn::Sub(hn::LoadU(d, row + i), value), d, out + i);
  }
}

void FilterRow(Filter filter, const std::uint8_t* row, const std::uint8_t* above, std::size_t count,
               std::size_t step, std::uint8_t* out) {
  const auto with = [&](const auto& predict) HWY_ATTR { subtract(row, above, count, step, out, predict); };
  switch (filter) {
    case Filter::none:
      return with([](auto, auto, auto) HWY_ATTR { return hn::Zero(Block()); });
    case Filter::sub:
      return with([](auto a, auto, auto) HWY_ATTR { return a; });
    case Filter::up:
      return with([](auto, auto b, auto) HWY_ATTR { return b; });
    case Filter::average:
      return with([](auto a, auto b, auto) HWY_ATTR { return averageOf(a, b); });
    case Filter::paeth:
      return with([](auto a, auto b, auto c) HWY_ATTR { return paethOf(a, b, c); });
  }
}

void PackRgb(const std::uint8_t* HWY_RESTRICT rgba, std::int32_t width, std::uint8_t* HWY_RESTRICT out) {
  const hn::FixedTag<std::uint8_t, 16> d;
  for (std::int32_t x = 0; x < width; x += 16) {
    auto r = hn::Undefined(d), g = r, b = r, a = r;
    hn::LoadInterleaved4(d, rgba + std::ptrdiff_t{4} * x, r, g, b, a);
    hn::StoreInterleaved3(r, g, b, d, out + std::ptrdiff_t{3} * x);
  }
}

#endif

}  // namespace kestrel::engine::png::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <algorithm>

namespace kestrel::engine::png {

HWY_EXPORT(SumDifferences);
HWY_EXPORT(FilterRow);
HWY_EXPORT(PackRgb);

namespace {

std::size_t wholeBlocks(std::size_t count) { return (count + kRowBlock - 1) / kRowBlock * kRowBlock; }

}  // namespace

Filter bestFilter(const std::uint8_t* row, const std::uint8_t* above, std::size_t count,
                  std::size_t bytesPerPixel) {
  std::array<std::uint64_t, kFilters> sums{};
  HWY_DYNAMIC_DISPATCH(SumDifferences)(row, above, wholeBlocks(count), bytesPerPixel, sums);
  return static_cast<Filter>(std::ranges::min_element(sums) - sums.begin());
}

void filterRow(Filter filter, const std::uint8_t* row, const std::uint8_t* above, std::size_t count,
               std::size_t bytesPerPixel, std::uint8_t* out) {
  HWY_DYNAMIC_DISPATCH(FilterRow)(filter, row, above, wholeBlocks(count), bytesPerPixel, out);
}

void packRgb(const std::uint8_t* rgba, std::int32_t width, std::uint8_t* out) {
  HWY_DYNAMIC_DISPATCH(PackRgb)(rgba, width, out);
}

}  // namespace kestrel::engine::png
#endif
