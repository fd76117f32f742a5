#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "EmfPlusObjects.h"
#include "MetafileCanvas.h"

namespace kestrel::engine::emf::plus {

/// EMF+ graphics state; saved and restored as a whole.
struct State {
  cairo_matrix_t world{1, 0, 0, 1, 0, 0};
  cairo_matrix_t container{1, 0, 0, 1, 0, 0};  ///< transform of nested containers
  std::uint32_t pageUnit = 1;  ///< 0 to 2 pixels, 3 points, 4 inches, 5 1/300 inch, 6 millimeters
  double pageScale = 1;
  bool replaces = false;  ///< compositing mode source copy instead of source over
  Point hatchOrigin;      ///< in pixels of the canvas
  Clip clip;
};

/// Draws EMF+ paths, pictures and texts onto a canvas. Coordinates are in world units.
class Painter {
 public:
  /// `device` transforms device units to pixels of the canvas.
  Painter(metafile::Canvas& canvas, const cairo_matrix_t& device) : canvas_(canvas), device_(device) {}

  State& state() { return state_; }
  metafile::Canvas& canvas() { return canvas_; }
  /// Pixels per inch of the device.
  void setResolution(double pixelsPerInch) { pixelsPerInch_ = pixelsPerInch; }
  /// Pixels of the device per unit.
  double pixelsPer(std::uint32_t unit) const;
  cairo_matrix_t matrix() const;

  void fill(const Path& path, const Brush& brush);
  void fill(const Region& region, const Brush& brush);
  void stroke(const Path& path, const Pen& pen);
  /// Fills everything visible with this color.
  void clear(Argb color);

  /// Draws a part of a picture with its upper left, upper right and lower left corner at these points.
  void picture(const Bitmap& bitmap, const Rect& source, const std::array<Point, 3>& corners);

  /// Draws a text in a box.
  void text(const std::vector<std::string>& letters, const Font& font, const StringFormat& format,
            const Rect& box, const Brush& brush);
  /// Letters whose base points are told; those without one follow the one before.
  void placedText(const std::vector<std::string>& letters, const std::vector<Point>& places, const Font& font,
                  const cairo_matrix_t& transform, const Brush& brush);

  /// Applies the state's clip to the canvas.
  void showClip() { canvas_.setClip(state_.clip); }
  void combineClip(const Path& path, Combine how);
  void combineClip(const Region& region, Combine how);
  void moveClip(Point by);

 private:
  cairo_matrix_t pageMatrix() const;
  double fontSize(const Font& font) const;
  void addPath(const Path& path);
  bool setBrush(const Brush& brush);
  bool placePattern(cairo_pattern_t* pattern, const Brush& brush);
  void setOperator();
  void setDashes(const Pen& pen, double width, double pixelsPerUnit);
  void drawAnchors(const Path& path, const Pen& pen, double pixels);
  void addAnchor(std::uint32_t cap, Point at, Point from, double pixels);
  Clip clipOf(const Region& region);
  bool beginText(const cairo_matrix_t& transform, const Font& font, std::size_t letters, const Brush& brush,
                 double& scale);

  metafile::Canvas& canvas_;
  cairo_matrix_t device_;
  double pixelsPerInch_ = 96;
  State state_;
};

}  // namespace kestrel::engine::emf::plus
