#pragma once

#include <vector>

#include "EmfFields.h"
#include "EmfPlusObjects.h"
#include "engine/codecs/common/ByteReader.h"

// Readers for the fields of EMF+ commands.

namespace kestrel::engine::emf::plus {

constexpr std::uint32_t kRelative = 0x0800, kCompressed = 0x4000;

inline Point readRealPoint(ByteReader& r) {
  const double x = readReal(r);
  return {x, readReal(r)};
}

/// A rectangle stored as corner and size.
inline Rect readRealRect(ByteReader& r) {
  const Point at = readRealPoint(r), size = readRealPoint(r);
  return {at.x, at.y, at.x + size.x, at.y + size.y};
}

inline Rect readAnyRect(ByteReader& r, bool compressed) {
  if (!compressed) return readRealRect(r);
  const Point at = readPoint16(r), size = readPoint16(r);
  return {at.x, at.y, at.x + size.x, at.y + size.y};
}

/// An integer in one byte, or in two if the highest bit of the first is set.
inline double readShortNumber(ByteReader& r) {
  const int first = r.u8();
  if ((first & 0x80) == 0) return (first & 0x40) != 0 ? first - 0x80 : first;
  const int both = (first & 0x7F) << 8 | r.u8();
  return (both & 0x4000) != 0 ? both - 0x8000 : both;
}

/// Reads points in the format of the command's flags: relative, 16-bit integers or floats. Raises
/// RuntimeError 481 if there are fewer.
inline std::vector<Point> readAnyPoints(ByteReader& r, std::size_t count, std::uint32_t flags) {
  const std::size_t least = (flags & kRelative) != 0 ? 2 : (flags & kCompressed) != 0 ? 4 : 8;
  if (count > r.remaining() / least) refusePicture("The record holds fewer points than it says.");
  std::vector<Point> points(count);
  Point last;
  for (Point& p : points) {
    if ((flags & kRelative) != 0) {
      last.x += readShortNumber(r);
      last.y += readShortNumber(r);
      p = last;
    } else {
      p = (flags & kCompressed) != 0 ? readPoint16(r) : readRealPoint(r);
    }
  }
  return points;
}

}  // namespace kestrel::engine::emf::plus
