#pragma once

#include <bit>
#include <vector>

#include "MetafilePlayer.h"
#include "engine/codecs/common/ByteReader.h"
#include "engine/codecs/common/DecodeErrors.h"

// Readers for the fields of EMF records.

namespace kestrel::engine::emf {

inline metafile::Point readPoint(ByteReader& r) {
  const double x = r.i32();
  return {x, static_cast<double>(r.i32())};
}

inline metafile::Point readPoint16(ByteReader& r) {
  const double x = r.i16();
  return {x, static_cast<double>(r.i16())};
}

inline metafile::Rect readRect(ByteReader& r) {
  const metafile::Point a = readPoint(r), b = readPoint(r);
  return {a.x, a.y, b.x, b.y};
}

/// Raises RuntimeError 481 if the record has fewer points.
inline std::vector<metafile::Point> readPoints(ByteReader& r, std::size_t count, bool narrow) {
  if (count > r.remaining() / (narrow ? 4 : 8)) refusePicture("The record holds fewer points than it says.");
  std::vector<metafile::Point> result(count);
  for (metafile::Point& p : result) p = narrow ? readPoint16(r) : readPoint(r);
  return result;
}

inline double readReal(ByteReader& r) { return static_cast<double>(std::bit_cast<float>(r.u32())); }

inline cairo_matrix_t readTransform(ByteReader& r) {
  cairo_matrix_t m{};
  for (double* value : {&m.xx, &m.yx, &m.xy, &m.yy, &m.x0, &m.y0}) *value = readReal(r);
  return m;
}

/// Reads a region: a header with a count, then the rectangles.
inline std::vector<metafile::Rect> readRegion(ByteReader& r) {
  r.skip(8);
  const std::size_t count = r.u32();
  r.skip(20);
  if (count > r.remaining() / 16) refusePicture("The region holds fewer rectangles than it says.");
  std::vector<metafile::Rect> rects(count);
  for (metafile::Rect& each : rects) each = readRect(r);
  return rects;
}

}  // namespace kestrel::engine::emf
