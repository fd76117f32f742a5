#include "WmfPlayback.h"

#include <algorithm>
#include <string>
#include <utility>

#include "MetafileDib.h"
#include "MetafileGlyphs.h"
#include "engine/codecs/common/DecodeErrors.h"
#include "engine/parallel/Cancellation.h"

namespace kestrel::engine::wmf {

using namespace metafile;

namespace {

/// Reads a pair stored with y first.
Point pointBackwards(ByteReader& r) {
  const double y = r.i16();
  return {static_cast<double>(r.i16()), y};
}

Point point(ByteReader& r) {
  const double x = r.i16();
  return {x, static_cast<double>(r.i16())};
}

Rect rectBackwards(ByteReader& r) {
  const Point last = pointBackwards(r), first = pointBackwards(r);
  return {first.x, first.y, last.x, last.y};
}

std::vector<Point> points(ByteReader& r, std::size_t count) {
  if (count > r.remaining() / 4) refusePicture("The record holds fewer points than it says.");
  std::vector<Point> result(count);
  for (Point& p : result) p = point(r);
  return result;
}

Font readFont(Bytes parameters) {
  ByteReader r(parameters);
  Font f;
  f.height = r.i16();
  f.width = r.i16();
  f.escapement = r.i16() / 10.0;
  r.skip(2);
  f.bold = r.i16() >= 600;
  f.italic = r.u8() != 0;
  f.underline = r.u8() != 0;
  f.strikeOut = r.u8() != 0;
  const std::uint8_t charset = r.u8();
  r.skip(4);
  // The name is plain text even for symbol fonts.
  constexpr std::uint8_t kSymbolCharset = 2;
  Font naming;
  naming.charset = charset == kSymbolCharset ? std::uint8_t{0} : charset;
  const Bytes rest = r.take(r.remaining());
  const auto length = static_cast<std::size_t>(std::ranges::find(rest, 0) - rest.begin());
  for (const std::string& letter : lettersOf(rest.first(length), naming)) f.face += letter;
  f.charset = charset;
  return f;
}

/// A region is stored as bands, each with top, bottom and the ends of its spans.
Region readRegion(ByteReader& r) {
  r.skip(10);
  const std::size_t bands = r.u16();
  r.skip(10);
  Region region;
  for (std::size_t band = 0; band < bands; ++band) {
    const std::size_t numbers = r.u16();
    const double top = r.i16(), bottom = r.i16();
    for (std::size_t i = 0; i + 1 < numbers; i += 2) {
      const double left = r.i16();
      region.rects.push_back({left, top, static_cast<double>(r.i16()), bottom});
    }
    r.skip(2);
  }
  return region;
}

/// Whether a held mask may stay held: these records neither draw anything else nor change where it is drawn.
bool letsMaskWait(std::uint16_t number) {
  constexpr std::uint16_t kWaits[] = {kBitBlt,         kStretchBlt,  kDibBitBlt,    kDibStretchBlt,
                                      kStretchDib,     kSetBackMode, kSetBackColor, kSetTextColor,
                                      kSetStretchMode, kCreateBrush, kCreatePen,    kDelete};
  return std::ranges::find(kWaits, number) != std::end(kWaits);
}

}  // namespace

void Playback::play(std::uint16_t number, Bytes parameters) {
  checkCanceled();
  if (player_.canvas().work().exhausted) return;
  try {
    if (!letsMaskWait(number)) player_.showHeldMask();
    ByteReader r(parameters);
    if (!playState(number, r) && !playClip(number, r) && !playObject(number, parameters) &&
        !playShape(number, r) && !playRegion(number, r) && !playText(number, r))
      playPicture(number, parameters);
  } catch (const RuntimeError& error) {
    if (error.Number() != err::kInvalidPicture) throw;
  }
}

bool Playback::playState(std::uint16_t number, ByteReader& r) {
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
    case kSetLetterSpace:
      s.letterSpace = r.i16();
      return true;
    case kSetTextJustification: {
      const double breaks = r.i16(), extra = r.i16();
      s.breakSpace = breaks > 0 ? extra / breaks : 0;
      return true;
    }
    case kSetBackColor:
      s.backColor = {r.u32()};
      return true;
    case kSetTextColor:
      s.textColor = {r.u32()};
      return true;
    // The viewport is always the picture; viewport records are ignored.
    case kSetWindowOrigin:
      m.windowOrigin = pointBackwards(r);
      return true;
    case kSetWindowExtent:
      m.windowExtent = pointBackwards(r);
      return true;
    case kOffsetWindow: {
      const Point by = pointBackwards(r);
      m.windowOrigin = {m.windowOrigin.x + by.x, m.windowOrigin.y + by.y};
      return true;
    }
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
    default:
      return false;
  }
}

