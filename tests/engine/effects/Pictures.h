#pragma once

#include <gtest/gtest.h>
#include <hwy/highway.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <random>
#include <sstream>
#include <vector>

#include "base/RuntimeError.h"
#include "engine/pixels/Bitmap.h"

/// Helpers for the tests of the effects: test pictures and comparisons.
namespace kestrel::engine::test {

struct Extent {
  std::int32_t width, height;
};

/// Single pixels, single rows and columns, and widths around vector lengths.
inline std::vector<Extent> oddExtents() {
  return {{1, 1},  {1, 9},  {9, 1},   {2, 3},  {3, 2},   {4, 4},  {5, 7},  {7, 5},   {8, 8},
          {15, 3}, {16, 2}, {17, 19}, {31, 5}, {33, 34}, {63, 6}, {65, 9}, {130, 70}};
}

enum class AlphaKind { Opaque, Any, MostlyExtreme };

inline Bitmap randomPicture(std::int32_t width, std::int32_t height, AlphaKind alpha, unsigned seed = 1) {
  std::mt19937 random(seed * 7919U + static_cast<unsigned>(width * 1000 + height));
  Bitmap result = Bitmap::uninitialized(width, height);
  const Pixels pixels = result.writable();
  for (std::int32_t y = 0; y < height; ++y) {
    for (std::int32_t x = 0; x < width; ++x) {
      std::uint8_t* const p = pixels.row(y) + 4 * static_cast<std::size_t>(x);
      for (int c = 0; c < 4; ++c) p[c] = static_cast<std::uint8_t>(random());
      if (alpha == AlphaKind::Opaque) p[3] = 255;
      if (alpha == AlphaKind::MostlyExtreme && random() % 4 != 0) p[3] = random() % 2 == 0 ? 0 : 255;
    }
  }
  return result;
}

/// A picture made by a function of the position.
inline Bitmap madeBy(std::int32_t width, std::int32_t height, const std::function<Pixel(int, int)>& value) {
  Bitmap result = Bitmap::filled(width, height);
  const Pixels pixels = result.writable();
  for (std::int32_t y = 0; y < height; ++y) {
    for (std::int32_t x = 0; x < width; ++x) {
      const Pixel p = value(x, y);
      std::uint8_t* const to = pixels.row(y) + 4 * static_cast<std::size_t>(x);
      to[0] = p.r;
      to[1] = p.g;
      to[2] = p.b;
      to[3] = p.a;
    }
  }
  return result;
}

inline std::ostream& print(std::ostream& out, Pixel p) {
  return out << '(' << int{p.r} << ", " << int{p.g} << ", " << int{p.b} << ", " << int{p.a} << ')';
}

/// Visible difference of two pixels in levels: the largest difference of alpha, or of a color weighted by the
/// larger alpha.
inline double visibleDifference(Pixel a, Pixel b) {
  const double seen = std::max(a.a, b.a) / 255.0;
  return std::max({std::abs(a.r - b.r) * seen, std::abs(a.g - b.g) * seen, std::abs(a.b - b.b) * seen,
                   static_cast<double>(std::abs(a.a - b.a))});
}

inline ::testing::AssertionResult samePicture(const Bitmap& actual, const Bitmap& expected,
                                              double tolerance = 0) {
  if (actual.width() != expected.width() || actual.height() != expected.height()) {
    return ::testing::AssertionFailure() << actual.width() << " x " << actual.height() << " instead of "
                                         << expected.width() << " x " << expected.height();
  }
  for (std::int32_t y = 0; y < actual.height(); ++y) {
    for (std::int32_t x = 0; x < actual.width(); ++x) {
      const Pixel a = actual.at(x, y);
      const Pixel b = expected.at(x, y);
      if (tolerance == 0 ? a == b : visibleDifference(a, b) <= tolerance) continue;
      auto failure = ::testing::AssertionFailure() << "at (" << x << ", " << y << ") of " << actual.width()
                                                   << " x " << actual.height() << ": ";
      std::ostringstream text;
      print(text, a) << " instead of ";
      print(text, b);
      return failure << text.str();
    }
  }
  return ::testing::AssertionSuccess();
}

/// Runs `check` for each Highway target of this machine, scalar code included.
inline void onEachTarget(const std::function<void()>& check) {
  for (const std::int64_t target : hwy::SupportedAndGeneratedTargets()) {
    hwy::SetSupportedTargetsForTest(target);
    SCOPED_TRACE(hwy::TargetName(target));
    check();
    hwy::SetSupportedTargetsForTest(0);
  }
}

/// The number of the RuntimeError that the call raises; 0 if none.
inline std::int32_t errorOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const RuntimeError& error) {
    EXPECT_FALSE(error.Description().empty());
    return error.Number();
  }
  return 0;
}

}  // namespace kestrel::engine::test
