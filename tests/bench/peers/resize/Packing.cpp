#include "Packing.h"

#include <algorithm>
#include <cstring>

namespace kestrel::bench {
namespace {

std::uint32_t pixelAt(const std::uint8_t* in, std::size_t i) {
  std::uint32_t pixel;
  std::memcpy(&pixel, in + 4 * i, sizeof pixel);
  return pixel;
}

void setPixel(std::uint8_t* out, std::size_t i, std::uint32_t pixel) {
  std::memcpy(out + 4 * i, &pixel, sizeof pixel);
}

std::uint32_t rounded(std::uint16_t word) { return (std::min<std::uint32_t>(word, 65407) + 128) >> 8; }

}  // namespace

void unpack(const std::uint8_t* in, std::size_t count, std::uint8_t* const planes[4]) {
  std::uint8_t* __restrict const r = planes[0];
  std::uint8_t* __restrict const g = planes[1];
  std::uint8_t* __restrict const b = planes[2];
  std::uint8_t* __restrict const a = planes[3];
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint32_t pixel = pixelAt(in, i);
    r[i] = static_cast<std::uint8_t>(pixel);
    g[i] = static_cast<std::uint8_t>(pixel >> 8);
    b[i] = static_cast<std::uint8_t>(pixel >> 16);
    a[i] = static_cast<std::uint8_t>(pixel >> 24);
  }
}

void unpack(const std::uint8_t* in, std::size_t count, std::uint16_t* const planes[4]) {
  std::uint16_t* __restrict const r = planes[0];
  std::uint16_t* __restrict const g = planes[1];
  std::uint16_t* __restrict const b = planes[2];
  std::uint16_t* __restrict const a = planes[3];
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint32_t pixel = pixelAt(in, i);
    r[i] = static_cast<std::uint16_t>(pixel << 8);
    g[i] = static_cast<std::uint16_t>(pixel & 0xFF00);
    b[i] = static_cast<std::uint16_t>((pixel >> 8) & 0xFF00);
    a[i] = static_cast<std::uint16_t>((pixel >> 16) & 0xFF00);
  }
}

void pack(const std::uint8_t* const planes[4], std::size_t count, std::uint8_t* out) {
  const std::uint8_t* __restrict const r = planes[0];
  const std::uint8_t* __restrict const g = planes[1];
  const std::uint8_t* __restrict const b = planes[2];
  const std::uint8_t* __restrict const a = planes[3];
  std::uint8_t* __restrict const to = out;
  for (std::size_t i = 0; i < count; ++i) {
    setPixel(to, i,
             std::uint32_t{r[i]} | std::uint32_t{g[i]} << 8 | std::uint32_t{b[i]} << 16 |
                 std::uint32_t{a[i]} << 24);
  }
}

void pack(const std::uint16_t* const planes[4], std::size_t count, std::uint8_t* out) {
  const std::uint16_t* __restrict const r = planes[0];
  const std::uint16_t* __restrict const g = planes[1];
  const std::uint16_t* __restrict const b = planes[2];
  const std::uint16_t* __restrict const a = planes[3];
  std::uint8_t* __restrict const to = out;
  for (std::size_t i = 0; i < count; ++i) {
    setPixel(to, i, rounded(r[i]) | rounded(g[i]) << 8 | rounded(b[i]) << 16 | rounded(a[i]) << 24);
  }
}

}  // namespace kestrel::bench
