#include <algorithm>
#include <cmath>
#include <vector>

#include "Emf.h"
#include "EmfPlayback.h"
#include "EmfRecords.h"
#include "Metafile.h"
#include "MetafileDib.h"
#include "engine/codecs/common/ByteReader.h"
#include "engine/codecs/common/ByteWriter.h"
#include "engine/codecs/common/DecodeErrors.h"

// Enhanced metafile: records with type, size and parameters. The header record states the frame in hundredths
// of a millimeter. The file is played at 96 pixels per inch.

namespace kestrel::engine::emf {
namespace {

using metafile::kPixelsPerInch;
constexpr double kPixelsPerHundredth = kPixelsPerInch / 2540;
constexpr std::uint32_t kSignature = 0x464D4520;  // " EMF"

struct Frame {
  double width = 0, height = 0;
  cairo_matrix_t device{1, 0, 0, 1, 0, 0};
};

/// The picture's size in pixels, and the transform from the reference device's units to pixels.
Frame readFrame(Bytes data) {
  ByteReader r(data);
  r.skip(8);
  const double boundsLeft = r.i32(), boundsTop = r.i32(), boundsRight = r.i32(), boundsBottom = r.i32();
  const double left = r.i32(), top = r.i32(), right = r.i32(), bottom = r.i32();
  r.seek(72);
  const double deviceWidth = r.i32(), deviceHeight = r.i32(), millimetersWide = r.i32(),
               millimetersHigh = r.i32();

  Frame frame;
  const bool known = deviceWidth > 0 && deviceHeight > 0 && millimetersWide > 0 && millimetersHigh > 0;
  const double sx = known ? kPixelsPerHundredth * 100 * millimetersWide / deviceWidth : 1;
  const double sy = known ? kPixelsPerHundredth * 100 * millimetersHigh / deviceHeight : 1;
  double width = (right - left) * kPixelsPerHundredth, height = (bottom - top) * kPixelsPerHundredth;
  frame.device = {sx, 0, 0, sy, -left * kPixelsPerHundredth, -top * kPixelsPerHundredth};
  const double centerX = (boundsLeft + boundsRight) / 2 * sx + frame.device.x0;
  const double centerY = (boundsTop + boundsBottom) / 2 * sy + frame.device.y0;
  const bool isEmpty = boundsRight < boundsLeft || boundsBottom < boundsTop;
  const bool across = width > 0 && centerX >= 0 && centerX <= width;
  const bool down = height > 0 && centerY >= 0 && centerY <= height;
  if (isEmpty && width > 0 && height > 0) {
    // An empty drawing: only the frame counts.
  } else if (across && height > 0 && centerY < 0 && -centerY <= height && top == 0) {
    // Drawn with an upward vertical axis, which the file does not state: the drawing is above its frame, and
    // inside it when mirrored.
    frame.device.yy = -sy;
  } else if (!across || !down) {
    // Some programs write no frame, or one outside the drawing; the bounds of the drawing are correct then.
    width = (boundsRight - boundsLeft + 1) * sx;
    height = (boundsBottom - boundsTop + 1) * sy;
    frame.device.x0 = -boundsLeft * sx;
    frame.device.y0 = -boundsTop * sy;
  }
  frame.width = std::max(0.0, std::round(width));
  frame.height = std::max(0.0, std::round(height));
  return frame;
}

}  // namespace

bool probe(Bytes data) {
  if (data.size() < 88) return false;
  ByteReader reader(data);
  if (reader.u32() != kHeader) return false;
  reader.seek(40);
  return reader.u32() == kSignature;
}

metafile::Drawing draw(Bytes data, metafile::Work& work) {
  if (!probe(data)) refusePicture("The EMF file is damaged: its header is missing.");
  const Frame frame = readFrame(data);
  const metafile::DrawingSize size = metafile::sizeToPlay(frame.width, frame.height, data.size());
  metafile::Canvas canvas(size.width, size.height, work);
  cairo_matrix_t device{};
  cairo_matrix_init_scale(&device, size.scale, size.scale);
  cairo_matrix_multiply(&device, &frame.device, &device);
  metafile::Player player(canvas, device, size.scale);
  const bool complete = Playback(player, data).run();
  player.showHeldMask();
  return {canvas.finish(), complete, size};
}

Decoded decode(Bytes data) {
  metafile::Work work(data.size());
  return decodedFrom(draw(data, work), work);
}

/// Writes the picture as one bitmap record, at 96 pixels per inch.
std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata&, const EncodeOptions&) {
  constexpr std::size_t kHeaderSize = 88, kBitmapRecord = 80, kEndSize = 20;
  const auto width = static_cast<std::size_t>(bitmap.width()),
             height = static_cast<std::size_t>(bitmap.height());
  const std::vector<std::uint8_t> dib = metafile::encodeDib(bitmap);
  const std::size_t padded = (dib.size() + 3) / 4 * 4;
  constexpr std::size_t kDibHeader = 40;
  const auto hundredths = [](std::size_t pixels) {
    return static_cast<std::size_t>(std::lround(static_cast<double>(pixels) / kPixelsPerHundredth));
  };

  ByteWriter writer;
  writer.u32(kHeader);
  writer.u32(kHeaderSize);
  for (const std::size_t value : {std::size_t{0}, std::size_t{0}, width - 1, height - 1}) writer.u32(value);
  for (const std::size_t value : {std::size_t{0}, std::size_t{0}, hundredths(width), hundredths(height)})
    writer.u32(value);
  writer.u32(kSignature);
  writer.u32(0x10000);
  writer.u32(kHeaderSize + kBitmapRecord + padded + kEndSize);
  writer.u32(3);  // records
  writer.u16(1);  // objects
  writer.zeros(14);
  // A device of 96 pixels per inch.
  for (const std::size_t value : {960U, 960U, 254U, 254U}) writer.u32(value);

  writer.u32(kStretchDib);
  writer.u32(kBitmapRecord + padded);
  for (const std::size_t value : {std::size_t{0}, std::size_t{0}, width - 1, height - 1}) writer.u32(value);
  for (const std::size_t value :
       {std::size_t{0}, std::size_t{0}, std::size_t{0}, std::size_t{0}, width, height})
    writer.u32(value);
  writer.u32(kBitmapRecord);
  writer.u32(kDibHeader);
  writer.u32(kBitmapRecord + kDibHeader);
  writer.u32(dib.size() - kDibHeader);
  writer.u32(0);
  writer.u32(0xCC0020);
  writer.u32(width);
  writer.u32(height);
  writer.bytes(dib);
  writer.zeros(padded - dib.size());

  writer.u32(kEnd);
  writer.u32(kEndSize);
  writer.u32(0);
  writer.u32(16);
  writer.u32(kEndSize);
  return writer.finish();
}

}  // namespace kestrel::engine::emf