bool Playback::playClip(std::uint16_t number, ByteReader& r) {
  switch (number) {
    case kIntersectClip:
      player_.clipToRects({rectBackwards(r)}, Combine::intersect);
      return true;
    case kExcludeClip:
      player_.clipToRects({rectBackwards(r)}, Combine::exclude);
      return true;
    case kOffsetClip:
      player_.moveClip(pointBackwards(r));
      return true;
    case kClipRegion:
      if (const auto* region = objectOf<Region>(r.u16())) {
        player_.clipToRects(region->rects, Combine::replace);
      } else {
        player_.clipToAll();
      }
      return true;
    default:
      return false;
  }
}

/// Puts a new object into the first free slot.
void Playback::keep(Object object) {
  const auto slot = std::ranges::find_if(objects_, [](const auto& each) { return !each.has_value(); });
  if (slot != objects_.end()) {
    *slot = std::move(object);
  } else {
    objects_.emplace_back(std::move(object));
  }
}

bool Playback::playObject(std::uint16_t number, Bytes parameters) {
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
    case kCreateDibBrush: {
      constexpr std::uint32_t kPattern = 3;
      const bool ofTextColors = r.u16() == kPattern;
      const auto colors = static_cast<DibColors>(r.u16());
      const Bitmap pattern = decodeDib(parameters.subspan(4), colors);
      player_.canvas().work().take(4.0 * pattern.width() * pattern.height());
      keep(Brush{Brush::Kind::pattern, {0x808080}, 0, pattern, ofTextColors});
      return true;
    }
    case kCreatePatternBrush: {
      // 18 undefined bytes separate the bitmap's header from its pixels.
      constexpr std::size_t kHeader = 14, kBetween = 18;
      std::vector<std::uint8_t> bitmap(parameters.begin(), parameters.end());
      if (bitmap.size() >= kHeader + kBetween)
        bitmap.erase(bitmap.begin() + 10,
                     bitmap.begin() + 10 + static_cast<std::ptrdiff_t>(kHeader - 10 + kBetween));
      keep(Brush{Brush::Kind::pattern, {0x808080}, 0, decodeDeviceBitmap(bitmap), true});
      return true;
    }
    case kCreateFont:
      keep(readFont(parameters));
      return true;
    case kCreatePalette:
      keep(std::monostate{});
      return true;
    case kCreateRegion: {
      Region region;
      try {
        region = readRegion(r);
      } catch (const RuntimeError&) {
        region = {};  // an invalid region still takes a slot
      }
      keep(std::move(region));
      return true;
    }
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

void Playback::select(std::size_t slot) {
  State& s = player_.state();
  if (const auto* pen = objectOf<Pen>(slot)) s.pen = *pen;
  if (const auto* brush = objectOf<Brush>(slot)) s.brush = *brush;
  if (const auto* chosen = objectOf<Font>(slot)) s.font = *chosen;
  // Selecting a region sets it as the clip.
  if (const auto* region = objectOf<Region>(slot)) player_.clipToRects(region->rects, Combine::replace);
}

bool Playback::playShape(std::uint16_t number, ByteReader& r) {
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
    default:
      return false;
  }
}

bool Playback::playRegion(std::uint16_t number, ByteReader& r) {
  if (number != kFillRegion && number != kFrameRegion && number != kInvertRegion && number != kPaintRegion)
    return false;
  const auto* const region = objectOf<Region>(r.u16());
  if (region == nullptr) return true;
  if (number == kInvertRegion) {
    player_.invertRects(region->rects);
  } else if (number == kPaintRegion) {
    player_.fillRects(region->rects, player_.state().brush);
  } else if (const auto* const brush = objectOf<Brush>(r.u16())) {
    if (number == kFillRegion) {
      player_.fillRects(region->rects, *brush);
    } else {
      const Point size = pointBackwards(r);
      player_.frameRects(region->rects, *brush, size.x, size.y);
    }
  }
  return true;
}

bool Playback::playText(std::uint16_t number, ByteReader& r) {
  switch (number) {
    case kText: {
      const std::size_t count = r.u16();
      const Bytes letters = r.take(count);
      if (count % 2 == 1) r.skip(1);
      player_.text(pointBackwards(r), lettersOf(letters, player_.state().font), {});
      return true;
    }
    case kExtText:
      extText(r);
      return true;
    default:
      return false;
  }
}

