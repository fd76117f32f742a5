#include "Noise.h"

#include <cmath>

namespace kestrel::sample {
namespace {

float lattice(std::int32_t x, std::int32_t y, std::uint32_t seed) {
  std::uint32_t h = static_cast<std::uint32_t>(x) * 0x8DA6B343U ^
                    static_cast<std::uint32_t>(y) * 0xD8163841U ^ seed * 0xCB1AB31FU;
  h ^= h >> 15;
  h *= 0x2C1B3C6DU;
  h ^= h >> 12;
  h *= 0x297A2D39U;
  h ^= h >> 15;
  return static_cast<float>(h >> 8) / static_cast<float>(1U << 24U);
}

float smooth(float t) { return t * t * (3 - 2 * t); }

}  // namespace

float noise(float x, float y, std::uint32_t seed) {
  const float floorX = std::floor(x);
  const float floorY = std::floor(y);
  const auto column = static_cast<std::int32_t>(floorX);
  const auto row = static_cast<std::int32_t>(floorY);
  const float u = smooth(x - floorX);
  const float v = smooth(y - floorY);
  const float top = std::lerp(lattice(column, row, seed), lattice(column + 1, row, seed), u);
  const float bottom = std::lerp(lattice(column, row + 1, seed), lattice(column + 1, row + 1, seed), u);
  return std::lerp(top, bottom, v);
}

float fractalNoise(float x, float y, std::uint32_t seed, int octaves) {
  float sum = 0;
  float weight = 0.5F;
  float total = 0;
  for (int octave = 0; octave < octaves; ++octave) {
    sum += weight * noise(x, y, seed + static_cast<std::uint32_t>(octave));
    total += weight;
    x *= 2;
    y *= 2;
    weight /= 2;
  }
  return sum / total;
}

}  // namespace kestrel::sample
