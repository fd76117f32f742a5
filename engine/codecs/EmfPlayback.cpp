#include <bit>
#include <cmath>
#include <cstddef>
#include <map>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

#include "ByteReader.h"
#include "Damage.h"
#include "EmfRecords.h"

namespace kestrel::engine::emf {
namespace {

using namespace metafile;

/// Plays one file. A record that makes no sense is passed over.
class Playback {
 public:
  Playback(Player& player, Bytes file) : player_(player), file_(file) {}

  /// True if the end record was reached.
  bool run() {
    ByteReader reader(file_);
    while (reader.remaining() >= 8) {
      const std::size_t at = reader.position();
      const std::uint32_t type = reader.u32(), size = reader.u32();
      if (size < 8 || size % 4 != 0 || size > file_.size() - at) return false;
      if (type == kEnd) return true;
      try {
        record_ = file_.subspan(at, size);
        ByteReader parameters(record_);
        parameters.skip(8);
        play(type, parameters);
      } catch (const RuntimeError& error) {
        if (error.Number() != err::kInvalidPicture) throw;
      }
      reader.seek(at + size);
    }
    return false;
  }

 private:
  static Point point(ByteReader& r) {
    const double x = r.i32();
    return {x, static_cast<double>(r.i32())};
  }
  static Point point16(ByteReader& r) {
    const double x = r.i16();
    return {x, static_cast<double>(r.i16())};
  }
  static Rect rect(ByteReader& r) {
    const Point a = point(r), b = point(r);
    return {a.x, a.y, b.x, b.y};
  }
  static std::vector<Point> points(ByteReader& r, std::size_t count, bool narrow) {
    if (count > r.remaining() / (narrow ? 4 : 8))
      refusePicture("The record holds fewer points than it says.");
    std::vector<Point> result(count);
    for (Point& p : result) p = narrow ? point16(r) : point(r);
    return result;
  }
  /// The points of a record that tells its bounds and their number first.
  static std::vector<Point> boundedPoints(ByteReader& r, bool narrow) {
    r.skip(16);
    const std::size_t count = r.u32();
    return points(r, count, narrow);
  }
  static std::vector<std::vector<Point>> figures(ByteReader& r, bool narrow) {
    r.skip(16);
    const std::size_t count = r.u32();
    r.skip(4);
    if (count > r.remaining() / 4) refusePicture("The record holds fewer figures than it says.");
    std::vector<std::size_t> sizes(count);
    for (std::size_t& size : sizes) size = r.u32();
    std::vector<std::vector<Point>> result;
    for (const std::size_t size : sizes) result.push_back(points(r, size, narrow));
    return result;
  }
  static float real(ByteReader& r) { return std::bit_cast<float>(r.u32()); }
  static cairo_matrix_t transform(ByteReader& r) {
    cairo_matrix_t m{};
    for (double* value : {&m.xx, &m.yx, &m.xy, &m.yy, &m.x0, &m.y0}) *value = static_cast<double>(real(r));
    return m;
  }
  /// A part of the record at an offset that the record tells.
  Bytes part(std::size_t offset, std::size_t size) const {
    if (offset > record_.size() || size > record_.size() - offset) return {};
    return record_.subspan(offset, size);
  }

  void play(std::uint32_t type, ByteReader& r) {
    if (!playState(type, r) && !playObject(type, r) && !playPath(type, r) && !playShape(type, r))
      playPicture(type, r);
  }

