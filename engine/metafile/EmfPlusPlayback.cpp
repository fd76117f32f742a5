#include "EmfPlusPlayback.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "EmfPlusCurves.h"
#include "EmfPlusFields.h"
#include "EmfPlusRecords.h"
#include "EmfRecords.h"
#include "MetafileGlyphs.h"
#include "engine/parallel/Cancellation.h"

namespace kestrel::engine::emf {

using namespace plus;

namespace {

constexpr std::uint32_t kSignature = 0x2B464D45;  // "EMF+"
constexpr std::size_t kMostSaved = 1000;

/// Whether a plain record draws.
bool draws(std::uint32_t type) {
  return (type >= emf::kPolyBezier && type <= emf::kPolyPolygon) || type == emf::kSetPixel ||
         (type >= emf::kAngleArc && type <= emf::kPie) || (type >= emf::kLineTo && type <= emf::kPolyDraw) ||
         (type >= emf::kFillPath && type <= emf::kStrokePath) ||
         (type >= emf::kFillRegion && type <= emf::kPaintRegion) ||
         (type >= emf::kStretchBlt && type <= emf::kStretchDib) ||
         (type >= emf::kTextA && type <= emf::kPolyDraw16) || type == emf::kPolyTextA ||
         type == emf::kPolyTextW || type == emf::kSmallText || type == emf::kAlphaBlend ||
         type == emf::kTransparentBlt || type == emf::kGradientFill;
}

}  // namespace

bool isPlusComment(Bytes comment) { return comment.size() >= 4 && ByteReader(comment).u32() == kSignature; }

bool plusIsTheDrawing(Bytes file) {
  constexpr std::size_t kRecordHeader = 8, kCommentHeader = 12;
  constexpr std::uint16_t kTwice = 1;
  bool plus = false;
  for (std::size_t at = 0; at + kRecordHeader <= file.size();) {
    ByteReader r(file.subspan(at));
    const std::uint32_t type = r.u32(), size = r.u32();
    if (size < kRecordHeader || size > file.size() - at || type == kEnd) break;
    if (type == kComment && !plus && size >= kCommentHeader + 8) {
      r.skip(4);
      plus = isPlusComment(file.subspan(at + kCommentHeader));
      r.skip(4);
      // The header command states whether plain records hold the drawing, too.
      if (plus && (r.u16() != plus::kHeader || (r.u16() & kTwice) == 0)) return true;
    }
    if (draws(type)) {
      if (plus) return false;
    }
    at += size;
  }
  return plus;
}

bool PlusPlayback::play(Bytes commands) {
  constexpr std::size_t kHeaderSize = 12;
  painter_.showClip();
  bool plain = false;
  for (std::size_t at = 0; at + kHeaderSize <= commands.size() && !painter_.canvas().work().exhausted;) {
    checkCanceled();
    ByteReader r(commands.subspan(at));
    Command command{r.u16(), r.u16(), {}};
    const std::size_t size = r.u32(), dataSize = r.u32();
    if (size < kHeaderSize || size > commands.size() - at) break;
    command.data = commands.subspan(at + kHeaderSize, std::min(dataSize, size - kHeaderSize));
    plain = command.type == kPlainRecords;
    try {
      play(command);
    } catch (const RuntimeError& error) {
      if (error.Number() != err::kInvalidPicture) throw;
    }
    at += size;
  }
  return plain;
}

void PlusPlayback::play(const Command& command) {
  ByteReader r(command.data);
  if (!playState(command, r) && !playTransform(command, r) && !playClip(command, r) &&
      !playFill(command, r) && !playStroke(command, r))
    playPictureOrText(command, r);
}

bool PlusPlayback::playState(const Command& command, ByteReader& r) {
  State& s = painter_.state();
  switch (command.type) {
    case plus::kHeader: {
      r.skip(8);
      const std::uint32_t resolution = r.u32();
      constexpr std::uint32_t kHighest = 100'000;
      if (resolution > 0 && resolution < kHighest) painter_.setResolution(resolution);
      return true;
    }
    case kObject:
      object(command, r);
      return true;
    case kSetRenderingOrigin: {
      const double x = r.i32();
      s.hatchOrigin = {x, static_cast<double>(r.i32())};
      return true;
    }
    case kSetCompositingMode:
      s.replaces = (command.flags & kIdMask) == 1;
      return true;
    case plus::kSave:
    case kBeginContainerNoParams:
      save(r.u32());
      return true;
    case plus::kRestore:
    case kEndContainer:
      restore(r.u32());
      return true;
    case kBeginContainer:
      beginContainer(command, r);
      return true;
    default:
      return false;
  }
}

void PlusPlayback::save(std::uint32_t index) {
  if (saved_.size() < kMostSaved) saved_.emplace_back(index, painter_.state());
}

void PlusPlayback::restore(std::uint32_t index) {
  const auto found =
      std::find_if(saved_.rbegin(), saved_.rend(), [&](const auto& each) { return each.first == index; });
  if (found == saved_.rend()) return;
  painter_.state() = found->second;
  saved_.erase(std::prev(found.base()), saved_.end());
  painter_.showClip();
}

/// Begins a nested container, whose source rectangle is mapped to the destination rectangle.
void PlusPlayback::beginContainer(const Command& command, ByteReader& r) {
  const Rect to = readRealRect(r), from = readRealRect(r);
  save(r.u32());
  State& s = painter_.state();
  const double unit = painter_.pixelsPer(command.flags & kIdMask);
  const double width = (from.right - from.left) * unit, height = (from.bottom - from.top) * unit;
  if (!(std::abs(width) > 0) || !(std::abs(height) > 0)) return;
  const double sx = (to.right - to.left) / width, sy = (to.bottom - to.top) / height;
  const cairo_matrix_t fit{sx, 0, 0, sy, to.left - from.left * unit * sx, to.top - from.top * unit * sy};
  const double page = s.pageScale * painter_.pixelsPer(s.pageUnit);
  const cairo_matrix_t pageScale{page, 0, 0, page, 0, 0};
  cairo_matrix_t outer = s.world;
  cairo_matrix_multiply(&outer, &outer, &pageScale);
  cairo_matrix_multiply(&outer, &outer, &s.container);
  cairo_matrix_multiply(&s.container, &fit, &outer);
  cairo_matrix_init_identity(&s.world);
  s.pageUnit = 1;
  s.pageScale = 1;
}

bool PlusPlayback::playTransform(const Command& command, ByteReader& r) {
  State& s = painter_.state();
  const auto multiply = [&](const cairo_matrix_t& change) {
    if ((command.flags & kAppended) != 0) {
      cairo_matrix_multiply(&s.world, &s.world, &change);
    } else {
      cairo_matrix_multiply(&s.world, &change, &s.world);
    }
  };
  switch (command.type) {
    case plus::kSetWorld:
      s.world = readTransform(r);
      return true;
    case kResetWorld:
      cairo_matrix_init_identity(&s.world);
      return true;
    case kMultiplyWorld:
      multiply(readTransform(r));
      return true;
    case kTranslateWorld: {
      const Point by = readRealPoint(r);
      multiply({1, 0, 0, 1, by.x, by.y});
      return true;
    }
    case kScaleWorld: {
      const Point by = readRealPoint(r);
      multiply({by.x, 0, 0, by.y, 0, 0});
      return true;
    }
    case kRotateWorld: {
      cairo_matrix_t turn;
      cairo_matrix_init_rotate(&turn, readReal(r) * std::numbers::pi / 180);
      multiply(turn);
      return true;
    }
    case kSetPage: {
      const double scale = readReal(r);
      s.pageUnit = command.flags & kIdMask;
      s.pageScale = std::isfinite(scale) && scale != 0 ? scale : 1;
      return true;
    }
    default:
      return false;
  }
}

bool PlusPlayback::playClip(const Command& command, ByteReader& r) {
  constexpr Combine kHow[] = {Combine::replace,   Combine::intersect, Combine::unite,
                              Combine::exclusive, Combine::exclude,   Combine::complement};
  const std::uint32_t mode = command.flags >> 8 & 0xF;
  const Combine how = mode < std::size(kHow) ? kHow[mode] : Combine::replace;
  const std::uint32_t id = command.flags & kIdMask;
  switch (command.type) {
    case kResetClip:
      painter_.state().clip.clear();
      painter_.showClip();
      return true;
    case kSetClipRect:
      painter_.combineClip(pathOfRect(readRealRect(r)), how);
      return true;
    case kSetClipPath:
      painter_.combineClip(objectOf<Path>(id), how);
      return true;
    case kSetClipRegion:
      painter_.combineClip(objectOf<Region>(id), how);
      return true;
    case plus::kOffsetClip:
      painter_.moveClip(readRealPoint(r));
      return true;
    default:
      return false;
  }
}

Brush PlusPlayback::brushOf(const Command& command, std::uint32_t id) const {
  if ((command.flags & kColorInstead) == 0) return objectOf<Brush>(id);
  Brush brush;
  brush.kind = Brush::Kind::solid;
  brush.color = {id};
  return brush;
}

namespace {

std::vector<Rect> readRects(ByteReader& r, bool compressed) {
  const std::size_t count = r.u32();
  if (count > r.remaining() / (compressed ? 8 : 16))
    refusePicture("The record holds fewer boxes than it says.");
  std::vector<Rect> rects(count);
  for (Rect& rect : rects) rect = readAnyRect(r, compressed);
  return rects;
}

std::vector<Point> readCountedPoints(ByteReader& r, std::uint32_t flags) {
  const std::size_t count = r.u32();
  return readAnyPoints(r, count, flags);
}

}  // namespace

bool PlusPlayback::playFill(const Command& command, ByteReader& r) {
  const bool compressed = (command.flags & kCompressed) != 0;
  const std::uint32_t id = command.flags & kIdMask;
  switch (command.type) {
    case kClear:
      painter_.clear({r.u32()});
      return true;
    case kFillRects: {
      const Brush brush = brushOf(command, r.u32());
      for (const Rect& rect : readRects(r, compressed)) painter_.fill(pathOfRect(rect), brush);
      return true;
    }
    case kFillPolygon: {
      const Brush brush = brushOf(command, r.u32());
      painter_.fill(pathOfPoints(readCountedPoints(r, command.flags), true), brush);
      return true;
    }
    case kFillEllipse: {
      const Brush brush = brushOf(command, r.u32());
      painter_.fill(pathOfEllipse(readAnyRect(r, compressed)), brush);
      return true;
    }
    case kFillPie: {
      const Brush brush = brushOf(command, r.u32());
      const double start = readReal(r), sweep = readReal(r);
      painter_.fill(pathOfArc(readAnyRect(r, compressed), start, sweep, ArcKind::pie), brush);
      return true;
    }
    case plus::kFillRegion:
      painter_.fill(objectOf<Region>(id), brushOf(command, r.u32()));
      return true;
    case plus::kFillPath:
      painter_.fill(objectOf<Path>(id), brushOf(command, r.u32()));
      return true;
    case kFillClosedCurve: {
      const Brush brush = brushOf(command, r.u32());
      const double tension = readReal(r);
      Path path = pathOfCurve(readCountedPoints(r, command.flags), tension, true, 0, 0);
      path.winding = (command.flags & kWinding) != 0;
      painter_.fill(path, brush);
      return true;
    }
    default:
      return false;
  }
}

bool PlusPlayback::playStroke(const Command& command, ByteReader& r) {
  const bool compressed = (command.flags & kCompressed) != 0;
  const Pen& pen = objectOf<Pen>(command.flags & kIdMask);
  switch (command.type) {
    case kDrawRects:
      for (const Rect& rect : readRects(r, compressed)) painter_.stroke(pathOfRect(rect), pen);
      return true;
    case kDrawLines: {
      const bool closed = (command.flags & kClosed) != 0;
      painter_.stroke(pathOfPoints(readCountedPoints(r, command.flags), closed), pen);
      return true;
    }
    case kDrawEllipse:
      painter_.stroke(pathOfEllipse(readAnyRect(r, compressed)), pen);
      return true;
    case kDrawPie:
    case kDrawArc: {
      const double start = readReal(r), sweep = readReal(r);
      const ArcKind kind = command.type == kDrawPie ? ArcKind::pie : ArcKind::open;
      painter_.stroke(pathOfArc(readAnyRect(r, compressed), start, sweep, kind), pen);
      return true;
    }
    case kDrawPath:
      painter_.stroke(objectOf<Path>(command.flags & kIdMask), objectOf<Pen>(r.u32()));
      return true;
    case kDrawClosedCurve: {
      const double tension = readReal(r);
      painter_.stroke(pathOfCurve(readCountedPoints(r, command.flags), tension, true, 0, 0), pen);
      return true;
    }
    case kDrawCurve: {
      const double tension = readReal(r);
      const std::size_t first = r.u32(), count = r.u32();
      painter_.stroke(pathOfCurve(readCountedPoints(r, command.flags), tension, false, first, count), pen);
      return true;
    }
    case kDrawBeziers:
      painter_.stroke(pathOfBeziers(readCountedPoints(r, command.flags)), pen);
      return true;
    default:
      return false;
  }
}

void PlusPlayback::playPictureOrText(const Command& command, ByteReader& r) {
  switch (command.type) {
    case kDrawImage:
      return drawImage(command, r, false);
    case kDrawImagePoints:
      return drawImage(command, r, true);
    case kDrawString:
      return drawString(command, r);
    case kDrawDriverString:
      return drawDriverString(command, r);
    default:
      return;
  }
}

void PlusPlayback::drawImage(const Command& command, ByteReader& r, bool corners) {
  r.skip(8);
  const Rect source = readRealRect(r);
  std::array<Point, 3> places;
  if (corners) {
    const std::vector<Point> points = readCountedPoints(r, command.flags);
    if (points.size() < places.size()) return;
    std::copy_n(points.begin(), places.size(), places.begin());
  } else {
    const Rect box = readAnyRect(r, (command.flags & kCompressed) != 0);
    places = {Point{box.left, box.top}, Point{box.right, box.top}, Point{box.left, box.bottom}};
  }
  painter_.picture(objectOf<Image>(command.flags & kIdMask).bitmap, source, places);
}

namespace {

std::vector<std::uint16_t> readCodes(ByteReader& r, std::size_t count) {
  if (count > r.remaining() / 2) refusePicture("The text is shorter than it says.");
  std::vector<std::uint16_t> codes(count);
  for (std::uint16_t& code : codes) code = r.u16();
  return codes;
}

}  // namespace

void PlusPlayback::drawString(const Command& command, ByteReader& r) {
  const Brush brush = brushOf(command, r.u32());
  const std::uint32_t format = r.u32();
  const std::size_t length = r.u32();
  const Rect box = readRealRect(r);
  std::vector<std::string> letters;
  metafile::Font any;
  const Font& font = objectOf<Font>(command.flags & kIdMask);
  any.face = font.face;
  // Keep line breaks: `lettersOf` turns control characters into spaces.
  std::vector<std::uint16_t> line;
  const auto flush = [&] {
    for (std::string& letter : metafile::lettersOf(std::exchange(line, {}), any))
      letters.push_back(std::move(letter));
  };
  for (const std::uint16_t code : readCodes(r, length)) {
    if (code == '\n') {
      flush();
      letters.emplace_back("\n");
    } else if (code != '\r') {
      line.push_back(code);
    }
  }
  flush();
  painter_.text(letters, font, objectOf<StringFormat>(format), box, brush);
}

void PlusPlayback::drawDriverString(const Command& command, ByteReader& r) {
  constexpr std::uint32_t kCodes = 1;
  const Brush brush = brushOf(command, r.u32());
  const std::uint32_t options = r.u32();
  const bool hasTransform = r.u32() != 0;
  const std::size_t count = r.u32();
  const std::vector<std::uint16_t> codes = readCodes(r, count);
  const std::size_t transformSize = hasTransform ? 24 : 0;
  std::vector<Point> places;
  while (places.size() < count && r.remaining() >= 8 + transformSize) places.push_back(readRealPoint(r));
  const cairo_matrix_t transform =
      hasTransform && r.remaining() >= transformSize ? readTransform(r) : cairo_matrix_t{1, 0, 0, 1, 0, 0};
  const Font& font = objectOf<Font>(command.flags & kIdMask);
  metafile::Font any;
  any.face = font.face;
  painter_.placedText(
      (options & kCodes) != 0 ? metafile::lettersOf(codes, any) : metafile::lettersOfGlyphs(codes, any),
      places, font, transform, brush);
}

/// Collects an object split over several commands, each with the total size.
void PlusPlayback::object(const Command& command, ByteReader& r) {
  const std::uint32_t id = command.flags & kIdMask, type = command.flags >> 8 & 0x7F;
  const bool goesOn = (command.flags & kGoesOn) != 0;
  if (!pending_.empty() && (pendingId_ != id || pendingType_ != type)) pending_.clear();
  if (!goesOn && pending_.empty()) return keepObject(id, type, command.data);
  if (goesOn) pendingSize_ = r.u32();
  pendingId_ = id;
  pendingType_ = type;
  const Bytes part = r.take(r.remaining());
  pending_.insert(pending_.end(), part.begin(), part.end());
  if (goesOn && pending_.size() < pendingSize_) return;
  const std::vector<std::uint8_t> whole = std::exchange(pending_, {});
  keepObject(id, type, whole);
}

void PlusPlayback::keepObject(std::uint32_t id, std::uint32_t type, Bytes data) {
  objects_[id % objects_.size()] = readObject(type, data, painter_.canvas().work());
}

}  // namespace kestrel::engine::emf
