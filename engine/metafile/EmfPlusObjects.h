#pragma once

#include <cairo.h>

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "MetafileCanvas.h"
#include "engine/codecs/common/Decoded.h"

// Objects that EMF+ commands create and draw with.

namespace kestrel::engine::emf::plus {

using metafile::Clip;
using metafile::Combine;
using metafile::Point;
using metafile::Rect;

/// Blue in the low byte, then green, red, and straight alpha.
struct Argb {
  std::uint32_t value = 0xFF000000;

  double red() const { return (value >> 16 & 0xFF) / 255.0; }
  double green() const { return (value >> 8 & 0xFF) / 255.0; }
  double blue() const { return (value & 0xFF) / 255.0; }
  double alpha() const { return (value >> 24) / 255.0; }
};

/// Figures of lines and curves. A point's type is 0 at the start of a figure, 1 at the end of a line, 3 for
/// each of the three points of a curve; flag 0x80 closes the figure.
struct Path {
  static constexpr std::uint8_t kStart = 0, kLine = 1, kCurve = 3, kKind = 7, kClose = 0x80;

  std::vector<Point> points;
  std::vector<std::uint8_t> types;  ///< one per point
  bool winding = false;

  void start(Point at) { add(at, kStart); }
  void line(Point to) { add(to, kLine); }
  void curve(Point a, Point b, Point c) {
    add(a, kCurve);
    add(b, kCurve);
    add(c, kCurve);
  }
  void close() {
    if (!types.empty()) types.back() |= kClose;
  }

 private:
  void add(Point at, std::uint8_t type) {
    points.push_back(at);
    types.push_back(type);
  }
};

struct Stop {
  double at = 0;  ///< 0 to 1
  Argb color;
};

/// How a pattern is repeated beyond its edge; record values.
enum class Wrap : std::uint32_t { tile = 0, flipX = 1, flipY = 2, flipBoth = 3, clamp = 4 };

struct Brush {
  enum class Kind { none, solid, hatched, texture, pathGradient, linearGradient } kind = Kind::none;
  Argb color;             ///< solid; the lines of a hatch
  Argb back{0xFFFFFFFF};  ///< background of a hatch
  std::uint32_t hatch = 0;
  Bitmap texture;
  Wrap wrap = Wrap::tile;
  cairo_matrix_t transform{1, 0, 0, 1, 0, 0};
  Rect box;                  ///< linear gradient: the colors run from left to right
  std::vector<Stop> stops;   ///< gradient stops; of a path gradient, from outline to center
  Point center;              ///< path gradient
  Path outline;              ///< path gradient
  std::vector<Argb> around;  ///< colors of the outline's points; the last applies to all further ones
};

struct Pen {
  enum Cap : std::uint32_t {
    kFlat = 0,
    kSquare = 1,
    kRound = 2,
    kTriangle = 3,
    kSquareAnchor = 0x11,
    kRoundAnchor = 0x12,
    kDiamondAnchor = 0x13,
    kArrowAnchor = 0x14,
    kCustom = 0xFF
  };
  enum Join : std::uint32_t { kMiter = 0, kBevel = 1, kRoundJoin = 2, kMiterClipped = 3 };

  double width = 1;
  std::uint32_t unit = 0;  ///< as in `SetPageTransform`; 0 is world units
  cairo_matrix_t transform{1, 0, 0, 1, 0, 0};
  std::uint32_t startCap = kFlat, endCap = kFlat, join = kMiter, dashCap = kFlat;
  double miterLimit = 10;
  std::vector<double> dashes;  ///< in pen widths
  double dashOffset = 0;
  Brush brush;
};

/// A tree of areas; a combined node has two `parts`.
struct Region {
  enum class Kind { everything, nothing, rect, path, combined } kind = Kind::everything;
  Combine how = Combine::intersect;
  Rect rect;
  Path path;
  std::vector<Region> parts;
};

struct Image {
  Bitmap bitmap;
};

struct Font {
  double size = 12;
  std::uint32_t unit = 0;
  bool bold = false, italic = false, underline = false, strikeOut = false;
  std::string face;
};

struct StringFormat {
  enum Flags : std::uint32_t { kRightToLeft = 1, kVertical = 2, kNoWrap = 0x1000 };

  std::uint32_t flags = 0;
  std::uint32_t align = 0, lineAlign = 0;  ///< 0 near, 1 center, 2 far
  double leadingMargin = 1 / 6.0;          ///< in font sizes
};

using Object = std::variant<std::monostate, Brush, Pen, Path, Region, Image, Font, StringFormat>;

/// Reads an object from a command's data; std::monostate for types not used for drawing. Embedded pictures
/// are charged to `work`. Raises RuntimeError 481 for invalid data.
Object readObject(std::uint32_t type, Bytes data, metafile::Work& work);

}  // namespace kestrel::engine::emf::plus
