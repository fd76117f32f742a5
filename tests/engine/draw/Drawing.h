#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "engine/draw/Shape.h"
#include "engine/pixels/Bitmap.h"

/// Helpers for the tests of drawing.
namespace kestrel::engine::test {

inline constexpr Pixel kWhite{255, 255, 255, 255};
inline constexpr Pixel kBlack{0, 0, 0, 255};

inline Rectangle whole(const Bitmap& picture) { return {0, 0, picture.width(), picture.height()}; }

inline bool contains(const Rectangle& r, int x, int y) {
  return x >= r.Left && x < r.Left + r.Width && y >= r.Top && y < r.Top + r.Height;
}

inline Bitmap drawn(const Shape& shape, std::int32_t width, std::int32_t height, Pixel color = kBlack) {
  Bitmap picture = Bitmap::filled(width, height, kWhite);
  paint(picture.writable(), whole(picture), shape, color);
  return picture;
}

/// Covered area in pixels of black drawn on white.
inline double coveredArea(const Bitmap& picture) {
  double area = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) area += (255 - picture.at(x, y).r) / 255.0;
  }
  return area;
}

/// Draws and expects that only pixels in the dirty rectangle and the touched rectangles change.
inline void expectChangesInside(const Shape& shape, const Bitmap& before, const Rectangle& clip) {
  Bitmap after = before;
  const std::vector<Rectangle> touched = touchedBy(shape, clip);
  const Rectangle dirty = paint(after.writable(), clip, shape, {200, 10, 100, 255});
  for (int y = 0; y < after.height(); ++y) {
    for (int x = 0; x < after.width(); ++x) {
      if (after.at(x, y) == before.at(x, y)) continue;
      ASSERT_TRUE(contains(dirty, x, y)) << x << ", " << y;
      ASSERT_TRUE(contains(clip, x, y)) << x << ", " << y;
      ASSERT_TRUE(
          std::any_of(touched.begin(), touched.end(), [&](const Rectangle& r) { return contains(r, x, y); }))
          << x << ", " << y;
    }
  }
}

}  // namespace kestrel::engine::test
