#include "Quantize.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <optional>
#include <unordered_map>

#include "Flatten.h"

namespace kestrel::engine {
namespace {

constexpr int kBits = 6;
constexpr std::size_t kAllCells = std::size_t{1} << (3 * kBits);
constexpr std::uint8_t kHalfAlpha = 128;
constexpr int kRefinements = 4;

using Color = std::array<double, 3>;

std::size_t cellOf(int r, int g, int b) {
  constexpr int kShift = 8 - kBits;
  return static_cast<std::size_t>((r >> kShift) << (2 * kBits) | (g >> kShift) << kBits | b >> kShift);
}

/// Statistics of the pixels in one cell of the color histogram.
struct Bin {
  double count = 0;
  Color sum{};
  double squares = 0;

  void add(const Bin& other) {
    count += other.count;
    squares += other.squares;
    for (std::size_t i = 0; i < 3; ++i) sum[i] += other.sum[i];
  }
  Color mean() const { return {sum[0] / count, sum[1] / count, sum[2] / count}; }
  /// Sum of the squared distances from the mean.
  double spread() const {
    if (count == 0) return 0;
    return squares - (sum[0] * sum[0] + sum[1] * sum[1] + sum[2] * sum[2]) / count;
  }
};

/// A range of bins; a split sorts them along an axis.
struct Box {
  std::size_t first, last;
  Bin total;
};

class PaletteBuilder {
 public:
  explicit PaletteBuilder(const std::vector<Bin>& cube) {
    for (const Bin& bin : cube) {
      if (bin.count > 0) bins_.push_back(bin);
    }
  }

  std::vector<Pixel> build(std::size_t size) {
    std::vector<Color> colors = split(size);
    for (int i = 0; i < kRefinements; ++i) refine(colors);
    std::vector<Pixel> palette;
    for (const Color& color : colors) {
      const auto level = [&](std::size_t i) {
        return static_cast<std::uint8_t>(std::clamp(color[i] + 0.5, 0.0, 255.0));
      };
      palette.push_back({level(0), level(1), level(2), 255});
    }
    return palette;
  }

 private:
  std::vector<Color> split(std::size_t size) {
    std::vector<Box> boxes{boxOf(0, bins_.size())};
    while (boxes.size() < size) {
      const auto widest = std::ranges::max_element(
          boxes, {}, [](const Box& box) { return box.last - box.first > 1 ? box.total.spread() : -1; });
      if (widest->last - widest->first < 2) break;
      const std::size_t first = widest->first, last = widest->last;
      const std::size_t middle = cut(first, last, widest->total);
      *widest = boxOf(first, middle);
      boxes.push_back(boxOf(middle, last));
    }
    std::vector<Color> colors;
    for (const Box& box : boxes) colors.push_back(box.total.mean());
    return colors;
  }

  Box boxOf(std::size_t first, std::size_t last) const {
    Box box{first, last, {}};
    for (std::size_t i = first; i < last; ++i) box.total.add(bins_[i]);
    return box;
  }

  /// Finds the split with the least total spread over all three axes, and leaves the bins sorted along its
  /// axis.
  std::size_t cut(std::size_t first, std::size_t last, const Bin& total) {
    double bestSpread = std::numeric_limits<double>::max();
    std::size_t bestCut = first + 1, bestAxis = 0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      sortAlong(first, last, axis);
      Bin left;
      for (std::size_t i = first; i + 1 < last; ++i) {
        left.add(bins_[i]);
        Bin right = total;
        right.count -= left.count;
        right.squares -= left.squares;
        for (std::size_t c = 0; c < 3; ++c) right.sum[c] -= left.sum[c];
        const double spread = left.spread() + right.spread();
        if (spread < bestSpread) {
          bestSpread = spread;
          bestCut = i + 1;
          bestAxis = axis;
        }
      }
    }
    if (bestAxis != 2) sortAlong(first, last, bestAxis);
    return bestCut;
  }

  void sortAlong(std::size_t first, std::size_t last, std::size_t axis) {
    std::ranges::stable_sort(bins_.begin() + static_cast<std::ptrdiff_t>(first),
                             bins_.begin() + static_cast<std::ptrdiff_t>(last), {},
                             [axis](const Bin& bin) { return bin.sum[axis] / bin.count; });
  }

