#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "ByteReader.h"
#include "ByteWriter.h"
#include "Damage.h"
#include "Flatten.h"
#include "Formats.h"
#include "MetafilePlayer.h"

// A Windows metafile: an optional header that makes it "placeable" by telling a frame and its units per inch,
// a header, and records of a size in words, a number and parameters, mostly from the last to the first. It is
// played at 96 pixels per inch; without a frame a unit of its window is a pixel.

namespace kestrel::engine::wmf {
namespace {

using namespace metafile;

constexpr double kPixelsPerInch = 96;
constexpr std::uint32_t kPlaceable = 0x9AC6CDD7;
constexpr std::size_t kPlaceableSize = 22;
constexpr std::size_t kHeaderSize = 18;

enum Record : std::uint16_t {
  kEnd = 0x0000,
  kSave = 0x001E,
  kSetBackMode = 0x0102,
  kSetMapMode = 0x0103,
  kSetRasterOperation = 0x0104,
  kSetFillMode = 0x0106,
  kRestore = 0x0127,
  kSelect = 0x012D,
  kSetTextAlign = 0x012E,
  kDelete = 0x01F0,
  kSetBackColor = 0x0201,
  kSetTextColor = 0x0209,
  kSetWindowOrigin = 0x020B,
  kSetWindowExtent = 0x020C,
  kSetViewportOrigin = 0x020D,
  kSetViewportExtent = 0x020E,
  kLineTo = 0x0213,
  kMoveTo = 0x0214,
  kPolygon = 0x0324,
  kPolyline = 0x0325,
  kScaleWindow = 0x0410,
  kExcludeClip = 0x0415,
  kIntersectClip = 0x0416,
  kEllipse = 0x0418,
  kRectangle = 0x041B,
  kSetPixel = 0x041F,
  kText = 0x0521,
  kPolyPolygon = 0x0538,
  kRoundRectangle = 0x061C,
  kPatternFill = 0x061D,
  kArc = 0x0817,
  kPie = 0x081A,
  kChord = 0x0830,
  kExtText = 0x0A32,
  kDibBitBlt = 0x0940,
  kDibStretchBlt = 0x0B41,
  kSetDibToDevice = 0x0D33,
  kStretchDib = 0x0F43,
  kCreatePalette = 0x00F7,
  kCreatePatternBrush = 0x01F9,
  kCreateDibBrush = 0x0142,
  kCreatePen = 0x02FA,
  kCreateFont = 0x02FB,
  kCreateBrush = 0x02FC,
  kCreateRegion = 0x06FF
};

/// Calls `visit(number, parameters)` for each record; true if the last one came.
template <typename Visit>
bool eachRecord(Bytes data, const Visit& visit) {
  ByteReader reader(data);
  while (reader.remaining() >= 6) {
    const std::size_t at = reader.position();
    const std::size_t size = std::size_t{reader.u32()} * 2;
    const std::uint16_t number = reader.u16();
    if (number == kEnd) return true;
    if (size < 6 || size > data.size() - at) return false;
    visit(number, data.subspan(at + 6, size - 6));
    reader.seek(at + size);
  }
  return false;
}

class Playback {
 public:
  explicit Playback(Player& player) : player_(player) {}

  /// A record that makes no sense is passed over.
  void play(std::uint16_t number, Bytes parameters) {
    try {
      ByteReader reader(parameters);
      if (!playState(number, reader) && !playObject(number, parameters) && !playShape(number, reader)) {
        playPicture(number, parameters);
      }
    } catch (const RuntimeError& error) {
      if (error.Number() != err::kInvalidPicture) throw;
    }
  }

 private:
  /// Pairs stand with y first.
  static Point pointBackwards(ByteReader& r) {
    const double y = r.i16();
    return {static_cast<double>(r.i16()), y};
  }
  static Point point(ByteReader& r) {
    const double x = r.i16();
    return {x, static_cast<double>(r.i16())};
  }
  static Rect rectBackwards(ByteReader& r) {
    const Point last = pointBackwards(r), first = pointBackwards(r);
    return {first.x, first.y, last.x, last.y};
  }
  static std::vector<Point> points(ByteReader& r, std::size_t count) {
    if (count > r.remaining() / 4) refusePicture("The record holds fewer points than it says.");
    std::vector<Point> result(count);
    for (Point& p : result) p = point(r);
    return result;
  }

