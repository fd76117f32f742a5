#include "FixedPointKernels.h"

#include <cstring>

#include "reference/FixedPointKernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/effects/resample/FixedPointKernels.cpp"
#include "hwy/cache_control.h"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "engine/effects/rows/FloatPixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kestrel::engine::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR || HWY_HAVE_SCALABLE

void PremultiplyPairs(const ConstPixels& picture, std::int32_t x, std::int32_t lead, const RowPairs& pairs) {
  reference::premultiplyPairs(picture, x, lead, pairs);
}
void VerticalPass(const RowPairs& pairs, const FixedPointTable& table, std::int32_t y, float* out) {
  reference::verticalPass(pairs, table, y, out);
}
void HorizontalPass(const float* in, std::int32_t origin, const FilterTable& table, std::int32_t first,
                    std::int32_t last, std::uint8_t* const* rows) {
  reference::horizontalPass(in, origin, table, first, last, rows);
}

#else

using Bytes = hn::Repartition<std::uint8_t, Floats>;
using Words = hn::Repartition<std::uint16_t, Floats>;
using Shorts = hn::Repartition<std::int16_t, Floats>;
using Ints = hn::RebindToSigned<Floats>;

/// Premultiplies a vector of pixels from each of two rows. Stores four vectors: of the first, second, third
/// and fourth pixel of each 16-byte block.
HWY_INLINE void premultiplyBlock(hn::Vec<Bytes> even, hn::Vec<Bytes> odd, std::uint16_t* HWY_RESTRICT out) {
  const Bytes d8;
  const Words d16;
  alignas(16) static constexpr std::uint8_t kAlphas[2][16] = {
      {6, 128, 7, 128, 6, 128, 7, 128, 6, 128, 7, 128, 6, 128, 7, 128},
      {14, 128, 15, 128, 14, 128, 15, 128, 14, 128, 15, 128, 14, 128, 15, 128}};
  const auto alphas0 = hn::LoadDup128(d8, kAlphas[0]), alphas1 = hn::LoadDup128(d8, kAlphas[1]);
  const auto whole = hn::BitCast(d8, hn::Set(hn::Repartition<std::uint64_t, Bytes>(), 0xFFFF000000000000));
  const auto middle = hn::Set(d16, 32768);
  const auto zero = hn::Zero(d8);
  const auto product = [&](hn::Vec<Bytes> values, hn::Vec<Bytes> alphas) HWY_ATTR {
    return hn::Xor(hn::Mul(hn::BitCast(d16, values), hn::BitCast(d16, alphas)), middle);
  };
  const auto twoPixels = [&](hn::Vec<Bytes> pairs, std::uint16_t* to) HWY_ATTR {
    const auto values = hn::Or(pairs, whole);
    hn::Store(product(hn::InterleaveLower(d8, values, zero), hn::TableLookupBytesOr0(pairs, alphas0)), d16,
              to);
    hn::Store(product(hn::InterleaveUpper(d8, values, zero), hn::TableLookupBytesOr0(pairs, alphas1)), d16,
              to + hn::Lanes(d16));
  };
  twoPixels(hn::InterleaveLower(d8, even, odd), out);
  twoPixels(hn::InterleaveUpper(d8, even, odd), out + 2 * hn::Lanes(d16));
}

void PremultiplyPairs(const ConstPixels& picture, std::int32_t x, std::int32_t lead, const RowPairs& pairs) {
  const Bytes d8;
  const std::size_t bytes = std::size_t{4} * static_cast<std::size_t>(pairs.pixels);
  const std::size_t at = std::size_t{4} * static_cast<std::size_t>(x);
  for (std::int32_t i = 0; i < pairs.count; ++i) {
    const std::int32_t y = 2 * (pairs.first + i) - lead;
    const std::uint8_t* const even = picture.row(std::max(y, 0)) + at;
    const std::uint8_t* const odd = picture.row(std::min(y + 1, picture.height - 1)) + at;
    auto* out = reinterpret_cast<std::uint16_t*>(pairs.data + static_cast<std::size_t>(i) * pairs.stride);
    for (std::size_t j = 0; j < bytes; j += hn::Lanes(d8), out += 2 * hn::Lanes(d8)) {
      // Prefetch the next strip: hardware prefetchers do not predict access row by row.
      hwy::Prefetch(even + j + bytes);
      hwy::Prefetch(odd + j + bytes);
      premultiplyBlock(hn::LoadU(d8, even + j), hn::LoadU(d8, odd + j), out);
    }
  }
}

/// Row pairs and weights of one output row.
struct Summands {
  const std::int16_t* in;
  const std::int16_t* weights;
  std::int32_t pairs;
};

