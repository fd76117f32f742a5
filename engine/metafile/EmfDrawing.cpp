// Records that draw lines, shapes, texts and regions.

#include <cmath>
#include <numbers>

#include "EmfFields.h"
#include "EmfPlayback.h"
#include "EmfRecords.h"
#include "MetafileGlyphs.h"

namespace kestrel::engine::emf {

using namespace metafile;

namespace {

/// Reads the points of a record that begins with bounds and a count.
std::vector<Point> boundedPoints(ByteReader& r, bool narrow) {
  r.skip(16);
  const std::size_t count = r.u32();
  return readPoints(r, count, narrow);
}

std::vector<std::vector<Point>> figures(ByteReader& r, bool narrow) {
  r.skip(16);
  const std::size_t count = r.u32();
  r.skip(4);
  if (count > r.remaining() / 4) refusePicture("The record holds fewer figures than it says.");
  std::vector<std::size_t> sizes(count);
  for (std::size_t& size : sizes) size = r.u32();
  std::vector<std::vector<Point>> result;
  for (const std::size_t size : sizes) result.push_back(readPoints(r, size, narrow));
  return result;
}

}  // namespace

bool Playback::playPath(std::uint32_t type, ByteReader& r) {
  constexpr std::uint32_t kAnd = 1, kOr = 2, kXor = 3, kDiff = 4;
  switch (type) {
    case kBeginPath:
      player_.beginPath();
      return true;
    case kEndPath:
      player_.endPath();
      return true;
    case kCloseFigure:
      player_.closeFigure();
      return true;
    case kAbortPath:
      player_.abortPath();
      return true;
    case kFillPath:
      player_.drawPath(true, false);
      return true;
    case kStrokePath:
      player_.drawPath(false, true);
      return true;
    case kStrokeAndFillPath:
      player_.drawPath(true, true);
      return true;
    case kClipPath: {
      const std::uint32_t mode = r.u32();
      player_.clipToPath(mode == kAnd    ? Combine::intersect
                         : mode == kOr   ? Combine::unite
                         : mode == kXor  ? Combine::exclusive
                         : mode == kDiff ? Combine::exclude
                                         : Combine::replace);
      return true;
    }
    default:
      return false;
  }
}

bool Playback::playShape(std::uint32_t type, ByteReader& r) {
  switch (type) {
    case kMoveTo:
      player_.moveTo(readPoint(r));
      return true;
    case kLineTo:
      player_.lineTo({readPoint(r)});
      return true;
    case kPolyline:
    case kPolyline16:
      player_.polygons({boundedPoints(r, type == kPolyline16)}, false);
      return true;
    case kPolygon:
    case kPolygon16:
      player_.polygons({boundedPoints(r, type == kPolygon16)}, true);
      return true;
    case kPolylineTo:
    case kPolylineTo16:
      player_.lineTo(boundedPoints(r, type == kPolylineTo16));
      return true;
    case kPolyBezier:
    case kPolyBezier16:
      player_.bezier(boundedPoints(r, type == kPolyBezier16));
      return true;
    case kPolyBezierTo:
    case kPolyBezierTo16:
      player_.bezierTo(boundedPoints(r, type == kPolyBezierTo16));
      return true;
    case kPolyPolyline:
    case kPolyPolyline16:
      player_.polygons(figures(r, type == kPolyPolyline16), false);
      return true;
    case kPolyPolygon:
    case kPolyPolygon16:
      player_.polygons(figures(r, type == kPolyPolygon16), true);
      return true;
    case kPolyDraw:
    case kPolyDraw16:
      polyDraw(r, type == kPolyDraw16);
      return true;
    case kRectangle:
      player_.rectangle(readRect(r));
      return true;
    case kEllipse:
      player_.ellipse(readRect(r));
      return true;
    case kRoundRectangle: {
      const Rect box = readRect(r);
      const Point corner = readPoint(r);
      player_.roundRectangle(box, corner.x, corner.y);
      return true;
    }
    case kArc:
    case kChord:
    case kPie:
    case kArcTo: {
      const Rect box = readRect(r);
      const Point from = readPoint(r), to = readPoint(r);
      player_.arc(box, from, to,
                  type == kChord ? Player::ArcKind::chord
                  : type == kPie ? Player::ArcKind::pie
                                 : Player::ArcKind::open,
                  type == kArcTo);
      return true;
    }
    case kAngleArc:
      angleArc(r);
      return true;
    case kSetPixel: {
      const Point at = readPoint(r);
      player_.setPixel(at, {r.u32()});
      return true;
    }
    default:
      return false;
  }
}

void Playback::angleArc(ByteReader& r) {
  const Point center = readPoint(r);
  const double radius = r.u32();
  const double start = readReal(r), sweep = readReal(r);
  const auto at = [&](double degrees) {
    const double angle = degrees * std::numbers::pi / 180;
    return Point{center.x + radius * std::cos(angle), center.y - radius * std::sin(angle)};
  };
  constexpr int kPieces = 64;
  std::vector<Point> points;
  for (int i = 0; i <= kPieces; ++i) points.push_back(at(start + sweep * i / kPieces));
  player_.lineTo(points);
}

/// Points with a type each: move, line or curve.
void Playback::polyDraw(ByteReader& r, bool narrow) {
  constexpr std::uint8_t kClose = 1, kLine = 2, kCurve = 4, kMove = 6;
  const std::vector<Point> points = boundedPoints(r, narrow);
  const Bytes types = r.take(points.size());
  Point first = player_.state().position;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const std::uint8_t type = types[i] & 6;
    if (type == kMove) {
      player_.moveTo(points[i]);
      first = points[i];
    } else if (type == kLine) {
      player_.lineTo({points[i]});
    } else if (type == kCurve && i + 2 < points.size()) {
      player_.bezierTo({points[i], points[i + 1], points[i + 2]});
      i += 2;
    }
    if ((types[i] & kClose) != 0) player_.lineTo({first});
  }
}

