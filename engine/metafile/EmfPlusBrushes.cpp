#include "EmfPlusBrushes.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "EmfPlusCurves.h"

namespace kestrel::engine::emf::plus {
namespace {

using metafile::Pattern;

void addStop(cairo_pattern_t* pattern, double at, Argb color) {
  cairo_pattern_add_color_stop_rgba(pattern, std::clamp(at, 0.0, 1.0), color.red(), color.green(),
                                    color.blue(), color.alpha());
}

/// Pixels of 64 that each "percent" hatch sets.
constexpr int kPercents[] = {3, 6, 13, 16, 19, 26, 32, 38, 45, 48, 51, 58};

/// Threshold of a pixel in an 8 x 8 Bayer matrix (ordered dithering).
int rankOf(int x, int y) {
  int rank = 0;
  for (int bit = 0; bit < 3; ++bit) {
    const int bx = x >> bit & 1, by = y >> bit & 1;
    rank = rank << 2 | (bx ^ by) << 1 | by;
  }
  return rank;
}

/// Whether a hatch sets a pixel of its 8 x 8 tile.
bool hasLine(std::uint32_t hatch, int x, int y) {
  const int fall = (x - y) & 7, rise = (x + y) & 7;
  constexpr std::uint32_t kFirstPercent = 6, kLastPercent = 17;
  if (hatch >= kFirstPercent && hatch <= kLastPercent) return rankOf(x, y) < kPercents[hatch - kFirstPercent];
  switch (hatch) {
    case 0:  // across
      return y == 0;
    case 1:  // down
      return x == 0;
    case 2:  // falling
      return fall == 0;
    case 3:  // rising
      return rise == 7;
    case 4:  // cross
      return x == 0 || y == 0;
    case 5:  // diagonal cross
      return fall == 0 || rise == 7;
    case 18:  // light falling
      return fall % 4 == 0;
    case 19:  // light rising
      return rise % 4 == 3;
    case 20:  // dark falling
      return fall % 4 < 2;
    case 21:  // dark rising
      return rise % 4 >= 2;
    case 22:  // wide falling
      return fall < 3;
    case 23:  // wide rising
      return rise >= 5;
    case 24:  // light down
      return x % 4 == 0;
    case 25:  // light across
      return y % 4 == 0;
    case 26:  // narrow down
      return x % 2 == 0;
    case 27:  // narrow across
      return y % 2 == 0;
    case 28:  // dark down
      return x % 4 < 2;
    case 29:  // dark across
      return y % 4 < 2;
    case 30:  // dashed falling
      return fall % 4 == 0 && y < 4;
    case 31:  // dashed rising
      return rise % 4 == 3 && y < 4;
    case 32:  // dashed across
      return (y == 0 && x < 4) || (y == 4 && x >= 4);
    case 33:  // dashed down
      return (x == 0 && y < 4) || (x == 4 && y >= 4);
    case 34:  // small confetti
      return rankOf(x, y) < 8;
    case 35:  // large confetti
      return rankOf(x / 2, y / 2) < 5;
    case 36:  // zigzag
      return y % 4 == (x < 4 ? x : 7 - x);
    case 37:  // wave
      return y % 4 == (x % 4 == 0 ? 2 : x % 4 == 2 ? 1 : x < 4 ? 1 : 2);
    case 38:  // bricks on edge
      return fall == 0 || (rise == 7 && y < 4);
    case 39:  // bricks
      return y % 4 == 0 || (y < 4 ? x == 0 : x == 4);
    case 40:  // weave
      return fall == 0 || (rise == 7 && x % 4 < 2) || fall == 4;
    case 41:  // plaid
      return y >= 4 ? x < 4 : (x + y) % 2 == 0;
    case 42:  // divots
      return (x == 1 && (y == 1 || y == 3)) || (x == 2 && y == 2) || (x == 6 && (y == 5 || y == 7)) ||
             (x == 5 && y == 6);
    case 43:  // dotted grid
      return (y == 0 && x % 2 == 0) || (x == 0 && y % 2 == 0);
    case 44:  // dotted diamonds
      return (fall == 0 || rise == 0) && x % 2 == 0;
    case 45:  // shingles
      return fall == 0 || (rise == 0 && x >= 4);
    case 46:  // trellis
      return y % 2 == 0 || (y % 4 == 1 ? x % 4 < 2 : x % 4 >= 2);
    case 47:  // spheres
      return rankOf(x, y) < 40 && (x % 4 != 1 || y % 4 != 1);
    case 48:  // small grid
      return x % 4 == 0 || y % 4 == 0;
    case 49:  // small checkers
      return (x / 2 + y / 2) % 2 == 0;
    case 50:  // large checkers
      return (x / 4 + y / 4) % 2 == 0;
    case 51:  // outlined diamonds
      return fall == 0 || rise == 0;
    case 52:  // solid diamonds
      return std::abs(x - 4) + std::abs(y - 4) < 4;
    default:
      return false;
  }
}

Pattern hatchOf(const Brush& brush) {
  const auto pixelOf = [](Argb c) {
    return Pixel{static_cast<std::uint8_t>(c.value >> 16), static_cast<std::uint8_t>(c.value >> 8),
                 static_cast<std::uint8_t>(c.value), static_cast<std::uint8_t>(c.value >> 24)};
  };
  Bitmap tile = Bitmap::filled(8, 8, pixelOf(brush.back));
  const Pixels pixels = tile.writable();
  const Pixel line = pixelOf(brush.color);
  for (int y = 0; y < 8; ++y) {
    for (int x = 0; x < 8; ++x) {
      if (hasLine(brush.hatch, x, y)) std::memcpy(pixels.row(y) + std::ptrdiff_t{4} * x, &line, sizeof line);
    }
  }
  Pattern pattern = metafile::patternOf(tile);
  cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_REPEAT);
  cairo_pattern_set_filter(pattern.get(), CAIRO_FILTER_NEAREST);
  return pattern;
}

Pattern linearOf(const Brush& brush) {
  constexpr double kFarthest = 1e6;
  if (!(std::abs(brush.box.left) < kFarthest) || !(std::abs(brush.box.right) < kFarthest)) return nullptr;
  Pattern pattern(cairo_pattern_create_linear(brush.box.left, 0, brush.box.right, 0));
  for (const Stop& stop : brush.stops) {
    if (std::isfinite(stop.at)) addStop(pattern.get(), stop.at, stop.color);
  }
  cairo_pattern_set_extend(pattern.get(), brush.wrap == Wrap::tile    ? CAIRO_EXTEND_REPEAT
                                          : brush.wrap == Wrap::clamp ? CAIRO_EXTEND_PAD
                                                                      : CAIRO_EXTEND_REFLECT);
  return pattern;
}

/// Mesh of a path gradient: one ring of quadrilateral patches per pair of stops, from the outline to the
/// center.
class Rings {
 public:
  explicit Rings(const Brush& brush) : brush_(brush), stops_(brush.stops), edge_(flattened(brush.outline)) {
    std::erase_if(stops_, [](const Stop& stop) { return !(stop.at >= 0 && stop.at <= 1); });
    if (stops_.empty()) return;
    std::ranges::stable_sort(stops_, {}, &Stop::at);
    if (stops_.front().at > 0) stops_.insert(stops_.begin(), {0, stops_.front().color});
    if (stops_.back().at < 1) stops_.push_back({1, stops_.back().color});
  }

