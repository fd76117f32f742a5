#include "Painter.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <exception>
#include <functional>
#include <tuple>
#include <utility>

#include "engine/parallel/Parallel.h"

namespace kestrel::engine {
namespace {

constexpr std::uint64_t kEvenBytes = 0x00FF00FF00FF00FF;
constexpr std::uint32_t kOpaqueByte = 0xFF000000;
/// The first and third byte of a pixel; shifted right by 8 beforehand, the second and fourth.
constexpr std::uint32_t kPair = 0x00FF00FF;

std::size_t bytesOf(std::int32_t pixels) { return 4 * static_cast<std::size_t>(pixels); }

std::uint32_t valueOf(Pixel pixel, ChannelOrder order) {
  if (order == ChannelOrder::bgra) std::swap(pixel.r, pixel.b);
  std::uint32_t value;
  std::memcpy(&value, &pixel, 4);
  return value | kOpaqueByte;
}

void fill(std::uint8_t* target, std::int32_t count, std::uint32_t value) {
  for (std::int32_t i = 0; i < count; ++i) std::memcpy(target + 4 * i, &value, 4);
}

bool allOpaque(const std::uint8_t* pixels, std::int32_t count) {
  std::uint32_t all = kOpaqueByte;
  for (std::int32_t i = 0; i < count; ++i) {
    std::uint32_t value;
    std::memcpy(&value, pixels + 4 * i, 4);
    all &= value;
  }
  return all >= kOpaqueByte;
}

/// Two channels of a pixel, one per 16-bit half, times `factor` / 255, rounded to the nearest. `factor` is 0
/// to 255.
std::uint32_t scaledPair(std::uint32_t pair, std::uint32_t factor) {
  const std::uint32_t product = pair * factor + 0x00800080;
  return (product + (product >> 8 & kPair)) >> 8 & kPair;
}

/// The sum of two pairs, saturated to 255 per channel.
std::uint32_t addedPair(std::uint32_t a, std::uint32_t b) {
  const std::uint32_t sum = a + b;
  const std::uint32_t over = sum & 0x01000100;
  return (sum | (over - (over >> 8))) & kPair;
}

void premultiply(const std::uint8_t* source, std::uint8_t* target, std::int32_t count) {
  for (std::int32_t i = 0; i < count; ++i) {
    std::uint32_t pixel;
    std::memcpy(&pixel, source + 4 * i, 4);
    const std::uint32_t alpha = pixel >> 24;
    pixel = scaledPair(pixel & kPair, alpha) | (scaledPair(pixel >> 8 & 0xFF, alpha) << 8) | alpha << 24;
    std::memcpy(target + 4 * i, &pixel, 4);
  }
}

void compositeOver(std::uint8_t* pixels, const std::uint8_t* under, std::int32_t count) {
  for (std::int32_t i = 0; i < count; ++i) {
    std::uint32_t pixel, below;
    std::memcpy(&pixel, pixels + 4 * i, 4);
    std::memcpy(&below, under + 4 * i, 4);
    const std::uint32_t through = 255 - (pixel >> 24);
    pixel = addedPair(pixel & kPair, scaledPair(below & kPair, through)) |
            addedPair(pixel >> 8 & kPair, scaledPair(below >> 8 & kPair, through)) << 8;
    std::memcpy(pixels + 4 * i, &pixel, 4);
  }
}

/// Composites premultiplied pixels, in place, over a row of the background tile that starts at the tile's
/// column `phase`.
void compositeOverTile(std::uint8_t* pixels, std::int32_t count, const std::uint8_t* tile,
                       std::int32_t tileWidth, std::int32_t phase) {
  while (count > 0) {
    const std::int32_t run = std::min(count, tileWidth - phase);
    compositeOver(pixels, tile + 4 * phase, run);
    pixels += 4 * run;
    count -= run;
    phase = 0;
  }
}

void swapRedAndBlue(std::uint8_t* pixels, std::int32_t count) {
  for (std::int32_t i = 0; i < count; ++i) {
    std::uint32_t v;
    std::memcpy(&v, pixels + 4 * i, 4);
    v = (v & 0xFF00FF00) | (v & 0xFF) << 16 | (v >> 16 & 0xFF);
    std::memcpy(pixels + 4 * i, &v, 4);
  }
}

/// Vertical pass: the weighted average of three rows.
void averageRows(const std::uint8_t* a, const std::uint8_t* b, const std::uint8_t* c,
                 const std::uint16_t* weight, std::uint16_t* sums, std::size_t count) {
  const std::uint16_t w0 = weight[0], w1 = weight[1], w2 = weight[2];
  for (std::size_t i = 0; i < count; ++i) {
    sums[i] =
        static_cast<std::uint16_t>(static_cast<std::uint16_t>(w0 * a[i] + w1 * b[i] + w2 * c[i] + 128) >> 8);
  }
}

/// View pixels `first` to `end`, not included, that the picture covers along one axis: at least one.
std::pair<std::int32_t, std::int32_t> shownSpan(const ViewAxis& axis) {
  const auto first = static_cast<std::int32_t>(std::ceil(axis.toView(0) - 0.5));
  const auto end = static_cast<std::int32_t>(std::ceil(axis.toView(axis.picture()) - 0.5));
  return {first, std::max(end, first + 1)};
}

std::int32_t sourceAt(const ViewAxis& axis, std::int32_t position) {
  return std::clamp(static_cast<std::int32_t>(std::floor(axis.toPicture(position + 0.5))), 0,
                    axis.picture() - 1);
}

std::int32_t remainder(std::int32_t value, std::int32_t divisor) {
  const std::int32_t rest = value % divisor;
  return rest < 0 ? rest + divisor : rest;
}

}  // namespace

struct Painter::Job {
  const Scene& scene;
  const PaintBuffer& buffer;
  Rectangle area;
  std::int32_t left = 0, right = 0;  ///< columns of the view that show the picture, clipped to the area
  std::int32_t pictureLeft = 0, pictureRight = 0, pictureTop = 0, pictureBottom = 0;  ///< not clipped
  bool reduced = false;
  std::int32_t level = 0;
  ConstPixels source{};
  bool straight = true;          ///< the source has straight alpha
  std::int32_t firstColumn = 0;  ///< of `source`
  std::int32_t columnCount = 0;
};

Painter::Taps Painter::tapsAt(const ViewAxis& axis, std::int32_t position, std::int32_t level,
                              std::int32_t size) {
  const double scale = 1.0 / (1 << level);
  const double low = std::clamp(axis.toPicture(position) * scale, 0.0, static_cast<double>(size));
  const double high = std::clamp(axis.toPicture(position + 1.0) * scale, low, static_cast<double>(size));
  Taps taps{std::min(static_cast<std::int32_t>(low), size - 1), {256, 0, 0}};
  if (high - low < 1e-6) return taps;
  std::int32_t rest = 256;
  for (std::int32_t i = 2; i >= 1; --i) {
    const double share =
        std::min(high, taps.first + i + 1.0) - std::max(low, static_cast<double>(taps.first + i));
    if (share <= 0) continue;
    taps.weight[i] = static_cast<std::uint16_t>(std::lround(256 * share / (high - low)));
    rest -= taps.weight[i];
  }
  taps.weight[0] = static_cast<std::uint16_t>(std::max(rest, 0));
  return taps;
}

void Painter::prepareSource(Job& job) {
  const Scene& scene = job.scene;
  job.source = scene.picture.pixels();
  const double zoom = scene.horizontal.zoom();
  job.reduced = zoom < 1;
  while (job.level < Pyramid::kLevels && zoom * (2 << job.level) <= 1) ++job.level;
  if (job.level == 0) return;
  const std::int32_t left = sourceAt(scene.horizontal, job.left - 1);
  const std::int32_t top = sourceAt(scene.vertical, job.area.Top - 1);
  const std::int32_t right = sourceAt(scene.horizontal, job.right) + 1;
  const std::int32_t bottom = sourceAt(scene.vertical, job.area.Top + job.area.Height) + 1;
  try {
    job.source = pyramid_.level(scene.picture, job.level, {left, top, right - left, bottom - top});
    job.straight = false;
  } catch (const std::exception&) {
    // Without memory for the pyramid the picture is still shown, if less smoothly.
    job.reduced = false;
    job.level = 0;
  }
}

void Painter::prepareColumns(Job& job) {
  const auto count = static_cast<std::size_t>(job.right - job.left);
  const ViewAxis& axis = job.scene.horizontal;
  if (!job.reduced) {
    columns_.resize(count);
    for (std::size_t i = 0; i < count; ++i)
      columns_[i] = sourceAt(axis, job.left + static_cast<std::int32_t>(i));
    return;
  }
  taps_.resize(count);
  for (std::size_t i = 0; i < count; ++i) {
    taps_[i] = tapsAt(axis, job.left + static_cast<std::int32_t>(i), job.level, job.source.width);
  }
  job.firstColumn = taps_.front().first;
  job.columnCount = std::min(taps_.back().first + 3, job.source.width) - job.firstColumn;
}

void Painter::paint(const Scene& scene, const PaintBuffer& buffer, const Rectangle& area) {
  if (area.Width <= 0 || area.Height <= 0) return;
  Job job{.scene = scene, .buffer = buffer, .area = area};
  if (!scene.picture.empty()) {
    std::tie(job.pictureLeft, job.pictureRight) = shownSpan(scene.horizontal);
    std::tie(job.pictureTop, job.pictureBottom) = shownSpan(scene.vertical);
    job.left = std::clamp(job.pictureLeft, area.Left, area.Left + area.Width);
    job.right = std::clamp(job.pictureRight, job.left, area.Left + area.Width);
    if (job.left < job.right) {
      prepareSource(job);
      prepareColumns(job);
    }
  }
  // Several bands per core, each with its own scratch memory, balance rows of different cost.
  const std::int32_t bands = std::clamp(area.Height / 16, 1, 4 * threadCount());
  if (scratch_.size() < static_cast<std::size_t>(bands)) scratch_.resize(static_cast<std::size_t>(bands));
  const auto sums = 4 * (static_cast<std::size_t>(job.columnCount) + 2);
  for (std::int32_t band = 0; band < bands; ++band) {
    Scratch& scratch = scratch_[static_cast<std::size_t>(band)];
    if (job.reduced && scratch.sums.size() < sums) scratch.sums.resize(sums);
    if (job.reduced && job.straight && scratch.premultiplied.size() < 3 * sums) {
      scratch.premultiplied.resize(3 * sums);
    }
    std::fill(std::begin(scratch.rows), std::end(scratch.rows), -1);
  }
  const auto work = [&](std::int32_t first, std::int32_t last) {
    for (std::int32_t band = first; band < last; ++band) {
      paintRows(job, area.Top + static_cast<std::int32_t>(std::int64_t{area.Height} * band / bands),
                area.Top + static_cast<std::int32_t>(std::int64_t{area.Height} * (band + 1) / bands),
                scratch_[static_cast<std::size_t>(band)]);
    }
  };
  forRows(bands, 1, std::cref(work));
}

void Painter::paintRows(const Job& job, std::int32_t first, std::int32_t last, Scratch& scratch) const {
  const Scene& scene = job.scene;
  const std::int32_t areaRight = job.area.Left + job.area.Width;
  const std::uint32_t surroundings = valueOf(scene.surroundings, job.buffer.order);
  const std::uint32_t border = valueOf(kBorderColor, job.buffer.order);
  const std::int32_t lineX = scene.horizontal.border();
  const std::int32_t lineY = scene.vertical.border();
  const bool picture = !scene.picture.empty();
  std::int32_t previousSource = -1;

  for (std::int32_t y = first; y < last; ++y) {
    std::uint8_t* const row = job.buffer.row(y);
    const auto fillSpan = [&](std::int32_t from, std::int32_t to, std::uint32_t value) {
      from = std::max(from, job.area.Left);
      to = std::min(to, areaRight);
      if (from < to) fill(row + bytesOf(from), to - from, value);
    };
    if (!picture || y < job.pictureTop - lineY || y >= job.pictureBottom + lineY) {
      fillSpan(job.area.Left, areaRight, surroundings);
      continue;
    }
    fillSpan(job.area.Left, job.pictureLeft - lineX, surroundings);
    fillSpan(job.pictureRight + lineX, areaRight, surroundings);
    if (y < job.pictureTop || y >= job.pictureBottom) {
      fillSpan(job.pictureLeft - lineX, job.pictureRight + lineX, border);
      continue;
    }
    fillSpan(job.pictureLeft - lineX, job.pictureLeft, border);
    fillSpan(job.pictureRight, job.pictureRight + lineX, border);
    if (job.left == job.right) continue;

    std::uint8_t* const target = row + bytesOf(job.left);
    const std::int32_t count = job.right - job.left;
    const std::int32_t source = job.reduced ? -1 : sourceAt(scene.vertical, y);
    if (source >= 0 && source == previousSource) {
      std::memcpy(target, target - job.buffer.stride, bytesOf(count));
      continue;
    }
    if (job.reduced) {
      reduceRow(job, y, scratch, target);
    } else {
      magnifyRow(job, source, target);
    }
    const bool opaque = allOpaque(target, count);
    if (!opaque) {
      if (!job.reduced) premultiply(target, target, count);
      const ConstPixels tile = scene.background.pixels();
      compositeOverTile(target, count, tile.row(remainder(y - job.pictureTop, tile.height)), tile.width,
                        remainder(job.left - job.pictureLeft, tile.width));
    }
    previousSource = opaque ? source : -1;
    if (job.buffer.order == ChannelOrder::bgra) swapRedAndBlue(target, count);
  }
}

void Painter::magnifyRow(const Job& job, std::int32_t sourceRow, std::uint8_t* target) const {
  const std::uint8_t* const source = job.source.row(sourceRow);
  const std::int32_t count = job.right - job.left;
  if (columns_.back() - columns_.front() == count - 1) {
    std::memcpy(target, source + bytesOf(columns_.front()), bytesOf(count));
    return;
  }
  for (std::int32_t i = 0; i < count; ++i) {
    std::memcpy(target + bytesOf(i), source + bytesOf(columns_[static_cast<std::size_t>(i)]), 4);
  }
}

void Painter::reduceRow(const Job& job, std::int32_t y, Scratch& scratch, std::uint8_t* target) const {
  const Taps vertical = tapsAt(job.scene.vertical, y, job.level, job.source.height);
  const std::uint8_t* rows[3];
  for (std::int32_t i = 0; i < 3; ++i) {
    const std::int32_t index = std::min(vertical.first + i, job.source.height - 1);
    const std::uint8_t* const source = job.source.row(index) + bytesOf(job.firstColumn);
    rows[i] = source;
    if (!job.straight || vertical.weight[i] == 0) continue;
    const std::int32_t slot = index % 3;
    std::uint8_t* const copy =
        scratch.premultiplied.data() + static_cast<std::size_t>(slot) * bytesOf(job.columnCount);
    if (scratch.rows[slot] != index) {
      if (allOpaque(source, job.columnCount)) continue;
      premultiply(source, copy, job.columnCount);
      scratch.rows[slot] = index;
    }
    rows[i] = copy;
  }
  std::uint16_t* const sums = scratch.sums.data();
  const std::size_t sumCount = 4 * static_cast<std::size_t>(job.columnCount);
  averageRows(rows[0], rows[1], rows[2], vertical.weight, sums, sumCount);
  std::fill(sums + sumCount, sums + sumCount + 8, std::uint16_t{0});

  const std::int32_t count = job.right - job.left;
  for (std::int32_t i = 0; i < count; ++i) {
    // Four 16-bit channels at a time: the weights sum to 256, so no channel overflows into the next.
    const Taps& taps = taps_[static_cast<std::size_t>(i)];
    std::uint64_t p[3];
    std::memcpy(p, sums + 4 * static_cast<std::size_t>(taps.first - job.firstColumn), sizeof p);
    std::uint64_t v =
        p[0] * taps.weight[0] + p[1] * taps.weight[1] + p[2] * taps.weight[2] + 0x0080008000800080;
    v = v >> 8 & kEvenBytes;
    v = (v | v >> 8) & 0x0000FFFF0000FFFF;
    const auto pixel = static_cast<std::uint32_t>(v | v >> 16);
    std::memcpy(target + bytesOf(i), &pixel, 4);
  }
}

}  // namespace kestrel::engine