HWY_INLINE Summands summandsOf(const RowPairs& pairs, const FixedPointTable& table, std::int32_t y) {
  const FixedPointTable::Run& run = table.run(std::min(y, table.outputs() - 1));
  return {pairs.data + static_cast<std::size_t>(run.first - pairs.first) * pairs.stride, table.weights(run),
          run.count};
}

/// Sums of a vector of pixels, in four vectors with the layout of `premultiplyBlock`.
struct Sums {
  hn::Vec<Floats> first, second, third, fourth;
};

HWY_INLINE Sums sum(const Summands& row, std::size_t stride, std::ptrdiff_t at) {
  const std::int16_t* HWY_RESTRICT in = row.in + at;
  const std::int16_t* HWY_RESTRICT weights = row.weights;
  const Shorts d16;
  const Ints d32;
  const std::size_t lanes = hn::Lanes(d16);
  auto sum0 = hn::Zero(d32), sum1 = hn::Zero(d32), sum2 = hn::Zero(d32), sum3 = hn::Zero(d32);
  auto more0 = hn::Zero(d32), more1 = hn::Zero(d32), more2 = hn::Zero(d32), more3 = hn::Zero(d32);
  const auto add = [&](const std::int16_t* HWY_RESTRICT pair, const std::int16_t* HWY_RESTRICT two) HWY_ATTR {
    std::int32_t both;
    std::memcpy(&both, two, sizeof both);
    const auto weight = hn::BitCast(d16, hn::Set(d32, both));
    sum0 = hn::ReorderWidenMulAccumulate(d32, weight, hn::Load(d16, pair), sum0, more0);
    sum1 = hn::ReorderWidenMulAccumulate(d32, weight, hn::Load(d16, pair + lanes), sum1, more1);
    sum2 = hn::ReorderWidenMulAccumulate(d32, weight, hn::Load(d16, pair + 2 * lanes), sum2, more2);
    sum3 = hn::ReorderWidenMulAccumulate(d32, weight, hn::Load(d16, pair + 3 * lanes), sum3, more3);
  };
  for (std::int32_t i = 0; i < row.pairs; i += 2, in += 2 * stride, weights += 4) {
    add(in, weights);
    add(in + stride, weights + 2);
  }
  const auto finished = [&](hn::Vec<Ints> whole, hn::Vec<Ints> more) HWY_ATTR {
    const auto middle = hn::Set(d32, 32768 * FixedPointTable::kOne);
    return hn::ConvertTo(Floats(), hn::Add(hn::RearrangeToOddPlusEven(whole, more), middle));
  };
  return {finished(sum0, more0), finished(sum1, more1), finished(sum2, more2), finished(sum3, more3)};
}

constexpr auto kRowsPerVector = static_cast<std::int32_t>(hn::MaxLanes(Floats()) / 4);
constexpr std::size_t kGroupStep = 4 * kGroupRows;

/// Transposes and stores one pixel of each 16-byte block of four rows, a pixel's rows adjacent.
HWY_INLINE void storeTransposed(hn::Vec<Floats> a, hn::Vec<Floats> b, hn::Vec<Floats> c, hn::Vec<Floats> e,
                                float* HWY_RESTRICT out) {
  const Floats d;
  constexpr std::size_t kNextBlock = 4 * kGroupStep;
  if constexpr (kRowsPerVector == 1) {
    hn::Store(a, d, out);
    hn::Store(b, d, out + 4);
    hn::Store(c, d, out + 8);
    hn::Store(e, d, out + 12);
  } else if constexpr (kRowsPerVector == 2) {
    hn::Store(hn::ConcatLowerLower(d, b, a), d, out);
    hn::Store(hn::ConcatLowerLower(d, e, c), d, out + 8);
    hn::Store(hn::ConcatUpperUpper(d, b, a), d, out + kNextBlock);
    hn::Store(hn::ConcatUpperUpper(d, e, c), d, out + kNextBlock + 8);
  } else {
    const auto evenAb = hn::OddEvenBlocks(hn::SwapAdjacentBlocks(b), a);
    const auto oddAb = hn::OddEvenBlocks(b, hn::SwapAdjacentBlocks(a));
    const auto evenCe = hn::OddEvenBlocks(hn::SwapAdjacentBlocks(e), c);
    const auto oddCe = hn::OddEvenBlocks(e, hn::SwapAdjacentBlocks(c));
    hn::Store(hn::ConcatLowerLower(d, evenCe, evenAb), d, out);
    hn::Store(hn::ConcatLowerLower(d, oddCe, oddAb), d, out + kNextBlock);
    hn::Store(hn::ConcatUpperUpper(d, evenCe, evenAb), d, out + 2 * kNextBlock);
    hn::Store(hn::ConcatUpperUpper(d, oddCe, oddAb), d, out + 3 * kNextBlock);
  }
}