  bool playState(std::uint32_t type, ByteReader& r) {
    State& s = player_.state();
    Mapping& m = s.mapping;
    switch (type) {
      case kSetWindowExtent:
        m.windowExtent = point(r);
        return true;
      case kSetWindowOrigin:
        m.windowOrigin = point(r);
        return true;
      case kSetViewportExtent:
        m.viewportExtent = point(r);
        return true;
      case kSetViewportOrigin:
        m.viewportOrigin = point(r);
        return true;
      case kScaleViewport:
        scaleExtent(m.viewportExtent, r);
        return true;
      case kScaleWindow:
        scaleExtent(m.windowExtent, r);
        return true;
      case kSetMapMode:
        m.mode = r.u32();
        return true;
      case kSetWorld:
        m.world = transform(r);
        return true;
      case kModifyWorld:
        modifyWorld(m.world, r);
        return true;
      case kSetBackMode:
        s.opaqueBack = r.u32() == 2;
        return true;
      case kSetFillMode:
        s.fillWinding = r.u32() == 2;
        return true;
      case kSetRasterOperation:
        s.rasterOperation = r.u32();
        return true;
      case kSetTextAlign:
        s.textAlign = r.u32();
        return true;
      case kSetTextColor:
        s.textColor = {r.u32()};
        return true;
      case kSetBackColor:
        s.backColor = {r.u32()};
        return true;
      case kSetArcDirection:
        s.arcsClockwise = r.u32() == 2;
        return true;
      case kSave:
        player_.save();
        return true;
      case kRestore:
        player_.restore(r.i32());
        return true;
      case kIntersectClip:
        player_.clipToRects({rect(r)}, false);
        return true;
      case kExcludeClip:
        player_.excludeRect(rect(r));
        return true;
      case kClipRegion:
        clipToRegion(r);
        return true;
      default:
        return false;
    }
  }

  static void scaleExtent(Point& extent, ByteReader& r) {
    const double xn = r.i32(), xd = r.i32(), yn = r.i32(), yd = r.i32();
    if (xd != 0) extent.x *= xn / xd;
    if (yd != 0) extent.y *= yn / yd;
  }

  static void modifyWorld(cairo_matrix_t& world, ByteReader& r) {
    constexpr std::uint32_t kIdentity = 1, kLeft = 2, kRight = 3;
    const cairo_matrix_t change = transform(r);
    switch (r.u32()) {
      case kIdentity:
        cairo_matrix_init_identity(&world);
        break;
      case kLeft:
        cairo_matrix_multiply(&world, &change, &world);
        break;
      case kRight:
        cairo_matrix_multiply(&world, &world, &change);
        break;
      default:
        world = change;
        break;
    }
  }

  /// Regions are in device units.
  void clipToRegion(ByteReader& r) {
    constexpr std::uint32_t kAnd = 1, kCopy = 5;
    const std::uint32_t size = r.u32(), mode = r.u32();
    if (size == 0) return player_.resetClip();
    if (mode != kAnd && mode != kCopy) return;
    r.skip(8);
    const std::size_t count = r.u32();
    r.skip(20);
    if (count > r.remaining() / 16) return;
    std::vector<Rect> rects(count);
    for (Rect& each : rects) each = rect(r);
    const Mapping mapping = player_.state().mapping;
    player_.state().mapping = Mapping{};
    player_.clipToRects(rects, mode == kCopy);
    player_.state().mapping = mapping;
  }

  bool playObject(std::uint32_t type, ByteReader& r) {
    switch (type) {
      case kSelect:
        select(r.u32());
        return true;
      case kDelete:
        objects_.erase(r.u32());
        return true;
      case kCreatePen: {
        Object& slot = objects_[r.u32()];
        const std::uint32_t style = r.u32();
        const double width = r.i32();
        r.skip(4);
        slot = Pen::fromStyle(style, width, {r.u32()});
        return true;
      }
      case kExtCreatePen: {
        Object& slot = objects_[r.u32()];
        r.skip(16);
        const std::uint32_t style = r.u32(), width = r.u32();
        r.skip(4);
        constexpr std::uint32_t kGeometric = 0x10000;
        slot = Pen::fromStyle(style, (style & kGeometric) != 0 ? width : 0, {r.u32()});
        return true;
      }
      case kCreateBrush: {
        Object& slot = objects_[r.u32()];
        const std::uint32_t style = r.u32();
        const Color color{r.u32()};
        slot = Brush::fromStyle(style, color, r.u32());
        return true;
      }
      case kCreateMonoBrush:
      case kCreateDibBrush: {
        Object& slot = objects_[r.u32()];
        r.skip(4);
        const Bitmap pattern = dibOf(r);
        slot = Brush{Brush::Kind::pattern, {0x808080}, 0, pattern};
        return true;
      }
      case kCreateFont:
        objects_[r.u32()] = font(r);
        return true;
      default:
        return false;
    }
  }

