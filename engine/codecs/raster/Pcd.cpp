#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "Raster.h"
#include "engine/codecs/common/DecodeErrors.h"
#include "engine/codecs/common/Orientation.h"
#include "engine/parallel/Cancellation.h"

// A Photo CD image pack holds the picture at several sizes. The three smallest are uncompressed: for each
// pair of rows, two rows of luma and one of each chroma at half width. The largest of these in the file is
// read.

namespace kestrel::engine::pcd {
namespace {

constexpr std::size_t kMarkAt = 0x800;
constexpr std::string_view kMark = "PCD_IPI";
constexpr std::size_t kTurnAt = 0x0E02;

struct Base {
  std::size_t offset;
  std::int32_t width, height;

  std::size_t rowPairBytes() const { return static_cast<std::size_t>(width) * 3; }
  std::size_t end() const { return offset + rowPairBytes() * static_cast<std::size_t>(height) / 2; }
};

constexpr std::array<Base, 3> kBases{{{0x30000, 768, 512}, {0xB800, 384, 256}, {0x2000, 192, 128}}};

std::uint8_t level(double value) { return static_cast<std::uint8_t>(std::clamp(value + 0.5, 0.0, 255.0)); }

/// Photo YCC to RGB, with the Photo CD matrix for displays.
void convert(int luma, int chroma1, int chroma2, std::uint8_t* target) {
  const double light = 1.3584 * luma;
  const double blue = 2.2179 * (chroma1 - 156);
  const double red = 1.8215 * (chroma2 - 137);
  target[0] = level(light + red);
  target[1] = level(light - 0.194 * blue - 0.509 * red);
  target[2] = level(light + blue);
  target[3] = 255;
}

void readRowPair(const std::uint8_t* data, const Base& base, const Pixels& pixels, std::int32_t y) {
  const std::uint8_t* const chroma = data + 2 * base.width;
  for (std::int32_t row = 0; row < 2; ++row) {
    for (std::int32_t x = 0; x < base.width; ++x) {
      convert(data[row * base.width + x], chroma[x / 2], chroma[base.width / 2 + x / 2],
              pixels.row(y + row) + 4 * x);
    }
  }
}

const Base& largestBase(std::size_t fileSize) {
  for (const Base& base : kBases) {
    if (fileSize >= base.end()) return base;
  }
  // Even the smallest is truncated; decode what is there.
  return kBases.back();
}

}  // namespace

bool probe(Bytes data) {
  return data.size() > kTurnAt && std::memcmp(data.data() + kMarkAt, kMark.data(), kMark.size()) == 0;
}

Decoded decode(Bytes data) {
  if (!probe(data)) refusePicture("The Photo CD file is damaged: its header is missing.");
  const Base& base = largestBase(data.size());
  Decoded decoded;
  decoded.bitmap = Bitmap::uninitialized(base.width, base.height);
  const Pixels pixels = decoded.bitmap.writable();
  std::int32_t rows = 0;
  for (; rows < base.height; rows += 2) {
    checkCanceled();
    const std::size_t at = base.offset + base.rowPairBytes() * static_cast<std::size_t>(rows) / 2;
    if (at + base.rowPairBytes() > data.size()) break;
    readRowPair(data.data() + at, base, pixels, rows);
  }
  if (rows < base.height) keepRows(decoded, rows);
  // The rotation is stored in counterclockwise quarter turns; these are the equivalent EXIF orientations.
  constexpr std::array<std::int32_t, 4> kOrientations{1, 8, 3, 6};
  applyOrientation(decoded, kOrientations[data[kTurnAt] & 3U]);
  return decoded;
}

}  // namespace kestrel::engine::pcd