  bool playState(std::uint16_t number, ByteReader& r) {
    State& s = player_.state();
    Mapping& m = s.mapping;
    switch (number) {
      case kSave:
        player_.save();
        return true;
      case kRestore:
        player_.restore(r.i16());
        return true;
      case kSetBackMode:
        s.opaqueBack = r.u16() == 2;
        return true;
      case kSetRasterOperation:
        s.rasterOperation = r.u16();
        return true;
      case kSetFillMode:
        s.fillWinding = r.u16() == 2;
        return true;
      case kSetTextAlign:
        s.textAlign = r.u16();
        return true;
      case kSetBackColor:
        s.backColor = {r.u32()};
        return true;
      case kSetTextColor:
        s.textColor = {r.u32()};
        return true;
      // The window is what is shown; the picture is its viewport whatever the file says of one.
      case kSetWindowOrigin:
        m.windowOrigin = pointBackwards(r);
        return true;
      case kSetWindowExtent:
        m.windowExtent = pointBackwards(r);
        return true;
      case kSetMapMode:
      case kSetViewportOrigin:
      case kSetViewportExtent:
        return true;
      case kScaleWindow: {
        const double yd = r.i16(), yn = r.i16(), xd = r.i16(), xn = r.i16();
        if (xd != 0) m.windowExtent.x *= xn / xd;
        if (yd != 0) m.windowExtent.y *= yn / yd;
        return true;
      }
      case kIntersectClip:
        player_.clipToRects({rectBackwards(r)}, false);
        return true;
      case kExcludeClip:
        player_.excludeRect(rectBackwards(r));
        return true;
      default:
        return false;
    }
  }

  /// Each new object takes the first free slot.
  void keep(Object object) {
    const auto slot = std::ranges::find_if(objects_, [](const auto& each) { return !each.has_value(); });
    if (slot != objects_.end()) {
      *slot = std::move(object);
    } else {
      objects_.emplace_back(std::move(object));
    }
  }

  bool playObject(std::uint16_t number, Bytes parameters) {
    ByteReader r(parameters);
    switch (number) {
      case kCreatePen: {
        const std::uint32_t style = r.u16();
        const double width = r.i16();
        r.skip(2);
        keep(Pen::fromStyle(style, width, {r.u32()}));
        return true;
      }
      case kCreateBrush: {
        const std::uint32_t style = r.u16();
        const Color color{r.u32()};
        keep(Brush::fromStyle(style, color, r.u16()));
        return true;
      }
      case kCreateDibBrush:
        keep(Brush{Brush::Kind::pattern,
                   {0x808080},
                   0,
                   parameters.size() > 4 ? decodeDib(parameters.subspan(4)) : Bitmap()});
        return true;
      case kCreatePatternBrush:
        keep(Brush{Brush::Kind::solid, {0x808080}, 0, {}});
        return true;
      case kCreateFont:
        keep(font(parameters));
        return true;
      case kCreatePalette:
      case kCreateRegion:
        keep(std::monostate{});
        return true;
      case kSelect:
        select(r.u16());
        return true;
      case kDelete: {
        const std::size_t slot = r.u16();
        if (slot < objects_.size()) objects_[slot].reset();
        return true;
      }
      default:
        return false;
    }
  }

  static Font font(Bytes parameters) {
    ByteReader r(parameters);
    Font f;
    f.height = r.i16();
    r.skip(2);
    f.escapement = r.i16() / 10.0;
    r.skip(2);
    f.bold = r.i16() >= 600;
    f.italic = r.u8() != 0;
    f.underline = r.u8() != 0;
    f.strikeOut = r.u8() != 0;
    constexpr std::uint8_t kSymbolSet = 2;
    f.symbols = r.u8() == kSymbolSet;
    r.skip(4);
    while (r.remaining() > 0) {
      const std::uint8_t letter = r.u8();
      if (letter == 0) break;
      f.face += lettersOf(Bytes(&letter, 1), false)[0];
    }
    f.symbols = f.symbols && f.face == "Symbol";
    return f;
  }

