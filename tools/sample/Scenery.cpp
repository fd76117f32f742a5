#include "Scenery.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "Noise.h"
#include "engine/parallel/Parallel.h"

// Coordinates are in heights of the picture: y is 0 at the top and 1 at the bottom, x runs from 0 to the
// aspect ratio.

namespace kestrel::sample {
namespace {

struct Rgb {
  float r, g, b;
};

Rgb mix(const Rgb& a, const Rgb& b, float t) {
  t = std::clamp(t, 0.0F, 1.0F);
  return {std::lerp(a.r, b.r, t), std::lerp(a.g, b.g, t), std::lerp(a.b, b.b, t)};
}

float step(float edge0, float edge1, float x) {
  const float t = std::clamp((x - edge0) / (edge1 - edge0), 0.0F, 1.0F);
  return t * t * (3 - 2 * t);
}

constexpr float kHorizon = 0.66F;
constexpr float kSunX = 0.655F;
constexpr float kSunY = 0.50F;
constexpr Rgb kZenith{0.13F, 0.22F, 0.45F};
constexpr Rgb kMiddle{0.62F, 0.47F, 0.60F};
constexpr Rgb kGlow{1.00F, 0.74F, 0.46F};
constexpr Rgb kSun{1.00F, 0.95F, 0.80F};
constexpr Rgb kShore{0.035F, 0.05F, 0.075F};

/// One range of mountains, the farthest first.
struct Range {
  float base;    ///< the height of its foot
  float rise;    ///< maximum height above the base
  float detail;  ///< features per unit of x
  Rgb color;
};
constexpr std::array kRanges{
    Range{0.60F, 0.26F, 2.2F, {0.66F, 0.53F, 0.62F}},
    Range{0.62F, 0.21F, 3.0F, {0.47F, 0.40F, 0.53F}},
    Range{0.64F, 0.16F, 4.1F, {0.30F, 0.29F, 0.42F}},
    Range{0.655F, 0.10F, 6.0F, {0.16F, 0.18F, 0.28F}},
};

Rgb sky(float x, float y) {
  Rgb color =
      y < 0.33F ? mix(kZenith, kMiddle, step(0.0F, 0.36F, y)) : mix(kMiddle, kGlow, step(0.30F, 0.64F, y));
  if (y < 0.33F) color = mix(color, mix(kMiddle, kGlow, step(0.30F, 0.64F, y)), step(0.25F, 0.33F, y));
  const float distance = std::hypot(x - kSunX, y - kSunY);
  color = mix(color, kGlow, 0.75F * std::exp(-distance * 5.5F));
  color = mix(color, kSun, std::exp(-distance * distance * 900.0F));

  const float cloud = fractalNoise(x * 2.6F + y * 1.5F, y * 11.0F, 7, 6);
  const float veil = step(0.50F, 0.78F, cloud) * step(0.02F, 0.20F, y) * (1 - step(0.40F, 0.60F, y));
  const Rgb lit = mix({0.98F, 0.70F, 0.58F}, {1.0F, 0.90F, 0.72F}, std::exp(-distance * 2.5F));
  return mix(color, lit, veil * 0.75F);
}

/// The crests of the ranges and of the trees on the near shore, one height per column.
struct Outlines {
  std::array<std::vector<float>, kRanges.size()> ridges;
  std::vector<float> trees;
};

float treeTop(float x, float proportion) {
  // The trees are dense at both sides and leave the middle open.
  const float side = std::abs(x / proportion - 0.5F) * 2;
  float top = 1.0F;
  for (int row = 0; row < 3; ++row) {
    const float spacing = 0.031F + 0.011F * static_cast<float>(row);
    const auto first = static_cast<std::int32_t>(std::floor(x / spacing)) - 1;
    for (std::int32_t tree = first; tree <= first + 2; ++tree) {
      const auto number = static_cast<float>(tree);
      const float place = (number + noise(number, 3.5F, 40 + static_cast<std::uint32_t>(row))) * spacing;
      const float grown = noise(number * 1.7F, 9.5F, 50 + static_cast<std::uint32_t>(row));
      const float height = (0.10F + 0.24F * grown) * step(0.40F, 1.0F, side) - 0.02F;
      if (height <= 0) continue;
      const float aside = std::abs(x - place) / (0.008F + height * 0.15F);
      // Branches in tiers: the outline steps in toward the top.
      const float tier = 0.10F * std::abs(std::sin(aside * 26.0F));
      top = std::min(top, 1.03F - height * std::max(0.0F, 1 - aside - tier));
    }
  }
  const float bank = 0.985F - 0.05F * step(0.30F, 1.0F, side) - 0.012F * fractalNoise(x * 9, 2, 61, 4);
  return std::min(top, bank);
}

Outlines traceOutlines(std::int32_t width, std::int32_t height) {
  Outlines outlines;
  const auto columns = static_cast<std::size_t>(width);
  const float proportion = static_cast<float>(width) / static_cast<float>(height);
  outlines.trees.resize(columns);
  for (std::size_t range = 0; range < kRanges.size(); ++range) outlines.ridges[range].resize(columns);
  for (std::size_t column = 0; column < columns; ++column) {
    const float x = static_cast<float>(column) / static_cast<float>(height);
    for (std::size_t range = 0; range < kRanges.size(); ++range) {
      const Range& r = kRanges[range];
      const float crest = fractalNoise(x * r.detail, 0.5F, 20 + static_cast<std::uint32_t>(range) * 9, 9);
      outlines.ridges[range][column] = r.base - r.rise * step(0.25F, 0.80F, crest);
    }
    outlines.trees[column] = treeTop(x, proportion);
  }
  return outlines;
}

/// The color above the water line at a point.
Rgb land(const Outlines& outlines, std::size_t column, float x, float y, float pixel) {
  Rgb color = sky(x, y);
  for (std::size_t range = 0; range < kRanges.size(); ++range) {
    const Range& r = kRanges[range];
    const float below = y - outlines.ridges[range][column];
    if (below < -pixel) continue;
    const float grain = fractalNoise(x * 24, y * 40, 90 + static_cast<std::uint32_t>(range), 4) - 0.5F;
    Rgb rock = r.color;
    rock = mix(rock, {rock.r * 1.5F, rock.g * 1.25F, rock.b * 1.1F}, 0.5F + grain);
    // Mist gathers at the foot.
    rock = mix(rock, {0.93F, 0.70F, 0.58F}, 0.55F * step(0.0F, 0.16F, below) * step(0.50F, kHorizon, y));
    color = mix(color, rock, (below + pixel) / (2 * pixel));
  }
  return color;
}

Rgb water(const Outlines& outlines, std::int32_t width, float x, float y, float pixel, float heightInPixels) {
  const float depth = y - kHorizon;
  const float ripple = fractalNoise(x * 14 / (0.25F + depth * 3), y * 240 / (1 + depth * 12), 120, 4) - 0.5F;
  const float mirrored =
      std::clamp(kHorizon - depth * 1.25F + ripple * (0.01F + depth * 0.20F), 0.0F, kHorizon);
  const float shifted = x + ripple * (0.004F + depth * 0.03F);
  const auto column =
      static_cast<std::size_t>(std::clamp(shifted * heightInPixels, 0.0F, static_cast<float>(width - 1)));
  const Rgb mirror = land(outlines, column, shifted, mirrored, pixel);
  const Rgb deep{0.06F, 0.11F, 0.20F};
  Rgb color = mix(mirror, deep, 0.18F + 0.75F * step(0.0F, 0.40F, depth));
  const float glitter =
      step(0.12F, 0.20F, ripple) * std::exp(-std::abs(x - kSunX) * 9) * (1 - step(0.02F, 0.34F, depth));
  color = mix(color, kSun, glitter * 0.8F);
  return mix({0.95F, 0.78F, 0.62F}, color, step(0.0F, 0.012F, depth));
}

/// A flying bird: position and half wingspan.
struct Bird {
  float x, y, span;
};
constexpr std::array kBirds{Bird{0.34F, 0.24F, 0.030F}, Bird{0.42F, 0.20F, 0.019F},
                            Bird{0.27F, 0.30F, 0.015F}};

float birdCover(float x, float y, float pixel) {
  float cover = 0;
  for (const Bird& bird : kBirds) {
    const float across = (x - bird.x) / bird.span;
    if (std::abs(across) > 1.0F) continue;
    const float wing = -0.42F * std::sin(std::abs(across) * 2.4F) + 0.10F * across;
    const float thick = 0.085F * (1 - std::abs(across)) + 0.02F + 0.09F * std::exp(-across * across * 60);
    const float off = std::abs((y - bird.y) / bird.span - wing) - thick;
    cover = std::max(cover, std::clamp(0.5F - off * bird.span / (2 * pixel), 0.0F, 1.0F));
  }
  return cover;
}

std::uint8_t toByte(float value) {
  return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0F, 1.0F) * 255.0F));
}

}  // namespace

