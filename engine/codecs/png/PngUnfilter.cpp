#include "PngUnfilter.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/codecs/png/PngUnfilter.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace kestrel::engine::png::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

template <std::size_t kStep>
void unfilter(Filter filter, const std::uint8_t* row, const std::uint8_t* above, std::int32_t width,
              std::uint8_t* rgba) {
  std::array<std::uint8_t, 4> left{}, corner{};
  for (std::int32_t x = 0; x < width; ++x, row += kStep, above += 4, rgba += 4) {
    for (std::size_t i = 0; i < kStep; ++i) {
      left[i] = static_cast<std::uint8_t>(row[i] + predict(filter, left[i], above[i], corner[i]));
      corner[i] = above[i];
      rgba[i] = left[i];
    }
    if (kStep == 3) rgba[3] = 255;
  }
}

#else

namespace hn = hwy::HWY_NAMESPACE;
/// Vectors of one pixel: each pixel depends on the one to its left, so wider vectors gain nothing. The
/// latency of this dependency determines the speed.
using OnePixel = hn::FixedTag<std::uint8_t, 4>;
using WideChannels = hn::FixedTag<std::int16_t, 4>;

/// State of each filter type: computes the next pixel from its difference, the pixel above and the previous
/// state.
struct NoFilter {
  template <class V>
  HWY_INLINE V next(V difference, V) {
    return difference;
  }
};

struct SubFilter {
  hn::Vec<OnePixel> left;

  template <class V>
  HWY_INLINE V next(V difference, V) {
    return left = hn::Add(difference, left);
  }
};

struct UpFilter {
  template <class V>
  HWY_INLINE V next(V difference, V above) {
    return hn::Add(difference, above);
  }
};

/// Keeps the complement of the left pixel: the rounded-up average of complements is the complement of the
/// rounded-down average. That leaves two instructions from pixel to pixel.
struct AverageFilter {
  hn::Vec<OnePixel> notLeft;

  template <class V>
  HWY_INLINE V next(V difference, V above) {
    notLeft = hn::Sub(hn::AverageRound(notLeft, hn::Not(above)), difference);
    return hn::Not(notLeft);
  }
};

struct PaethFilter {
  hn::Vec<WideChannels> left, corner;

  template <class V>
  HWY_INLINE V next(V difference, V aboveBytes) {
    const WideChannels d;
    const hn::Repartition<std::uint8_t, WideChannels> bytes;
    const auto above = hn::PromoteTo(d, aboveBytes);
    const auto fromCorner = hn::Sub(above, corner);
    const auto toLeft = hn::Sub(left, corner);
    const auto byLeft = hn::Abs(fromCorner), byAbove = hn::Abs(toLeft);
    const auto byCorner = hn::Abs(hn::Add(toLeft, fromCorner));
    const auto other = hn::IfThenElse(hn::Gt(byAbove, byCorner), corner, above);
    const auto nearest = hn::IfThenElse(hn::Gt(byLeft, hn::Min(byAbove, byCorner)), other, left);
    // The upper bytes stay zero.
    left = hn::BitCast(
        d, hn::Add(hn::BitCast(bytes, nearest), hn::BitCast(bytes, hn::PromoteTo(d, difference))));
    corner = above;
    return hn::DemoteTo(OnePixel(), left);
  }
};

template <std::size_t kStep, class State>
HWY_INLINE void unfilterWith(State state, const std::uint8_t* HWY_RESTRICT row,
                             const std::uint8_t* HWY_RESTRICT above, std::int32_t width,
                             std::uint8_t* HWY_RESTRICT rgba) {
  const OnePixel d;
  const auto alpha = hn::BitCast(d, hn::Set(hn::FixedTag<std::uint32_t, 1>(), 0xFF000000));
  for (std::int32_t x = 0; x < width; ++x, row += kStep, above += 4, rgba += 4) {
    const auto pixel = state.next(hn::LoadU(d, row), hn::LoadU(d, above));
    hn::StoreU(kStep == 3 ? hn::Or(pixel, alpha) : pixel, d, rgba);
  }
}

template <std::size_t kStep>
HWY_INLINE void unfilter(Filter filter, const std::uint8_t* row, const std::uint8_t* above,
                         std::int32_t width, std::uint8_t* rgba) {
  switch (filter) {
    case Filter::none:
      return unfilterWith<kStep>(NoFilter(), row, above, width, rgba);
    case Filter::sub:
      return unfilterWith<kStep>(SubFilter{hn::Zero(OnePixel())}, row, above, width, rgba);
    case Filter::up:
      return unfilterWith<kStep>(UpFilter(), row, above, width, rgba);
    case Filter::average:
      return unfilterWith<kStep>(AverageFilter{hn::Set(OnePixel(), 255)}, row, above, width, rgba);
    case Filter::paeth:
      return unfilterWith<kStep>(PaethFilter{hn::Zero(WideChannels()), hn::Zero(WideChannels())}, row, above,
                                 width, rgba);
  }
}

#endif

void Unfilter3(Filter filter, const std::uint8_t* row, const std::uint8_t* above, std::int32_t width,
               std::uint8_t* rgba) {
  unfilter<3>(filter, row, above, width, rgba);
}

void Unfilter4(Filter filter, const std::uint8_t* row, const std::uint8_t* above, std::int32_t width,
               std::uint8_t* rgba) {
  unfilter<4>(filter, row, above, width, rgba);
}

}  // namespace kestrel::engine::png::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kestrel::engine::png {

HWY_EXPORT(Unfilter3);
HWY_EXPORT(Unfilter4);

void unfilterPixels(Filter filter, const std::uint8_t* row, const std::uint8_t* above, std::int32_t width,
                    std::size_t bytesPerPixel, std::uint8_t* rgba) {
  if (bytesPerPixel == 3) {
    HWY_DYNAMIC_DISPATCH(Unfilter3)(filter, row, above, width, rgba);
  } else {
    HWY_DYNAMIC_DISPATCH(Unfilter4)(filter, row, above, width, rgba);
  }
}

void unfilterBytes(Filter filter, std::uint8_t* row, const std::uint8_t* above, std::size_t count,
                   std::size_t bytesPerPixel) {
  for (std::size_t i = 0; i < count; ++i) {
    const bool first = i < bytesPerPixel;
    const int left = first ? 0 : row[i - bytesPerPixel], corner = first ? 0 : above[i - bytesPerPixel];
    row[i] = static_cast<std::uint8_t>(row[i] + predict(filter, left, above[i], corner));
  }
}

}  // namespace kestrel::engine::png
#endif