  void select(std::size_t slot) {
    if (slot >= objects_.size() || !objects_[slot]) return;
    State& s = player_.state();
    if (const auto* pen = std::get_if<Pen>(&*objects_[slot])) s.pen = *pen;
    if (const auto* brush = std::get_if<Brush>(&*objects_[slot])) s.brush = *brush;
    if (const auto* chosen = std::get_if<Font>(&*objects_[slot])) s.font = *chosen;
  }

  bool playShape(std::uint16_t number, ByteReader& r) {
    switch (number) {
      case kMoveTo:
        player_.moveTo(pointBackwards(r));
        return true;
      case kLineTo:
        player_.lineTo({pointBackwards(r)});
        return true;
      case kPolyline:
      case kPolygon: {
        const std::size_t count = r.u16();
        player_.polygons({points(r, count)}, number == kPolygon);
        return true;
      }
      case kPolyPolygon: {
        std::vector<std::size_t> sizes(r.u16());
        for (std::size_t& size : sizes) size = r.u16();
        std::vector<std::vector<Point>> figures;
        for (const std::size_t size : sizes) figures.push_back(points(r, size));
        player_.polygons(figures, true);
        return true;
      }
      case kRectangle:
        player_.rectangle(rectBackwards(r));
        return true;
      case kEllipse:
        player_.ellipse(rectBackwards(r));
        return true;
      case kRoundRectangle: {
        const Point corner = pointBackwards(r);
        player_.roundRectangle(rectBackwards(r), corner.x, corner.y);
        return true;
      }
      case kArc:
      case kPie:
      case kChord: {
        const Point to = pointBackwards(r), from = pointBackwards(r);
        player_.arc(rectBackwards(r), from, to,
                    number == kPie     ? Player::ArcKind::pie
                    : number == kChord ? Player::ArcKind::chord
                                       : Player::ArcKind::open);
        return true;
      }
      case kSetPixel: {
        const Color color{r.u32()};
        player_.setPixel(pointBackwards(r), color);
        return true;
      }
      case kText: {
        const std::size_t count = r.u16();
        const Bytes letters = r.take(count);
        if (count % 2 == 1) r.skip(1);
        player_.text(pointBackwards(r), lettersOf(letters, player_.state().font.symbols), {});
        return true;
      }
      case kExtText:
        extText(r);
        return true;
      default:
        return false;
    }
  }

  void extText(ByteReader& r) {
    const Point at = pointBackwards(r);
    const std::size_t count = r.u16();
    const std::uint16_t options = r.u16();
    constexpr std::uint16_t kOpaque = 2, kClipped = 4;
    if ((options & (kOpaque | kClipped)) != 0) {
      const Point first = point(r), last = point(r);
      if ((options & kOpaque) != 0)
        player_.fillRect({first.x, first.y, last.x, last.y}, player_.state().backColor);
    }
    const Bytes letters = r.take(count);
    if (count % 2 == 1 && r.remaining() > 0) r.skip(1);
    std::vector<double> advances;
    while (r.remaining() >= 2) advances.push_back(r.i16());
    player_.text(at, lettersOf(letters, player_.state().font.symbols), advances);
  }

