#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "Shape.h"
#include "engine/pixels/Bitmap.h"
#include "imaging/contract/Types.h"

namespace kestrel::engine {

/// A freehand stroke in the making: a smooth curve through the samples of a pointer.
///
/// The curve is the centripetal Catmull-Rom spline (Yuksel, Schaefer and Keyser 2011): it goes through every
/// sample, has one direction there, and neither loops nor overshoots between samples far apart. Since it
/// needs the sample behind a piece's end to know the direction there, it follows the pointer one sample
/// behind until `finish`. Where it crosses itself it covers no more than once, so that a transparent color
/// stays even.
///
/// For each sample: `add`, keep the pixels in the rectangles it returns, `paint`. The work depends on the way
/// from sample to sample alone, not on the picture or on what has been drawn.
class Stroke {
 public:
  /// `width` of the pen in pixels, at least 1. Nothing outside `clip` is drawn, which must lie in the
  /// picture.
  Stroke(Pixel color, double width, const Rectangle& clip);
  ~Stroke();

  /// Takes the next sample. The first one makes a dot; one at the place of the last is ignored. Returns the
  /// rectangles, a few pixels to 32 of them wide and high, that the next `paint` changes.
  std::vector<Rectangle> add(PointD sample);

  /// The piece to the last sample. Returns as `add`.
  std::vector<Rectangle> finish();

  /// Draws what was added since it was last called. Asks for no memory. Returns the rectangle outside of
  /// which nothing has changed.
  Rectangle paint(Pixels target);

 private:
  static constexpr std::int32_t kSide = 32;
  struct Tile;

  void addPiece(PointD before, PointD from, PointD to, PointD after);
  void addLine(PointD from, PointD to);
  Tile& tileAt(std::int32_t column, std::int32_t row);
  std::vector<Rectangle> pending() const;

  Pixel color_;
  double width_;
  Rectangle clip_;
  std::vector<PointD> samples_;  ///< the last three
  std::unordered_map<std::uint64_t, std::unique_ptr<Tile>> tiles_;
  std::vector<Tile*> pending_;
};

}  // namespace kestrel::engine