  Pattern pattern() const {
    constexpr std::size_t kMostPatches = 2048;
    const std::size_t count = edge_.points.size();
    if (count < 3 || stops_.size() < 2) return nullptr;
    // Sample an outline with too many points.
    const std::size_t step = std::max<std::size_t>(1, count * (stops_.size() - 1) / kMostPatches);
    Pattern mesh(cairo_pattern_create_mesh());
    for (std::size_t ring = 0; ring + 1 < stops_.size(); ++ring) {
      for (std::size_t i = 0; i < count; i += step)
        addPatch(mesh.get(), ring, i, i + step < count ? i + step : 0);
    }
    return mesh;
  }

 private:
  void addPatch(cairo_pattern_t* mesh, std::size_t ring, std::size_t from, std::size_t to) const {
    const std::size_t edge[] = {from, to, to, from};
    const std::size_t stop[] = {ring, ring, ring + 1, ring + 1};
    cairo_mesh_pattern_begin_patch(mesh);
    for (unsigned corner = 0; corner < 4; ++corner) {
      const Point p = edge_.points[edge[corner]];
      const double inwards = stops_[stop[corner]].at;
      const double x = p.x + (brush_.center.x - p.x) * inwards, y = p.y + (brush_.center.y - p.y) * inwards;
      corner == 0 ? cairo_mesh_pattern_move_to(mesh, x, y) : cairo_mesh_pattern_line_to(mesh, x, y);
    }
    for (unsigned corner = 0; corner < 4; ++corner) {
      const Argb color = colorAt(stop[corner], edge[corner]);
      cairo_mesh_pattern_set_corner_color_rgba(mesh, corner, color.red(), color.green(), color.blue(),
                                               color.alpha());
    }
    cairo_mesh_pattern_end_patch(mesh);
  }

