#pragma once

#include <cairo.h>

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "MetafileCanvas.h"
#include "MetafileObjects.h"
#include "MetafileSeams.h"

namespace kestrel::engine::metafile {

/// How logical units become those of the device.
struct Mapping {
  std::uint32_t mode = 1;  ///< 1 a unit is a pixel, 2 to 6 a physical measure, 7 and 8 window on viewport
  Point windowOrigin, windowExtent{1, 1}, viewportOrigin, viewportExtent{1, 1};
  cairo_matrix_t world{1, 0, 0, 1, 0, 0};
};

/// What a metafile draws with at a moment; saved and restored as a whole.
struct State {
  Mapping mapping;
  Pen pen;
  Brush brush;
  Font font;
  Color textColor, backColor{0xFFFFFF};
  bool opaqueBack = true;
  bool fillWinding = false;
  std::uint32_t textAlign = 0;
  double letterSpace = 0;              ///< behind each letter, in logical units
  double breakSpace = 0;               ///< behind each space besides
  std::uint32_t rasterOperation = 13;  ///< copy
  bool arcsClockwise = false;
  double miterLimit = 10;
  Point brushOrigin;  ///< in device units
  Point position;
  Clip clip;
  Clip outerClip;  ///< within which `clip` is; it can only shrink
};

/// A corner of a triangle whose colours blend.
struct ColoredPoint {
  Point at;
  std::array<double, 4> color{};  ///< red, green, blue, alpha of 0 to 1
};

/// The commands that both kinds of metafile consist of, drawn onto a canvas.
/// Coordinates are logical ones of the present mapping.
class Player {
 public:
  /// `device` turns device units to pixels of the canvas, of which there are `scale` for one of the natural
  /// size of 96 per inch.
  Player(Canvas& canvas, const cairo_matrix_t& device, double scale = 1);

  State& state() { return state_; }
  Canvas& canvas() { return canvas_; }
  const cairo_matrix_t& device() const { return device_; }
  void save();
  /// To an absolute level if `level` is positive, else by so many.
  void restore(std::int32_t level);

  void moveTo(Point to);
  void lineTo(const std::vector<Point>& points);
  void bezierTo(const std::vector<Point>& points);
  /// Each list is a figure: filled and outlined if `closed`, else a line.
  void polygons(const std::vector<std::vector<Point>>& figures, bool closed);
  void bezier(const std::vector<Point>& points);
  void rectangle(const Rect& rect);
  void roundRectangle(const Rect& rect, double cornerWidth, double cornerHeight);
  void ellipse(const Rect& rect);
  enum class ArcKind { open, chord, pie };
  /// A part of the ellipse in `rect`, from and to the rays through two points.
  void arc(const Rect& rect, Point from, Point to, ArcKind kind, bool connect = false);
  void setPixel(Point at, Color color);
  void gradientRect(const ColoredPoint& first, const ColoredPoint& last, bool downwards);
  void gradientTriangle(const std::array<ColoredPoint, 3>& corners);

  void beginPath();
  void endPath();
  void closeFigure();
  void abortPath();
  void drawPath(bool fill, bool stroke);

  void clipToPath(Combine how);
  void clipToRects(const std::vector<Rect>& rects, Combine how);
  void clipToAll();
  /// Makes the state's clip the one that is seen.
  void showClip();
  void moveClip(Point by);
  /// What is visible now stays the most that can be.
  void keepClip();

  void fillRects(const std::vector<Rect>& rects, const Brush& brush);
  void frameRects(const std::vector<Rect>& rects, const Brush& brush, double width, double height);
  void invertRects(const std::vector<Rect>& rects);

  /// UTF-8, one letter for each of `advances` (logical units) if there are any.
  void text(Point at, const std::vector<std::string>& letters, const std::vector<double>& advances);
  /// As `text`, of which only what lies in the box is seen.
  void textWithin(const Rect& box, Point at, const std::vector<std::string>& letters,
                  const std::vector<double>& advances);
  void fillRect(const Rect& rect, Color color);

  /// Where a picture comes: what becomes of its upper left, upper right and lower left corner.
  using Corners = std::array<Point, 3>;
  struct Picture {
    Bitmap bitmap;                       ///< empty for operations that take only the brush
    Rect source;                         ///< the part of it that is drawn
    Bitmap mask;                         ///< if there is one, only its white parts are drawn
    Point maskOffset;                    ///< from a place in the bitmap to that in the mask
    std::uint32_t operation = 0xCC0020;  ///< ternary
    double opacity = 1;
  };
  void picture(const Corners& corners, const Picture& picture);
  void picture(const Rect& target, const Picture& picture);
  /// Draws a mask that waits for its picture (see `HeldMask`). Due before each command that draws something
  /// else or changes the clip, and at the end.
  void showHeldMask();

 private:
  struct LineOfText;
  /// Icons are drawn in two steps: a mask that blackens the place, by AND, and a picture on black, by OR or
  /// XOR; or a mask that whitens it, by OR, and a picture on white, by AND. Where these are stretched they
  /// are drawn at once, as a picture with transparent parts, so that it can be smoothed; bits that are mixed
  /// cannot.
  struct HeldMask {
    Corners corners;  ///< in pixels of the canvas
    Picture picture;
  };

  void drawPicture(const Corners& corners, const Picture& picture);
  bool drawJoined(const HeldMask& mask, const Corners& corners, const Picture& picture);

  cairo_matrix_t page() const;
  bool mirrorsOneAxis() const;
  cairo_matrix_t matrix() const;
  Point toPicture(Point logical) const;
  double scale() const;
  void beginFigure();
  void endFigure(bool fill);
  void addLines(const std::vector<Point>& points);
  void addCurves(const std::vector<Point>& points, std::size_t first);
  void addRects(const std::vector<Rect>& rects);
  void addEllipse(const Rect& rect);
  void fillPresentPath();
  void closeSeams(const std::vector<Point>& polygon);
  void strokePresentPath();
  void setDashes(double width);
  void setSource(Color color, double opacity = 1);
  bool setBrushSource(const Brush& brush);
  LineOfText layOut(const std::vector<std::string>& letters, const std::vector<double>& advances,
                    double across);
  void paint(const Rect& extents, double weight, const std::function<void()>& draw);

  Canvas& canvas_;
  cairo_matrix_t device_;
  double naturalScale_;
  State state_;
  std::vector<State> saved_;
  std::optional<HeldMask> held_;
  Seams seams_;
  bool inPath_ = false;
};

}  // namespace kestrel::engine::metafile