  static Font font(ByteReader& r) {
    Font f;
    f.height = r.i32();
    r.skip(4);
    f.escapement = r.i32() / 10.0;
    r.skip(4);
    f.bold = r.i32() >= 600;
    f.italic = r.u8() != 0;
    f.underline = r.u8() != 0;
    f.strikeOut = r.u8() != 0;
    constexpr std::uint8_t kSymbolSet = 2;
    f.symbols = r.u8() == kSymbolSet;
    r.skip(4);
    std::vector<std::uint16_t> name;
    for (int i = 0; i < 32; ++i) {
      const std::uint16_t code = r.u16();
      if (code == 0) break;
      name.push_back(code);
    }
    for (const std::string& letter : lettersOf(name, false)) f.face += letter;
    f.symbols = f.symbols && f.face == "Symbol";
    return f;
  }

  /// Numbers from here on are pens, brushes and fonts that are always there.
  void select(std::uint32_t number) {
    constexpr std::uint32_t kStock = 0x80000000;
    State& s = player_.state();
    if (number >= kStock) return selectStock(number - kStock);
    const auto found = objects_.find(number);
    if (found == objects_.end()) return;
    if (const auto* pen = std::get_if<Pen>(&found->second)) s.pen = *pen;
    if (const auto* brush = std::get_if<Brush>(&found->second)) s.brush = *brush;
    if (const auto* chosen = std::get_if<Font>(&found->second)) s.font = *chosen;
  }

  void selectStock(std::uint32_t number) {
    constexpr std::uint32_t kGrays[] = {0xFFFFFF, 0xC0C0C0, 0x808080, 0x404040, 0x000000};
    constexpr std::uint32_t kNullBrush = 5, kWhitePen = 6, kBlackPen = 7, kNullPen = 8;
    State& s = player_.state();
    if (number < kNullBrush) {
      s.brush = Brush{Brush::Kind::solid, {kGrays[number]}, 0, {}};
    } else if (number == kNullBrush) {
      s.brush.kind = Brush::Kind::none;
    } else if (number == kWhitePen || number == kBlackPen) {
      s.pen = Pen{};
      s.pen.color = {number == kWhitePen ? 0xFFFFFFU : 0U};
    } else if (number == kNullPen) {
      s.pen.style = Pen::kNone;
    } else {
      s.font = Font{};
    }
  }

  bool playPath(std::uint32_t type, ByteReader& r) {
    constexpr std::uint32_t kCopy = 5;
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
      case kClipPath:
        player_.clipToPath(r.u32() == kCopy);
        return true;
      default:
        return false;
    }
  }

  bool playShape(std::uint32_t type, ByteReader& r) {
    switch (type) {
      case kMoveTo:
        player_.moveTo(point(r));
        return true;
      case kLineTo:
        player_.lineTo({point(r)});
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
      case kRectangle:
        player_.rectangle(rect(r));
        return true;
      case kEllipse:
        player_.ellipse(rect(r));
        return true;
      case kRoundRectangle: {
        const Rect box = rect(r);
        const Point corner = point(r);
        player_.roundRectangle(box, corner.x, corner.y);
        return true;
      }
      case kArc:
      case kChord:
      case kPie:
      case kArcTo: {
        const Rect box = rect(r);
        const Point from = point(r), to = point(r);
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
        const Point at = point(r);
        player_.setPixel(at, {r.u32()});
        return true;
      }
      case kTextA:
      case kTextW:
        text(type == kTextW, r);
        return true;
      default:
        return false;
    }
  }

  void angleArc(ByteReader& r) {
    const Point centre = point(r);
    const double radius = r.u32();
    const double start = static_cast<double>(real(r)), sweep = static_cast<double>(real(r));
    const auto at = [&](double degrees) {
      const double angle = degrees * std::numbers::pi / 180;
      return Point{centre.x + radius * std::cos(angle), centre.y - radius * std::sin(angle)};
    };
    constexpr int kPieces = 64;
    std::vector<Point> points;
    for (int i = 0; i <= kPieces; ++i) points.push_back(at(start + sweep * i / kPieces));
    player_.lineTo(points);
  }