void Playback::extText(ByteReader& r) {
  const Point at = pointBackwards(r);
  const std::size_t count = r.u16();
  const std::uint16_t options = r.u16();
  constexpr std::uint16_t kOpaque = 2, kClipped = 4, kGlyphNumbers = 0x10, kPairs = 0x2000;
  Rect box;
  if ((options & (kOpaque | kClipped)) != 0) {
    const Point first = point(r), last = point(r);
    box = {first.x, first.y, last.x, last.y};
    if ((options & kOpaque) != 0) player_.fillRect(box, player_.state().backColor);
  }
  const Font& font = player_.state().font;
  const Bytes stored = r.take(count);
  if (count % 2 == 1 && r.remaining() > 0) r.skip(1);
  std::vector<std::string> letters;
  if ((options & kGlyphNumbers) != 0) {
    std::vector<std::uint16_t> glyphs;
    for (std::size_t i = 0; i + 1 < stored.size(); i += 2)
      glyphs.push_back(static_cast<std::uint16_t>(stored[i] | stored[i + 1] << 8));
    letters = lettersOfGlyphs(glyphs, font);
  } else {
    letters = lettersOf(stored, font);
  }
  std::vector<double> advances;
  while (r.remaining() >= 2) {
    advances.push_back(r.i16());
    if ((options & kPairs) != 0 && r.remaining() >= 2) r.skip(2);
  }
  if ((options & kClipped) != 0 && box.left != box.right && box.top != box.bottom) {
    player_.textWithin(box, at, letters, advances);
  } else {
    player_.text(at, letters, advances);
  }
}

void Playback::playPicture(std::uint16_t number, Bytes parameters) {
  ByteReader r(parameters);
  switch (number) {
    case kBitBlt:
    case kStretchBlt:
    case kDibBitBlt:
    case kDibStretchBlt:
    case kStretchDib:
      return blit(number, parameters);
    case kSetDibToDevice:
      return setDibToDevice(parameters);
    case kPatternFill: {
      Player::Picture fill;
      fill.operation = r.u32();
      const Point size = pointBackwards(r), at = pointBackwards(r);
      return player_.picture(Rect{at.x, at.y, at.x + size.x, at.y + size.y}, fill);
    }
    default:
      return;
  }
}

void Playback::blit(std::uint16_t number, Bytes parameters) {
  const bool stretches = number == kStretchBlt || number == kDibStretchBlt || number == kStretchDib;
  const bool ofDevice = number == kBitBlt || number == kStretchBlt;
  ByteReader r(parameters);
  Player::Picture picture;
  picture.operation = r.u32();
  const auto colors = number == kStretchDib ? static_cast<DibColors>(r.u16()) : DibColors::rgb;
  const Point sourceSize = stretches ? pointBackwards(r) : Point{};
  Point from = pointBackwards(r);
  // A record without a bitmap has a reserved word here and draws with the brush only.
  const std::size_t words = parameters.size() / 2;
  const bool bare = number != kStretchDib && words == (stretches ? 11U : 9U);
  if (bare) r.skip(2);
  const Point size = pointBackwards(r), at = pointBackwards(r);
  const Point taken = stretches ? sourceSize : size;
  const Bytes stored = parameters.subspan(r.position());
  if (!bare) picture.bitmap = ofDevice ? decodeDeviceBitmap(stored) : decodeDib(stored, colors);
  // In a bottom-up bitmap the source rows are counted from the bottom.
  if (number == kStretchDib && !isTopDown(stored)) from.y = picture.bitmap.height() - from.y - taken.y;
  picture.source = {from.x, from.y, from.x + taken.x, from.y + taken.y};
  if (!stretches) picture.source = withinBitmap(picture.source, picture.bitmap);
  player_.picture(Rect{at.x, at.y, at.x + size.x, at.y + size.y}, picture);
}

void Playback::setDibToDevice(Bytes parameters) {
  ByteReader r(parameters);
  const auto colors = static_cast<DibColors>(r.u16());
  r.skip(4);
  const Point from = pointBackwards(r), size = pointBackwards(r), at = pointBackwards(r);
  Player::Picture picture;
  picture.bitmap = decodeDib(parameters.subspan(r.position()), colors);
  const double top = picture.bitmap.height() - from.y - size.y;
  picture.source = {from.x, top, from.x + size.x, top + size.y};
  player_.picture(Rect{at.x, at.y, at.x + size.x, at.y + size.y}, picture);
}

}  // namespace kestrel::engine::wmf