  void playPicture(std::uint16_t number, Bytes parameters) {
    ByteReader r(parameters);
    switch (number) {
      case kStretchDib: {
        const std::uint32_t operation = r.u32();
        r.skip(2);
        const Point sourceSize = pointBackwards(r), from = pointBackwards(r), size = pointBackwards(r);
        const Point at = pointBackwards(r);
        const Bitmap bitmap = decodeDib(parameters.subspan(r.position()));
        // The rows are counted from the lower end of the bitmap.
        return draw(at, size, bitmap, {from.x, bitmap.height() - from.y - sourceSize.y}, sourceSize,
                    operation);
      }
      case kDibStretchBlt: {
        const std::uint32_t operation = r.u32();
        const Point sourceSize = pointBackwards(r), from = pointBackwards(r);
        // Without a bitmap there is a word between, and only the brush to draw with.
        const bool bare = parameters.size() < 40;
        if (bare) r.skip(2);
        const Point size = pointBackwards(r), at = pointBackwards(r);
        const Bitmap bitmap = bare ? Bitmap() : decodeDib(parameters.subspan(r.position()));
        return draw(at, size, bitmap, from, sourceSize, operation);
      }
      case kDibBitBlt: {
        const std::uint32_t operation = r.u32();
        const Point from = pointBackwards(r);
        const bool bare = parameters.size() < 40;
        if (bare) r.skip(2);
        const Point size = pointBackwards(r), at = pointBackwards(r);
        const Bitmap bitmap = bare ? Bitmap() : decodeDib(parameters.subspan(r.position()));
        return draw(at, size, bitmap, from, size, operation);
      }
      case kSetDibToDevice: {
        r.skip(6);
        const Point from = pointBackwards(r), size = pointBackwards(r), at = pointBackwards(r);
        const Bitmap bitmap = decodeDib(parameters.subspan(r.position()));
        constexpr std::uint32_t kCopy = 0xCC0020;
        return draw(at, size, bitmap, {from.x, bitmap.height() - from.y - size.y}, size, kCopy);
      }
      case kPatternFill: {
        const std::uint32_t operation = r.u32();
        const Point size = pointBackwards(r), at = pointBackwards(r);
        return draw(at, size, {}, {}, {}, operation);
      }
      default:
        return;
    }
  }

  void draw(Point at, Point size, const Bitmap& bitmap, Point from, Point sourceSize,
            std::uint32_t operation) {
    player_.picture({at.x, at.y, at.x + size.x, at.y + size.y}, bitmap,
                    {from.x, from.y, from.x + sourceSize.x, from.y + sourceSize.y}, operation);
  }

