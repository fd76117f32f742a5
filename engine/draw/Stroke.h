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

/// A freehand stroke under way: a smooth curve through the samples of a pointer.
///
/// The curve is the centripetal Catmull-Rom spline (Yuksel, Schaefer and Keyser 2011): it passes through
/// every sample with a continuous tangent, without loops or overshoots between distant samples. The tangent
/// at the end of a segment needs the next sample, so the curve lags one sample behind the pointer until
/// `finish`. Self-intersections are covered once only, so that a transparent color stays even.
///
/// For each sample: call `add`, save the pixels of the rectangles it returns for undo, call `paint`. The cost
/// depends only on the distance between samples, not on the picture or the length of the stroke.
class Stroke {
 public:
  /// `width` of the pen in pixels, at least 1. Nothing outside `clip` is drawn, which must lie in the
  /// picture.
  Stroke(Pixel color, double width, const Rectangle& clip);
  ~Stroke();

  /// Takes the next sample. The first one makes a dot; one at the position of the last is ignored. Returns
  /// the rectangles, at most 32 pixels wide and high, that the next `paint` changes.
  std::vector<Rectangle> add(PointD sample);

  /// Adds the segment to the last sample. Returns as `add`.
  std::vector<Rectangle> finish();

  /// Draws everything added since the last call. Allocates no memory. Returns a rectangle that holds all
  /// changed pixels.
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
