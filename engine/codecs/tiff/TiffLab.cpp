#include "TiffLab.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include "engine/parallel/Parallel.h"

namespace kestrel::engine::tiff {
namespace {

constexpr int kSteps = 65536;

/// Table of the sRGB transfer function for linear light from 0 to 1.
std::vector<std::uint8_t> makeCurve() {
  std::vector<std::uint8_t> curve(kSteps);
  for (int i = 0; i < kSteps; ++i) {
    const double light = static_cast<double>(i) / (kSteps - 1);
    const double coded = light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
    curve[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(std::lround(255 * coded));
  }
  return curve;
}

/// Inverse of the function f(t) of CIE 1976 L*a*b*.
double stimulusOf(double f) {
  constexpr double kKnee = 6.0 / 29;
  return f > kKnee ? f * f * f : 3 * kKnee * kKnee * (f - 4.0 / 29);
}

/// Linear sRGB from XYZ relative to D65 (IEC 61966-2-1).
constexpr double kFromXyz[3][3] = {
    {3.2406, -1.5372, -0.4986}, {-0.9689, 1.8758, 0.0415}, {0.0557, -0.2040, 1.0570}};
constexpr double kWhite[3] = {0.9505, 1, 1.0890};

void convert(std::uint8_t* pixel, const std::vector<std::uint8_t>& curve) {
  const double y = (pixel[0] * 100.0 / 255 + 16) / 116;
  const double x = y + (pixel[1] - 128) / 500.0, z = y - (pixel[2] - 128) / 200.0;
  const double xyz[3] = {kWhite[0] * stimulusOf(x), kWhite[1] * stimulusOf(y), kWhite[2] * stimulusOf(z)};
  for (int c = 0; c < 3; ++c) {
    const double light = kFromXyz[c][0] * xyz[0] + kFromXyz[c][1] * xyz[1] + kFromXyz[c][2] * xyz[2];
    pixel[c] = curve[static_cast<std::size_t>(std::clamp(light, 0.0, 1.0) * (kSteps - 1) + 0.5)];
  }
}

}  // namespace

void labToSrgb(Bitmap& bitmap) {
  static const std::vector<std::uint8_t> curve = makeCurve();
  const Pixels pixels = bitmap.writable();
  constexpr std::int32_t kPixelsInBand = 32 * 1024;
  forRows(pixels.height, 1 + kPixelsInBand / pixels.width, [&](std::int32_t first, std::int32_t last) {
    for (std::int32_t y = first; y < last; ++y) {
      std::uint8_t* pixel = pixels.row(y);
      for (std::int32_t x = 0; x < pixels.width; ++x, pixel += 4) convert(pixel, curve);
    }
  });
}

}  // namespace kestrel::engine::tiff