engine::Bitmap renderScenery(std::int32_t width, std::int32_t height) {
  engine::Bitmap bitmap = engine::Bitmap::uninitialized(width, height);
  const engine::Pixels pixels = bitmap.writable();
  const Outlines outlines = traceOutlines(width, height);
  const auto heightInPixels = static_cast<float>(height);
  const float pixel = 1 / heightInPixels;

  engine::forRows(height, 8, [&](std::int32_t first, std::int32_t last) {
    for (std::int32_t row = first; row < last; ++row) {
      std::uint8_t* out = pixels.row(row);
      const float y = (static_cast<float>(row) + 0.5F) * pixel;
      for (std::int32_t column = 0; column < width; ++column, out += 4) {
        const auto index = static_cast<std::size_t>(column);
        const float x = (static_cast<float>(column) + 0.5F) * pixel;
        const float below = (y - outlines.trees[index]) / (2 * pixel) + 0.5F;
        Rgb color = kShore;
        if (below < 1) {
          color = y < kHorizon ? land(outlines, index, x, y, pixel)
                               : water(outlines, width, x, y, pixel, heightInPixels);
          color = mix(color, {0.10F, 0.10F, 0.15F}, birdCover(x, y, pixel));
          color = mix(color, kShore, below);
        }
        out[0] = toByte(color.r);
        out[1] = toByte(color.g);
        out[2] = toByte(color.b);
        out[3] = 255;
      }
    }
  });
  return bitmap;
}

}  // namespace kestrel::sample
