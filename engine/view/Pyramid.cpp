#include "Pyramid.h"

#include <algorithm>
#include <cstring>
#include <functional>

#include "engine/parallel/Parallel.h"

namespace kestrel::engine {
namespace {

constexpr std::uint64_t kEvenBytes = 0x00FF00FF00FF00FF;

bool allOpaque(const std::uint8_t* pixels, std::int32_t count) {
  std::uint8_t all = 255;
  for (std::int32_t i = 0; i < count; ++i) all &= pixels[4 * i + 3];
  return all == 255;
}

/// Averages `pairs` blocks of 2 x 2 pixels, each of the four bytes by itself.
void averagePairs(const std::uint8_t* upper, const std::uint8_t* lower, std::uint8_t* target,
                  std::int32_t pairs) {
  for (std::int32_t i = 0; i < pairs; ++i) {
    std::uint64_t a, b;
    std::memcpy(&a, upper + 8 * i, 8);
    std::memcpy(&b, lower + 8 * i, 8);
    std::uint64_t even = (a & kEvenBytes) + (b & kEvenBytes);
    std::uint64_t odd = (a >> 8 & kEvenBytes) + (b >> 8 & kEvenBytes);
    even += even >> 32;
    odd += odd >> 32;
    const std::uint64_t average =
        ((even + 0x00020002) >> 2 & 0x00FF00FF) | ((odd + 0x00020002) >> 2 & 0x00FF00FF) << 8;
    const auto pixel = static_cast<std::uint32_t>(average);
    std::memcpy(target + 4 * i, &pixel, 4);
  }
}

/// The average of four pixels with straight alpha; the result is premultiplied.
void averageStraight(const std::array<const std::uint8_t*, 4>& from, std::uint8_t* target) {
  std::uint32_t alpha = 0;
  std::array<std::uint32_t, 3> color{};
  for (const std::uint8_t* const pixel : from) {
    alpha += pixel[3];
    for (std::size_t c = 0; c < 3; ++c) color[c] += std::uint32_t{pixel[c]} * pixel[3];
  }
  for (std::size_t c = 0; c < 3; ++c) target[c] = static_cast<std::uint8_t>((color[c] + 510) / 1020);
  target[3] = static_cast<std::uint8_t>((alpha + 2) / 4);
}

/// Computes columns `first` to `end`, not included, of a row from two rows of the level before.
void averageRow(const std::uint8_t* upper, const std::uint8_t* lower, std::int32_t width,
                std::uint8_t* target, std::int32_t first, std::int32_t end, bool straight) {
  const std::int32_t pairsEnd = std::min(end, width / 2);
  const bool plain = !straight || (allOpaque(upper + 8 * first, std::min(2 * end, width) - 2 * first) &&
                                   allOpaque(lower + 8 * first, std::min(2 * end, width) - 2 * first));
  if (plain) {
    averagePairs(upper + 8 * first, lower + 8 * first, target + 4 * first, pairsEnd - first);
  } else {
    for (std::int32_t x = first; x < pairsEnd; ++x) {
      averageStraight({upper + 8 * x, upper + 8 * x + 4, lower + 8 * x, lower + 8 * x + 4}, target + 4 * x);
    }
  }
  if (pairsEnd < end) {  // the last column of an odd width is averaged with itself
    const std::uint8_t* const u = upper + 8 * pairsEnd;
    const std::uint8_t* const l = lower + 8 * pairsEnd;
    if (plain) {
      for (std::int32_t c = 0; c < 4; ++c) {
        target[4 * pairsEnd + c] = static_cast<std::uint8_t>((u[c] + l[c] + 1) / 2);
      }
    } else {
      averageStraight({u, u, l, l}, target + 4 * pairsEnd);
    }
  }
}

std::int32_t halved(std::int32_t side, std::int32_t level) { return (side + (1 << level) - 1) >> level; }

}  // namespace

void Pyramid::reset() {
  levels_ = {};
  upToDate_.clear();
}

void Pyramid::invalidate(const Rectangle& area) {
  if (upToDate_.empty() || area.Width <= 0 || area.Height <= 0) return;
  for (std::int32_t row = area.Top / kBlock; row <= (area.Top + area.Height - 1) / kBlock; ++row) {
    for (std::int32_t column = area.Left / kBlock; column <= (area.Left + area.Width - 1) / kBlock;
         ++column) {
      upToDate_[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
                static_cast<std::size_t>(column)] = 0;
    }
  }
}

ConstPixels Pyramid::level(const Bitmap& picture, std::int32_t level, const Rectangle& area) {
  const Levels levels = prepare(picture, level);
  const std::int32_t firstRow = area.Top / kBlock;
  const std::int32_t endRow = std::min(rows_, (area.Top + area.Height - 1) / kBlock + 1);
  const std::int32_t firstColumn = area.Left / kBlock;
  const std::int32_t endColumn = std::min(columns_, (area.Left + area.Width - 1) / kBlock + 1);
  const auto update = [&](std::int32_t first, std::int32_t last) {
    for (std::int32_t row = firstRow + first; row < firstRow + last; ++row) {
      for (std::int32_t column = firstColumn; column < endColumn; ++column) {
        updateBlock(levels, column, row, level);
      }
    }
  };
  forRows(endRow - firstRow, 8, std::cref(update));
  return levels_[static_cast<std::size_t>(level)].pixels();
}

Pyramid::Levels Pyramid::prepare(const Bitmap& picture, std::int32_t level) {
  if (upToDate_.empty()) {
    columns_ = (picture.width() + kBlock - 1) / kBlock;
    rows_ = (picture.height() + kBlock - 1) / kBlock;
    upToDate_.resize(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_));
  }
  Levels levels{.picture = picture.pixels(), .averages = {}};
  for (std::int32_t i = 1; i <= level; ++i) {
    Bitmap& bitmap = levels_[static_cast<std::size_t>(i)];
    if (bitmap.empty())
      bitmap = Bitmap::uninitialized(halved(picture.width(), i), halved(picture.height(), i));
    levels.averages[static_cast<std::size_t>(i)] = bitmap.writable();
  }
  return levels;
}

void Pyramid::updateBlock(const Levels& levels, std::int32_t column, std::int32_t row, std::int32_t level) {
  std::uint8_t& upToDate = upToDate_[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
                                     static_cast<std::size_t>(column)];
  for (std::int32_t i = upToDate + 1; i <= level; ++i) {
    const ConstPixels from = i == 1 ? levels.picture : levels.averages[static_cast<std::size_t>(i - 1)];
    const Pixels to = levels.averages[static_cast<std::size_t>(i)];
    const std::int32_t side = kBlock >> i;
    const std::int32_t right = std::min(to.width, (column + 1) * side);
    const std::int32_t bottom = std::min(to.height, (row + 1) * side);
    for (std::int32_t y = row * side; y < bottom; ++y) {
      const std::int32_t below = std::min(2 * y + 1, from.height - 1);
      averageRow(from.row(2 * y), from.row(below), from.width, to.row(y), column * side, right, i == 1);
    }
    upToDate = static_cast<std::uint8_t>(i);
  }
}

}  // namespace kestrel::engine