  void text(bool wide, ByteReader& r) {
    r.skip(28);
    const Point at = point(r);
    const std::size_t count = r.u32(), offset = r.u32();
    const std::uint32_t options = r.u32();
    const Rect box = rect(r);
    const std::size_t advancesAt = r.u32();
    if (count > record_.size()) return;
    constexpr std::uint32_t kOpaque = 2, kGlyphNumbers = 0x10;
    if ((options & kOpaque) != 0) player_.fillRect(box, player_.state().backColor);
    if ((options & kGlyphNumbers) != 0) return;  // glyphs of a font that is not here
    const bool symbols = player_.state().font.symbols;
    const Bytes stored = part(offset, wide ? 2 * count : count);
    std::vector<std::string> letters;
    if (wide) {
      std::vector<std::uint16_t> codes;
      for (std::size_t i = 0; i + 1 < stored.size(); i += 2) {
        codes.push_back(static_cast<std::uint16_t>(stored[i] | stored[i + 1] << 8));
      }
      letters = lettersOf(codes, symbols);
    } else {
      letters = lettersOf(stored, symbols);
    }
    std::vector<double> advances;
    ByteReader values(part(advancesAt, advancesAt > 0 ? 4 * count : 0));
    while (values.remaining() >= 4) advances.push_back(values.i32());
    player_.text(at, letters, advances);
  }

  /// A bitmap that the record tells by the places and sizes of its header and its pixels.
  Bitmap dibOf(ByteReader& r) const {
    const std::size_t headerAt = r.u32(), headerSize = r.u32(), pixelsAt = r.u32(), pixelsSize = r.u32();
    const Bytes header = part(headerAt, headerSize), pixels = part(pixelsAt, pixelsSize);
    return header.size() < 12 || pixels.empty() ? Bitmap() : decodeDib(header, pixels);
  }

  void playPicture(std::uint32_t type, ByteReader& r) {
    switch (type) {
      case kStretchDib:
        return stretchDib(r);
      case kSetDibToDevice:
        return setDibToDevice(r);
      case kBitBlt:
      case kStretchBlt:
      case kAlphaBlend:
      case kTransparentBlt:
        return blit(type, r);
      default:
        return;
    }
  }

  void stretchDib(ByteReader& r) {
    r.skip(16);
    const Point at = point(r), from = point(r), size = point(r);
    const Bitmap bitmap = dibOf(r);
    r.skip(4);
    const std::uint32_t operation = r.u32();
    const Point targetSize = point(r);
    // The rows are counted from the lower end of the bitmap.
    const double top = bitmap.height() - from.y - size.y;
    player_.picture({at.x, at.y, at.x + targetSize.x, at.y + targetSize.y}, bitmap,
                    {from.x, top, from.x + size.x, top + size.y}, operation);
  }

  void setDibToDevice(ByteReader& r) {
    constexpr std::uint32_t kCopy = 0xCC0020;
    r.skip(16);
    const Point at = point(r);
    r.skip(16);
    const Bitmap bitmap = dibOf(r);
    const double width = bitmap.width(), height = bitmap.height();
    player_.picture({at.x, at.y, at.x + width, at.y + height}, bitmap, {0, 0, width, height}, kCopy);
  }

  void blit(std::uint32_t type, ByteReader& r) {
    r.skip(16);
    const Point at = point(r), size = point(r);
    const std::uint32_t operation = r.u32();
    const Point from = point(r);
    r.skip(24 + 4 + 4);
    const Bitmap bitmap = dibOf(r);
    Point sourceSize = size;
    if (type != kBitBlt && r.remaining() >= 8) sourceSize = point(r);
    constexpr std::uint32_t kCopy = 0xCC0020;
    const bool blend = type == kAlphaBlend, copies = blend || type == kTransparentBlt;
    const double opacity = blend ? (operation >> 16 & 0xFF) / 255.0 : 1;
    player_.picture({at.x, at.y, at.x + size.x, at.y + size.y}, bitmap,
                    {from.x, from.y, from.x + sourceSize.x, from.y + sourceSize.y},
                    copies ? kCopy : operation, opacity);
  }

  Player& player_;
  Bytes file_;
  Bytes record_;
  std::map<std::uint32_t, Object> objects_;
};

}  // namespace

bool play(Player& player, Bytes file) { return Playback(player, file).run(); }

}  // namespace kestrel::engine::emf
