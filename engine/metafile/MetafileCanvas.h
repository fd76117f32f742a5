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

/// The point clamped to the range of Cairo's fixed-point numbers.
Point bounded(Point p);

/// Whether pictures and patterns can be drawn with this matrix: finite, invertible, in a reasonable range.
bool isUsable(const cairo_matrix_t& matrix);

struct DestroyPattern {
  void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
};
using Pattern = std::unique_ptr<cairo_pattern_t, DestroyPattern>;

/// A pattern of the bitmap's pixels.
Pattern patternOf(const Bitmap& bitmap);

/// Work limit of a decode, and nesting limit of embedded pictures. Small files can request hours of drawing;
/// commands beyond the limit are skipped. Embedded pictures share the limit.
struct Work {
  /// The limit for a file of `fileSize` bytes.
  explicit Work(std::size_t fileSize) : left(3e9 + 40.0 * static_cast<double>(fileSize)) {}

  double left;  ///< remaining work, in units of a pixel filled with a solid color
  int depth = 3;
  bool exhausted = false;

  /// Charges `amount`; returns false, and charges nothing more, once the limit is exceeded.
  bool take(double amount);
};

/// A clip outline, in pixels of the picture.
struct ClipPiece {
  std::shared_ptr<cairo_path_t> outline;
  bool winding = false;
};

/// The visible area is the intersection of all pieces; everything without pieces.
using Clip = std::vector<ClipPiece>;

enum class Combine { replace, intersect, unite, exclusive, exclude, complement };

/// The picture that a metafile is drawn on with Cairo, initially transparent. All coordinates are pixels of
/// the picture.
class Canvas {
 public:
  /// Raises RuntimeError 7 or 481 for an invalid size.
  Canvas(std::int32_t width, std::int32_t height, Work& work);

  cairo_t* context() const { return cairo_.get(); }
  Work& work() const { return work_; }
  Letterer& letterer() { return letterer_; }

  // The current path. Points are clamped.
  void newPath();
  void moveTo(Point to);
  void lineTo(Point to);
  void curveTo(Point a, Point b, Point c);
  void closePath();
  bool hasPoint() const;
  void polygon(const std::vector<Point>& points);
  /// Approximate length of the current path in pixels.
  double pathLength() const { return length_; }

  void setClip(const Clip& clip);
  /// Returns the current path as an outline and clears it.
  ClipPiece takePath(bool winding);
  /// Combines a clip with a piece; returns the clip unchanged if the result is too complex.
  Clip combined(const Clip& clip, const ClipPiece& piece, Combine how);
  static Clip moved(const Clip& clip, Point by);

  /// The intersection of all pieces as one outline.
  ClipPiece united(const Clip& clip);

  /// Extents of the current path when filled, or when stroked at most `width` wide with the context's joins.
  Rect filledExtents() const;
  Rect strokedExtents(double width) const;
  /// Charges the work of painting the current path within the visible part of `extents`, with a cost of
  /// `weight` per pixel. Returns false if nothing is visible or the limit is exceeded.
  bool affords(const Rect& extents, double weight = 1);

  /// Ternary raster operation: combines source, brush and picture bit by bit. Bit i of `operation` is the
  /// result for i = 4 * brush + 2 * source + picture. `source` and `brush` paint one layer each; one of them
  /// may be missing. Pixels that they leave transparent are not changed. Transparent pixels of the picture
  /// count as white, and stay transparent if the operation does not change them.
  void mix(std::uint8_t operation, const Rect& extents, const std::function<void()>& source,
           const std::function<void()>& brush);

  /// Returns the drawing. Raises RuntimeError 7 when out of memory.
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
  double length_ = 0;   ///< length of the current path
  double crossed_ = 0;  ///< pixel rows crossed by the current path's lines, in total
};

}  // namespace kestrel::engine::metafile
