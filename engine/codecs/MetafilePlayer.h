#pragma once

#include <cairo.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Codecs.h"
#include "MetafileObjects.h"

namespace kestrel::engine::metafile {

struct Point {
  double x = 0, y = 0;
};

struct Rect {
  double left = 0, top = 0, right = 0, bottom = 0;
};

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
  std::uint32_t rasterOperation = 13;  ///< copy
  bool arcsClockwise = false;
  Point position;
};

/// The commands that both kinds of metafile consist of, drawn with Cairo onto a transparent picture.
/// Coordinates are logical ones of the present mapping.
class Player {
 public:
  /// `device` turns device units to pixels of the picture. Raises RuntimeError 7 or 481 for a size that
  /// cannot be.
  Player(std::int32_t width, std::int32_t height, const cairo_matrix_t& device);

  State& state() { return state_; }
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

  void beginPath();
  void endPath();
  void closeFigure();
  void abortPath();
  void drawPath(bool fill, bool stroke);
  void clipToPath(bool replace);
  void clipToRects(const std::vector<Rect>& rects, bool replace);
  void resetClip();
  void excludeRect(const Rect& rect);

  /// `text` is UTF-8, one letter for each of `advances` (logical units) if there are any.
  void text(Point at, const std::vector<std::string>& letters, const std::vector<double>& advances);
  void fillRect(const Rect& rect, Color color);

  /// Draws `source` of a picture into `target`, by a ternary raster operation. An empty picture is for
  /// operations that only take the brush.
  void picture(const Rect& target, const Bitmap& bitmap, const Rect& source, std::uint32_t operation,
               double opacity = 1);

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

  cairo_matrix_t matrix() const;
  Point toPicture(Point logical) const;
  double scale() const;
  void beginFigure();
  void endFigure(bool fill);
  void addLines(const std::vector<Point>& points);
  void addCurves(const std::vector<Point>& points, std::size_t first);
  void addEllipse(const Rect& rect);
  void fillPresentPath();
  void strokePresentPath();
  void setSource(Color color, double opacity = 1);
  void setOperator();
  void setBrushSource();

  Surface surface_;
  std::unique_ptr<cairo_t, DestroyContext> cairo_;
  cairo_matrix_t device_;
  State state_;
  std::vector<State> saved_;
  bool inPath_ = false;
};

/// The picture of a device-independent bitmap: an information header and what follows it. Empty if it makes
/// no sense.
Bitmap decodeDib(Bytes dib);

/// As `decodeDib`, from header and pixels that stand apart.
Bitmap decodeDib(Bytes header, Bytes pixels);

/// A bitmap of 24 bits per pixel, flattened on white, as `decodeDib` reads it.
std::vector<std::uint8_t> encodeDib(const Bitmap& bitmap);

/// The letters of a text in the Windows code page 1252, or of the symbol font, each as UTF-8.
std::vector<std::string> lettersOf(Bytes text, bool symbols);

/// The letters of a text in UTF-16.
std::vector<std::string> lettersOf(const std::vector<std::uint16_t>& text, bool symbols);

}  // namespace kestrel::engine::metafile
