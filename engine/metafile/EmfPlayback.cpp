#include "EmfPlayback.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "EmfFields.h"
#include "EmfPlusPlayback.h"
#include "EmfRecords.h"
#include "MetafileDib.h"
#include "MetafileGlyphs.h"
#include "engine/parallel/Cancellation.h"

// Records that set state and create objects. Drawing records are in EmfDrawing.cpp and EmfPictures.cpp.

namespace kestrel::engine::emf {

using namespace metafile;

Playback::Playback(Player& player, Bytes file) : player_(player), file_(file) {
  if (plusIsTheDrawing(file)) plus_ = std::make_unique<PlusPlayback>(player.canvas(), player.device());
}

Playback::~Playback() = default;

bool Playback::run() {
  ByteReader reader(file_);
  while (reader.remaining() >= 8 && !player_.canvas().work().exhausted) {
    checkCanceled();
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
  return player_.canvas().work().exhausted;
}

/// Whether a held mask may stay held: these records neither draw anything else nor change where it is drawn.
static bool letsMaskWait(std::uint32_t type) {
  constexpr std::uint32_t kWaits[] = {kBitBlt,       kStretchBlt,   kStretchDib,    kSetBackMode,
                                      kSetBackColor, kSetTextColor, kSelect,        kDelete,
                                      kCreateBrush,  kCreatePen,    kSetStretchMode};
  return std::ranges::find(kWaits, type) != std::end(kWaits);
}

void Playback::play(std::uint32_t type, ByteReader& r) {
  if (!letsMaskWait(type)) player_.showHeldMask();
  if (type == kComment) return comment(r);
  if (!plainPlays_) return;
  if (!playState(type, r) && !playMapping(type, r) && !playClip(type, r) && !playObject(type, r) &&
      !playPath(type, r) && !playShape(type, r) && !playText(type, r) && !playRegion(type, r))
    playPicture(type, r);
}

/// In an EMF+ drawing, plain records are played only where EMF+ requests it.
void Playback::comment(ByteReader& r) {
  if (!plus_) return;
  const std::size_t size = r.u32();
  const Bytes data = r.take(std::min(size, r.remaining()));
  if (!isPlusComment(data)) return;
  plainPlays_ = plus_->play(data.subspan(4));
  player_.showClip();
}

bool Playback::playState(std::uint32_t type, ByteReader& r) {
  State& s = player_.state();
  switch (type) {
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
    case kSetTextJustification: {
      const double extra = r.i32(), breaks = r.i32();
      s.breakSpace = breaks > 0 ? extra / breaks : 0;
      return true;
    }
    case kSetArcDirection:
      s.arcsClockwise = r.u32() == 2;
      return true;
    case kSetMiterLimit: {
      // Some programs write an integer, some a float.
      const std::uint32_t limit = r.u32();
      constexpr std::uint32_t kLargestWhole = 1000;
      s.miterLimit = limit <= kLargestWhole ? limit : static_cast<double>(std::bit_cast<float>(limit));
      return true;
    }
    case kSetBrushOrigin:
      s.brushOrigin = readPoint(r);
      return true;
    case kSave:
      player_.save();
      return true;
    case kRestore:
      player_.restore(r.i32());
      return true;
    default:
      return false;
  }
}

namespace {

void scaleExtent(Point& extent, ByteReader& r) {
  const double xn = r.i32(), xd = r.i32(), yn = r.i32(), yd = r.i32();
  if (xd != 0) extent.x *= xn / xd;
  if (yd != 0) extent.y *= yn / yd;
}

void modifyWorld(cairo_matrix_t& world, ByteReader& r) {
  constexpr std::uint32_t kIdentity = 1, kLeft = 2, kRight = 3;
  const cairo_matrix_t change = readTransform(r);
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

Font readFont(ByteReader& r) {
  Font f;
  f.height = r.i32();
  f.width = r.i32();
  f.escapement = r.i32() / 10.0;
  r.skip(4);
  f.bold = r.i32() >= 600;
  f.italic = r.u8() != 0;
  f.underline = r.u8() != 0;
  f.strikeOut = r.u8() != 0;
  f.charset = r.u8();
  r.skip(4);
  std::vector<std::uint16_t> name;
  for (int i = 0; i < 32; ++i) {
    const std::uint16_t code = r.u16();
    if (code == 0) break;
    name.push_back(code);
  }
  for (const std::string& letter : lettersOf(name, Font{})) f.face += letter;
  return f;
}

}  // namespace

bool Playback::playMapping(std::uint32_t type, ByteReader& r) {
  Mapping& m = player_.state().mapping;
  switch (type) {
    case kSetWindowExtent:
      m.windowExtent = readPoint(r);
      return true;
    case kSetWindowOrigin:
      m.windowOrigin = readPoint(r);
      return true;
    case kSetViewportExtent:
      m.viewportExtent = readPoint(r);
      return true;
    case kSetViewportOrigin:
      m.viewportOrigin = readPoint(r);
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
      m.world = readTransform(r);
      return true;
    case kModifyWorld:
      modifyWorld(m.world, r);
      return true;
    default:
      return false;
  }
}

bool Playback::playClip(std::uint32_t type, ByteReader& r) {
  switch (type) {
    case kIntersectClip:
      player_.clipToRects({readRect(r)}, Combine::intersect);
      return true;
    case kExcludeClip:
      player_.clipToRects({readRect(r)}, Combine::exclude);
      return true;
    case kOffsetClip:
      player_.moveClip(readPoint(r));
      return true;
    case kKeepClip:
      player_.keepClip();
      return true;
    case kClipRegion:
      clipToRegion(r);
      return true;
    default:
      return false;
  }
}

/// The combine mode for its number in records.
static Combine combineOf(std::uint32_t mode) {
  constexpr Combine kModes[] = {Combine::replace,   Combine::intersect, Combine::unite,
                                Combine::exclusive, Combine::exclude,   Combine::replace};
  return mode < std::size(kModes) ? kModes[mode] : Combine::replace;
}

/// Regions are in device units.
void Playback::clipToRegion(ByteReader& r) {
  const std::uint32_t size = r.u32(), mode = r.u32();
  if (size == 0) return player_.clipToAll();
  const std::vector<Rect> rects = readRegion(r);
  const Mapping mapping = std::exchange(player_.state().mapping, Mapping{});
  player_.clipToRects(rects, combineOf(mode));
  player_.state().mapping = mapping;
}

bool Playback::playObject(std::uint32_t type, ByteReader& r) {
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
      slot = extendedPen(r);
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
      const std::uint32_t colors = r.u32();
      const Bitmap pattern = dib(r).picture(colors);
      player_.canvas().work().take(4.0 * pattern.width() * pattern.height());
      slot = Brush{Brush::Kind::pattern, {0x808080}, 0, pattern, type == kCreateMonoBrush};
      return true;
    }
    case kCreateFont: {
      Object& slot = objects_[r.u32()];
      slot = readFont(r);
      return true;
    }
    default:
      return false;
  }
}

Pen Playback::extendedPen(ByteReader& r) const {
  const Dib pattern = dib(r);
  const std::uint32_t style = r.u32();
  const double width = r.u32();
  const std::uint32_t brushStyle = r.u32();
  const Color color{r.u32()};
  const std::uint32_t hatch = r.u32();
  Pen pen = Pen::fromStyle(style, width, color);
  // Cosmetic pens are one pixel wide in any mapping.
  if (!pen.geometric) pen.width = 0;
  pen.ink = Brush::fromStyle(brushStyle, color, hatch);
  if (pattern.exists()) {
    pen.ink.kind = Brush::Kind::pattern;
    pen.ink.pattern = pattern.picture(0);
  }
  if (pen.style != Pen::kCustom || r.remaining() < 4) return pen;
  const std::size_t count = r.u32();
  constexpr std::size_t kMostDashes = 64;
  for (std::size_t i = 0; i < std::min(count, kMostDashes) && r.remaining() >= 4; ++i)
    pen.dashes.push_back(r.u32());
  return pen;
}

/// First number of the stock pens, brushes and fonts.
constexpr std::uint32_t kStock = 0x80000000;
constexpr std::uint32_t kStockNullBrush = 5;

static Brush stockBrush(std::uint32_t number) {
  constexpr std::uint32_t kGrays[] = {0xFFFFFF, 0xC0C0C0, 0x808080, 0x404040, 0x000000};
  if (number < kStockNullBrush) return {Brush::Kind::solid, {kGrays[number]}, 0, {}};
  return {Brush::Kind::none, {}, 0, {}};
}

Brush Playback::brushOf(std::uint32_t number) const {
  if (number >= kStock) return stockBrush(number - kStock);
  const auto found = objects_.find(number);
  const auto* const brush = found != objects_.end() ? std::get_if<Brush>(&found->second) : nullptr;
  return brush != nullptr ? *brush : stockBrush(kStockNullBrush);
}

void Playback::select(std::uint32_t number) {
  State& s = player_.state();
  if (number >= kStock) return selectStock(number - kStock);
  const auto found = objects_.find(number);
  if (found == objects_.end()) return;
  if (const auto* pen = std::get_if<Pen>(&found->second)) s.pen = *pen;
  if (const auto* brush = std::get_if<Brush>(&found->second)) s.brush = *brush;
  if (const auto* chosen = std::get_if<Font>(&found->second)) s.font = *chosen;
}

void Playback::selectStock(std::uint32_t number) {
  constexpr std::uint32_t kWhitePen = 6, kBlackPen = 7, kNullPen = 8, kFirstFont = 10, kLastFont = 17;
  State& s = player_.state();
  if (number <= kStockNullBrush) {
    s.brush = stockBrush(number);
  } else if (number == kWhitePen || number == kBlackPen) {
    s.pen = Pen{};
    s.pen.ink.color = {number == kWhitePen ? 0xFFFFFFU : 0U};
  } else if (number == kNullPen) {
    s.pen.style = Pen::kNone;
  } else if (number >= kFirstFont && number <= kLastFont) {
    s.font = Font{};
  }
}

Bytes Playback::part(std::size_t offset, std::size_t size) const {
  if (offset > record_.size() || size > record_.size() - offset) return {};
  return record_.subspan(offset, size);
}

Playback::Dib Playback::dib(ByteReader& r) const {
  const std::size_t headerAt = r.u32(), headerSize = r.u32(), pixelsAt = r.u32(), pixelsSize = r.u32();
  return {part(headerAt, headerSize), part(pixelsAt, pixelsSize)};
}

Bitmap Playback::Dib::picture(std::uint32_t colors) const {
  return exists() ? decodeDib(header, pixels, static_cast<DibColors>(colors)) : Bitmap();
}

}  // namespace kestrel::engine::emf