void VerticalPass(const RowPairs& pairs, const FixedPointTable& table, std::int32_t y,
                  float* HWY_RESTRICT out) {
  constexpr auto kPixels = static_cast<std::int32_t>(hn::MaxLanes(Bytes()) / 4);
  for (std::int32_t row = 0; row < kGroupRows; row += 4, y += 4) {
    const Summands rowA = summandsOf(pairs, table, y), rowB = summandsOf(pairs, table, y + 1);
    const Summands rowC = summandsOf(pairs, table, y + 2), rowE = summandsOf(pairs, table, y + 3);
    for (std::int32_t x = 0; x < pairs.pixels; x += kPixels) {
      const std::ptrdiff_t at = std::ptrdiff_t{8} * x;
      const Sums a = sum(rowA, pairs.stride, at), b = sum(rowB, pairs.stride, at);
      const Sums c = sum(rowC, pairs.stride, at), e = sum(rowE, pairs.stride, at);
      float* const to = out + static_cast<std::size_t>(x) * kGroupStep + 4 * row;
      storeTransposed(a.first, b.first, c.first, e.first, to);
      storeTransposed(a.second, b.second, c.second, e.second, to + kGroupStep);
      storeTransposed(a.third, b.third, c.third, e.third, to + 2 * kGroupStep);
      storeTransposed(a.fourth, b.fourth, c.fourth, e.fourth, to + 3 * kGroupStep);
    }
  }
}

/// One pixel in as many rows as two vectors hold.
struct TwoVectors {
  hn::Vec<Floats> a, b;
};

HWY_INLINE TwoVectors filterPixel(const float* HWY_RESTRICT in, const float* HWY_RESTRICT weights,
                                  std::int32_t count) {
  const Floats d;
  auto a = hn::Zero(d), b = hn::Zero(d);
  const auto add = [&](std::size_t i, hn::Vec<Floats> weight) HWY_ATTR {
    a = hn::MulAdd(weight, hn::Load(d, in + i * kGroupStep), a);
    b = hn::MulAdd(weight, hn::Load(d, in + i * kGroupStep + hn::Lanes(d)), b);
  };
  // Weights are padded with zeros to fours and loaded as one vector: the loads of the pixels are the
  // bottleneck.
  std::int32_t left = count;
  for (; left > 2; left -= 4, in += 4 * kGroupStep, weights += 4) {
    const auto four = hn::LoadDup128(d, weights);
    add(0, hn::Broadcast<0>(four));
    add(1, hn::Broadcast<1>(four));
    add(2, hn::Broadcast<2>(four));
    add(3, hn::Broadcast<3>(four));
  }
  if (left > 0) {
    const auto four = hn::LoadDup128(d, weights);
    add(0, hn::Broadcast<0>(four));
    add(1, hn::Broadcast<1>(four));
  }
  return {a, b};
}

/// Stores each 16-byte block of a vector in a row of its own.
template <class D>
HWY_INLINE void storeBlocks(D d, hn::Vec<D> v, std::uint8_t* const* HWY_RESTRICT rows, std::ptrdiff_t at) {
  if constexpr (hn::MaxLanes(d) <= 16) {
    hn::StoreU(v, d, rows[0] + at);
  } else {
    const hn::Half<D> half;
    storeBlocks(half, hn::LowerHalf(half, v), rows, at);
    storeBlocks(half, hn::UpperHalf(half, v), rows + hn::MaxLanes(d) / 32, at);
  }
}

/// Converts four pixels to bytes with straight alpha and stores them, in as many rows as a vector holds.
HWY_INLINE void storeFourInRows(hn::Vec<Floats> p0, hn::Vec<Floats> p1, hn::Vec<Floats> p2,
                                hn::Vec<Floats> p3, std::uint8_t* const* HWY_RESTRICT rows,
                                std::ptrdiff_t at) {
  const Floats d;
  const Ints d32;
  const Shorts d16;
  const Bytes d8;
  constexpr float kLevel = 255.0F * FixedPointTable::kOne;
  const auto alpha = alphasOf(d, p0, p1, p2, p3);
  const auto visible = hn::Ge(alpha, hn::Set(d, 0.5F * kLevel));
  const auto factor = hn::IfThenElseZero(visible, hn::Div(hn::Set(d, 255.0F), alpha));
  const auto alphas = alphaLanes(d);
  const auto level = [&](hn::Vec<Floats> pixel, hn::Vec<Floats> colors) HWY_ATTR {
    // Adding 1.5 * 2^23 rounds to the nearest integer, which the low bits of the sum then hold.
    const auto whole = hn::Set(d, 12582912.0F);
    const auto scale = hn::IfThenElse(alphas, hn::Set(d, 1 / kLevel), colors);
    return hn::Sub(hn::BitCast(d32, hn::MulAdd(pixel, scale, whole)), hn::BitCast(d32, whole));
  };
  const auto limited = [&](hn::Vec<Ints> x, hn::Vec<Ints> y) HWY_ATTR {
    const auto both = hn::ReorderDemote2To(d16, x, y);
    return hn::Min(hn::Max(both, hn::Zero(d16)), hn::Set(d16, 255));
  };
  const auto first = limited(level(p0, hn::Broadcast<0>(factor)), level(p1, hn::Broadcast<1>(factor)));
  const auto second = limited(level(p2, hn::Broadcast<2>(factor)), level(p3, hn::Broadcast<3>(factor)));
  // The bytes of the first two pixels are interleaved with those of the other two.
  alignas(16) static constexpr std::uint8_t kOrder[16] = {0, 2, 4, 6, 8, 10, 12, 14,
                                                          1, 3, 5, 7, 9, 11, 13, 15};
  const auto mixed = hn::BitCast(d8, hn::Or(first, hn::ShiftLeft<8>(second)));
  storeBlocks(d8, hn::TableLookupBytes(mixed, hn::LoadDup128(d8, kOrder)), rows, at);
}

