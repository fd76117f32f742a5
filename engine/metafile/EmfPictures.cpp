// Records that draw bitmaps and gradients.

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

#include "EmfFields.h"
#include "EmfPlayback.h"
#include "EmfRecords.h"
#include "MetafileDib.h"

namespace kestrel::engine::emf {

using namespace metafile;

namespace {

constexpr std::uint32_t kCopy = 0xCC0020;

/// Makes the pixels of this color transparent.
void clearColor(Bitmap& bitmap, Color color) {
  const Pixels pixels = bitmap.writable();
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    std::uint8_t* p = pixels.row(y);
    for (std::int32_t x = 0; x < pixels.width; ++x, p += 4) {
      if ((p[0] | p[1] << 8 | p[2] << 16) == static_cast<int>(color.value & 0xFFFFFF)) std::memset(p, 0, 4);
    }
  }
}

void invert(Bitmap& mask) {
  const Pixels pixels = mask.writable();
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    std::uint8_t* p = pixels.row(y);
    for (std::int32_t x = 0; x < pixels.width; ++x, p += 4) {
      for (int i = 0; i < 3; ++i) p[i] = static_cast<std::uint8_t>(~p[i]);
    }
  }
}

Rect boxOf(Point at, Point size) { return {at.x, at.y, at.x + size.x, at.y + size.y}; }

/// The source rectangle after the record's source transform.
Rect boxOf(Point at, Point size, const cairo_matrix_t& transform) {
  Point end{at.x + size.x, at.y + size.y};
  cairo_matrix_transform_point(&transform, &at.x, &at.y);
  cairo_matrix_transform_point(&transform, &end.x, &end.y);
  return {at.x, at.y, end.x, end.y};
}

}  // namespace

void Playback::playPicture(std::uint32_t type, ByteReader& r) {
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
    case kMaskBlt:
    case kParallelogramBlt:
      return maskBlit(type, r);
    case kGradientFill:
      return gradientFill(r);
    default:
      return;
  }
}

void Playback::stretchDib(ByteReader& r) {
  r.skip(16);
  const Point at = readPoint(r), from = readPoint(r), size = readPoint(r);
  const Dib source = dib(r);
  Player::Picture picture;
  picture.bitmap = source.picture(r.u32());
  picture.operation = r.u32();
  const Point targetSize = readPoint(r);
  // In a bottom-up bitmap the source rows are counted from the bottom.
  const double top = isTopDown(source.header) ? from.y : picture.bitmap.height() - from.y - size.y;
  picture.source = boxOf({from.x, top}, size);
  player_.picture(boxOf(at, targetSize), picture);
}

/// Draws some rows of a bitmap, unscaled.
void Playback::setDibToDevice(ByteReader& r) {
  r.skip(16);
  const Point at = readPoint(r), from = readPoint(r), size = readPoint(r);
  const Dib source = dib(r);
  const std::uint32_t colors = r.u32(), first = r.u32(), rows = r.u32();
  if (!source.exists() || source.header.size() < 40) return;
  // The header has the height of the whole bitmap; the record holds only `rows` of them.
  std::vector<std::uint8_t> header(source.header.begin(), source.header.end());
  ByteReader heightAt(Bytes(header).subspan(8, 4));
  const std::int64_t height = std::abs(std::int64_t{heightAt.i32()});
  const bool some = rows > 0 && rows < height;
  if (some) {
    const std::int64_t stored = isTopDown(header) ? -std::int64_t{rows} : std::int64_t{rows};
    for (unsigned i = 0; i < 4; ++i) header[8 + i] = static_cast<std::uint8_t>(stored >> 8 * i);
  }
  Player::Picture picture;
  picture.bitmap = decodeDib(header, source.pixels, static_cast<DibColors>(colors));
  if (picture.bitmap.empty()) return;
  // The target's upper left corner is that of the part; rows missing in the record are not drawn.
  const double top = static_cast<double>(height) - from.y - size.y;
  const double firstRow = some ? static_cast<double>(height) - first - rows : 0;
  const double width = size.x, held = picture.bitmap.height();
  const double begin = std::max(top, firstRow), end = std::min(top + size.y, firstRow + held);
  if (begin >= end) return;
  picture.source = {from.x, begin - firstRow, from.x + width, end - firstRow};
  player_.picture(Rect{at.x, at.y + begin - top, at.x + width, at.y + end - top}, picture);
}

