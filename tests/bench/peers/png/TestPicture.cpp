#include "TestPicture.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <vector>

namespace kestrel::bench {
namespace {

using engine::Bitmap;
using engine::Pixel;

/// A hash of the position and the salt.
std::uint32_t scrambled(std::uint32_t x, std::uint32_t y, std::uint32_t salt) {
  std::uint32_t v = x * 0x9E3779B1U ^ std::rotl(y * 0x85EBCA77U, 13) ^ salt * 0xC2B2AE3DU;
  v = (v ^ v >> 15) * 0x2C1B3C6DU;
  v = (v ^ v >> 12) * 0x297A2D39U;
  return v ^ v >> 15;
}

/// Values between -1 and 1 at the corners of a grid of `cell` pixels, linear between them.
class Texture {
 public:
  Texture(std::int32_t cell, std::uint32_t salt) : cell_(cell), salt_(salt) {}

  /// Adds one row, times `weight`.
  void addRow(std::int32_t y, float weight, std::vector<float>& row) const {
    const float down = static_cast<float>(y % cell_) / static_cast<float>(cell_);
    const auto corner = [&](std::int32_t column) {
      return weight * ((1 - down) * at(column, y / cell_) + down * at(column, y / cell_ + 1));
    };
    const auto width = static_cast<std::int32_t>(row.size());
    float right = corner(0);
    for (std::int32_t column = 0; column * cell_ < width; ++column) {
      const float left = right;
      right = corner(column + 1);
      const float step = (right - left) / static_cast<float>(cell_);
      const std::int32_t begin = column * cell_, end = std::min(width, begin + cell_);
      for (std::int32_t x = begin; x < end; ++x)
        row[static_cast<std::size_t>(x)] += left + step * static_cast<float>(x - begin);
    }
  }

 private:
  float at(std::int32_t column, std::int32_t line) const {
    const std::uint32_t v =
        scrambled(static_cast<std::uint32_t>(column), static_cast<std::uint32_t>(line), salt_);
    return static_cast<float>(v >> 8) / static_cast<float>(1 << 23) - 1;
  }

  std::int32_t cell_;
  std::uint32_t salt_;
};

/// Approximately normally distributed, with a standard deviation of 1.
float noise(std::uint32_t v) {
  const auto bytes = static_cast<float>((v & 255) + (v >> 8 & 255) + (v >> 16 & 255) + (v >> 24));
  return (bytes - 510.F) / 147.8F;
}

std::uint8_t byteOf(float value) { return static_cast<std::uint8_t>(std::clamp(value, 0.F, 255.F)); }

using Glyph = std::array<std::uint8_t, 14>;

/// Random strokes in a box of 8 by 14 pixels, like glyphs.
std::vector<Glyph> makeGlyphs() {
  std::vector<Glyph> glyphs(60);
  for (std::uint32_t i = 0; i < glyphs.size(); ++i) {
    const std::uint32_t shape = scrambled(i, 0, 77);
    for (std::size_t line = 2; line < 12; ++line) {
      const bool bar = line == 2 || line == 6 || line == 11;
      const std::uint32_t stems = (shape >> (line < 7 ? 0 : 4) & 1 ? 0xC0U : 0U) |
                                  (shape >> (line < 7 ? 1 : 5) & 1 ? 0x0CU : 0U) |
                                  (shape >> (line < 7 ? 2 : 6) & 1 ? 0x30U : 0U);
      const bool drawn = bar && (shape >> (8 + line) & 1) != 0;
      glyphs[i][line] = static_cast<std::uint8_t>(stems | (drawn ? 0xFCU : 0U));
    }
  }
  return glyphs;
}

}  // namespace

Bitmap photograph(std::int32_t width, std::int32_t height, bool alpha) {
  Bitmap bitmap = Bitmap::uninitialized(width, height);
  const engine::Pixels pixels = bitmap.writable();
  const Texture shapes(700, 1), forms(170, 2), details(37, 3), grain(7, 4), fine(3, 5), warmth(400, 6),
      tint(90, 7), roughness(300, 8);
  const auto size = static_cast<std::size_t>(width);
  std::vector<float> light(size), texture(size), color(size), rough(size);
  for (std::int32_t y = 0; y < height; ++y) {
    for (auto* const row : {&light, &texture, &color, &rough}) std::ranges::fill(*row, 0.F);
    shapes.addRow(y, 70, light);
    forms.addRow(y, 25, light);
    details.addRow(y, 14, texture);
    grain.addRow(y, 9, texture);
    fine.addRow(y, 5, texture);
    warmth.addRow(y, 30, color);
    tint.addRow(y, 12, color);
    roughness.addRow(y, 1, rough);
    for (std::int32_t x = 0; x < width; ++x) {
      const auto i = static_cast<std::size_t>(x);
      const std::uint32_t random = scrambled(static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y), 9);
      // Rough areas have texture, smooth ones hardly any.
      const float edge = light[i] > 20 ? 35.F : 0.F;
      const float value =
          118 + light[i] + edge + std::max(0.05F, rough[i]) * texture[i] + 1.8F * noise(random);
      const float shift = color[i] + 0.9F * noise(random * 0x9E3779B1U);
      const auto side = static_cast<float>(std::min({x, y, width - 1 - x, height - 1 - y}) / 2);
      const Pixel pixel{byteOf(value + shift), byteOf(value), byteOf(value - 1.2F * shift),
                        alpha ? byteOf(side) : std::uint8_t{255}};
      std::memcpy(pixels.row(y) + 4 * i, &pixel, sizeof pixel);
    }
  }
  return bitmap;
}