/// Input of the horizontal pass. Byte stores may alias anything, so the table's pointers are loaded once,
/// before the stores.
struct RowGroup {
  const float* in;
  std::int32_t origin;
  const FilterTable::Run* runs;
  const float* weights;

  HWY_INLINE TwoVectors pixel(std::int32_t x) const {
    const FilterTable::Run& run = runs[x];
    return filterPixel(in + static_cast<std::size_t>(run.first - origin) * kGroupStep, weights + run.offset,
                       run.count);
  }
};

/// Four consecutive output pixels.
struct FourPixels {
  TwoVectors p0, p1, p2, p3;
};

HWY_INLINE FourPixels filterFour(const RowGroup& group, std::int32_t x, std::int32_t last) {
  return {group.pixel(x), group.pixel(std::min(x + 1, last)), group.pixel(std::min(x + 2, last)),
          group.pixel(std::min(x + 3, last))};
}

HWY_INLINE void storeFourPixels(const FourPixels& v, std::uint8_t* const* HWY_RESTRICT rows, std::int32_t x) {
  storeFourInRows(v.p0.a, v.p1.a, v.p2.a, v.p3.a, rows, std::ptrdiff_t{4} * x);
  storeFourInRows(v.p0.b, v.p1.b, v.p2.b, v.p3.b, rows + kRowsPerVector, std::ptrdiff_t{4} * x);
}

void HorizontalPass(const float* HWY_RESTRICT in, std::int32_t origin, const FilterTable& table,
                    std::int32_t first, std::int32_t last, std::uint8_t* const* HWY_RESTRICT rows) {
  if (first >= last) return;
  // Prefetch the destination of the next outputs, as many again, in cache lines of 64 bytes.
  for (std::int32_t row = 0; row < kGroupRows; ++row) {
    for (std::int32_t x = last; x < 2 * last - first; x += 16)
      hwy::Prefetch(rows[row] + std::ptrdiff_t{4} * x);
  }
  for (std::int32_t row = 0; row < kGroupRows; row += 2 * kRowsPerVector) {
    const RowGroup group{in + std::ptrdiff_t{4} * row, origin, &table.run(0), table.weights({})};
    // Software pipelining: four outputs are stored while the next four are filtered, so that neither stalls.
    FourPixels ready = filterFour(group, first, last - 1);
    std::int32_t x = first;
    for (; x + 4 < last; x += 4) {
      const FourPixels next = filterFour(group, x + 4, last - 1);
      storeFourPixels(ready, rows + row, x);
      ready = next;
    }
    storeFourPixels(ready, rows + row, x);
  }
}

#endif

}  // namespace kestrel::engine::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kestrel::engine {

HWY_EXPORT(PremultiplyPairs);
HWY_EXPORT(VerticalPass);
HWY_EXPORT(HorizontalPass);

void premultiplyPairs(const ConstPixels& picture, std::int32_t x, std::int32_t lead, const RowPairs& pairs) {
  HWY_DYNAMIC_DISPATCH(PremultiplyPairs)(picture, x, lead, pairs);
}
void verticalPass(const RowPairs& pairs, const FixedPointTable& table, std::int32_t y, float* out) {
  HWY_DYNAMIC_DISPATCH(VerticalPass)(pairs, table, y, out);
}
void horizontalPass(const float* in, std::int32_t origin, const FilterTable& table, std::int32_t first,
                    std::int32_t last, std::uint8_t* const* rows) {
  HWY_DYNAMIC_DISPATCH(HorizontalPass)(in, origin, table, first, last, rows);
}

}  // namespace kestrel::engine
#endif
