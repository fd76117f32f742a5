#pragma once

#include <cairo.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "MetafileText.h"
#include "engine/pixels/Bitmap.h"

namespace kestrel::engine::metafile {

struct Point {
  double x = 0, y = 0;
};

struct Rect {
  double left = 0, top = 0, right = 0, bottom = 0;
};

/// The point, or the nearest one that Cairo's numbers can hold.
Point bounded(Point p);

/// Whether pictures and patterns can be drawn through it: it is finite, not flat, and not beyond all measure.
bool isUsable(const cairo_matrix_t& matrix);

struct DestroyPattern {
  void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
};
using Pattern = std::unique_ptr<cairo_pattern_t, DestroyPattern>;

/// A pattern of the bitmap's pixels.
Pattern patternOf(const Bitmap& bitmap);

/// How much may still be painted, and how deep pictures may lie in pictures. Small files can ask for the work
/// of hours; what is beyond this is left out of the drawing. Pictures within pictures share it.
struct Work {
  /// What is allowed for a file of so many bytes.
  explicit Work(std::size_t fileSize) : left(3e9 + 40.0 * static_cast<double>(fileSize)) {}

  double left;  ///< about pixels filled with one colour
  int depth = 3;
  bool exhausted = false;

  /// True if so much more work is allowed, which is then taken.
  bool take(double amount);
};

/// An outline in pixels of the picture, within which drawing shows.
struct ClipPiece {
  std::shared_ptr<cairo_path_t> outline;
  bool winding = false;
};

/// What is visible lies in all of them; without one it is everything.
using Clip = std::vector<ClipPiece>;

enum class Combine { replace, intersect, unite, exclusive, exclude, complement };

/// The transparent picture that a metafile is drawn on with Cairo. All coordinates are pixels of the picture.
class Canvas {
 public:
  /// Raises RuntimeError 7 or 481 for a size that cannot be.
  Canvas(std::int32_t width, std::int32_t height, Work& work);

  cairo_t* context() const { return cairo_.get(); }
  Work& work() const { return work_; }
  Letterer& letterer() { return letterer_; }

  // The present path; the points may be anything.
  void newPath();
  void moveTo(Point to);
  void lineTo(Point to);
  void curveTo(Point a, Point b, Point c);
  void closePath();
  bool hasPoint() const;
  void polygon(const std::vector<Point>& points);
  /// About the length of its lines in pixels.
  double pathLength() const { return length_; }

  void setClip(const Clip& clip);
  /// The present path as an outline; there is none afterwards.
  ClipPiece takePath(bool winding);
  /// Raises nothing; a combination too fine to be told leaves the clip as it is.
  Clip combined(const Clip& clip, const ClipPiece& piece, Combine how);
  static Clip moved(const Clip& clip, Point by);

  /// One outline of what lies in all pieces.
  ClipPiece united(const Clip& clip);

  /// What the present path covers if it is filled, or stroked at most so wide with the context's joins.
  Rect filledExtents() const;
  Rect strokedExtents(double width) const;
  /// Takes the work of painting what is visible of `extents` and the present path, each pixel so many times
  /// the work of a single colour. False if there is nothing to paint, or no work left.
  bool affords(const Rect& extents, double weight = 1);

  /// Mixes what the two functions paint with what is there, bit by bit: `operation` tells the result for each
  /// combination of bits (the bit of the brush counts 4, of the source 2, of the picture 1). One of the two
  /// may be missing. What they leave clear stays untouched. Empty parts of the picture count as white; what
  /// does not change stays as transparent as it was.
  void mix(std::uint8_t operation, const Rect& extents, const std::function<void()>& source,
           const std::function<void()>& brush);

  /// What was drawn. Raises RuntimeError 7 when memory ran out underway.
  Bitmap finish();

 private:
  struct DestroyContext {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
  };
  struct DestroySurface {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  };
  using Surface = std::unique_ptr<cairo_surface_t, DestroySurface>;

  void append(const ClipPiece& piece);
  void addEverything();
  Surface maskOf(const Clip& clip) const;
  ClipPiece outlineOf(cairo_surface_t* mask);
  Pattern layer(const std::function<void()>& paint);
  void mixBand(std::uint8_t operation, std::int32_t top, std::int32_t bottom, cairo_pattern_t* source,
               cairo_pattern_t* brush);

  Work& work_;
  std::int32_t width_, height_;
  Surface surface_;
  std::unique_ptr<cairo_t, DestroyContext> cairo_;
  Letterer letterer_{work_};
  std::size_t clipPieces_ = 0;
  Point last_;
  double length_ = 0;   ///< of the present path
  double crossed_ = 0;  ///< rows that its lines cross, together
};

}  // namespace kestrel::engine::metafile
