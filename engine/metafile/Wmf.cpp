#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "Metafile.h"
#include "MetafileDib.h"
#include "MetafilePlayer.h"
#include "Wmf.h"
#include "WmfPlayback.h"
#include "engine/codecs/common/ByteReader.h"
#include "engine/codecs/common/ByteWriter.h"
#include "engine/codecs/common/DecodeErrors.h"

// Windows metafile: an optional "placeable" header with a frame and its units per inch, a header, and records
// with a size in words, a number and parameters, mostly in reverse order. It is played at 96 pixels per inch;
// without a frame a window unit is a pixel.

namespace kestrel::engine::wmf {
namespace {

using namespace metafile;

constexpr std::uint32_t kPlaceable = 0x9AC6CDD7;
constexpr std::size_t kPlaceableSize = 22;
constexpr std::size_t kHeaderSize = 18;

/// Calls `visit(number, parameters)` for each record; returns true if the end record was reached.
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

/// The frame in the placeable header.
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

/// Without a placeable header the first window is the frame, one pixel per unit, reduced if a side is longer
/// than `longest`.
Frame windowFrame(Bytes records, double longest) {
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
  const double width = std::abs(size.x), height = std::abs(size.y);
  const double scale = std::min(1.0, longest / std::max({width, height, 1.0}));
  const auto scaled = [scale](double side) { return side > 0 ? std::max(1.0, side * scale) : 0; };
  return {origin.value_or(Point{}), size, scaled(width), scaled(height)};
}

}  // namespace

bool probe(Bytes data) { return isPlaceable(data) || isHeader(data); }

Drawing draw(Bytes data, Work& work, double longestWithoutMeasure) {
  if (!probe(data)) refusePicture("The WMF file is damaged: its header is missing.");
  const bool placeable = isPlaceable(data);
  const Bytes records = data.subspan(std::min(data.size(), (placeable ? kPlaceableSize : 0) + kHeaderSize));
  const Frame frame = placeable ? placeableFrame(data) : windowFrame(records, longestWithoutMeasure);
  const DrawingSize size = sizeToPlay(std::round(frame.width), std::round(frame.height), data.size());

  Canvas canvas(size.width, size.height, work);
  Player player(canvas, {1, 0, 0, 1, 0, 0});
  constexpr std::uint32_t kWindowOnViewport = 8;
  player.state().mapping = {kWindowOnViewport,
                            frame.origin,
                            frame.extent,
                            {},
                            {static_cast<double>(size.width), static_cast<double>(size.height)},
                            {1, 0, 0, 1, 0, 0}};
  Playback playback(player);
  const bool complete =
      eachRecord(records, [&](std::uint16_t number, Bytes parameters) { playback.play(number, parameters); });
  player.showHeldMask();
  return {canvas.finish(), complete, size};
}

Decoded decode(Bytes data) {
  constexpr double kLongestWithoutMeasure = 1024;
  Work work(data.size());
  return decodedFrom(draw(data, work, kLongestWithoutMeasure), work);
}

/// Writes the picture as one bitmap record in a placeable file with 96 units per inch.
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