  Player& player_;
  std::vector<std::optional<Object>> objects_;
};

bool isPlaceable(Bytes data) {
  return data.size() >= kPlaceableSize + kHeaderSize && ByteReader(data).u32() == kPlaceable;
}

bool isHeader(Bytes data) {
  if (data.size() < kHeaderSize) return false;
  ByteReader reader(data);
  const std::uint16_t type = reader.u16(), words = reader.u16(), version = reader.u16();
  return (type == 1 || type == 2) && words == kHeaderSize / 2 && (version == 0x0100 || version == 0x0300);
}

struct Frame {
  Point origin, extent;  ///< logical
  double width = 0, height = 0;
};

/// The frame that a placeable file tells.
Frame placeableFrame(Bytes data) {
  ByteReader reader(data);
  reader.skip(6);
  const double left = reader.i16(), top = reader.i16(), right = reader.i16(), bottom = reader.i16();
  const std::uint16_t unitsPerInch = reader.u16();
  const double scale = unitsPerInch > 0 ? kPixelsPerInch / unitsPerInch : 1;
  return {{left, top},
          {right - left, bottom - top},
          std::abs(right - left) * scale,
          std::abs(bottom - top) * scale};
}

/// Without a header that tells, the first window is the frame.
Frame windowFrame(Bytes records) {
  std::optional<Point> origin, extent;
  eachRecord(records, [&](std::uint16_t number, Bytes parameters) {
    if (parameters.size() < 4 || (number != kSetWindowOrigin && number != kSetWindowExtent)) return;
    ByteReader reader(parameters);
    const double y = reader.i16();
    const Point p{static_cast<double>(reader.i16()), y};
    if (number == kSetWindowOrigin && !origin) origin = p;
    if (number == kSetWindowExtent && !extent) extent = p;
  });
  const Point size = extent.value_or(Point{640, 480});
  return {origin.value_or(Point{}), size, std::abs(size.x), std::abs(size.y)};
}

}  // namespace

bool probe(Bytes data) { return isPlaceable(data) || isHeader(data); }

Decoded decode(Bytes data) {
  if (!probe(data)) refusePicture("The WMF file is damaged: its header is missing.");
  const bool placeable = isPlaceable(data);
  const Bytes records = data.subspan(std::min(data.size(), (placeable ? kPlaceableSize : 0) + kHeaderSize));
  const Frame frame = placeable ? placeableFrame(data) : windowFrame(records);
  const auto width = static_cast<std::int32_t>(std::lround(std::min(frame.width, 1e6)));
  const auto height = static_cast<std::int32_t>(std::lround(std::min(frame.height, 1e6)));
  constexpr std::int64_t kPixelsPerByte = 65536;
  checkClaimedSize(width, height, data.size(), kPixelsPerByte);

  Player player(width, height, {1, 0, 0, 1, 0, 0});
  constexpr std::uint32_t kWindowOnViewport = 8;
  player.state().mapping = {kWindowOnViewport,
                            frame.origin,
                            frame.extent,
                            {},
                            {static_cast<double>(width), static_cast<double>(height)},
                            {1, 0, 0, 1, 0, 0}};
  Playback playback(player);
  const bool complete =
      eachRecord(records, [&](std::uint16_t number, Bytes parameters) { playback.play(number, parameters); });

  Decoded decoded;
  decoded.bitmap = player.finish();
  decoded.stored.hasAlpha = !isOpaque(decoded.bitmap);
  decoded.metadata.resolutionX = decoded.metadata.resolutionY = kPixelsPerInch;
  if (!complete)
    decoded.notice = "The file is damaged or was cut short: parts of the drawing could not be read.";
  return decoded;
}

/// The picture as one bitmap record in a placeable file of 96 units per inch.
std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata&, const EncodeOptions&) {
  constexpr std::int32_t kLongest = 32767;
  if (bitmap.width() > kLongest || bitmap.height() > kLongest) {
    throw RuntimeError(err::kInvalidCall,
                       "The picture is too large for a WMF file, whose sides have at most 32767 pixels.");
  }
  const auto width = static_cast<std::size_t>(bitmap.width()),
             height = static_cast<std::size_t>(bitmap.height());
  const std::vector<std::uint8_t> dib = encodeDib(bitmap);
  const std::size_t padded = (dib.size() + 1) / 2 * 2;
  constexpr std::size_t kOrigin = 10, kExtent = 10, kPicture = 28, kLast = 6;
  const std::size_t total = kHeaderSize + kOrigin + kExtent + kPicture + padded + kLast;

  const std::size_t frame[] = {0, 0, width, height, static_cast<std::size_t>(kPixelsPerInch)};
  ByteWriter writer;
  writer.u32(kPlaceable);
  writer.u16(0);
  std::size_t checksum = (kPlaceable & 0xFFFF) ^ (kPlaceable >> 16);
  for (const std::size_t value : frame) {
    writer.u16(value);
    checksum ^= value;
  }
  writer.u32(0);
  writer.u16(checksum);

  writer.u16(1);
  writer.u16(kHeaderSize / 2);
  writer.u16(0x0300);
  writer.u32(total / 2);
  writer.u16(0);
  writer.u32((kPicture + padded) / 2);
  writer.u16(0);

  const auto record = [&](std::size_t size, Record number) {
    writer.u32(size / 2);
    writer.u16(number);
  };
  record(kOrigin, kSetWindowOrigin);
  writer.u32(0);
  record(kExtent, kSetWindowExtent);
  writer.u16(height);
  writer.u16(width);
  record(kPicture + padded, kStretchDib);
  writer.u32(0xCC0020);
  writer.u16(0);
  for (const std::size_t value : {height, width, std::size_t{0}, std::size_t{0}, height, width})
    writer.u16(value);
  writer.u32(0);
  writer.bytes(dib);
  writer.zeros(padded - dib.size());
  record(kLast, kEnd);
  return writer.finish();
}

}  // namespace kestrel::engine::wmf