void Playback::blit(std::uint32_t type, ByteReader& r) {
  r.skip(16);
  const Point at = readPoint(r), size = readPoint(r);
  const std::uint32_t operation = r.u32();
  const Point from = readPoint(r);
  const cairo_matrix_t transform = readTransform(r);
  r.skip(4);
  const std::uint32_t colors = r.u32();
  const Dib source = dib(r);
  const Point sourceSize = type != kBitBlt && r.remaining() >= 8 ? readPoint(r) : size;
  Player::Picture picture;
  picture.source = boxOf(from, sourceSize, transform);
  picture.operation = operation;
  if (type == kAlphaBlend) {
    const bool ownAlpha = (operation >> 24 & 1) != 0;
    picture.bitmap = ownAlpha && source.exists() ? decodeDibWithAlpha(source.header, source.pixels)
                                                 : source.picture(colors);
    picture.opacity = (operation >> 16 & 0xFF) / 255.0;
    picture.operation = kCopy;
  } else {
    picture.bitmap = source.picture(colors);
  }
  if (type == kBitBlt) picture.source = withinBitmap(picture.source, picture.bitmap);
  if (type == kTransparentBlt) {
    if (!picture.bitmap.empty()) clearColor(picture.bitmap, {operation});
    picture.operation = kCopy;
  }
  player_.picture(boxOf(at, size), picture);
}

void Playback::maskBlit(std::uint32_t type, ByteReader& r) {
  r.skip(16);
  const bool skewed = type == kParallelogramBlt;
  Player::Corners corners;
  Point size;
  std::uint32_t operation = kCopy;
  if (skewed) {
    for (Point& corner : corners) corner = readPoint(r);
  } else {
    const Point at = readPoint(r);
    size = readPoint(r);
    corners = {at, {at.x + size.x, at.y}, {at.x, at.y + size.y}};
    operation = r.u32();
  }
  const Point from = readPoint(r);
  if (skewed) size = readPoint(r);
  const cairo_matrix_t transform = readTransform(r);
  r.skip(4);
  const std::uint32_t colors = r.u32();
  const Dib source = dib(r);
  const Point maskFrom = readPoint(r);
  const std::uint32_t maskColors = r.u32();
  Player::Picture picture;
  picture.bitmap = source.picture(colors);
  picture.source = boxOf(from, size, transform);
  picture.mask = dib(r).picture(maskColors);
  picture.maskOffset = {maskFrom.x - picture.source.left, maskFrom.y - picture.source.top};
  picture.operation = operation & 0xFFFFFF;
  player_.picture(corners, picture);
  // The area outside the mask is drawn with the background operation.
  if (picture.mask.empty() || skewed) return;
  invert(picture.mask);
  picture.operation = operation >> 8 & 0xFF0000;
  player_.picture(corners, picture);
}

void Playback::gradientFill(ByteReader& r) {
  constexpr std::uint32_t kDown = 1, kTriangles = 2;
  r.skip(16);
  const std::size_t cornerCount = r.u32(), shapeCount = r.u32();
  const std::uint32_t mode = r.u32();
  if (cornerCount > r.remaining() / 16 || mode > kTriangles) return;
  std::vector<ColoredPoint> corners(cornerCount);
  for (ColoredPoint& corner : corners) {
    corner.at = readPoint(r);
    for (int i = 0; i < 3; ++i) corner.color[static_cast<std::size_t>(i)] = (r.u16() >> 8) / 255.0;
    corner.color[3] = 1;
    r.skip(2);
  }
  const std::size_t each = mode == kTriangles ? 3 : 2;
  for (std::size_t shape = 0; shape < shapeCount && r.remaining() >= 4 * each; ++shape) {
    std::array<std::size_t, 3> at{};
    bool known = true;
    for (std::size_t i = 0; i < each; ++i) {
      at[i] = r.u32();
      known = known && at[i] < corners.size();
    }
    if (!known) continue;
    if (mode == kTriangles) {
      player_.gradientTriangle({corners[at[0]], corners[at[1]], corners[at[2]]});
    } else {
      player_.gradientRect(corners[at[0]], corners[at[1]], mode == kDown);
    }
  }
}

}  // namespace kestrel::engine::emf