Bitmap graphics(std::int32_t width, std::int32_t height, bool alpha) {
  constexpr std::int32_t kPanelWidth = 480, kPanelHeight = 320, kGap = 12, kTextTop = 40;
  static const std::vector<Glyph> glyphs = makeGlyphs();
  constexpr Pixel kBackground{232, 232, 236, 255}, kBorder{120, 124, 130, 255}, kTextColor{30, 30, 34, 255};
  constexpr std::array kPapers{Pixel{255, 255, 255, 255}, Pixel{250, 246, 230, 255}, Pixel{40, 60, 92, 255},
                               Pixel{214, 228, 240, 255}, Pixel{255, 255, 255, 255}};
  Bitmap bitmap = Bitmap::uninitialized(width, height);
  const engine::Pixels pixels = bitmap.writable();
  for (std::int32_t y = 0; y < height; ++y) {
    for (std::int32_t x = 0; x < width; ++x) {
      const std::int32_t column = x / kPanelWidth, line = y / kPanelHeight;
      const std::int32_t inX = x % kPanelWidth, inY = y % kPanelHeight;
      const std::uint32_t panel =
          scrambled(static_cast<std::uint32_t>(column), static_cast<std::uint32_t>(line), 21);
      const std::int32_t depth =
          std::min({inX - kGap, inY - kGap, kPanelWidth - kGap - 1 - inX, kPanelHeight - kGap - 1 - inY});
      Pixel pixel = kPapers[panel % kPapers.size()];
      if (depth < 0) {
        pixel = alpha ? Pixel{0, 0, 0, 0} : kBackground;
        if (alpha && depth > -4) pixel = {0, 0, 0, static_cast<std::uint8_t>(60 + 15 * depth)};
      } else if (depth == 0) {
        pixel = kBorder;
      } else if (inY < kTextTop) {
        const auto shade = static_cast<std::uint8_t>(200 - 3 * inY);
        pixel = {shade, static_cast<std::uint8_t>(shade + 10), static_cast<std::uint8_t>(shade + 30), 255};
      } else if (depth > 10 && panel % 3 != 0) {
        const std::int32_t glyph = inX / 8, textLine = inY / 18;
        const std::uint32_t which = scrambled(static_cast<std::uint32_t>(glyph + 60 * column),
                                              static_cast<std::uint32_t>(textLine + 18 * line), 33);
        const std::int32_t dot = inY % 18;
        const bool written = which % 6 != 0 && glyph < 40 + static_cast<std::int32_t>(panel % 18) && dot < 14;
        if (written &&
            (glyphs[which % glyphs.size()][static_cast<std::size_t>(dot)] >> (7 - inX % 8) & 1) != 0)
          pixel = kTextColor;
      }
      std::memcpy(pixels.row(y) + 4 * std::ptrdiff_t{x}, &pixel, sizeof pixel);
    }
  }
  return bitmap;
}

}  // namespace kestrel::bench