  /// One round of k-means over the bins.
  void refine(std::vector<Color>& colors) const {
    std::vector<Bin> members(colors.size());
    for (const Bin& bin : bins_) {
      const Color mean = bin.mean();
      std::size_t nearest = 0;
      double least = std::numeric_limits<double>::max();
      for (std::size_t i = 0; i < colors.size(); ++i) {
        double distance = 0;
        for (std::size_t c = 0; c < 3; ++c) distance += (mean[c] - colors[i][c]) * (mean[c] - colors[i][c]);
        if (distance < least) {
          least = distance;
          nearest = i;
        }
      }
      members[nearest].add(bin);
    }
    for (std::size_t i = 0; i < colors.size(); ++i) {
      if (members[i].count > 0) colors[i] = members[i].mean();
    }
  }

  std::vector<Bin> bins_;
};

/// Nearest palette entry of a color, cached per histogram cell.
class Nearest {
 public:
  explicit Nearest(const std::vector<Pixel>& palette) : palette_(palette), known_(kAllCells, kUnknown) {}

  std::size_t operator()(int r, int g, int b) {
    std::int16_t& known = known_[cellOf(r, g, b)];
    if (known == kUnknown) known = search(r, g, b);
    return static_cast<std::size_t>(known);
  }

 private:
  static constexpr std::int16_t kUnknown = -1;

  std::int16_t search(int r, int g, int b) const {
    int least = std::numeric_limits<int>::max();
    std::size_t nearest = 0;
    for (std::size_t i = 0; i < palette_.size(); ++i) {
      const int dr = r - palette_[i].r, dg = g - palette_[i].g, db = b - palette_[i].b;
      const int distance = dr * dr + dg * dg + db * db;
      if (distance < least) {
        least = distance;
        nearest = i;
      }
    }
    return static_cast<std::int16_t>(nearest);
  }

  const std::vector<Pixel>& palette_;
  std::vector<std::int16_t> known_;
};

bool isTransparent(const std::uint8_t* pixel) { return pixel[3] < kHalfAlpha; }

/// Exact palette and indices; nothing if the picture has more than `most` colors.
std::optional<Indexed> keepExactly(const ConstPixels& pixels, std::size_t most) {
  Indexed result;
  std::unordered_map<std::uint32_t, std::uint8_t> known;
  std::vector<std::uint8_t> row(static_cast<std::size_t>(pixels.width) * 3);
  result.indices.reserve(static_cast<std::size_t>(pixels.width) * static_cast<std::size_t>(pixels.height));
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    flattenRowOnWhite(pixels.row(y), row.data(), pixels.width);
    for (std::size_t x = 0; x < static_cast<std::size_t>(pixels.width); ++x) {
      if (isTransparent(pixels.row(y) + 4 * x)) {
        result.indices.push_back(0);
        continue;
      }
      const std::uint8_t* const p = row.data() + 3 * x;
      const std::uint32_t key = static_cast<std::uint32_t>(p[0] << 16 | p[1] << 8 | p[2]);
      const auto [found, isNew] = known.try_emplace(key, static_cast<std::uint8_t>(known.size()));
      if (isNew) {
        if (result.palette.size() == most) return std::nullopt;
        result.palette.push_back({p[0], p[1], p[2], 255});
      }
      result.indices.push_back(found->second);
    }
  }
  return result;
}

std::vector<Bin> countColors(const ConstPixels& pixels) {
  std::vector<Bin> cube(kAllCells);
  std::vector<std::uint8_t> row(static_cast<std::size_t>(pixels.width) * 3);
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    flattenRowOnWhite(pixels.row(y), row.data(), pixels.width);
    for (std::size_t x = 0; x < static_cast<std::size_t>(pixels.width); ++x) {
      if (isTransparent(pixels.row(y) + 4 * x)) continue;
      const std::uint8_t* const p = row.data() + 3 * x;
      Bin& bin = cube[cellOf(p[0], p[1], p[2])];
      bin.count += 1;
      for (std::size_t c = 0; c < 3; ++c) {
        bin.sum[c] += p[c];
        bin.squares += double{1} * p[c] * p[c];
      }
    }
  }
  return cube;
}