  Argb colorAt(std::size_t stop, std::size_t point) const {
    if (stop > 0 || brush_.around.empty()) return stops_[stop].color;
    return brush_.around[std::min(edge_.origins[point], brush_.around.size() - 1)];
  }

  const Brush& brush_;
  std::vector<Stop> stops_;
  Flattened edge_;
};

bool isFinite(const Path& path) {
  return std::ranges::all_of(path.points, [](Point p) {
    constexpr double kFarthest = 1e6;
    return std::abs(p.x) < kFarthest && std::abs(p.y) < kFarthest;
  });
}

}  // namespace

double weightOf(const Brush& brush) {
  switch (brush.kind) {
    case Brush::Kind::pathGradient:
      return 100;
    case Brush::Kind::linearGradient:
    case Brush::Kind::texture:
      return 16;
    default:
      return 2;
  }
}

Pattern patternOf(const Brush& brush, metafile::Work& work) {
  switch (brush.kind) {
    case Brush::Kind::solid:
      return Pattern(cairo_pattern_create_rgba(brush.color.red(), brush.color.green(), brush.color.blue(),
                                               brush.color.alpha()));
    case Brush::Kind::hatched:
      return hatchOf(brush);
    case Brush::Kind::linearGradient:
      return linearOf(brush);
    case Brush::Kind::pathGradient: {
      constexpr double kPerPoint = 20'000;
      const bool drawn = isFinite(brush.outline) && std::isfinite(brush.center.x) &&
                         std::isfinite(brush.center.y) &&
                         work.take(kPerPoint * static_cast<double>(brush.outline.points.size()));
      return drawn ? Rings(brush).pattern() : nullptr;
    }
    case Brush::Kind::texture: {
      const Bitmap& bitmap = brush.texture;
      if (bitmap.empty() || !work.take(8.0 * bitmap.width() * bitmap.height())) return nullptr;
      Pattern pattern = metafile::patternOf(bitmap);
      cairo_pattern_set_extend(pattern.get(), brush.wrap == Wrap::tile    ? CAIRO_EXTEND_REPEAT
                                              : brush.wrap == Wrap::clamp ? CAIRO_EXTEND_NONE
                                                                          : CAIRO_EXTEND_REFLECT);
      return pattern;
    }
    default:
      return nullptr;
  }
}

}  // namespace kestrel::engine::emf::plus
