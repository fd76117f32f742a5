#include "EmfPlusObjects.h"

#include <algorithm>
#include <cmath>

#include "EmfPlusFields.h"
#include "EmfPlusImage.h"
#include "MetafileGlyphs.h"

namespace kestrel::engine::emf::plus {
namespace {

enum Type : std::uint32_t {
  kBrush = 1,
  kPen = 2,
  kPath = 3,
  kRegion = 4,
  kImage = 5,
  kFont = 6,
  kStringFormat = 7
};

constexpr std::size_t kMostStops = 256;

// Flags of a brush's optional data.
constexpr std::uint32_t kHasPath = 0x01, kHasTransform = 0x02, kHasColors = 0x04, kHasFactors = 0x08,
                        kHasFactorsDown = 0x10;

Path readPath(ByteReader& r) {
  constexpr std::uint32_t kRuns = 0x1000, kWinding = 0x2000;
  r.skip(4);
  const std::size_t count = r.u32();
  const std::uint32_t flags = r.u32();
  Path path;
  path.points = readAnyPoints(r, count, flags);
  path.winding = (flags & kWinding) != 0;
  if ((flags & kRuns) != 0) {
    while (path.types.size() < count) {
      const std::size_t run = r.u8() & 0x3F;
      const std::uint8_t type = r.u8();
      if (run == 0) refusePicture("A path holds a run without points.");
      path.types.insert(path.types.end(), std::min(run, count - path.types.size()), type);
    }
  } else {
    const Bytes types = r.take(count);
    path.types.assign(types.begin(), types.end());
  }
  return path;
}

std::size_t readCount(ByteReader& r, std::size_t each) {
  const std::size_t count = r.u32();
  if (count > r.remaining() / each) refusePicture("The record holds less than it says.");
  return count;
}

/// Stops stored with colors.
std::vector<Stop> readColors(ByteReader& r) {
  std::vector<Stop> stops(readCount(r, 8));
  for (Stop& stop : stops) stop.at = readReal(r);
  for (Stop& stop : stops) stop.color = {r.u32()};
  stops.resize(std::min(stops.size(), kMostStops));
  return stops;
}

Argb between(Argb from, Argb to, double part) {
  std::uint32_t result = 0;
  for (int shift = 0; shift < 32; shift += 8) {
    const double a = from.value >> shift & 0xFF, b = to.value >> shift & 0xFF;
    result |= static_cast<std::uint32_t>(std::lround(std::clamp(a + (b - a) * part, 0.0, 255.0))) << shift;
  }
  return {result};
}

/// Stops stored as blend factors between two colors.
std::vector<Stop> readFactors(ByteReader& r, Argb from, Argb to) {
  std::vector<Stop> stops(readCount(r, 8));
  for (Stop& stop : stops) stop.at = readReal(r);
  for (Stop& stop : stops) {
    const double factor = readReal(r);
    stop.color = between(from, to, std::isfinite(factor) ? factor : 0);
  }
  stops.resize(std::min(stops.size(), kMostStops));
  return stops;
}

void readLinearGradient(ByteReader& r, Brush& brush) {
  const std::uint32_t flags = r.u32();
  brush.wrap = static_cast<Wrap>(r.u32());
  brush.box = readRealRect(r);
  const Argb first{r.u32()}, last{r.u32()};
  r.skip(8);
  if ((flags & kHasTransform) != 0) brush.transform = readTransform(r);
  if ((flags & kHasColors) != 0) {
    brush.stops = readColors(r);
  } else if ((flags & (kHasFactors | kHasFactorsDown)) != 0) {
    brush.stops = readFactors(r, first, last);
  } else {
    brush.stops = {{0, first}, {1, last}};
  }
}

void readPathGradient(ByteReader& r, Brush& brush) {
  const std::uint32_t flags = r.u32();
  brush.wrap = static_cast<Wrap>(r.u32());
  const Argb center{r.u32()};
  brush.center = readRealPoint(r);
  brush.around.resize(readCount(r, 4));
  for (Argb& color : brush.around) color = {r.u32()};
  const std::size_t count = r.u32();
  if ((flags & kHasPath) != 0) {
    ByteReader path(r.take(count));
    brush.outline = readPath(path);
  } else {
    const std::vector<Point> points = readAnyPoints(r, count, 0);
    for (std::size_t i = 0; i < points.size(); ++i)
      i == 0 ? brush.outline.start(points[i]) : brush.outline.line(points[i]);
    brush.outline.close();
  }
  if ((flags & kHasTransform) != 0) brush.transform = readTransform(r);
  const Argb edge = brush.around.empty() ? center : brush.around[0];
  if ((flags & kHasColors) != 0) {
    brush.stops = readColors(r);
    // The stops replace the colors of the outline.
    brush.around.clear();
  } else if ((flags & kHasFactors) != 0) {
    brush.stops = readFactors(r, edge, center);
  } else {
    brush.stops = {{0, edge}, {1, center}};
  }
}

Brush readBrush(ByteReader& r, metafile::Work& work) {
  enum Kind : std::uint32_t { kSolid = 0, kHatch = 1, kTexture = 2, kPathGradient = 3, kLinearGradient = 4 };
  r.skip(4);
  Brush brush;
  switch (r.u32()) {
    case kSolid:
      brush.kind = Brush::Kind::solid;
      brush.color = {r.u32()};
      break;
    case kHatch:
      brush.kind = Brush::Kind::hatched;
      brush.hatch = r.u32();
      brush.color = {r.u32()};
      brush.back = {r.u32()};
      break;
    case kTexture: {
      brush.kind = Brush::Kind::texture;
      const std::uint32_t flags = r.u32();
      brush.wrap = static_cast<Wrap>(r.u32());
      if ((flags & kHasTransform) != 0) brush.transform = readTransform(r);
      brush.texture = readImage(r.take(r.remaining()), work);
      break;
    }
    case kPathGradient:
      brush.kind = Brush::Kind::pathGradient;
      readPathGradient(r, brush);
      break;
    case kLinearGradient:
      brush.kind = Brush::Kind::linearGradient;
      readLinearGradient(r, brush);
      break;
    default:
      break;
  }
  return brush;
}

/// Custom caps are drawn as arrows, which nearly all of them are.
std::uint32_t readCustomCap(ByteReader& r) {
  const std::size_t size = r.u32();
  r.skip(size);
  return Pen::kArrowAnchor;
}

std::vector<double> dashesOf(std::uint32_t style) {
  switch (style) {
    case 1:
      return {3, 1};
    case 2:
      return {1, 1};
    case 3:
      return {3, 1, 1, 1};
    case 4:
      return {3, 1, 1, 1, 1, 1};
    default:
      return {};
  }
}

Pen readPen(ByteReader& r, metafile::Work& work) {
  r.skip(8);
  const std::uint32_t flags = r.u32();
  Pen pen;
  pen.unit = r.u32();
  pen.width = readReal(r);
  const auto has = [&](std::uint32_t flag) { return (flags & flag) != 0; };
  const auto skipReals = [&] { r.skip(4 * readCount(r, 4)); };
  if (has(0x001)) pen.transform = readTransform(r);
  if (has(0x002)) pen.startCap = r.u32();
  if (has(0x004)) pen.endCap = r.u32();
  if (has(0x008)) pen.join = r.u32();
  if (has(0x010)) pen.miterLimit = readReal(r);
  if (has(0x020)) pen.dashes = dashesOf(r.u32());
  if (has(0x040)) pen.dashCap = r.u32();
  if (has(0x080)) pen.dashOffset = readReal(r);
  if (has(0x100)) {
    pen.dashes.resize(readCount(r, 4));
    for (double& dash : pen.dashes) dash = readReal(r);
    constexpr std::size_t kMostDashes = 64;
    pen.dashes.resize(std::min(pen.dashes.size(), kMostDashes));
  }
  if (has(0x200)) r.skip(4);    // pen alignment: always centered
  if (has(0x400)) skipReals();  // compound lines: drawn as one
  if (has(0x800)) pen.startCap = readCustomCap(r);
  if (has(0x1000)) pen.endCap = readCustomCap(r);
  pen.brush = readBrush(r, work);
  return pen;
}

Region readNode(ByteReader& r, int depth) {
  constexpr std::uint32_t kRect = 0x10000000, kPathNode = 0x10000001, kEmpty = 0x10000002,
                          kInfinite = 0x10000003;
  constexpr Combine kHow[] = {Combine::replace,   Combine::intersect, Combine::unite,
                              Combine::exclusive, Combine::exclude,   Combine::complement};
  constexpr int kDeepest = 64;
  if (depth > kDeepest) refusePicture("A region is nested too deep.");
  Region region;
  const std::uint32_t type = r.u32();
  switch (type) {
    case kRect:
      region.kind = Region::Kind::rect;
      region.rect = readRealRect(r);
      return region;
    case kPathNode: {
      region.kind = Region::Kind::path;
      const std::size_t size = r.u32();
      ByteReader path(r.take(size));
      region.path = readPath(path);
      return region;
    }
    case kEmpty:
      region.kind = Region::Kind::nothing;
      return region;
    case kInfinite:
      return region;
    default:
      break;
  }
  if (type < 1 || type > 5) refusePicture("A region consists of something unknown.");
  region.kind = Region::Kind::combined;
  region.how = kHow[type];
  region.parts.push_back(readNode(r, depth + 1));
  region.parts.push_back(readNode(r, depth + 1));
  return region;
}

Font readFont(ByteReader& r) {
  r.skip(4);
  Font font;
  font.size = readReal(r);
  font.unit = r.u32();
  const std::uint32_t style = r.u32();
  font.bold = (style & 1) != 0;
  font.italic = (style & 2) != 0;
  font.underline = (style & 4) != 0;
  font.strikeOut = (style & 8) != 0;
  r.skip(4);
  const std::size_t length = readCount(r, 2);
  std::vector<std::uint16_t> name(length);
  for (std::uint16_t& code : name) code = r.u16();
  for (const std::string& letter : metafile::lettersOf(name, metafile::Font{})) font.face += letter;
  return font;
}

StringFormat readStringFormat(ByteReader& r) {
  r.skip(4);
  StringFormat format;
  format.flags = r.u32();
  r.skip(4);
  format.align = r.u32();
  format.lineAlign = r.u32();
  r.skip(16);
  const double leading = readReal(r);
  format.leadingMargin = std::isfinite(leading) ? std::clamp(leading, 0.0, 10.0) : 0;
  return format;
}

}  // namespace

Object readObject(std::uint32_t type, Bytes data, metafile::Work& work) {
  ByteReader r(data);
  switch (type) {
    case kBrush:
      return readBrush(r, work);
    case kPen:
      return readPen(r, work);
    case kPath:
      return readPath(r);
    case kRegion:
      r.skip(8);
      return readNode(r, 0);
    case kImage:
      return Image{readImage(data, work)};
    case kFont:
      return readFont(r);
    case kStringFormat:
      return readStringFormat(r);
    default:
      return {};
  }
}

}  // namespace kestrel::engine::emf::plus