/// Floyd-Steinberg error diffusion in serpentine order.
void dither(const ConstPixels& pixels, Indexed& result) {
  const auto width = static_cast<std::ptrdiff_t>(pixels.width);
  Nearest nearest(result.palette);
  result.indices.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(pixels.height));
  std::vector<std::uint8_t> flat(static_cast<std::size_t>(width) * 3);
  // Errors of this row and the next, in sixteenths, with a spare column on each side.
  std::vector<std::array<int, 3>> here(static_cast<std::size_t>(width) + 2), below(here.size());
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    flattenRowOnWhite(pixels.row(y), flat.data(), pixels.width);
    const std::ptrdiff_t step = y % 2 == 0 ? 1 : -1;
    std::ptrdiff_t x = step > 0 ? 0 : width - 1;
    for (std::ptrdiff_t done = 0; done < width; ++done, x += step) {
      if (isTransparent(pixels.row(y) + 4 * x)) continue;
      const auto at = static_cast<std::size_t>(x + 1);
      std::array<int, 3> wanted{};
      for (std::size_t c = 0; c < 3; ++c) {
        wanted[c] = std::clamp(flat[static_cast<std::size_t>(3 * x) + c] + here[at][c] / 16, 0, 255);
      }
      const std::size_t index = nearest(wanted[0], wanted[1], wanted[2]);
      result.indices[static_cast<std::size_t>(y * width + x)] = static_cast<std::uint8_t>(index);
      const Pixel& chosen = result.palette[index];
      const std::array<int, 3> got{chosen.r, chosen.g, chosen.b};
      for (std::size_t c = 0; c < 3; ++c) {
        const int error = wanted[c] - got[c];
        here[at + static_cast<std::size_t>(step)][c] += 7 * error;
        below[at - static_cast<std::size_t>(step)][c] += 3 * error;
        below[at][c] += 5 * error;
        below[at + static_cast<std::size_t>(step)][c] += error;
      }
    }
    std::swap(here, below);
    std::ranges::fill(below, std::array<int, 3>{});
  }
}

bool hasTransparentPixel(const ConstPixels& pixels) {
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    for (std::int32_t x = 0; x < pixels.width; ++x) {
      if (isTransparent(pixels.row(y) + 4 * x)) return true;
    }
  }
  return false;
}

}  // namespace

Indexed quantize(const Bitmap& bitmap) {
  const ConstPixels pixels = bitmap.pixels();
  const bool seeThrough = hasTransparentPixel(pixels);
  const std::size_t most = seeThrough ? 255 : 256;
  Indexed result;
  if (auto exact = keepExactly(pixels, most)) {
    result = std::move(*exact);
  } else {
    result.palette = PaletteBuilder(countColors(pixels)).build(most);
    dither(pixels, result);
  }
  if (seeThrough) {
    result.transparentIndex = static_cast<std::int32_t>(result.palette.size());
    result.palette.push_back({255, 255, 255, 0});
    for (std::int32_t y = 0; y < pixels.height; ++y) {
      for (std::int32_t x = 0; x < pixels.width; ++x) {
        if (!isTransparent(pixels.row(y) + 4 * x)) continue;
        result.indices[static_cast<std::size_t>(y) * static_cast<std::size_t>(pixels.width) +
                       static_cast<std::size_t>(x)] = static_cast<std::uint8_t>(result.transparentIndex);
      }
    }
  }
  return result;
}

std::vector<std::uint8_t> ditherToBlackAndWhite(const Bitmap& bitmap) {
  Bitmap gray = bitmap;
  const Pixels pixels = gray.writable();
  std::vector<std::uint8_t> flat(static_cast<std::size_t>(pixels.width) * 3);
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    std::uint8_t* p = pixels.row(y);
    flattenRowOnWhite(p, flat.data(), pixels.width);
    for (std::size_t x = 0; x < static_cast<std::size_t>(pixels.width); ++x, p += 4) {
      // The weights of ITU-R BT.601, in 256ths.
      const int light = (77 * flat[3 * x] + 150 * flat[3 * x + 1] + 29 * flat[3 * x + 2] + 128) >> 8;
      p[0] = p[1] = p[2] = static_cast<std::uint8_t>(light);
      p[3] = 255;
    }
  }
  Indexed result;
  result.palette = {{0, 0, 0, 255}, {255, 255, 255, 255}};
  dither(pixels, result);
  return result.indices;
}

}  // namespace kestrel::engine