bool Playback::playText(std::uint32_t type, ByteReader& r) {
  constexpr std::size_t kMostTexts = 100'000;
  switch (type) {
    case kTextA:
    case kTextW:
      r.skip(28);
      text(r, type == kTextW);
      return true;
    case kPolyTextA:
    case kPolyTextW: {
      r.skip(28);
      const std::size_t count = r.u32();
      for (std::size_t i = 0; i < std::min(count, kMostTexts); ++i) text(r, type == kPolyTextW);
      return true;
    }
    case kSmallText:
      smallText(r);
      return true;
    default:
      return false;
  }
}

namespace {

constexpr std::uint32_t kOpaque = 2, kClipped = 4, kGlyphNumbers = 0x10, kNoBox = 0x100,
                        kSmallLetters = 0x200, kPairs = 0x2000;

}  // namespace

void Playback::text(ByteReader& r, bool wide) {
  const Point at = readPoint(r);
  const std::size_t count = r.u32(), offset = r.u32();
  const std::uint32_t options = r.u32();
  const Rect box = readRect(r);
  const std::size_t advancesAt = r.u32();
  if (count > record_.size()) return;
  std::vector<double> advances;
  const std::size_t each = (options & kPairs) != 0 ? 8 : 4;
  ByteReader values(part(advancesAt, advancesAt > 0 ? each * count : 0));
  while (values.remaining() >= each) {
    advances.push_back(values.i32());
    values.skip(each - 4);
  }
  drawText(at, part(offset, wide ? 2 * count : count), wide, options, box, advances);
}

void Playback::smallText(ByteReader& r) {
  const Point at = readPoint(r);
  const std::size_t count = r.u32();
  const std::uint32_t options = r.u32();
  r.skip(12);
  const Rect box = (options & kNoBox) == 0 ? readRect(r) : Rect{};
  const bool wide = (options & kSmallLetters) == 0;
  if (count > r.remaining()) return;
  drawText(at, r.take(wide ? 2 * count : count), wide, options & ~kPairs, box, {});
}

void Playback::drawText(Point at, Bytes stored, bool wide, std::uint32_t options, const Rect& box,
                        const std::vector<double>& advances) {
  const Font& font = player_.state().font;
  if ((options & kOpaque) != 0 && (options & kNoBox) == 0) player_.fillRect(box, player_.state().backColor);
  std::vector<std::string> letters;
  if (wide) {
    std::vector<std::uint16_t> codes;
    for (std::size_t i = 0; i + 1 < stored.size(); i += 2)
      codes.push_back(static_cast<std::uint16_t>(stored[i] | stored[i + 1] << 8));
    letters = (options & kGlyphNumbers) != 0 ? lettersOfGlyphs(codes, font) : lettersOf(codes, font);
  } else {
    letters = lettersOf(stored, font);
  }
  if ((options & kClipped) != 0 && box.left != box.right && box.top != box.bottom) {
    player_.textWithin(box, at, letters, advances);
  } else {
    player_.text(at, letters, advances);
  }
}

bool Playback::playRegion(std::uint32_t type, ByteReader& r) {
  switch (type) {
    case kFillRegion: {
      r.skip(20);
      const Brush brush = brushOf(r.u32());
      player_.fillRects(readRegion(r), brush);
      return true;
    }
    case kFrameRegion: {
      r.skip(20);
      const Brush brush = brushOf(r.u32());
      const Point size = readPoint(r);
      player_.frameRects(readRegion(r), brush, size.x, size.y);
      return true;
    }
    case kInvertRegion:
      r.skip(20);
      player_.invertRects(readRegion(r));
      return true;
    case kPaintRegion:
      r.skip(20);
      player_.fillRects(readRegion(r), player_.state().brush);
      return true;
    default:
      return false;
  }
}

}  // namespace kestrel::engine::emf
